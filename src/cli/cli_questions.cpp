// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/cli_questions.h"

namespace quayline {

void CliQuestions::AskCertificate(const ShownCertificate& shown,
                                  std::function<void(bool trusted)> answer) {
  const bool is_trusted =
      answers_.trusted_certificate &&
      answers_.trusted_certificate->compare(shown.fingerprint, Qt::CaseInsensitive) == 0;
  if (!is_trusted) {
    report_(
        QStringLiteral("%1 shows %2. If it is your router's own, run this again with "
                       "--trust-certificate %3")
            .arg(shown.address,
                 shown.is_changed
                     ? QStringLiteral("another certificate than the one that was trusted before")
                     : QStringLiteral("a certificate that nobody vouches for"),
                 shown.fingerprint));
  }
  answer(is_trusted);
}

void CliQuestions::AskLogin(const QString&, std::function<void(std::optional<TypedLogin>)> answer) {
  answer(std::nullopt);
}

void CliQuestions::AskOtherAddress(const OtherAddress& other,
                                   std::function<void(bool allowed)> answer) {
  report_(QStringLiteral("%1 leads to %2, which is another address than the router's. It was "
                         "blocked.")
              .arg(other.router, other.target));
  answer(false);
}

}  // namespace quayline
