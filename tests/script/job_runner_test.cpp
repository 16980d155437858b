// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/job_runner.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "platform/fake_adapters.h"
#include "script/fake_page_host.h"
#include "script/script_rig.h"
#include "test_main.h"

namespace quayline {
namespace {

using testing::FakePageHost;
using testing::Lines;
using testing::RunUntil;

class NoDesktop final : public Desktop {
 public:
  bool OpenInBrowser(const QUrl&) override { return false; }
};

PortEntry Row(const char* name, const char* forwarded_to) {
  return {.app_name = QString::fromUtf8(name),
          .forwarded_to = QString::fromUtf8(forwarded_to),
          .start_port = QStringLiteral("80"),
          .end_port = QStringLiteral("90"),
          .protocol = QStringLiteral("TCP"),
          .description = {}};
}

class JobRunnerTest : public ::testing::Test {
 protected:
  JobRunnerTest() : context_(folder_.path(), adapters_, desktop_) {
    context_.session.router_name = QStringLiteral("Harbour 54");
    context_.session.router_ip = QStringLiteral("192.168.1.1");
    context_.session.username = QStringLiteral("admin");
    context_.session.password = QStringLiteral("se:cret#1");
    context_.job_options.throttle = false;
    SetRows({Row("Web", "10.0.0.5(Desk)")});
    NextJob();
  }

  // As the next window of a job does.
  void NextJob() {
    runner_.reset();
    runner_ = std::make_unique<JobRunner>(context_, pages_.Factory());
    pages_.calls.clear();
  }

  void SetRows(const QList<PortEntry>& rows) { context_.port_list.SetEntries(rows); }
  void SetScript(const std::vector<const char*>& lines) {
    context_.session.update_script = Lines(lines);
  }

  // Runs a job to its end and gives its log.
  QString RunJob() {
    runner_->Open();
    runner_->Run();
    EXPECT_TRUE(RunUntil([this] { return !runner_->IsRunning(); }));
    return runner_->Log().Text();
  }
  int Count(const char* text) const {
    return static_cast<int>(runner_->Log().Text().count(QString::fromUtf8(text)));
  }

  QTemporaryDir folder_;
  testing::FakeAdapters adapters_;
  NoDesktop desktop_;
  AppContext context_;
  testing::FakePages pages_;
  std::unique_ptr<JobRunner> runner_;
};

TEST_F(JobRunnerTest, LogsAJobOfOneRowToTheCharacter) {
  SetScript({"comment"});
  const QString rule(71, QLatin1Char('-'));
  const QString end(19, QLatin1Char('-'));
  EXPECT_EQ(RunJob(),
            Lines({"", "Router: Harbour 54", "Loading Commands...",
                   "Number Of Port Forwards To Send To Router (1)", "Running Commands...", "",
                   "(Current -  1/1)", "Adding Web (TCP) For Ports 80-90 To 10.0.0.5(Desk)", "",
                   "Running Script From Database For Selected Router"})
                    .join(QStringLiteral("\r\n")) +
                QStringLiteral("\r\n%1\r\nStep 01. comment\r\n%1\r\n\r\nFinished Adding "
                               "Web\r\n\r\n\r\n%2DONE! (All Commands Finished)%2")
                    .arg(rule, end));
  EXPECT_FALSE(runner_->Outcome().stopped);
}

TEST_F(JobRunnerTest, TellsFirstAndLastEntryByTheirPlace) {
  SetScript({"set_custom(\"all,,x\")", "click_button_first_only(\"first\")",
             "click_button_not_last_only(\"more\")", "click_button_last_only(\"last\")",
             "set_textbox_number(\"n,\")"});
  const struct {
    int rows;
    std::vector<const char*> clicks;
  } cases[] = {
      {1, {"first", "last", "1"}},
      {2, {"first", "more", "1", "last", "2"}},
      {3, {"first", "more", "1", "more", "2", "last", "3"}},
  };
  for (const auto& c : cases) {
    SetRows(QList<PortEntry>(c.rows, Row("Web", "10.0.0.5(Desk)")));
    NextJob();
    RunJob();
    QStringList seen;
    for (const QString& call : pages_.calls) {
      if (call.startsWith(QStringLiteral("ClickButton"))) {
        seen.append(call.section(QLatin1Char('('), 1).chopped(1));
      } else if (call.startsWith(QStringLiteral("SetElementValue(n"))) {
        seen.append(call.section(QStringLiteral(", "), 1, 1));
      }
    }
    EXPECT_EQ(seen, Lines(c.clicks)) << c.rows;
    EXPECT_EQ(Count("Step "), 5 * c.rows);
    EXPECT_EQ(runner_->Outcome().entries, c.rows);
  }
}

TEST_F(JobRunnerTest, CutsTheAddressFromTheComputerName) {
  SetScript({"set_ip(\"i,\")", "set_combobox_computername(\"c,\")"});
  SetRows({Row("a", "10.0.0.5(Desk (old))"), Row("b", "10.0.0.6"), Row("c", "10.0.0.7()"),
           Row("d", "10.0.0.8("), Row("e", "")});
  RunJob();
  EXPECT_EQ(
      pages_.calls,
      Lines({"SetElementValue(i, 10.0.0.5, false)", "SetComboValue(c, Desk (old), 10.0.0.5, true)",
             "SetElementValue(i, 10.0.0.6, false)",
             "SetComboValue(c, Desk (old), 10.0.0.6, true)",  // the row before's
             "SetElementValue(i, 10.0.0.7, false)", "SetComboValue(c, 10.0.0.7, , true)",
             "SetElementValue(i, 10.0.0.8, false)", "SetComboValue(c, 10.0.0.8, , true)",
             "SetElementValue(i, , false)", "SetComboValue(c, , , true)"}));
}

TEST_F(JobRunnerTest, KeepsTheTestOfTheListForTheNextRowAndNotForTheNextJob) {
  SetScript({"is_in_combo_special_1(\"l\")", "set_name_if_in_combo_true(\"n,\")"});
  PortEntry other = Row("b", "10.0.0.6(x)");
  other.protocol = QStringLiteral("none");
  SetRows({Row("a", "10.0.0.5(x)"), other});
  pages_.Answer(QStringLiteral("ComboHasOption"), {true});
  RunJob();
  EXPECT_TRUE(pages_.calls.contains(QStringLiteral("SetElementValue(n, b, false)")));
  SetRows({other});
  NextJob();
  RunJob();
  EXPECT_EQ(pages_.calls, QStringList());
}

TEST_F(JobRunnerTest, ASecondRunOnTheSamePagesWaitsForThemAsTheFirst) {
  SetScript({"nav(\"a\")"});
  int loads_begun = 0;
  const auto count = QObject::connect(&context_.job_flags, &JobFlags::changed, runner_.get(), [&] {
    loads_begun += context_.job_flags.PageLoaded() ? 0 : 1;
  });
  RunJob();
  EXPECT_GT(std::exchange(loads_begun, 0), 0);
  runner_->Run();
  ASSERT_TRUE(RunUntil([this] { return !runner_->IsRunning(); }));
  EXPECT_GT(loads_begun, 0) << "the second run took a page for loaded that was on its way";
  QObject::disconnect(count);
}

TEST_F(JobRunnerTest, TakesTheRowsThatStoodThereAtItsBeginning) {
  SetScript({"set_name(\"n,\")"});
  SetRows({Row("a", "10.0.0.5(x)"), Row("b", "10.0.0.6(x)")});
  pages_.On(QStringLiteral("SetElementValue(n, a"), [this](FakePageHost&) { SetRows({}); });
  RunJob();
  EXPECT_EQ(pages_.calls, Lines({"SetElementValue(n, a, false)", "SetElementValue(n, b, false)"}));
}

TEST_F(JobRunnerTest, ForgivesTheFirstPageErrorAndStopsAtTheSecond) {
  SetScript({"nav(\"rules.htm\")", "set_name(\"n,\")"});
  SetRows({Row("a", "1(x)"), Row("b", "2(x)"), Row("c", "3(x)"), Row("d", "4(x)")});
  int loads = 0;
  pages_.On(QStringLiteral("nav"), [&loads](FakePageHost& host) {
    ++loads;
    if (loads == 1 || loads == 3) {
      host.LoadBrokenPage(QStringLiteral("http://192.168.1.1/rules.htm"), 500);
    } else {
      host.LoadPage();
    }
  });
  QSignalSpy errors(runner_.get(), &JobRunner::errorAppended);
  QSignalSpy notices(runner_.get(), &JobRunner::noticeRequested);
  RunJob();
  EXPECT_EQ(pages_.calls.filter(QStringLiteral("Set")), Lines({"SetElementValue(n, b, false)"}));
  EXPECT_EQ(Count("!ERROR! (Navigating to http://192.168.1.1/rules.htm)"), 2);
  EXPECT_EQ(Count("SERVER_ERROR(500) (http://192.168.1.1/rules.htm)"), 2);
  EXPECT_EQ(Count("Finished Adding"), 3);
  EXPECT_EQ(Count("DONE!"), 0);
  EXPECT_EQ(runner_->Outcome().entries, 3);
  EXPECT_EQ(runner_->Outcome().entries_failed, 2);
  EXPECT_TRUE(runner_->Outcome().stopped);
  ASSERT_EQ(errors.count(), 2);
  EXPECT_EQ(
      errors[0][0].toString(),
      QStringLiteral("Last Error Status Code: SERVER_ERROR(500) (http://192.168.1.1/rules.htm)"));
  EXPECT_EQ(notices.count(), 0);

  NextJob();
  loads = 10;  // all is well again: nothing of this job hangs over the next one
  RunJob();
  EXPECT_EQ(Count("DONE!"), 1);
  NextJob();
  loads = 0;
  RunJob();
  EXPECT_EQ(Count("!ERROR!"), 2) << "one error is forgiven in each job";
}

TEST_F(JobRunnerTest, TellsTheUserWhatToLookAt) {
  SetScript({"nav(\"x\")"});
  const struct {
    int status;
    const char* begins_with;
    const char* ends_with;
  } cases[] = {
      {401,
       "You have received an ACCESS DENIED error from the webpage.\n\nPlease try the following "
       "steps to fix this issue.\n1.  Make sure the username",
       "ask for the username and password like normal."},
      {404,
       "You have received a NOT FOUND error from the webpage.\n\nPlease try the following steps to "
       "fix this issue.\n1.  Make sure the correct router",
       "(Default is HTTP:// & Port 80)"},
      {403, nullptr, nullptr},
  };
  for (const bool silent : {true, false}) {
    for (const auto& c : cases) {
      context_.job_options.silent_mode = silent;
      testing::FakePages pages;
      JobRunner runner(context_, pages.Factory());
      pages.On(QStringLiteral("nav"), [&c](FakePageHost& host) {
        host.LoadBrokenPage(QStringLiteral("http://x/"), c.status);
      });
      QSignalSpy notices(&runner, &JobRunner::noticeRequested);
      runner.Open();
      runner.Run();
      ASSERT_TRUE(RunUntil([&] { return !runner.IsRunning(); }));
      ASSERT_EQ(notices.count(), c.begins_with == nullptr ? 0 : 1) << c.status;
      if (c.begins_with != nullptr) {
        const QString text = notices[0][0].toString();
        EXPECT_TRUE(text.startsWith(QLatin1String(c.begins_with))) << text.toStdString();
        EXPECT_TRUE(text.endsWith(QLatin1String(c.ends_with))) << text.toStdString();
      }
    }
  }
}

TEST_F(JobRunnerTest, StopsByTheUserAreNotForgiven) {
  SetScript({"nav(\"x\")", "set_name(\"n,\")"});
  SetRows({Row("a", "1(x)"), Row("b", "2(x)")});
  pages_.On(QStringLiteral("nav"), [this](FakePageHost& host) {
    host.BeginNavigation();
    host.Later([this, &host] {
      runner_->Stop();
      host.FailNavigation(QStringLiteral("http://x/"), 500);
    });
  });
  RunJob();
  EXPECT_EQ(runner_->Outcome().entries, 1);
  EXPECT_TRUE(runner_->Outcome().stopped);
  EXPECT_EQ(Count("DONE!"), 0);
}

TEST_F(JobRunnerTest, CanBeStoppedBeforeItsFirstRow) {
  SetScript({"nav(\"x\")"});
  runner_->Open();
  runner_->Stop();
  runner_->Run();
  ASSERT_TRUE(RunUntil([this] { return !runner_->IsRunning(); }));
  EXPECT_TRUE(runner_->Log().Text().endsWith(QStringLiteral("Running Commands...\r\n")));
  EXPECT_TRUE(runner_->Outcome().stopped);
  EXPECT_EQ(pages_.calls, QStringList());
}

TEST_F(JobRunnerTest, EndsWithItsWindow) {
  SetScript({"nav(\"x\")", "set_name(\"n,\")"});
  pages_.On(QStringLiteral("nav"), [](FakePageHost& host) { host.BeginNavigation(); });
  auto closed = std::make_unique<JobRunner>(context_, pages_.Factory());
  closed->Open();
  closed->Run();
  ASSERT_TRUE(RunUntil([this] { return !pages_.calls.isEmpty(); }));
  closed.reset();
  context_.job_flags.SetPageLoaded(true);
  EXPECT_FALSE(RunUntil([this] { return pages_.calls.size() > 1; }, std::chrono::milliseconds(30)));
}

TEST_F(JobRunnerTest, DebugButtonLeadsThroughTheLines) {
  SetScript({"one", "two"});
  context_.job_options.debug_mode = true;
  int presses = 0;
  QSignalSpy buttons(runner_.get(), &JobRunner::proceedEnabled);
  QObject::connect(&runner_->Log(), &JobLog::appended, runner_.get(),
                   [this, &presses](const QString& text) {
                     if (text.contains(QStringLiteral("Proceed To Next"))) {
                       ++presses;
                       QMetaObject::invokeMethod(runner_.get(), &JobRunner::ProceedToNextCommand,
                                                 Qt::QueuedConnection);
                     }
                   });
  RunJob();
  EXPECT_EQ(presses, 2) << "the first line is held, too";
  EXPECT_EQ(buttons.last()[0].toBool(), true) << "the last line arms the next hold";
}

TEST_F(JobRunnerTest, APopupTakesThePlaceOfThePageUntilItCloses) {
  SetScript({"click_button(\"Edit\")", "set_name(\"n,\")", "call_javascript(\"close()\")",
             "set_name(\"n,\")"});
  pages_.On(QStringLiteral("ClickButton"), [](FakePageHost& host) { host.OpenPopup().LoadPage(); });
  pages_.On(QStringLiteral("run close()"), [](FakePageHost& host) { host.CloseWindow(); });
  QSignalSpy shown(runner_.get(), &JobRunner::activeHostChanged);
  RunJob();
  EXPECT_EQ(pages_.calls, Lines({"ClickButton(Edit)", "popup 1: SetElementValue(n, Web, false)",
                                 "popup 1: run close()", "SetElementValue(n, Web, false)"}));
  EXPECT_EQ(shown.count(), 2);
  EXPECT_EQ(runner_->ActiveHost(), &pages_.Host(0));
  EXPECT_EQ(Count("(Failed"), 0);
  const QPointer<PageHost> own = runner_->ActiveHost();
  pages_.Host(0).CloseWindow();
  EXPECT_FALSE(RunUntil([&own] { return own.isNull(); }, std::chrono::milliseconds(20)))
      << "the window's own browser stays";
}

TEST_F(JobRunnerTest, TheBrowserSpeaksToTheStatusBox) {
  context_.job_options.silent_mode = false;
  runner_->Open();
  QSignalSpy lines(runner_.get(), &JobRunner::statusAppended);
  QSignalSpy notices(runner_.get(), &JobRunner::noticeRequested);
  PageHost& host = pages_.Host(0);
  for (const char* text : {"Loading", "Loading", "", "Done", "Loading"}) {
    Q_EMIT host.statusTextChanged(QString::fromLatin1(text));
  }
  EXPECT_EQ(lines.count(), 3);
  EXPECT_EQ(lines[1][0].toString(), QStringLiteral("Router Status: Done"));
  Q_EMIT host.scriptError(QStringLiteral("x is not defined"), QStringLiteral("http://x/"), 3);
  context_.job_options.silent_mode = true;
  Q_EMIT host.scriptError(QStringLiteral("silence"), QStringLiteral("http://x/"), 3);
  ASSERT_EQ(notices.count(), 1);
  EXPECT_EQ(notices[0][0].toString(), QStringLiteral("x is not defined"));
}

TEST_F(JobRunnerTest, TheLoginGoesToTheBrowserAlone) {
  SetScript({"nav(\"a\")", "nav_link(\"b,\")", "click_button(\"c\")", "call_javascript(\"d\")"});
  context_.session.http_type = QStringLiteral("https://");
  for (const char* password : {"plain", "with@sign"}) {
    context_.session.password = QString::fromUtf8(password);
    for (const char* port : {"80", "8443"}) {
      context_.session.http_port = QString::fromLatin1(port);
      NextJob();
      pages_.logins.clear();
      EXPECT_FALSE(RunJob().contains(context_.session.password));
      EXPECT_FALSE(pages_.calls.join(QLatin1Char(' ')).contains(context_.session.password));
      const bool is_default = QLatin1String(port) == QLatin1String("80");
      const PageLogin expected{.scheme = QStringLiteral("https"),
                               .host = QStringLiteral("192.168.1.1"),
                               .port = is_default ? 443 : 8443,
                               .username = QStringLiteral("admin"),
                               .password = context_.session.password};
      ASSERT_EQ(pages_.logins.size(), 1);
      EXPECT_EQ(pages_.logins[0], expected) << port;
      EXPECT_EQ(pages_.calls[0], is_default ? QStringLiteral("nav https://192.168.1.1/a")
                                            : QStringLiteral("nav https://192.168.1.1:8443/a"));
    }
  }
}

}  // namespace
}  // namespace quayline
