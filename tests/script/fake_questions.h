// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QList>
#include <QStringList>

#include "script/foreign_script.h"
#include "script/page_questions.h"

namespace quayline::testing {

// Records every question, and answers it at once with the values below, which refuse by default.
class FakeQuestions final : public PageQuestions {
 public:
  QStringList asked;  // "certificate 1.1.1.1:443", "changed ...", "login 1.1.1.1", "address ...",
                      // "dialog text"
  std::function<bool(const ShownCertificate&)> trusts;
  QList<std::optional<TypedLogin>> logins;  // one a question; then refused
  bool allows_addresses = false;
  bool allows_scripts = false;
  // Set: a question about an address is answered later, by a call of it.
  std::optional<std::function<void(bool)>> held_address;
  // Without it the user is not asked, as while a run works on the page.
  std::function<std::optional<PageDialogAnswer>(const PageDialog&)> on_dialog;

  void AskForeignScript(const ForeignScript& script, std::function<void(bool)> answer) override {
    asked.append(QStringLiteral("script of ") + script.origin.author.name);
    answer(allows_scripts);
  }
  void AskCertificate(const ShownCertificate& shown, std::function<void(bool)> answer) override {
    asked.append(QLatin1String(shown.is_changed ? "changed " : "certificate ") + shown.address);
    answer(trusts && trusts(shown));
  }
  void AskLogin(const QString& address,
                std::function<void(std::optional<TypedLogin>)> answer) override {
    asked.append(QStringLiteral("login ") + address);
    // From the event loop, as a user's.
    const auto typed = logins.isEmpty() ? std::nullopt : logins.takeFirst();
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [answer, typed] { answer(typed); }, Qt::QueuedConnection);
  }
  void AskOtherAddress(const OtherAddress& other, std::function<void(bool)> answer) override {
    asked.append(QStringLiteral("address ") + other.target);
    if (held_address) {
      held_address = std::move(answer);
    } else {
      answer(allows_addresses);
    }
  }
  std::optional<PageDialogAnswer> AnswerDialog(const PageDialog& dialog) override {
    asked.append(QStringLiteral("dialog ") + dialog.text);
    return on_dialog ? on_dialog(dialog) : std::nullopt;
  }
};

}  // namespace quayline::testing
