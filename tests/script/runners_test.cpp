// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QRegularExpression>
#include <QSignalSpy>

#include "core/foreign_scripts.h"
#include "core/test_databases.h"
#include "script/foreign_script.h"
#include "script/page_view_runner.h"
#include "script/runner_test.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using JobRunnerTest = RunnerTest<JobRunner>;
using PageViewTest = RunnerTest<PageViewRunner>;

TEST_F(JobRunnerTest, LogsAJobOfOneRowToTheCharacter) {
  const QString rule(71, u'-');
  const QString end(19, u'-');
  EXPECT_EQ(Run({"comment"}),
            Lines({"", "Router: Harbour 54", "Loading Commands...",
                   "Number Of Port Forwards To Send To Router (1)", "Running Commands...", "",
                   "(Current -  1/1)", "Adding Web (TCP) For Ports 80-90 To 10.0.0.5(Desk)", "",
                   "Running Script From Database For Selected Router"})
                    .join(u"\r\n"_s) +
                u"\r\n%1\r\nStep 01. comment\r\n%1\r\n\r\nFinished Adding Web\r\n\r\n\r\n"
                "%2DONE! (All Commands Finished)%2"_s.arg(rule, end));
  EXPECT_FALSE(runner_->Outcome().stopped);
}

TEST_F(JobRunnerTest, TellsFirstAndLastEntryByTheirPlace) {
  const struct {
    int rows;
    Texts calls;
  } cases[] = {
      {1, {"first", "last", "1"}},
      {2, {"first", "more", "1", "last", "2"}},
      {3, {"first", "more", "1", "more", "2", "last", "3"}},
  };
  for (const auto& c : cases) {
    SetRows(QList<PortEntry>(c.rows, WebEntry(u"Web"_s)));
    NextRunner();
    Run({"click_button_first_only(\"first\")", "click_button_not_last_only(\"more\")",
         "click_button_last_only(\"last\")", "set_textbox_number(\"n,\")"});
    pages_.calls.replaceInStrings(QRegularExpression(u"ClickButton\\(|SetElementValue\\(n, "_s), {})
        .replaceInStrings(QRegularExpression(u"(, false)?\\)"_s), {});
    EXPECT_EQ(pages_.calls, Lines(c.calls)) << c.rows;
    EXPECT_EQ(Count("Step "), 4 * c.rows);
    EXPECT_EQ(runner_->Outcome().entries, c.rows);
  }
}

TEST_F(JobRunnerTest, ReportsEachLineOfEachEntryAndNoneOfALook) {
  SetRows({WebEntry(u"Web"_s), WebEntry(u"Mail"_s)});
  context_.job_options.verify_after_update = true;
  NextRunner();
  QStringList steps;
  QObject::connect(runner_.get(), &JobRunner::entryStarted, runner_.get(),
                   [&](int row) { steps.append(u"entry %1"_s.arg(row)); });
  QObject::connect(runner_.get(), &JobRunner::stepStarted, runner_.get(),
                   [&](int step, int count) { steps.append(u"%1/%2"_s.arg(step).arg(count)); });
  Run({"comment", "click_button(\"Save\")", ""});
  EXPECT_EQ(steps.join(u' '), u"entry 1 1/3 2/3 3/3 entry 2 1/3 2/3 3/3"_s);
  EXPECT_TRUE(runner_->Outcome().has_looked);
}

TEST_F(JobRunnerTest, CutsTheAddressFromTheComputerName) {
  const struct {
    QString forwarded_to;
    const char* address;
    const char* list_choice;
  } rows[] = {
      {u"10.0.0.5(Desk (old))"_s, "10.0.0.5", "Desk (old), 10.0.0.5"},
      {u"10.0.0.6"_s, "10.0.0.6", "Desk (old), 10.0.0.6"},  // the row before's
      {u"10.0.0.7()"_s, "10.0.0.7", "10.0.0.7, "},
      {u"10.0.0.8("_s, "10.0.0.8", "10.0.0.8, "},
      {u""_s, "", ", "},
  };
  QList<PortEntry> entries;
  QStringList calls;
  for (const auto& row : rows) {
    entries.append(WebEntry(u"a"_s, row.forwarded_to));
    calls.append(u"SetElementValue(i, %1, false)"_s.arg(QLatin1String(row.address)));
    calls.append(u"SetComboValue(c, %1, true)"_s.arg(QLatin1String(row.list_choice)));
  }
  SetRows(entries);
  Run({"set_ip(\"i,\")", "set_combobox_computername(\"c,\")"});
  EXPECT_EQ(pages_.calls, calls);
}

TEST_F(JobRunnerTest, KeepsTheTestOfTheListForTheNextRowAndNotForTheNextJob) {
  const Texts script{"is_in_combo_special_1(\"l\")", "set_name_if_in_combo_true(\"n,\")"};
  PortEntry other = WebEntry(u"b"_s);
  other.protocol = u"none"_s;
  SetRows({WebEntry(u"a"_s), other});
  pages_.Answer("ComboHasOption", {true});
  Run(script);
  EXPECT_EQ(LastCall(), u"SetElementValue(n, b, false)"_s);
  SetRows({other});
  NextRunner();
  Run(script);
  EXPECT_EQ(pages_.calls, QStringList());
}

TEST_F(JobRunnerTest, ASecondRunOnTheSamePagesWaitsForThemAsTheFirst) {
  int loads_begun = 0;
  QObject::connect(&context_.job_flags, &JobFlags::changed, runner_.get(),
                   [&] { loads_begun += context_.job_flags.PageLoaded() ? 0 : 1; });
  Run({"nav(\"a\")"});
  EXPECT_GT(std::exchange(loads_begun, 0), 0);
  runner_->Run();
  ASSERT_TRUE(Ends());
  EXPECT_GT(loads_begun, 0) << "the second run took a page for loaded that was on its way";
}

TEST_F(JobRunnerTest, TakesTheRowsThatStoodThereAtItsBeginning) {
  SetRows({WebEntry(u"a"_s), WebEntry(u"b"_s)});
  pages_.On({"SetElementValue(n, a"}, [this](FakePageHost&) { SetRows({}); });
  Run({"set_name(\"n,\")"});
  EXPECT_EQ(pages_.calls, Lines({"SetElementValue(n, a, false)", "SetElementValue(n, b, false)"}));
}

TEST_F(JobRunnerTest, ForgivesTheFirstPageErrorOfEachJobAndStopsAtTheSecond) {
  const Texts script{"nav(\"rules.htm\")", "set_name(\"n,\")"};
  SetRows({WebEntry(u"a"_s), WebEntry(u"b"_s), WebEntry(u"c"_s), WebEntry(u"d"_s)});
  int loads = 0;
  pages_.On({"nav"}, [&loads](FakePageHost& host) {
    ++loads;
    loads == 1 || loads == 3 ? host.LoadBrokenPage(500) : host.LoadPage();
  });
  QSignalSpy errors(runner_.get(), &JobRunner::errorAppended);
  QSignalSpy notices(runner_.get(), &JobRunner::noticeRequested);
  Run(script);
  EXPECT_EQ(pages_.calls.filter(u"Set"_s), Lines({"SetElementValue(n, b, false)"}));
  EXPECT_EQ(Count("!ERROR! (Navigating to http://192.168.1.1/rules.htm)"), 2);
  EXPECT_EQ(Count("SERVER_ERROR(500) (http://x/)"), 2);
  EXPECT_EQ(Count("Finished Adding"), 3);
  EXPECT_EQ(Count("DONE!"), 0);
  EXPECT_EQ(runner_->Outcome().entries, 3);
  EXPECT_EQ(runner_->Outcome().entries_failed, 2);
  EXPECT_TRUE(runner_->Outcome().stopped);
  EXPECT_EQ(errors.count(), 2);
  EXPECT_EQ(errors.value(0).value(0).toString(),
            u"Last Error Status Code: SERVER_ERROR(500) (http://x/)"_s);
  EXPECT_EQ(notices.count(), 0);

  NextRunner();
  loads = 10;  // all is well again: nothing of this job hangs over the next one
  Run(script);
  EXPECT_EQ(Count("DONE!"), 1);
  NextRunner();
  loads = 0;
  Run(script);
  EXPECT_EQ(Count("!ERROR!"), 2) << "one error is forgiven in each job";
}

TEST_F(JobRunnerTest, TellsTheUserWhatToLookAtInSilentModeToo) {
  const std::pair<int, const char*> cases[] = {
      {401,
       "(?s)^You have received an ACCESS DENIED error from the webpage.\n\nPlease try the "
       "following "
       "steps to fix this issue.\n1.  Make sure the username.*for the username and password like "
       "normal.$"},
      {404,
       "(?s)^You have received a NOT FOUND error from the webpage.\n\nPlease try the following "
       "steps to fix this issue.\n1.  Make sure the correct router.*Default is HTTP:// & Port "
       "80.$"},
      {403, nullptr},
  };
  int status = 0;
  pages_.On({"nav"}, [&status](FakePageHost& host) { host.LoadBrokenPage(status); });
  for (const bool silent : {true, false}) {
    for (const auto& [of_page, notice] : cases) {
      SCOPED_TRACE(of_page);
      status = of_page;
      context_.job_options.silent_mode = silent;
      NextRunner();
      QSignalSpy notices(runner_.get(), &JobRunner::noticeRequested);
      Run({"nav(\"x\")"});
      ASSERT_EQ(notices.count(), notice == nullptr ? 0 : 1);
      if (notice != nullptr) {
        const QString text = notices[0][0].toString();
        EXPECT_TRUE(text.contains(QRegularExpression(QLatin1String(notice)))) << text.toStdString();
      }
    }
  }
}

TEST_F(JobRunnerTest, StopsByTheUserAreNotForgiven) {
  SetRows({WebEntry(u"a"_s), WebEntry(u"b"_s)});
  pages_.On({"nav"}, [this](FakePageHost& host) {
    host.BeginNavigation();
    host.Later([this, &host] {
      runner_->Stop();
      host.FailNavigation(u"http://x/"_s, 500);
    });
  });
  Run({"nav(\"x\")", "set_name(\"n,\")"});
  EXPECT_EQ(runner_->Outcome().entries, 1);
  EXPECT_TRUE(runner_->Outcome().stopped);
  EXPECT_EQ(Count("DONE!"), 0);
}

TEST_F(JobRunnerTest, ShowsAPopupUntilItClosesAndNeverLosesItsOwnPage) {
  pages_.On({"ClickButton"}, OpenPopup);
  pages_.On({"run close()"}, CloseWindow);
  QSignalSpy shown(runner_.get(), &JobRunner::activeHostChanged);
  Run({"click_button(\"Edit\")", "call_javascript(\"close()\")", "set_name(\"n,\")"});
  EXPECT_EQ(LastCall(), u"SetElementValue(n, Web, false)"_s);
  EXPECT_EQ(shown.count(), 2);
  EXPECT_EQ(runner_->ActiveHost(), &pages_.Host(0));
  const QPointer<PageHost> own = runner_->ActiveHost();
  pages_.Host(0).CloseWindow();
  EXPECT_FALSE(RunUntil([&own] { return own.isNull(); }, 20ms)) << "the window's own browser stays";
}

TEST_F(JobRunnerTest, TheBrowserSpeaksToTheStatusBox) {
  context_.job_options.silent_mode = false;
  runner_->Open();
  QSignalSpy lines(runner_.get(), &JobRunner::statusAppended);
  QSignalSpy notices(runner_.get(), &JobRunner::noticeRequested);
  PageHost& host = pages_.Host(0);
  for (const char* text : {"Loading", "Loading", "", "Done", "Loading"}) {
    Q_EMIT host.statusTextChanged(QLatin1String(text));
  }
  ASSERT_EQ(lines.count(), 3);
  EXPECT_EQ(lines[1][0].toString(), u"Router Status: Done"_s);
  Q_EMIT host.scriptError(u"x is not defined"_s, u"http://x/"_s, 3);
  context_.job_options.silent_mode = true;
  Q_EMIT host.scriptError(u"silence"_s, u"http://x/"_s, 3);
  ASSERT_EQ(notices.count(), 1);
  EXPECT_EQ(notices[0][0].toString(), u"x is not defined"_s);
}

TEST_F(JobRunnerTest, TheLoginGoesToTheBrowserAlone) {
  context_.session.http_type = u"https://"_s;
  const struct {
    const char* password;
    const char* port;
    int browsers_port;
    const char* call;
  } cases[] = {
      {"plain", "80", 443, "nav https://192.168.1.1/a"},
      {"plain", "8443", 8443, "nav https://192.168.1.1:8443/a"},
      {"with@sign", "80", 443, "nav https://192.168.1.1/a"},
      {"with@sign", "8443", 8443, "nav https://192.168.1.1:8443/a"},
  };
  for (const auto& c : cases) {
    const QString password = QLatin1String(c.password);
    context_.session.password = password;
    context_.session.http_port = QLatin1String(c.port);
    NextRunner();
    pages_.logins.clear();
    const QString log =
        Run({"nav(\"a\")", "nav_link(\"b,\")", "click_button(\"c\")", "call_javascript(\"d\")"});
    EXPECT_FALSE((log + pages_.calls.join(u' ')).contains(password));
    EXPECT_EQ(pages_.logins, QList<PageLogin>({{.scheme = u"https"_s,
                                                .host = u"192.168.1.1"_s,
                                                .port = c.browsers_port,
                                                .username = u"admin"_s,
                                                .password = password}}));
    EXPECT_EQ(pages_.calls.value(0), QLatin1String(c.call));
  }
}

TEST_F(PageViewTest, RunsTheViewScriptOnceAsTheOnlyEntryAndWithoutItsValues) {
  context_.job_flags.SetJobStopRequested(true);  // of a window that was closed before
  context_.job_flags.SetPageErrorPending(true);
  context_.job_flags.in_combo = true;
  context_.session.http_port = u"8080"_s;
  const QString log = Run({"nav_first_only(\"list.htm\")", "set_name_if_in_combo_true(\"n,\")",
                           "set_port_range(\"p,\")", "set_textbox_number(\"e,\")",
                           "click_button_not_last_only(\"b\")", "click_button_last_only(\"b\")"});
  EXPECT_EQ(pages_.calls, Lines({"nav http://192.168.1.1:8080/list.htm",
                                 "SetElementValue(n, , false)", "SetElementValue(p, -, false)",
                                 "SetElementValue(e, 1, false)", "ClickButton(b)"}));
  EXPECT_EQ(runner_->End(), RunEnd::kAllLinesDone);
  ASSERT_EQ(pages_.logins.size(), 1);
  EXPECT_EQ(pages_.logins[0].port, 8080);
  EXPECT_TRUE(log.startsWith(u"\r\nRunning Script From Database"_s));
  EXPECT_FALSE(log.contains(context_.session.password));
}

TEST_F(PageViewTest, TheScriptStaysOnThePageWhileAPopupIsShown) {
  pages_.On({"ClickButton"}, OpenPopup);
  QSignalSpy shown(runner_.get(), &PageViewRunner::activeHostChanged);
  Run({"click_button(\"Edit\")", "set_name(\"n,\")"});
  EXPECT_EQ(pages_.calls, Lines({"ClickButton(Edit)", "SetElementValue(n, , false)"}));
  EXPECT_EQ(runner_->ActiveHost(), &pages_.Host(1));
  EXPECT_EQ(context_.job_flags.active_browser_index, 0) << "that of a job's window";
  pages_.Host(1).CloseWindow();
  EXPECT_EQ(runner_->ActiveHost(), &pages_.Host(0));
  EXPECT_EQ(shown.count(), 2);
}

TEST_F(PageViewTest, EachViewForgivesOneErrorAndNeverEndsAJob) {
  pages_.On({"nav"}, [](FakePageHost& host) { host.LoadBrokenPage(404); });
  QSignalSpy errors(runner_.get(), &PageViewRunner::errorAppended);
  QSignalSpy notices(runner_.get(), &PageViewRunner::noticeRequested);
  for (int view = 1; view <= 2; ++view) {
    Run({"nav(\"a\")", "set_name(\"n,\")"});
    EXPECT_EQ(runner_->End(), RunEnd::kPageError);
    EXPECT_FALSE(context_.job_flags.view_stop_requested);
    EXPECT_EQ(pages_.calls, QStringList(view, u"nav http://192.168.1.1/a"_s));
    ASSERT_EQ(errors.count(), view);
    EXPECT_EQ(errors.last()[0].toString(), u"Last Error Status Code: NOT_FOUND(404) (http://x/)"_s);
    ASSERT_EQ(notices.count(), view);
    EXPECT_TRUE(notices.last()[0].toString().startsWith(u"You have received a NOT FOUND"_s));
  }
  runner_->Open();
  for (const bool stop_requested : {false, true}) {
    pages_.Host(0).FailNavigation(u"http://x/"_s, 500);
    EXPECT_EQ(context_.job_flags.view_stop_requested, stop_requested);
  }
  EXPECT_FALSE(context_.job_flags.JobStopRequested());
}

// Two windows, one set of flags: the window whose run has ended must leave the other's alone, also
// when it is closed.
TEST_F(PageViewTest, APageOfAnEndedJobDoesNotDisturbTheView) {
  FakePages job_pages;
  JobRunner job(context_, job_pages.Factory(), questions_);
  job.Open();
  job.Run();
  EXPECT_TRUE(context_.job_flags.IsRunning());
  ASSERT_TRUE(RunUntil([&] { return !job.IsRunning(); }));
  EXPECT_FALSE(context_.job_flags.IsRunning());

  pages_.On({"nav"}, [this, &job, &job_pages](FakePageHost& host) {
    host.BeginNavigation();
    job_pages.Host(0).FailNavigation(u"http://x/"_s, 500);
    job_pages.Host(0).FailNavigation(u"http://x/"_s, 500);
    job_pages.Host(0).LoadPage();
    job_pages.Host(0).OpenPopup();
    job.Stop();
    job.Leave();
    EXPECT_TRUE(context_.job_flags.IsRunning());
    host.Later([&host] { host.EndNavigation(); });
  });
  const QString log = Run({"nav(\"a\")", "set_name(\"n,\")"});
  EXPECT_EQ(runner_->End(), RunEnd::kAllLinesDone) << log.toStdString();
  EXPECT_EQ(LastCall(), u"SetElementValue(n, , false)"_s);
}

TEST_F(PageViewTest, TheBarMovesWithThePagesAlsoWhenTheScriptIsOver) {
  Run({});
  QSignalSpy moves(runner_.get(), &PageViewRunner::busyChanged);
  pages_.Host(0).BeginNavigation();
  pages_.Host(0).EndNavigation();
  ASSERT_EQ(moves.count(), 2);
  EXPECT_TRUE(moves[0][0].toBool());
  EXPECT_FALSE(moves[1][0].toBool());
}

TEST_F(JobRunnerTest, AScriptOfSomebodyElseRunsWhenTheUserHasAllowedIt) {
  RouterRecord router{.id = 1'000'000'000,
                      .routername = u"Shared"_s,
                      .routercommands = u"nav(\"a.htm\")\r\ncall_javascript(\"go()\")"_s,
                      .routerportpage = u"nav(\"view.htm\")"_s};
  ASSERT_TRUE(MakeTestDatabases(bare_.folder.path(), {router}));
  ASSERT_TRUE(context_.databases.Open(bare_.folder.path()));
  context_.session.router_id = router.id;
  ASSERT_TRUE(ForeignScripts(bare_.folder.path()).Note(router.id, {.name = u"Bob"_s, .key = {}}));
  const Texts script{"nav(\"a.htm\")"};
  EXPECT_TRUE(Run(script).contains(u"was not allowed to run"_s));
  EXPECT_TRUE(runner_->Outcome().stopped);
  EXPECT_EQ(pages_.calls, QStringList());
  questions_.allows_scripts = true;
  NextRunner();
  Run(script);
  EXPECT_FALSE(runner_->Outcome().stopped);
  NextRunner();
  Run(script);
  EXPECT_EQ(questions_.asked, QStringList(2, u"script of Bob"_s)) << "not when it was allowed";

  // Without a signature it works on the router only, whatever the user would answer.
  questions_.allows_addresses = true;
  bool is_allowed = true;
  pages_.Host(0).questions.AskOtherAddress({.target = u"http://10.0.0.9:80"_s, .router = {}},
                                           [&](bool allowed) { is_allowed = allowed; });
  EXPECT_FALSE(is_allowed);
  EXPECT_TRUE(runner_->Log().Text().contains(u"(http://10.0.0.9:80 was blocked"_s));
  ASSERT_TRUE(ForeignScripts(bare_.folder.path())
                  .Note(router.id, {.name = u"Bob"_s, .key = QByteArray(32, 'k')}));
  NextRunner();
  Run(script);
  pages_.Host(0).questions.AskOtherAddress({.target = u"http://10.0.0.9:80"_s, .router = {}},
                                           [&](bool allowed) { is_allowed = allowed; });
  EXPECT_TRUE(is_allowed);
}

TEST_F(JobRunnerTest, AScriptOfSomebodyElseThatCannotBeLookedUpIsRefused) {
  const RouterRecord router{.id = 1'000'000'000, .routername = u"Shared"_s};
  const struct {
    const char* name;
    std::function<void()> meanwhile;
    bool is_asked;
  } cases[] = {
      {"databases are closed for an update", [this] { context_.databases.Close(); }, false},
      {"its row is gone", [this] { context_.session.router_id = 1'000'000'001; }, false},
      {"another router is chosen", [this] { context_.session = {}; }, true},
  };
  ASSERT_TRUE(MakeTestDatabases(bare_.folder.path(), {router}));
  ForeignScripts foreign(bare_.folder.path());
  ASSERT_TRUE(foreign.Note(router.id, {.name = u"Bob"_s, .key = {}}));
  ASSERT_TRUE(foreign.Note(router.id + 1, {.name = u"Bob"_s, .key = {}}));
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    ASSERT_TRUE(context_.databases.Open(bare_.folder.path()));
    context_.session.router_id = router.id;
    context_.session.chosen_router = router.routername;
    context_.session.update_script = Lines({"nav(\"a.htm\")"});
    questions_.asked.clear();
    NextRunner();
    runner_->Open();
    each.meanwhile();
    runner_->Run();
    ASSERT_TRUE(Ends());
    EXPECT_TRUE(runner_->Log().Text().contains(u"was not allowed to run"_s));
    EXPECT_TRUE(runner_->Outcome().stopped);
    EXPECT_EQ(pages_.calls, QStringList());
    EXPECT_EQ(!questions_.asked.isEmpty(), each.is_asked);
  }
}

TEST(ForeignScript, WhatItMayDoIsNamed) {
  const RouterRecord router{
      .routername = u"Shared"_s,
      .routercommands = u"nav(\"a.htm\")\r\ncomment\ncall_javascript(\"go()\")\nnav(\"a.htm\")"_s,
      .routerportpage = u"nav(\"javascript:x()\")"_s,
      .routerremove = u"RUN_JAVASCRIPT(\"a, b\u202e\")\r\nclick_button(\"Delete\")"_s};
  ScriptOrigin origin{.author = {.name = u"Bob"_s, .key = {}}};
  const ForeignScript described = DescribeScripts(router, origin);
  EXPECT_EQ(described.pages, (QStringList{u"a.htm"_s, u"javascript:x()"_s}));
  EXPECT_EQ(described.code_lines,
            (QStringList{u"3: call_javascript(\"go()\")"_s, u"1: nav(\"javascript:x()\")"_s,
                         u"1: RUN_JAVASCRIPT(\"a, b\u202e\")"_s}));
  const Translator english{QString()};
  const QString text = ForeignScriptText(described, english);
  for (const char* part : {"\"Shared\"", "Author: Bob", "Signature: none", "a.htm",
                           "3: call_javascript", "Other addresses: none. They are blocked"}) {
    EXPECT_TRUE(text.contains(QLatin1String(part))) << part;
  }
  EXPECT_FALSE(text.contains(u'\u202e')) << "would turn the text around";
  origin.author.key = QByteArray(32, 'k');
  EXPECT_TRUE(ForeignScriptText(DescribeScripts(router, origin), english)
                  .contains(KeyFingerprint(origin.author.key)));
}

}  // namespace
}  // namespace quayline::testing
