// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/cli_questions.h"

#include <QUrl>

#include <algorithm>

#include "script/foreign_script.h"

namespace quayline {

void CliQuestions::AskForeignScript(const ForeignScript& script,
                                    std::function<void(bool allowed)> answer) {
  if (!answers_.allows_script) {
    report_(ForeignScriptText(script, Translator(QString())) +
            QStringLiteral("\n\nIf you trust this script, run this again with --allow-script"));
  }
  answer(answers_.allows_script);
}

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
                     : QStringLiteral("a certificate that no known authority has signed"),
                 shown.fingerprint));
  }
  answer(is_trusted);
}

void CliQuestions::AskLogin(const QString&, std::function<void(std::optional<TypedLogin>)> answer) {
  answer(std::nullopt);
}

void CliQuestions::AskOtherAddress(const OtherAddress& other,
                                   std::function<void(bool allowed)> answer) {
  const bool is_allowed = std::ranges::any_of(
      answers_.allowed_hosts,
      [&other](const AllowedHost& allowed) { return allowed.Holds(other.target); });
  if (!is_allowed) {
    const QUrl target(other.target);
    report_(QStringLiteral("The router's page leads to another address, %1, which was blocked. If "
                           "it belongs to your router, run this again with --allow-host %2")
                .arg(other.target, target.authority()));
  }
  answer(is_allowed);
}

}  // namespace quayline
