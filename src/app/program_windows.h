// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>

#include "core/app_context.h"
#include "net/second_router.h"
#include "platform/echoes.h"
#include "platform/firewall.h"
#include "platform/linux/linux_neighbours.h"
#include "platform/linux/network_manager_setup.h"
#include "script/page_host.h"
#include "ui/entries/entry_windows.h"
#include "ui/main/window_factory.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

class JobWindow;
class PortCheckerWindow;
class ProgramUpdateWindow;

// The windows of the program, for the main window, which does not know their folders.
class ProgramWindows final : public WindowFactory {
 public:
  // What is referred to outlives it.
  ProgramWindows(AppContext& context, Prompts& prompts, const EntryWindows& entries, Echoes& echoes,
                 Firewall& firewall);

  // Looks for a second router in the background, without a window.
  void SearchSecondRouter() { quiet_search_.Start(); }

  QWidget* Job(QWidget* former) override;
  QWidget* RouterCheck() override;
  QDialog* AddEntry(QWidget* parent, std::function<void()> changed) override;
  QDialog* EditEntry(QWidget* parent, int row, std::function<void()> changed) override;
  QDialog* Adapters(QWidget* parent, std::function<void(const QString&)> chosen) override;
  QDialog* PageView(QWidget* parent) override;
  QDialog* SecondRouter(QWidget* parent) override;
  QDialog* RouterList(QWidget* parent, std::function<void(int router_id)> chosen) override;
  QDialog* Scripts(QWidget* parent, std::function<void()> written) override;
  QDialog* PortChecker(QWidget* parent) override;
  QDialog* QuickPorts(QWidget* parent) override;
  QDialog* OfComputer(QWidget* parent, ComputerWindow window) override;
  QDialog* StaticAddress(QWidget* parent) override;
  QDialog* ProgramUpdate(QWidget* parent, std::function<void()> exit) override;
  void CheckForUpdate(QWidget* parent, std::function<void()> exit) override;
  QDialog* DatabaseUpdate(QWidget* parent, std::function<void()> updated) override;
  bool HasSecondRouter() const override { return has_second_router_; }

 private:
  PageHostFactory Hosts() const;
  void OfferTest(JobWindow* window);
  PortCheckerWindow* MakePortChecker(QWidget* parent);

  AppContext& context_;
  Prompts& prompts_;
  const EntryWindows& entries_;
  Echoes& echoes_;
  Firewall& firewall_;
  LinuxNeighbours neighbours_;
  NetworkManagerSetup address_setup_{neighbours_};
  SecondRouterSearch quiet_search_;
  bool has_second_router_ = false;
  QPointer<ProgramUpdateWindow> program_update_;  // may be hidden
};

}  // namespace quayline
