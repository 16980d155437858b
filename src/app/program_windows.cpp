// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "app/program_windows.h"

#include "script/web/web_engine.h"
#include "ui/job/job_window.h"
#include "ui/job/page_view_window.h"
#include "ui/main/version.h"
#include "ui/network/cache_dialog.h"
#include "ui/network/firewall_change_dialog.h"
#include "ui/network/firewall_list_dialog.h"
#include "ui/network/port_checker_window.h"
#include "ui/network/quick_ports_dialog.h"
#include "ui/network/repair_plans.h"
#include "ui/network/second_router_dialog.h"
#include "ui/network/static_address_dialog.h"
#include "ui/tools/router_list_dialog.h"
#include "ui/tools/script_dialog.h"
#include "ui/updates/database_update_dialog.h"
#include "ui/updates/program_update_window.h"

namespace quayline {

ProgramWindows::ProgramWindows(AppContext& context, Prompts& prompts, const EntryWindows& entries,
                               Echoes& echoes, Firewall& firewall)
    : context_(context),
      prompts_(prompts),
      entries_(entries),
      echoes_(echoes),
      firewall_(firewall),
      quiet_search_(context.adapters, echoes) {
  QObject::connect(&quiet_search_, &SecondRouterSearch::ended, &quiet_search_,
                   [this](const RouterTrace& trace) {
                     has_second_router_ = CountRouters(trace.addresses, {}).HasSecondRouter();
                   });
}

PageHostFactory ProgramWindows::Hosts() const {
  return WebPageHosts(context_.job_options, context_.translator, &context_.certificates);
}

QWidget* ProgramWindows::Job(QWidget* former) {
  auto* window = new JobWindow(context_, prompts_, Hosts());
  if (const auto* before = qobject_cast<JobWindow*>(former)) {
    window->TakeOverRules(*before);
  }
  QObject::connect(window, &JobWindow::routerPageWanted, window, [this, window] {
    // No other run may begin while the user works on the router.
    QDialog* view = PageView(window);
    view->setWindowModality(Qt::ApplicationModal);
    view->show();
  });
  OfferTest(window);
  return window;
}

QWidget* ProgramWindows::RouterCheck() {
  auto* window = new JobWindow(context_, prompts_, Hosts(), JobKind::kCheck);
  OfferTest(window);
  return window;
}

void ProgramWindows::OfferTest(JobWindow* window) {
  QObject::connect(window, &JobWindow::testWanted, window, [this, window] {
    PortCheckerWindow* checker = MakePortChecker(window);
    checker->open();
    checker->Begin();
  });
  QObject::connect(window, &JobWindow::firewallWanted, window,
                   [this, window](const QList<FirewallPorts>& ports) {
                     auto* dialog =
                         new FirewallChangeDialog(firewall_, ports, context_.translator, window);
                     QObject::connect(dialog, &FirewallChangeDialog::succeeded, window,
                                      &JobWindow::NoteFirewallOpened);
                     dialog->open();
                   });
}

QDialog* ProgramWindows::AddEntry(QWidget* parent, std::function<void()> changed) {
  return entries_.AddNew(parent, changed);
}

QDialog* ProgramWindows::EditEntry(QWidget* parent, int row, std::function<void()> changed) {
  return entries_.Edit(parent, row, changed);
}

QDialog* ProgramWindows::Adapters(QWidget* parent, std::function<void(const QString&)> chosen) {
  return entries_.NetworkList(parent, chosen);
}

QDialog* ProgramWindows::PageView(QWidget* parent) {
  return new PageViewWindow(context_, prompts_, Hosts(), parent);
}

QDialog* ProgramWindows::SecondRouter(QWidget* parent) {
  return new SecondRouterDialog(context_.adapters, echoes_, context_.translator, parent);
}

QDialog* ProgramWindows::RouterList(QWidget* parent, std::function<void(int router_id)> chosen) {
  return new RouterListDialog(context_, prompts_, parent, std::move(chosen));
}

QDialog* ProgramWindows::Scripts(QWidget* parent, std::function<void()> written) {
  return new ScriptDialog(context_, prompts_, Hosts(), parent, std::move(written));
}

QDialog* ProgramWindows::QuickPorts(QWidget* parent) {
  return new QuickPortsDialog(context_, parent);
}

QDialog* ProgramWindows::OfComputer(QWidget* parent, ComputerWindow window) {
  switch (window) {
    case ComputerWindow::kAddExceptions:
      return new FirewallChangeDialog(
          firewall_, FirewallPortsOf(ComputeTotals(context_.port_list.Entries()).forwarded),
          context_.translator, parent);
    case ComputerWindow::kRemoveExceptions:
      return new FirewallChangeDialog(firewall_, std::nullopt, context_.translator, parent);
    case ComputerWindow::kClearCache:
      return new CacheDialog(ClearUrlCache, context_.translator, parent);
    case ComputerWindow::kRepairBrowser:
      return new RepairDialog(BrowserRepair({.clear_cache = ClearUrlCache,
                                             .remove_files = RemoveBrowserFiles,
                                             .try_new_browser = TryNewBrowser},
                                            HasRegsvr32()),
                              context_.translator, parent);
    case ComputerWindow::kRepairDatabases:
      return new RepairDialog(DatabaseRepair(context_, HasRegsvr32()), context_.translator, parent);
    case ComputerWindow::kShowExceptions:
      break;
  }
  return new FirewallListDialog(firewall_, context_.translator, parent);
}

QDialog* ProgramWindows::StaticAddress(QWidget* parent) {
  return new StaticAddressDialog(context_, prompts_, address_setup_, neighbours_, parent);
}

QDialog* ProgramWindows::ProgramUpdate(QWidget* parent, std::function<void()> exit) {
  if (program_update_ == nullptr) {
    program_update_ =
        new ProgramUpdateWindow(context_, prompts_, ProgramVersion(), parent, std::move(exit));
  }
  return program_update_;
}

void ProgramWindows::CheckForUpdate(QWidget* parent, std::function<void()> exit) {
  ProgramUpdate(parent, std::move(exit));
  program_update_->CheckSilently();
}

QDialog* ProgramWindows::DatabaseUpdate(QWidget* parent, std::function<void()> updated) {
  return new DatabaseUpdateDialog(context_, prompts_, parent, std::move(updated));
}

QDialog* ProgramWindows::PortChecker(QWidget* parent) { return MakePortChecker(parent); }

PortCheckerWindow* ProgramWindows::MakePortChecker(QWidget* parent) {
  return new PortCheckerWindow(context_, prompts_, Hosts(), parent,
                               [this, parent] { SecondRouter(parent)->open(); });
}

}  // namespace quayline
