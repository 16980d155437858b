// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "main_fixture.h"
#include "platform/fake_firewall.h"
#include "script/foreign_script.h"
#include "ui/entries/adapter_dialog.h"
#include "ui/job/job_window.h"
#include "ui/job/page_view_window.h"
#include "ui/main/about_dialog.h"
#include "ui/main/getting_started_window.h"
#include "ui/main/help_dialog.h"
#include "ui/main/main_messages.h"
#include "ui/main/splash_screen.h"
#include "ui/network/cache_dialog.h"
#include "ui/network/firewall_change_dialog.h"
#include "ui/network/firewall_list_dialog.h"
#include "ui/network/port_checker_window.h"
#include "ui/network/quick_ports_dialog.h"
#include "ui/network/repair_plans.h"
#include "ui/network/second_router_dialog.h"
#include "ui/network/static_address_dialog.h"
#include "ui/toolkit/page_dialog.h"
#include "ui/toolkit/run_questions.h"
#include "ui/toolkit/theme.h"
#include "ui/tools/new_router_dialog.h"
#include "ui/tools/router_list_dialog.h"
#include "ui/tools/script_dialog.h"
#include "ui/updates/database_update_dialog.h"
#include "ui/updates/program_update_window.h"
#include "ui/updates/update_texts.h"

namespace quayline::testing {

class NoEchoes final : public Echoes {
 public:
  Task<EchoReply> Send(QString, int, std::chrono::milliseconds) override { co_return EchoReply{}; }
};

// Every window of the program, one after the other, as it is when it opens.
class EveryWindowTest : public MainWindowTest {
 protected:
  using Look = std::function<void(const char* name, QWidget& window)>;

  EveryWindowTest() {
    folder_.WriteFile("list.qyl", "Ftp|192.168.1.20()|21|21|TCP|Files\r\n");
    setup_.adapters = {{.description = u"Wired (enp3s0)"_s, .index = 2}};
    firewall_.view.rules = {{.name = u"filter input"_s, .first_port = 22, .last_port = 22}};
  }

  ~EveryWindowTest() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

  // Calls `look` with each window, shown in the language.
  void ForEach(const QString& language, const Look& look) {
    WriteSettings("showgettingstarted=1\r\nupdatesite=" + maker_site_.toUtf8() +
                  "\r\nlanguage=" + language.toUtf8() + "\r\n");
    Start();
    QCoreApplication::processEvents();
    look("main window", *main_);
    ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
    context_->session.router_id = 7;
    context_->session.router_ip = u"192.168.1.1"_s;
    const EntryRig rig(*context_, prompts_);
    ForEachOfMenus(look);
    ForEachOfEntries(rig, look);
    ForEachOfRuns(look);
    ForEachOfNetwork(look);
    ForEachOfUpdates(look);
    ForEachBox(look);
  }

 private:
  static void LookAt(const char* name, QWidget* window, const Look& look) {
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    window->show();
    QCoreApplication::processEvents();
    look(name, *window);
    delete window;
  }

  void ForEachOfMenus(const Look& look) {
    QAction step;
    LookAt("splash", new SplashScreen, look);
    LookAt("about", new AboutDialog(nullptr), look);
    LookAt("help", new HelpDialog(context_->translator, u"index"_s, nullptr), look);
    LookAt("guide",
           new GettingStartedWindow({&step, &step, &step, &step, &step, &step, &step},
                                    context_->settings, context_->translator, nullptr),
           look);
  }

  void ForEachOfEntries(const EntryRig& rig, const Look& look) {
    LookAt("adapters", rig.windows.NetworkList(main_, [](const QString&) {}), look);
    LookAt("own address", new AdapterDialog(context_->adapters, AddressPurpose::kOwn, nullptr),
           look);
    LookAt("add entry", rig.windows.AddNew(main_, [] {}), look);
    LookAt("edit entry", rig.windows.Edit(main_, 0, [] {}), look);
  }

  void ForEachOfRuns(const Look& look) {
    const PageHostFactory page = [](PageQuestions& questions, QObject* parent) {
      return new FakePage(questions, parent, new QWidget);
    };
    LookAt("job", new JobWindow(*context_, prompts_, page), look);
    LookAt("check", new JobWindow(*context_, prompts_, page, JobKind::kCheck), look);
    LookAt("page view", new PageViewWindow(*context_, prompts_, page, nullptr), look);
    LookAt("port checker", new PortCheckerWindow(*context_, prompts_, page, nullptr, [] {}), look);
    LookAt("router list", new RouterListDialog(*context_, prompts_, nullptr, [](int) {}), look);
    LookAt("new router",
           new NewRouterDialog(*context_, prompts_, context_->databases.RouterNames(0, 9), nullptr,
                               [](int, const QString&) {}),
           look);
    auto* scripts = new ScriptDialog(*context_, prompts_, page, nullptr, [] {});
    Child<QAbstractButton>(scripts, "bench_button")->click();
    LookAt("scripts", scripts, look);
  }

  void ForEachOfNetwork(const Look& look) {
    const Translator& translator = context_->translator;
    const auto map = [](MappingRequest) -> Task<std::expected<MappingAnswer, Message>> {
      co_return MappingAnswer{};
    };
    LookAt("quick ports", new QuickPortsDialog(*context_, nullptr, map), look);
    LookAt("second router",
           new SecondRouterDialog(context_->adapters, echoes_, translator, nullptr), look);
    LookAt(
        "firewall change",
        new FirewallChangeDialog(firewall_, QList<FirewallPorts>{{80, 80, 6}}, translator, nullptr),
        look);
    LookAt("firewall list", new FirewallListDialog(firewall_, translator, nullptr), look);
    LookAt("static address",
           new StaticAddressDialog(*context_, prompts_, setup_, neighbours_, nullptr), look);
    const CacheDialog::Clear clear = []() -> Task<bool> { co_return true; };
    LookAt("cache", new CacheDialog(clear, translator, nullptr), look);
    for (const bool has_regsvr32 : {false, true}) {
      LookAt("browser repair",
             new RepairDialog(BrowserRepair({}, has_regsvr32), translator, nullptr), look);
      LookAt("database repair",
             new RepairDialog(DatabaseRepair(*context_, has_regsvr32), translator, nullptr), look);
    }
  }

  // When their server has not answered.
  void ForEachOfUpdates(const Look& look) {
    const auto has_failed = [](QWidget* window) {
      return RunUntil([&] { return Child<QWidget>(window, "reason_label")->isVisible(); });
    };
    auto* program = new ProgramUpdateWindow(*context_, prompts_, u"3.0.0"_s, nullptr, [] {});
    program->show();
    Child<QAbstractButton>(program, "check_button")->click();
    EXPECT_TRUE(has_failed(program));
    LookAt("program update", program, look);
    auto* databases = new DatabaseUpdateDialog(*context_, prompts_, nullptr, [] {});
    databases->show();
    EXPECT_TRUE(has_failed(databases));
    LookAt("database update", databases, look);
  }

  // The real boxes, each with the window that it belongs to.
  void ForEachBox(const Look& look) {
    const Translator& texts = context_->translator;
    WindowPrompts boxes(texts);
    const auto look_at = [&](const char* name, const auto& ask) {
      QWidget owner;
      RunQuestions questions(owner, boxes, texts, kRunnerTexts);
      owner.show();
      ask(owner, questions);
      QCoreApplication::processEvents();
      auto* box = owner.findChild<QDialog*>();
      ASSERT_NE(box, nullptr) << name;
      look(name, *box);
    };
    const auto ignore = [](auto) {};
    look_at("message", [&](QWidget& owner, RunQuestions&) {
      boxes.TellTitled(&owner, texts.Text(message::kListChangedTitle),
                       texts.Text(message::kUpToDate));
    });
    look_at("choice", [&](QWidget& owner, RunQuestions&) {
      boxes.AskChoice(&owner, texts.Text(message::kListChangedTitle),
                      texts.Text(message::kListChanged),
                      {texts.Text(message::kKeepMyList), texts.Text(message::kTakeOtherList),
                       texts.Text(message::kKeepBothLists)},
                      ignore);
    });
    look_at("notice", [&](QWidget& owner, RunQuestions&) {
      boxes.Notify(&owner, texts.Text(message::kUpToDate));
    });
    look_at("foreign script", [&](QWidget&, RunQuestions& questions) {
      questions.AskForeignScript({.router = u"Beta 2"_s,
                                  .origin = {},
                                  .pages = {u"forward.htm"_s},
                                  .code_lines = {u"3: call_javascript(\"save()\")"_s}},
                                 ignore);
    });
    look_at("certificate", [&](QWidget&, RunQuestions& questions) {
      const QString fingerprint = QStringList(32, u"AB"_s).join(u':');
      questions.AskCertificate({.address = u"192.168.1.1:443"_s, .fingerprint = fingerprint},
                               ignore);
    });
    look_at("login", [&](QWidget&, RunQuestions& questions) {
      questions.AskLogin(u"192.168.1.1"_s, ignore);
    });
    look_at("other address", [&](QWidget&, RunQuestions& questions) {
      questions.AskOtherAddress({.target = u"http://router.lan"_s, .router = u"http://10.0.0.1"_s},
                                ignore);
    });
    LookAt("page's dialog",
           new PageBoxDialog({.title = texts.Text(kRunnerTexts.page_dialog_title),
                              .text = u"Alpha 1"_s,
                              .can_refuse = true,
                              .typed = u"qt_"_s,
                              .no_more = texts.Text(kRunnerTexts.no_more_dialogs)},
                             nullptr),
           look);
  }

  Theme theme_{*qApp};
  NoEchoes echoes_;
  FakeFirewall firewall_;
  FakeAddressSetup setup_;
  FakeNeighbours neighbours_;
};

}  // namespace quayline::testing
