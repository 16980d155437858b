// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "cli/allowed_host.h"
#include "script/page_questions.h"

namespace quayline {

// What the user has answered in advance, by options.
struct CliAnswers {
  std::optional<QString> trusted_certificate;  // SHA-256 fingerprint
  QList<AllowedHost> allowed_hosts;
  bool allows_script = false;  // of somebody else
};

// Answers what the pages of a job ask, without a user: what the options do not allow is refused,
// and reported with the option that would allow it.
class CliQuestions final : public PageQuestions {
 public:
  CliQuestions(CliAnswers answers, std::function<void(const QString& sentence)> report)
      : answers_(std::move(answers)), report_(std::move(report)) {}

  void AskForeignScript(const ForeignScript& script,
                        std::function<void(bool allowed)> answer) override;
  void AskCertificate(const ShownCertificate& shown,
                      std::function<void(bool trusted)> answer) override;
  void AskLogin(const QString& address,
                std::function<void(std::optional<TypedLogin>)> answer) override;
  void AskOtherAddress(const OtherAddress& other,
                       std::function<void(bool allowed)> answer) override;
  // There is no user: every dialog is answered as for a script.
  std::optional<PageDialogAnswer> AnswerDialog(const PageDialog&) override { return std::nullopt; }

 private:
  CliAnswers answers_;
  std::function<void(const QString& sentence)> report_;
};

}  // namespace quayline
