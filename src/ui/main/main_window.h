// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>
#include <QTimer>

#include <expected>
#include <memory>

#include "core/app_context.h"
#include "ui/main/first_steps.h"
#include "ui/main/language_choice.h"
#include "ui/main/login_panel.h"
#include "ui/main/main_menus.h"
#include "ui/main/port_list_panel.h"
#include "ui/main/router_detector.h"
#include "ui/main/router_list_model.h"
#include "ui/main/router_panel.h"
#include "ui/main/router_runs.h"
#include "ui/main/router_selection.h"
#include "ui/main/start_up.h"
#include "ui/main/window_factory.h"
#include "ui/main/window_opener.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class MainWindow;
}

namespace quayline {

// The main window's content, held by MainFrame: the panels of router, login and port list, the
// menus, and the one button. It connects them to the logic classes and stores each change of the
// session.
class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  MainWindow(AppContext& context, Prompts& prompts, WindowFactory& windows, QWidget* parent);
  ~MainWindow() override;

  // Does the first half of the start and begins the second one. Boxes of the start wait for the
  // window, so that they are above it. The error has to be shown by the caller, who ends the
  // program.
  std::expected<void, QString> Load();
  // Ends what the window runs, its timers, and the job window. Called once, at the end.
  void Unload();

  // As pressing "Update Router".
  void UpdateRouter();
  ListCommands& List() { return list_panel_->Commands(); }
  const PortTotals& Totals() const { return list_panel_->Totals(); }
  // Puts router and login below each other where `width` is too small for both.
  void UseWidth(int width);

 Q_SIGNALS:
  // The slow half of the start has ended: everything is filled in.
  void ready();
  void exitRequested();

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void AddPanels();
  void ConnectPanels();
  void ConnectRuns();
  void ConnectWindows();
  void RequestRouter();
  void CheckRouter();
  void ConnectDetection();
  void ConnectStartUp();
  void ConnectGuide();
  void SetTimers();
  void SetInputsEnabled(bool enabled);
  void ReportFailedWrites();
  void ReportReplacedDatabases();

  void ChooseRouter(int id);
  void ShowSession();
  void StoreSession();
  void ShowTotals();
  void ShowLocalIp();
  void ForgetLooksOfOtherRouter();
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  std::unique_ptr<Ui::MainWindow> ui_;
  RouterListModel routers_;
  RouterSelection selection_;
  RouterPanel* router_panel_;
  LoginPanel* login_panel_;
  PortListPanel* list_panel_;
  RouterDetector* detector_;
  FirstSteps* first_steps_;
  RouterRuns* runs_;
  MainMenus* menus_ = nullptr;
  LanguageChoice* languages_ = nullptr;
  WindowOpener* opener_ = nullptr;
  StartUp start_up_;
  QTimer start_timer_;   // the slow half of the start
  QTimer reload_timer_;  // the same, after the databases were updated
  QTimer local_ip_timer_;
  QString looked_router_;  // to which the looks in the list belong
};

}  // namespace quayline
