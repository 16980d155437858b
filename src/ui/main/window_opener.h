// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include "core/app_context.h"
#include "ui/main/router_runs.h"
#include "ui/main/window_factory.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class MainWindow;
}

namespace quayline {

// Opens the other windows of the program from the menus of the main window, to which it belongs.
// Signals report what the user did there. The windows that work on the router are RouterRuns'.
class WindowOpener final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  WindowOpener(AppContext& context, Prompts& prompts, WindowFactory& windows,
               const Ui::MainWindow& ui, RouterRuns& runs, QWidget* main_window);

  void ListRouters();
  void ListAdapters();
  // Once a day, without a window: looks for a new version of the program.
  void CheckForUpdate();

 Q_SIGNALS:
  // The user chose this router, or changed its scripts or its row.
  void routerChosen(int id);
  // The user chose the adapter with this gateway.
  void gatewayChosen(const QString& gateway);
  void databasesUpdated();
  // An installer of a new version was started.
  void exitRequested();

 private:
  // What must hold before a window opens.
  enum class Needs { kNothing, kKnownRouter, kNoJob };

  void ConnectActions(const Ui::MainWindow& ui);
  // If not, the user is shown why.
  bool IsMet(Needs needs);
  QDialog* OfComputer(ComputerWindow window) { return windows_.OfComputer(main_window_, window); }
  void OpenFirewallSettings();
  void UpdateDatabases();
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  WindowFactory& windows_;
  RouterRuns& runs_;
  QWidget* main_window_;
};

}  // namespace quayline
