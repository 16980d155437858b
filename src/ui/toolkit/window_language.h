// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTranslator>

#include <memory>

#include "i18n/translator.h"

class QApplication;
class QWidget;

namespace quayline {

// Shows every window in the translator's language, without the windows' help. The texts of a form
// come from the translator when the form is made, and those of code when they are set. When the
// language changes, each text of a window that the translator gave is given again in the new
// language; what the user entered and what code has put together is not touched. Every widget then
// gets QEvent::LanguageChange, in which it sets the texts again that it puts together.
//
// The layout direction follows the language. Access keys are unique in each window. One object,
// owned by main().
class WindowLanguage final : public QObject {
  Q_OBJECT

 public:
  // Both outlive it.
  WindowLanguage(QApplication& application, const Translator& translator);
  ~WindowLanguage() override;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Apply();
  void FollowLanguage();

  QApplication& application_;
  const Translator& translator_;
  std::unique_ptr<QTranslator> form_texts_;
  QTranslator qt_texts_;  // of Qt's own dialogs, as far as the system has them
};

// Captions, texts, the title, menus, tool tips, placeholders, names for screen readers, tabs and
// items of boxes of `window` and of everything in it.
void ApplyLanguage(QWidget& window, const Translator& translator);

}  // namespace quayline
