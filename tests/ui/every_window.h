// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "main_fixture.h"
#include "platform/fake_firewall.h"
#include "ui/entries/adapter_dialog.h"
#include "ui/job/job_window.h"
#include "ui/job/page_view_window.h"
#include "ui/main/about_dialog.h"
#include "ui/main/getting_started_window.h"
#include "ui/main/help_dialog.h"
#include "ui/network/firewall_change_dialog.h"
#include "ui/network/firewall_list_dialog.h"
#include "ui/network/port_checker_window.h"
#include "ui/network/quick_ports_dialog.h"
#include "ui/network/second_router_dialog.h"
#include "ui/network/static_address_dialog.h"
#include "ui/toolkit/login_dialog.h"
#include "ui/toolkit/theme.h"
#include "ui/tools/new_router_dialog.h"
#include "ui/tools/router_list_dialog.h"
#include "ui/tools/script_dialog.h"

namespace quayline::testing {

class NoEchoes final : public Echoes {
 public:
  Task<EchoReply> Send(QString, int, std::chrono::milliseconds) override { co_return EchoReply{}; }
};

// Every window of the program, one after the other, as it is when it opens.
class EveryWindowTest : public MainWindowTest {
 protected:
  EveryWindowTest() {
    folder_.WriteFile("list.qyl", "Ftp|192.168.1.20()|21|21|TCP|Files\r\n");
    setup_.adapters = {{.description = u"Wired (enp3s0)"_s, .index = 2}};
    firewall_.view.rules = {{.name = u"filter input"_s, .first_port = 22, .last_port = 22}};
  }

  // Calls `look` with each window, shown in the language.
  void ForEach(const QString& language,
               const std::function<void(const char* name, QWidget& window)>& look) {
    WriteSettings("showgettingstarted=1\r\nlanguage=" + language.toUtf8() + "\r\n");
    Start();
    QCoreApplication::processEvents();
    look("main window", *main_);
    ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
    context_->session.router_id = 7;
    context_->session.router_ip = u"192.168.1.1"_s;
    const EntryRig rig(*context_, prompts_);
    QAction step;
    const auto show = [&](const char* name, QWidget* window) {
      window->setAttribute(Qt::WA_DeleteOnClose, false);
      window->show();
      QCoreApplication::processEvents();
      look(name, *window);
      delete window;
    };
    const PageHostFactory page = [](PageQuestions& questions, QObject* parent) {
      return new FakePage(questions, parent, new QWidget);
    };
    const auto map = [](MappingRequest) -> Task<std::expected<MappingAnswer, Message>> {
      co_return MappingAnswer{};
    };
    show("about", new AboutDialog(nullptr));
    show("help", new HelpDialog(context_->translator, u"index"_s, nullptr));
    show("guide", new GettingStartedWindow({&step, &step, &step, &step, &step, &step, &step},
                                           context_->settings, context_->translator, nullptr));
    show("login", new LoginDialog(u"192.168.1.1"_s, context_->translator, nullptr));
    show("adapters", rig.windows.NetworkList(main_, [](const QString&) {}));
    show("own address", new AdapterDialog(context_->adapters, AddressPurpose::kOwn, nullptr));
    show("add entry", rig.windows.AddNew(main_, [] {}));
    show("edit entry", rig.windows.Edit(main_, 0, [] {}));
    show("job", new JobWindow(*context_, prompts_, page));
    show("page view", new PageViewWindow(*context_, prompts_, page, nullptr));
    show("port checker", new PortCheckerWindow(*context_, prompts_, page, nullptr, [] {}));
    show("quick ports", new QuickPortsDialog(*context_, nullptr, map));
    show("second router",
         new SecondRouterDialog(context_->adapters, echoes_, context_->translator, nullptr));
    show("firewall change", new FirewallChangeDialog(firewall_, QList<FirewallPorts>{{80, 80, 6}},
                                                     context_->translator, nullptr));
    show("firewall list", new FirewallListDialog(firewall_, context_->translator, nullptr));
    show("static address",
         new StaticAddressDialog(*context_, prompts_, setup_, neighbours_, nullptr));
    show("router list", new RouterListDialog(*context_, prompts_, nullptr, [](int) {}));
    show("new router",
         new NewRouterDialog(*context_, prompts_, context_->databases.RouterNames(0, 9), nullptr,
                             [](int, const QString&) {}));
    show("scripts", new ScriptDialog(*context_, prompts_, page, nullptr, [] {}));
  }

  Theme theme_{*qApp};
  NoEchoes echoes_;
  FakeFirewall firewall_;
  FakeAddressSetup setup_;
  FakeNeighbours neighbours_;
};

}  // namespace quayline::testing
