// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/window_opener.h"

#include <QAction>
#include <QDate>
#include <QDialog>

#include <functional>

#include "core/update_command.h"
#include "ui/main/main_messages.h"
#include "ui_main_window.h"
#include "update/update_site.h"

namespace quayline {

WindowOpener::WindowOpener(AppContext& context, Prompts& prompts, WindowFactory& windows,
                           const Ui::MainWindow& ui, RouterRuns& runs, QWidget* main_window)
    : QObject(main_window),
      context_(context),
      prompts_(prompts),
      windows_(windows),
      runs_(runs),
      main_window_(main_window) {
  ConnectActions(ui);
  connect(ui.open_firewall_action, &QAction::triggered, this, &WindowOpener::OpenFirewallSettings);
  connect(ui.update_databases_action, &QAction::triggered, this, &WindowOpener::UpdateDatabases);
}

void WindowOpener::ConnectActions(const Ui::MainWindow& ui) {
  struct Row {
    QAction* action;
    std::function<QDialog*()> make;
    Needs needs = Needs::kNothing;
  };
  const Row rows[] = {
      {ui.test_ports_action, [this] { return windows_.PortChecker(main_window_); }},
      {ui.static_ip_action, [this] { return windows_.StaticAddress(main_window_); }},
      {ui.quick_ports_action, [this] { return windows_.QuickPorts(main_window_); }},
      {ui.detect_routers_action, [this] { return windows_.SecondRouter(main_window_); }},
      {ui.check_updates_action,
       [this] { return windows_.ProgramUpdate(main_window_, [this] { Q_EMIT exitRequested(); }); }},
      {ui.view_scripts_action,
       [this] {
         return windows_.Scripts(main_window_,
                                 [this] { Q_EMIT routerChosen(context_.session.router_id); });
       },
       Needs::kKnownRouter},
      {ui.add_exceptions_action, [this] { return OfComputer(ComputerWindow::kAddExceptions); }},
      {ui.remove_exceptions_action,
       [this] { return OfComputer(ComputerWindow::kRemoveExceptions); }},
      {ui.show_exceptions_action, [this] { return OfComputer(ComputerWindow::kShowExceptions); }},
      // A page that loads meanwhile would never arrive, and a job reads the databases.
      {ui.clear_cache_action, [this] { return OfComputer(ComputerWindow::kClearCache); },
       Needs::kNoJob},
      {ui.repair_browser_action, [this] { return OfComputer(ComputerWindow::kRepairBrowser); },
       Needs::kNoJob},
      {ui.repair_databases_action, [this] { return OfComputer(ComputerWindow::kRepairDatabases); },
       Needs::kNoJob},
  };
  for (const Row& row : rows) {
    connect(row.action, &QAction::triggered, this, [this, make = row.make, needs = row.needs] {
      if (IsMet(needs)) {
        make()->open();
      }
    });
  }
}

bool WindowOpener::IsMet(Needs needs) {
  if (needs == Needs::kKnownRouter) {
    return runs_.IsRouterKnown();
  }
  if (needs == Needs::kNoJob && context_.job_flags.IsRunning()) {
    prompts_.Tell(main_window_, Text(kJobRuns));
    return false;
  }
  return true;
}

void WindowOpener::ListRouters() {
  windows_.RouterList(main_window_, [this](int id) { Q_EMIT routerChosen(id); })->open();
}

void WindowOpener::ListAdapters() {
  windows_
      .Adapters(main_window_, [this](const QString& gateway) { Q_EMIT gatewayChosen(gateway); })
      ->open();
}

void WindowOpener::OpenFirewallSettings() {
  if (context_.firewall == nullptr || !context_.firewall->OpenSettings()) {
    prompts_.Tell(main_window_, Text(message::kNoFirewallProgram));
  }
}

void WindowOpener::CheckForUpdate() {
  if (TakeDailyCheck(context_, QDate::currentDate())) {
    windows_.CheckForUpdate(main_window_, [this] { Q_EMIT exitRequested(); });
  }
}

void WindowOpener::UpdateDatabases() {
  if (!IsMet(Needs::kNoJob)) {
    return;
  }
  if (!FindUpdateSite(context_).Exists()) {
    prompts_.Tell(main_window_, Text(message::kNoDatabaseSite));
    return;
  }
  const auto update = [this](bool yes) {
    if (yes) {
      windows_.DatabaseUpdate(main_window_, [this] { Q_EMIT databasesUpdated(); })->open();
    }
  };
  prompts_.Ask(
      main_window_, QStringLiteral("Quayline"),
      Text(message::kOverwriteDatabases) + QLatin1Char('\n') + Text(message::kContinueQuestion),
      update);
}

}  // namespace quayline
