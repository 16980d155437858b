// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/run_questions.h"

#include "script/foreign_script.h"

namespace quayline {

void RunQuestions::RefuseAll() {
  refuses_ = true;
  prompts_.CloseBoxes(&window_);
}

void RunQuestions::AskForeignScript(const ForeignScript& script,
                                    std::function<void(bool allowed)> answer) {
  if (refuses_) {
    answer(false);
    return;
  }
  prompts_.AskCarefully(&window_, Text(texts_.foreign_script_title),
                        ForeignScriptText(script, translator_) + QStringLiteral("\n\n") +
                            Text(texts_.foreign_script_question),
                        std::move(answer));
}

void RunQuestions::AskCertificate(const ShownCertificate& shown,
                                  std::function<void(bool trusted)> answer) {
  if (refuses_) {
    answer(false);
    return;
  }
  const Message& question =
      shown.is_changed ? texts_.changed_certificate : texts_.certificate_question;
  prompts_.AskCarefully(&window_, Text(texts_.certificate_title),
                        Text(question).arg(shown.address, shown.fingerprint), std::move(answer));
}

void RunQuestions::AskLogin(const QString& address,
                            std::function<void(std::optional<TypedLogin>)> answer) {
  if (refuses_) {
    answer(std::nullopt);
    return;
  }
  prompts_.AskLogin(
      &window_, address,
      [this, answer = std::move(answer)](const std::optional<LoginAnswer>& login) {
        if (login) {
          typed_logins_.append({login->username, login->password});
        }
        answer(login ? std::optional(TypedLogin{login->username, login->password}) : std::nullopt);
      });
}

void RunQuestions::AskOtherAddress(const OtherAddress& other,
                                   std::function<void(bool allowed)> answer) {
  if (refuses_) {
    answer(false);
    return;
  }
  prompts_.AskCarefully(&window_, Text(texts_.other_address_title),
                        Text(texts_.other_address_question).arg(other.router, other.target),
                        std::move(answer));
}

std::optional<PageDialogAnswer> RunQuestions::AnswerDialog(const PageDialog& dialog) {
  if (refuses_) {
    return PageDialogAnswer{};
  }
  using Kind = PageDialog::Kind;
  const PageBoxAnswer answer = prompts_.AnswerPage(
      &window_,
      {.title = Text(texts_.page_dialog_title),
       .text = dialog.text,
       .can_refuse = dialog.kind != Kind::kAlert,
       .typed = dialog.kind == Kind::kPrompt ? std::optional(dialog.preset) : std::nullopt,
       .no_more = dialog.is_repeated ? std::optional(Text(texts_.no_more_dialogs)) : std::nullopt});
  return PageDialogAnswer{
      .accepted = answer.accepted, .typed = answer.typed, .wants_no_more = answer.wants_no_more};
}

}  // namespace quayline
