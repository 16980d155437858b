// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTimer>
#include <QTreeView>
#include <qtestspontaneevent.h>

#include "platform/fake_firewall.h"
#include "ui/job/job_window.h"
#include "ui/job/page_view_window.h"
#include "window_fixture.h"

namespace quayline::testing {
namespace {

// A page with a table of rules: name, protocol, port, address.
QJsonObject RuleTable(const QList<QStringList>& rules) {
  const QStringList headings{u"Name"_s, u"Protocol"_s, u"Port"_s, u"IP Address"_s};
  QJsonArray rows;
  for (const QStringList& rule : rules) {
    QJsonArray cells;
    for (qsizetype i = 0; i < rule.size(); ++i) {
      cells.append(QJsonObject{{u"heading"_s, headings[i]}, {u"text"_s, rule[i]}});
    }
    rows.append(QJsonObject{{u"cells"_s, cells}});
  }
  // A list of one list would be a copy of it.
  QJsonArray tables;
  tables.append(QJsonArray::fromStringList(headings));
  return {{u"headings"_s, tables}, {u"rows"_s, rows}};
}

class RunWindowTest : public WindowTest {
 protected:
  RunWindowTest() {
    context_->job_options.throttle = false;
    context_->session.router_name = u"Alpha 1"_s;
    context_->session.router_ip = u"1.1.1.1"_s;
    context_->session.update_script = {u"nav(\"one\")"_s, u"nav(\"two\")"_s};
    context_->session.view_script = context_->session.update_script;
    context_->port_list.SetEntries({{u"A"_s, u"1.1.1.5(x)"_s, u"5"_s, u"5"_s, u"TCP"_s, {}},
                                    {u"B"_s, u"1.1.1.5(x)"_s, u"6"_s, u"6"_s, u"TCP"_s, {}}});
  }

  void OpenJob(JobKind kind = JobKind::kUpdate) {
    Show(new JobWindow(*context_, prompts_, Browser(), kind));
  }
  void OpenView() { Show(new PageViewWindow(*context_, prompts_, Browser(), nullptr)); }

  bool hangs_ = false;
  QJsonObject rows_;  // what each page shows
  std::function<void(FakePage&, const PageCall&)> asked_;
  QPointer<FakePage> page_;

 private:
  PageHostFactory Browser() {
    return [this](PageQuestions& questions, QObject* parent) {
      page_ = new FakePage(questions, parent, new QLabel(u"page"_s));
      page_->hangs = hangs_;
      page_->rows = rows_;
      page_->asked = asked_;
      return page_;
    };
  }
  void Show(QWidget* window) {
    delete window_.data();
    window_ = window;
    window_->show();
  }
};

TEST_F(RunWindowTest, ARouterWithoutAScriptIsReportedAndNothingIsLoaded) {
  context_->session.view_script.clear();
  OpenView();
  EXPECT_TRUE(ComesToSay("headline_label", "There is no script"));
  EXPECT_EQ(TextOf("log_edit"), "");
  EXPECT_FALSE(context_->job_flags.IsRunning());
}

TEST_F(RunWindowTest, AJobOpenedAsTheOneBeforeIsClosedWaitsForItsSave) {
  hangs_ = true;
  OpenJob();
  ASSERT_TRUE(ComesToSay("log_edit", "nav(\"one\")"));
  const QPointer<QWidget> former = window_;
  const QPointer<FakePage> saving = page_;
  former->close();
  window_ = nullptr;
  hangs_ = false;
  OpenJob();
  ASSERT_TRUE(ComesToSay("waiting_label", "1.1.1.1"));
  EXPECT_EQ(saving->Navigation().starts, 1) << "the job before went on";
  EXPECT_THAT(TextOf("log_edit"), Not(HasSubstr("Step 01")));
  saving->Arrive();
  EXPECT_TRUE(ComesToSay("headline_label", "Finished"));
  EXPECT_TRUE(RunUntil([&] { return former.isNull(); }));
}

TEST_F(RunWindowTest, TryingAgainWaitsForTheSaveOfTheJobBeforeAndAClosedWindowKeepsIt) {
  context_->job_options.verify_after_update = true;
  for (const bool is_closed : {false, true}) {
    hangs_ = true;
    OpenJob();
    ASSERT_TRUE(RunUntil([this] { return page_->Navigation().starts > 0; }));
    Click("stop_button");
    ASSERT_TRUE(RunUntil([this] { return Find("again_button")->isVisible(); }));
    const QPointer<FakePage> saving = page_;
    hangs_ = false;
    Click("again_button");
    ASSERT_TRUE(ComesToSay("waiting_label", "1.1.1.1"));
    ASSERT_NE(saving, nullptr) << "its save is cut off";
    EXPECT_EQ(saving->Navigation().starts, 1);
    EXPECT_THAT(TextOf("log_edit"), Not(HasSubstr("Adding A")));
    if (is_closed) {
      window_->close();
      EXPECT_FALSE(RunUntil([&] { return saving.isNull(); }, std::chrono::milliseconds(300)));
    }
    saving->Arrive();
    EXPECT_TRUE(is_closed ? ComesToItsEnd() : ComesToSay("log_edit", "DONE!"));
    EXPECT_TRUE(RunUntil([&] { return saving.isNull(); }));
    EXPECT_EQ(context_->job_flags.LeavingRuns(), 0);
  }
}

TEST_F(RunWindowTest, RulesThatTheJobAddedAreTakenBack) {
  context_->job_options.verify_after_update = true;
  context_->session.update_script = {u"click_button(\"Save\")"_s};
  context_->session.remove_script = {u"click_in_entry_row(\"button,\")"_s};
  const QStringList mail{u"Mail"_s, u"TCP"_s, u"25"_s, u"1.1.1.5"_s};
  QList<QStringList> rules{mail};
  asked_ = [&](FakePage& page, const PageCall& call) {
    if (call.operation == u"ClickButton"_s) {
      rules = {
          mail, {u"A"_s, u"TCP"_s, u"5"_s, u"1.1.1.5"_s}, {u"B"_s, u"TCP"_s, u"6"_s, u"1.1.1.5"_s}};
    } else if (call.operation == u"ClickInRow"_s) {
      rules.removeLast();
    }
    page.rows = RuleTable(rules);
  };
  OpenJob();
  ASSERT_TRUE(ComesToSay("headline_label", "all entries are on your router"))
      << TextOf("headline_label");
  ASSERT_TRUE(Find("take_back_button")->isVisible());

  context_->session.router_ip = u"2.2.2.2"_s;
  Click("take_back_button");
  context_->session.router_ip = u"1.1.1.1"_s;
  context_->job_flags.SetRunning(true);
  Click("take_back_button");
  context_->job_flags.SetRunning(false);
  Click("take_back_button");
  EXPECT_THAT(
      prompts_.shown,
      ElementsAre(HasSubstr("for the router \"Alpha 1\" at 1.1.1.1"), HasSubstr("A job is running"),
                  AllOf(StartsWith("Careful: "), HasSubstr("A (TCP 5)\nB (TCP 6)"))));
  EXPECT_EQ(rules.size(), 3);

  const auto* model = Find<QTreeView>("entries_view")->model();
  QStringList states;
  QObject::connect(model, &QAbstractItemModel::dataChanged, window_, [&] {
    const QString state = model->index(0, EntryStates::kState).data().toString() + u'/' +
                          model->index(1, EntryStates::kState).data().toString();
    if (states.isEmpty() || states.last() != state) {
      states.append(state);
    }
    if (state.startsWith(u"Being"_s)) {
      EXPECT_EQ(TextOf("headline_label"), "Removing rule 1 of 2: B");
    }
  });
  prompts_.answers = {true};
  Click("take_back_button");
  ASSERT_TRUE(ComesToSay("headline_label", "2 of 2 rules were removed"));
  EXPECT_EQ(states.join(u' ').toStdString(),
            "Waiting/Waiting Being removed/Waiting Removed, not checked yet/Waiting "
            "Removed, not checked yet/Being removed "
            "Removed, not checked yet/Removed, not checked yet Removed/Removed");
  EXPECT_EQ(rules, QList<QStringList>{mail});
  EXPECT_FALSE(Find("take_back_button")->isVisible() || Find("again_button")->isVisible());
  EXPECT_EQ(model->index(0, EntryStates::kReason).data(), QString());
}

TEST_F(RunWindowTest, OfAJobThatWasStoppedWhatItAddedIsLookedUpAndTakenBack) {
  context_->job_options.verify_after_update = true;
  context_->session.update_script = {u"click_button(\"Save\")"_s, u"nav(\"never\")"_s};
  context_->session.remove_script = {u"click_in_entry_row(\"button,\")"_s};
  const QStringList mail{u"Mail"_s, u"TCP"_s, u"25"_s, u"1.1.1.5"_s};
  const struct {
    QList<QStringList> saved;  // by a router that has the rules of others in `mail`
    bool is_readable;
    const char* says;
  } cases[] = {
      {{{u"A"_s, u"TCP"_s, u"5"_s, u"1.1.1.5"_s}}, true, "A (TCP 5)\n\nRules that were there"},
      {{}, true, "shows no rule that this job added"},
      {{{u"A"_s, u"TCP"_s, u"5"_s, u"1.1.1.5"_s}}, false, "not known which of these"},
      {{{u"A"_s, u"TCP"_s, u"five"_s, u"1.1.1.5"_s}}, true, "does not show whether these"},
  };
  for (const auto& c : cases) {
    QList<QStringList> rules{mail};
    asked_ = [&](FakePage& page, const PageCall& call) {
      if (call.operation == u"ClickButton"_s) {
        rules += c.saved;
        page.hangs = true;
      } else if (call.operation == u"ClickInRow"_s) {
        rules.removeLast();
      }
      page.rows = RuleTable(rules);
    };
    context_->session.view_script = {u"nav(\"rules\")"_s};
    OpenJob();
    ASSERT_TRUE(ComesToSay("log_edit", "nav(\"never\")"));
    Click("stop_button");
    ASSERT_TRUE(RunUntil([this] { return Find("take_back_button")->isVisible(); }));
    EXPECT_THAT(TextOf("headline_label"), StartsWith("Stopped before the end"));
    page_->Arrive();
    prompts_.shown.clear();
    hangs_ = false;
    context_->session.view_script =
        c.is_readable ? QStringList{u"nav(\"rules\")"_s} : QStringList();
    context_->session.update_script = {};
    Click("take_back_button");
    ASSERT_TRUE(RunUntil([this] { return !prompts_.shown.empty(); }));
    EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr(c.says)));
    EXPECT_THAT(TextOf("headline_label"), StartsWith("Stopped before the end"));
    context_->session.update_script = {u"click_button(\"Save\")"_s, u"nav(\"never\")"_s};
    const bool can_take_back = !c.saved.isEmpty() && prompts_.shown.front().starts_with("Careful");
    EXPECT_EQ(Find("take_back_button")->isVisible(), can_take_back || !c.is_readable);
    if (can_take_back) {
      prompts_.answers = {true};
      Click("take_back_button");
      ASSERT_TRUE(ComesToSay("headline_label", "1 of 1 rules were removed"));
      EXPECT_EQ(rules, QList<QStringList>{mail});
    }
  }
}

TEST_F(RunWindowTest, DetailsAreClosedAtFirstAndThePageIsNeverHidden) {
  hangs_ = true;
  OpenJob();
  QWidget* page = page_->Widget();
  page->setFocusPolicy(Qt::StrongFocus);
  EXPECT_FALSE(Find("log_edit")->isVisible() || Find("status_label")->isVisible());
  EXPECT_EQ(Find("details_area")->height(), 0);
  EXPECT_TRUE(page->isVisible() && page->width() > 600 && page->height() > 400)
      << "the engine stops a page that is hidden, and scripts find nothing on one without a size";
  Press("entries_view", Qt::Key_Tab);
  EXPECT_EQ(window_->focusWidget(), Find("details_button")) << "the focus is on the unseen page";
  Click("details_button");
  EXPECT_TRUE(Find("log_edit")->isVisible() && page->isVisible());
  EXPECT_EQ(Stored(setting::kJobDetails), "True");
  OpenJob();
  EXPECT_TRUE(Find("log_edit")->isVisible()) << "as the user left it";
  Find("log_edit")->setFocus();
  Click("details_button");
  EXPECT_EQ(window_->focusWidget(), Find("entries_view"));
  EXPECT_EQ(Stored(setting::kJobDetails), "False");
  context_->job_options.debug_mode = true;
  OpenJob();
  EXPECT_TRUE(Find("log_edit")->isVisible());
  EXPECT_EQ(Stored(setting::kJobDetails), "False");
}

TEST_F(RunWindowTest, TheProgressIsThatOfEntriesAndTheirSteps) {
  context_->job_options.debug_mode = true;
  OpenJob();
  EXPECT_FALSE(Find("job_bar")->isVisible());
  for (int done = 0; done < 4; ++done) {
    ASSERT_TRUE(RunUntil([this] { return Find("proceed_button")->isEnabled(); }));
    EXPECT_EQ(TextOf("steps_label"),
              u"Entry %1 of 2, step %2 of 2"_s.arg(done / 2 + 1).arg(done % 2 + 1).toStdString());
    EXPECT_EQ(Find<QProgressBar>("job_bar")->value(), done);
    EXPECT_EQ(Find<QProgressBar>("job_bar")->maximum(), 4);
    EXPECT_TRUE(Find("job_bar")->isVisible());
    Click("proceed_button");
  }
  ASSERT_TRUE(ComesToSay("headline_label", "Finished"));
  EXPECT_EQ(TextOf("steps_label"), "");
  EXPECT_EQ(Find<QProgressBar>("job_bar")->value(), 4);
  EXPECT_TRUE(Find("job_bar")->isVisible());
}

TEST_F(RunWindowTest, TheEndIsNotifiedWhereTheWindowIsNotInFront) {
  for (const bool is_in_front : {false, true}) {
    folder_.desktop.notifications.clear();
    OpenJob();
    QWidget other;
    other.show();
    (is_in_front ? window_.data() : &other)->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(is_in_front ? window_.data() : &other));
    ASSERT_TRUE(ComesToSay("headline_label", "Finished"));
    EXPECT_EQ(folder_.desktop.notifications.size(), is_in_front ? 0 : 1);
  }
}

TEST_F(RunWindowTest, ACheckLooksOnlyAndItsStatesGoIntoTheList) {
  context_->port_list.SetEntries(
      {{u"Web"_s, u"192.168.1.10(x)"_s, u"8080"_s, u"8080"_s, u"TCP"_s, {}},
       {u"Mail"_s, u"192.168.1.10(x)"_s, u"2525"_s, u"2525"_s, u"TCP"_s, {}}});
  OpenJob(JobKind::kCheck);
  EXPECT_FALSE(Find("report_button")->isVisible());
  ASSERT_TRUE(ComesToSay("headline_label", "does not show whether these are there: Web, Mail"));
  EXPECT_THAT(TextOf("log_edit"), Not(HasSubstr("Adding")));

  rows_ = RuleTable({{u"Web"_s, u"TCP"_s, u"8080"_s, u"192.168.1.10"_s}});
  OpenJob(JobKind::kCheck);
  ASSERT_TRUE(ComesToSay("headline_label", "1 of 2 entries are on your router"))
      << TextOf("headline_label");
  EXPECT_FALSE(Find("again_button")->isVisible());
  const auto looks = [this] { return context_->port_list.LooksOf(context_->port_list.Entries()); };
  EXPECT_EQ(looks()[0].on_router, EntryState::kOnRouter);
  EXPECT_EQ(looks()[1].on_router, EntryState::kMissing);

  hangs_ = true;
  OpenJob();
  ASSERT_TRUE(ComesToSay("log_edit", "Step 01"));
  window_->close();
  EXPECT_EQ(looks()[0].on_router, std::nullopt) << "it is entered again, and was not looked at";
  EXPECT_EQ(looks()[1].on_router, EntryState::kMissing);
}

TEST_F(RunWindowTest, WhatElseIsKnownOfTheEntriesIsShownOnceItIsKnown) {
  OpenJob();
  const auto* view = Find<QTreeView>("entries_view");
  EXPECT_TRUE(view->isColumnHidden(EntryStates::kListening));
  EXPECT_TRUE(view->isColumnHidden(EntryStates::kOutside));
  context_->port_list.NoteLooks(
      {{context_->port_list.Entries()[1],
        {.listening = ReachVerdict{true, {{"%1 listens"}, {u"sshd"_s}}}}}});
  EXPECT_FALSE(view->isColumnHidden(EntryStates::kListening));
  EXPECT_TRUE(view->isColumnHidden(EntryStates::kOutside));
  EXPECT_EQ(view->model()->index(1, EntryStates::kListening).data(), u"sshd listens"_s);
}

TEST_F(RunWindowTest, PortsOfThisComputerThatTheFirewallBlocksAreOffered) {
  FakeFirewall firewall;
  firewall.view.open_tcp.Fill(5, 5);
  context_->firewall = &firewall;
  folder_.adapters.address_table = {u"1.1.1.5"_s};
  OpenJob();
  auto* job = qobject_cast<JobWindow*>(window_);
  QList<FirewallPorts> wanted;
  QObject::connect(job, &JobWindow::firewallWanted, job,
                   [&](const QList<FirewallPorts>& ports) { wanted = ports; });
  ASSERT_TRUE(RunUntil([this] { return Find("firewall_button")->isVisible(); }));
  const auto* states = Find<QTreeView>("entries_view")->model();
  const auto known = [states](int row) {
    return states->index(row, EntryStates::kListening).data().toString();
  };
  EXPECT_EQ(known(0), QString()) << "what passes needs no words";
  EXPECT_EQ(known(1), u"the firewall (ufw) blocks it"_s);
  Click("firewall_button");
  EXPECT_EQ(wanted, (QList<FirewallPorts>{{6, 6, kTcpNumber}}));
  job->NoteFirewallOpened();
  EXPECT_FALSE(Find("firewall_button")->isVisible());
  EXPECT_EQ(known(1), QString());

  folder_.adapters.address_table = {u"1.1.1.6"_s};
  OpenJob();
  const int looks = firewall.looks;
  EXPECT_TRUE(RunUntil([&] { return firewall.looks > looks; }));
  EXPECT_FALSE(RunUntil([this] { return Find("firewall_button")->isVisible(); },
                        std::chrono::milliseconds(50)))
      << "the entries are another computer's";
}

TEST_F(RunWindowTest, TheReportHasEveryStepAndNeitherPasswordNorOutsideAddress) {
  context_->session.password = u"tea for two"_s;
  context_->session.show_password = true;  // the log shows it as well
  context_->session.update_script = {u"comment tea for two"_s};
  OpenJob();
  prompts_.login = LoginAnswer{u"me"_s, u"typed one"_s};
  page_->questions.AskLogin(u"1.1.1.1"_s, [](const std::optional<TypedLogin>&) {});
  ASSERT_TRUE(ComesToSay("headline_label", "Finished"));
  Q_EMIT page_->statusTextChanged(u"Welcome, tea for two, typed one at 84.23.1.9"_s);
  Q_EMIT page_->navigateError(u"http://1.1.1.1/tea%20for%20two"_s, 404);
  prompts_.files = {folder_.Path("report.txt"), u"/nowhere/report.txt"_s};
  Click("report_button");
  const std::string report = folder_.ReadFile("report.txt").toStdString();
  for (const char* secret :
       {"tea for two", "tea%20for%20two", "typed one", "84.23.1.9", "1.1.1.1"}) {
    EXPECT_THAT(report, Not(HasSubstr(secret)));
  }
  for (const char* part : {"Quayline ", qVersion(), "Router: Alpha 1, http://", "A: TCP 5-5 to ",
                           "Step 01. comment ****", "Welcome, ****", "http://(router)/****"}) {
    EXPECT_THAT(report, HasSubstr(part));
  }
  prompts_.shown.clear();
  Click("report_button");
  EXPECT_THAT(prompts_.shown, ElementsAre("Save: Save Report", HasSubstr("cannot be saved")));
}

// What holds in both windows.
class EachRunWindowTest : public RunWindowTest, public ::testing::WithParamInterface<const char*> {
 protected:
  bool IsJob() const { return GetParam() == std::string_view("Job"); }
  const char* WordsAtTheEnd() const { return IsJob() ? "Finished" : "The script has run"; }
  void Open() { IsJob() ? OpenJob() : OpenView(); }
};

INSTANTIATE_TEST_SUITE_P(, EachRunWindowTest, ::testing::Values("Job", "View"),
                         [](const auto& test) { return test.param; });

TEST_P(EachRunWindowTest, WhoeverClosesTheWindowOfARunIsAsked) {
  hangs_ = true;
  Open();
  ASSERT_TRUE(ComesToSay("log_edit", "Step 01"));
  const auto press_the_frame = [this] {
    QCloseEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(window_, &event);  // sendEvent() would make it the program's own
  };
  Click("close_button");
  QTest::keyClick(window_, Qt::Key_Escape);
  press_the_frame();
  EXPECT_THAT(prompts_.shown, SizeIs(3));
  EXPECT_TRUE(window_->isVisible() && context_->job_flags.IsRunning());
  prompts_.answers = {true};
  QTest::keyClick(window_, Qt::Key_Escape);
  EXPECT_FALSE(window_->isVisible() || context_->job_flags.IsRunning());
  page_->Arrive();
  ASSERT_TRUE(ComesToItsEnd());

  Open();
  ASSERT_TRUE(ComesToSay("log_edit", "Step 01"));
  prompts_.leaves_open = true;
  Click("close_button");
  page_->hangs = false;
  page_->Arrive();
  ASSERT_TRUE(ComesToSay("headline_label", WordsAtTheEnd()));
  EXPECT_FALSE(prompts_.IsOpen());
  EXPECT_TRUE(window_->isVisible()) << "the user has not agreed";
  prompts_.shown.clear();
  QTest::keyClick(window_, Qt::Key_Escape);
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_THAT(prompts_.shown, IsEmpty());
}

TEST_P(EachRunWindowTest, TheWholeLogAndThePageStayInViewAfterTheRun) {
  Open();
  EXPECT_EQ(TextOf("log_edit"), IsJob() ? "\nRouter: Alpha 1\nLoading Commands..." : "");
  EXPECT_TRUE(page_->Widget()->isVisible());
  ASSERT_TRUE(ComesToSay("headline_label", WordsAtTheEnd()));
  EXPECT_THAT(TextOf("log_edit"), HasSubstr("Step 02. nav(\"two\")"));
  EXPECT_THAT(TextOf("log_edit"), HasSubstr(IsJob() ? "(Current -  2/2)\nAdding B (TCP)" : ""));
  EXPECT_THAT(TextOf("log_edit"),
              EndsWith(IsJob() ? "DONE! (All Commands Finished)-------------------" : "------\n"));
  EXPECT_TRUE(Find<QPlainTextEdit>("log_edit")->textCursor().atEnd());
  EXPECT_TRUE(page_->Widget()->isVisible());
  EXPECT_FALSE(Find("stop_button")->isEnabled());
  Q_EMIT page_->statusTextChanged(u"Done"_s);
  EXPECT_THAT(TextOf("status_edit"), EndsWith("\nRouter Status: Done"));
}

TEST_F(RunWindowTest, EntriesThatAreSurelyNotOnTheRouterAreEnteredAgain) {
  context_->job_options.verify_after_update = true;
  OpenJob();
  ASSERT_TRUE(ComesToSay("headline_label", "does not show whether these are there: A, B"));
  EXPECT_FALSE(Find("again_button")->isVisible()) << "they may be there, and would be there twice";

  rows_ = RuleTable({});
  OpenJob();
  EXPECT_FALSE(Find("again_button")->isVisible());
  for (int time = 1; time <= 3; ++time) {
    ASSERT_TRUE(RunUntil([this] { return Find("again_button")->isVisible(); }));
    EXPECT_THAT(TextOf("headline_label"), HasSubstr("0 of 2 entries are on your router"));
    EXPECT_EQ(Find<QPlainTextEdit>("log_edit")->toPlainText().count(u"Adding B (TCP)"_s), time);
    Click("again_button");
    EXPECT_TRUE(Find("stop_button")->isEnabled());
    EXPECT_FALSE(Find("again_button")->isVisible());
  }
}

TEST_P(EachRunWindowTest, ClosingInTheMiddleOfAPageEndsTheRunAndCutsNoSaveOff) {
  hangs_ = true;
  Open();
  ASSERT_TRUE(ComesToSay("log_edit", "nav(\"one\")"));
  EXPECT_TRUE(context_->job_flags.IsRunning());
  window_->close();
  EXPECT_TRUE(context_->job_flags.JobStopRequested());
  EXPECT_FALSE(RunUntil([this] { return page_.isNull(); }, std::chrono::milliseconds(300)));
  EXPECT_FALSE(window_->isVisible());
  EXPECT_EQ(context_->job_flags.LeavingRuns(), 1);
  page_->Arrive();
  ASSERT_TRUE(ComesToItsEnd());
  EXPECT_TRUE(page_.isNull());
  EXPECT_EQ(context_->job_flags.LeavingRuns(), 0);
  EXPECT_FALSE(context_->job_flags.IsRunning()) << "the next run would be refused";
}

TEST_P(EachRunWindowTest, WhatTheUserSavesByHandAfterTheRunIsNotCutOff) {
  Open();
  ASSERT_TRUE(ComesToSay("headline_label", WordsAtTheEnd()));
  page_->Save();
  window_->close();
  EXPECT_FALSE(RunUntil([this] { return page_.isNull(); }, std::chrono::milliseconds(300)));
  page_->Arrive();
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_TRUE(page_.isNull());
}

TEST_P(EachRunWindowTest, ARunWaitsForAnotherProgramThatWorksOnTheRouter) {
  const QStringList folders{folder_.dir.path()};
  RouterLocks other(folders);
  context_->router_locks = RouterLocks(folders);
  for (const bool stops : {true, false}) {
    auto lock = other.TryTake(RouterKey(context_->session));
    ASSERT_NE(lock, nullptr);
    Open();
    ASSERT_TRUE(ComesToSay("waiting_label", "another Quayline"));
    EXPECT_THAT(TextOf("log_edit"), Not(HasSubstr("Step 01")));
    if (stops) {
      Click("stop_button");
      EXPECT_TRUE(ComesToSay("headline_label", "Stopped"));
    }
    lock.reset();
    EXPECT_TRUE(ComesToSay("headline_label", stops ? "Stopped" : WordsAtTheEnd()));
    EXPECT_EQ(TextOf("log_edit").contains("Step 01"), !stops);
    EXPECT_NE(other.TryTake(RouterKey(context_->session)), nullptr) << "kept after the run";
  }
}

TEST_P(EachRunWindowTest, StopFreesTheRunAheadOfItsFirstStepAndInAHangingPage) {
  hangs_ = true;
  for (const bool at_once : {true, false}) {
    Open();
    ASSERT_TRUE(at_once || ComesToSay("log_edit", "Step 01"));
    Click("stop_button");
    EXPECT_TRUE(ComesToSay("headline_label", "Stopped"));
    QTest::qWait(at_once ? 700 : 0);  // longer than the window lets its run wait
    EXPECT_EQ(TextOf("log_edit").contains("Step 01"), !at_once);
    EXPECT_THAT(TextOf("log_edit"), Not(HasSubstr("2/2")));
    EXPECT_TRUE(window_->isVisible());
    EXPECT_FALSE(context_->job_flags.IsRunning());
  }
}

TEST_P(EachRunWindowTest, DebugModeHoldsEachStepAndItsButtonLeadsOn) {
  for (const bool from_the_start : {true, false}) {
    context_->job_options.debug_mode = from_the_start;
    Open();
    auto* proceed = Find("proceed_button");
    bool is_focused = false;
    EXPECT_EQ(proceed->isVisible(), from_the_start);
    context_->job_options.debug_mode = true;
    // The line during which it is switched on is not held.
    for (int step = from_the_start ? 1 : 2; step <= (IsJob() ? 4 : 2); ++step) {
      ASSERT_TRUE(RunUntil([&] { return proceed->isEnabled(); })) << TextOf("log_edit");
      EXPECT_TRUE(proceed->isVisible());
      EXPECT_EQ(Find<QPlainTextEdit>("log_edit")->toPlainText().count(u"Step "_s), step);
      if (!is_focused) {
        proceed->setFocus();
        is_focused = true;
      }
      EXPECT_EQ(window_->focusWidget(), proceed) << "the next Space would press another button";
      QTest::keyClick(proceed, Qt::Key_Space);
    }
    ASSERT_TRUE(ComesToSay("headline_label", WordsAtTheEnd()));
    EXPECT_FALSE(proceed->isEnabled());
    EXPECT_EQ(window_->focusWidget(), Find(IsJob() ? "entries_view" : "log_edit"));
  }
}

TEST_P(EachRunWindowTest, APopupTakesThePlaceOfThePageAndGivesItBack) {
  for (const bool is_over : {false, true}) {
    hangs_ = !is_over;
    Open();
    ASSERT_TRUE(!is_over || RunUntil([this] { return !Find("stop_button")->isEnabled(); }));
    auto* popup = new FakePage(page_->questions, nullptr, new QLabel(u"popup"_s));
    const QPointer<QWidget> view = popup->Widget();
    Q_EMIT page_->newWindow(popup);
    EXPECT_TRUE(view->isVisible());
    EXPECT_FALSE(page_->Widget()->isVisible());
    QTimer::singleShot(0, popup, [popup] { Q_EMIT popup->windowClosing(); });
    EXPECT_TRUE(RunUntil([&] { return view.isNull(); }));
    EXPECT_TRUE(page_->Widget()->isVisible());
  }
}

TEST_P(EachRunWindowTest, WhatTheUserAnswersGoesBackToThePageThatAsks) {
  Open();
  QStringList answers;
  prompts_.answers = {false, true};
  for (const std::optional<LoginAnswer>& login :
       {std::optional<LoginAnswer>(), std::optional<LoginAnswer>({u"me"_s, u"pw"_s})}) {
    prompts_.login = login;
    const ShownCertificate certificate{u"1.1.1.1"_s, u"AB:CD"_s, login.has_value()};
    page_->questions.AskCertificate(certificate, [&](bool is_trusted) {
      answers.append(is_trusted ? u"trusted"_s : u"refused"_s);
    });
    page_->questions.AskLogin(u"1.1.1.1"_s, [&](const std::optional<TypedLogin>& typed) {
      answers.append(typed ? typed->username + u':' + typed->password : u"cancelled"_s);
    });
  }
  EXPECT_EQ(answers.join(u' '), u"refused cancelled trusted me:pw"_s);
  const auto careful = AllOf(StartsWith("Careful: "), HasSubstr("1.1.1.1"), HasSubstr("AB:CD"));
  EXPECT_THAT(prompts_.shown, ElementsAre(careful, "Login: 1.1.1.1", careful, "Login: 1.1.1.1"));
  EXPECT_NE(prompts_.shown[0], prompts_.shown[2]) << "that it is another one than before is told";
}

TEST_P(EachRunWindowTest, APagesOwnDialogIsTheRunsWhileItWorksAndTheUsersAfterwards) {
  const PageDialog dialog{.kind = PageDialog::Kind::kConfirm, .text = u"Delete ALL rules?"_s};
  context_->job_options.debug_mode = true;
  Open();
  ASSERT_TRUE(RunUntil([this] { return Find("proceed_button")->isEnabled(); }));
  EXPECT_TRUE(page_->questions.AnswerDialog(dialog).has_value()) << "between two lines";
  prompts_.shown.clear();
  page_->hangs = true;
  Click("proceed_button");
  ASSERT_TRUE(ComesToSay("log_edit", "Step 02"));
  EXPECT_FALSE(page_->questions.AnswerDialog(dialog).has_value());
  EXPECT_THAT(prompts_.shown, IsEmpty());
  Click("stop_button");
  ASSERT_TRUE(ComesToSay("headline_label", "Stopped"));
  for (const bool yes : {false, true}) {
    prompts_.page_answer.accepted = yes;
    const auto answer = page_->questions.AnswerDialog(dialog);
    EXPECT_TRUE(answer && answer->accepted == yes);
  }
  EXPECT_THAT(prompts_.shown, SizeIs(2));
}

TEST_P(EachRunWindowTest, AWindowThatClosesUnderAQuestionLivesUntilItIsAnswered) {
  Open();
  ASSERT_TRUE(ComesToSay("headline_label", WordsAtTheEnd()));
  prompts_.page_answer.accepted = true;
  prompts_.on_page_box = [this] {
    window_->close();
    EXPECT_EQ(prompts_.boxes_closed, 1);
    QTest::qWait(100);
    EXPECT_FALSE(page_.isNull()) << "the engine's call returns to a page that is gone";
  };
  page_->questions.AnswerDialog({.text = u"?"_s});
  EXPECT_TRUE(page_->questions.AnswerDialog({.text = u"again"_s}).has_value());
  EXPECT_THAT(prompts_.shown, SizeIs(1)) << "a closed window asks nothing";
  bool is_trusted = true;
  page_->questions.AskCertificate({}, [&](bool trusted) { is_trusted = trusted; });
  EXPECT_FALSE(is_trusted);
  EXPECT_TRUE(ComesToItsEnd());
}

TEST_F(RunWindowTest, TheBoxOfAPageIsAnsweredTickedAndClosedWithItsWindow) {
  WindowPrompts boxes(context_->translator);
  window_ = new QWidget;
  window_->show();
  const PageBox question{.title = {},
                         .text = u"port"_s,
                         .can_refuse = true,
                         .typed = u"80"_s,
                         .no_more = u"no more"_s};
  const auto answered = [&](const std::function<void(QDialog*)>& user) {
    QTimer::singleShot(0, window_, [&] { user(Child<QDialog>(window_, "")); });
    return boxes.AnswerPage(window_, question);
  };
  const PageBoxAnswer typed = answered([](QDialog* box) {
    Child<QLineEdit>(box, "typed")->setText(u"8080"_s);
    Child<QAbstractButton>(box, "no_more")->click();
    QTest::keyClick(box, Qt::Key_Return);
  });
  EXPECT_TRUE(typed.accepted && typed.wants_no_more);
  EXPECT_EQ(typed.typed, u"8080"_s);
  const PageBoxAnswer closed = answered([&](QDialog*) { boxes.CloseBoxes(window_); });
  EXPECT_FALSE(closed.accepted || closed.wants_no_more);
}

TEST_F(RunWindowTest, ASecondBoxOfAWindowWaitsForTheFirstOne) {
  WindowPrompts boxes(context_->translator);
  window_ = new QWidget;
  window_->show();
  const auto shown = [this] {
    std::string texts;
    for (const auto* box : window_->findChildren<QMessageBox*>()) {
      texts += box->isVisible() ? box->text().toStdString() + ';' : "";
    }
    return texts;
  };
  const auto close = [this](const char* text) {
    for (auto* box : window_->findChildren<QMessageBox*>()) {
      if (box->text() == QLatin1String(text)) {
        box->reject();
      }
    }
  };
  std::string answers;
  boxes.Ask(window_, {}, u"first"_s, [&](bool yes) { answers += yes ? "yes " : "no "; });
  boxes.Tell(window_, u"second"_s);
  boxes.Ask(window_, {}, u"third"_s, [&](bool yes) { answers += yes ? "yes " : "no "; });
  EXPECT_EQ(shown(), "first;");
  close("first");
  EXPECT_TRUE(RunUntil([&] { return shown() == "second;"; }));
  boxes.CloseBoxes(window_);
  EXPECT_TRUE(RunUntil([&] { return answers == "no no "; })) << answers;
  boxes.Tell(window_, u"later"_s);
  EXPECT_EQ(shown(), "later;");
}

TEST_F(RunWindowTest, AQuestionGoesAwayWithItsAskerAndEnterAnswersNo) {
  WindowPrompts boxes(context_->translator);
  window_ = new QWidget;
  window_->show();
  std::string answers;
  const auto ask = [&](const QObject* asker) {
    boxes.AskFor(asker, window_, {}, u"?"_s, [&](bool yes) { answers += yes ? "yes " : "no "; });
  };
  const auto open_box = [this]() -> QMessageBox* {
    const auto boxes_there = window_->findChildren<QMessageBox*>();
    const auto found = std::ranges::find_if(boxes_there, &QWidget::isVisible);
    return found != boxes_there.end() ? *found : nullptr;
  };
  const auto is_open = [&] { return open_box() != nullptr; };
  auto asker = std::make_unique<QObject>();
  ask(asker.get());
  EXPECT_TRUE(is_open());
  asker = std::make_unique<QObject>();
  EXPECT_FALSE(is_open());
  boxes.Tell(window_, u"first"_s);
  ask(asker.get());
  asker.reset();
  boxes.CloseBoxes(window_);
  EXPECT_FALSE(RunUntil(is_open, std::chrono::milliseconds(50))) << "one that had to wait";
  asker = std::make_unique<QObject>();
  ask(asker.get());
  ASSERT_TRUE(is_open());
  QTest::keyClick(open_box(), Qt::Key_Return);
  EXPECT_TRUE(RunUntil([&] { return answers == "no "; })) << answers;
}

TEST_P(EachRunWindowTest, ErrorsAndStatesAreListedWithoutRepeatingAndTheNoticeHoldsNothing) {
  hangs_ = true;
  Open();
  for (const char* text : {"Connecting", "", "Connecting", "Done"}) {
    Q_EMIT page_->statusTextChanged(QLatin1String(text));
  }
  Q_EMIT page_->navigateError(u"http://1.1.1.1/two"_s, 401);
  Q_EMIT page_->navigateError(u"http://1.1.1.1/two"_s, 404);
  Q_EMIT page_->navigateError(u"http://1.1.1.1/one"_s, 401);
  EXPECT_EQ(TextOf("status_edit"),
            "Router Status: Loading...\n\nRouter Status: Connecting\nRouter Status: Done");
  EXPECT_THAT(TextOf("errors_edit"),
              EndsWith("\nLast Error Status Code: DENIED(401) (http://1.1.1.1/one)"));
  EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith("Notify: You have received an ACCESS"),
                                          StartsWith("Notify: You have received a NOT FOUND")))
      << "one for each cause";
}

}  // namespace
}  // namespace quayline::testing
