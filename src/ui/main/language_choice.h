// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QObject>

#include "core/app_context.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// The box of languages on the main window. What the user chooses is stored, and shown at once in
// all windows.
class LanguageChoice final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it. `box` is on the main window, which owns this.
  LanguageChoice(AppContext& context, Prompts& prompts, QComboBox* box, QWidget* main_window);

  void Show(const QStringList& languages, const QString& current);
  // At the first start: asks whether the program shall use the desktop's language.
  void OfferDesktopLanguage();

 private:
  void Use(const QString& choice);

  AppContext& context_;
  Prompts& prompts_;
  QComboBox* box_;
  QWidget* main_window_;
};

}  // namespace quayline
