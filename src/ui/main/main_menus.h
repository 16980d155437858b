// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "core/app_context.h"
#include "ui/toolkit/prompts.h"

class QUrl;

namespace Ui {
class MainWindow;
}

namespace quayline {

// What the main window's menus do by themselves: the options of a job, help, and pages of the
// maker's site.
class MainMenus final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it; boxes and windows belong to `window`.
  MainMenus(AppContext& context, Prompts& prompts, const Ui::MainWindow& ui, QWidget* window);

  // The checks of the menu Advanced, of the job options.
  void ShowOptions();
  void OpenPage(const QUrl& page);
  // A page of the program's own help: "index", "closed-port".
  void ShowHelp(const QString& page);
  // Shows `texts`, a paragraph each.
  void Explain(std::initializer_list<Message> texts);

 private:
  void ConnectOptions();
  void ConnectHelp();
  void ConnectPages();
  void ConnectSystem();

  AppContext& context_;
  Prompts& prompts_;
  const Ui::MainWindow& ui_;
  QWidget* window_;
};

}  // namespace quayline
