// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/router_session.h"
#include "i18n/translator.h"
#include "script/page_questions.h"
#include "script/runner_texts.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// Asks the user what the pages of a run ask. The window owns it, and makes it before the runner
// that asks it.
class RunQuestions final : public PageQuestions {
 public:
  RunQuestions(QWidget& window, Prompts& prompts, const Translator& translator,
               const RunnerTexts& texts)
      : window_(window), prompts_(prompts), translator_(translator), texts_(texts) {}

  // What the user typed when a page asked for a login.
  const QList<Login>& TypedLogins() const { return typed_logins_; }

  // The window closes: what is open, and what is asked from now on, is refused.
  void RefuseAll();

  void AskForeignScript(const ForeignScript& script,
                        std::function<void(bool allowed)> answer) override;
  void AskCertificate(const ShownCertificate& shown,
                      std::function<void(bool trusted)> answer) override;
  void AskLogin(const QString& address,
                std::function<void(std::optional<TypedLogin>)> answer) override;
  void AskOtherAddress(const OtherAddress& other,
                       std::function<void(bool allowed)> answer) override;
  std::optional<PageDialogAnswer> AnswerDialog(const PageDialog& dialog) override;

 private:
  QString Text(const Message& message) const { return translator_.Text(message); }

  QWidget& window_;
  Prompts& prompts_;
  const Translator& translator_;
  const RunnerTexts& texts_;
  QList<Login> typed_logins_;
  bool refuses_ = false;
};

}  // namespace quayline
