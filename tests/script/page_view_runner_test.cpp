// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/page_view_runner.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "platform/fake_adapters.h"
#include "script/fake_page_host.h"
#include "script/job_runner.h"
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

class PageViewTest : public ::testing::Test {
 protected:
  PageViewTest() : context_(folder_.path(), adapters_, desktop_) {
    context_.session.router_ip = QStringLiteral("192.168.1.1");
    context_.session.http_port = QStringLiteral("8080");
    context_.session.username = QStringLiteral("admin");
    context_.session.password = QStringLiteral("secret");
    context_.session.update_script = Lines({"nav(\"wrong.htm\")"});
    context_.job_options.throttle = false;
    context_.port_list.SetEntries({{.app_name = QStringLiteral("Web")}});
    runner_ = std::make_unique<PageViewRunner>(context_, pages_.Factory());
  }

  void Run(const std::vector<const char*>& script) {
    context_.session.view_script = Lines(script);
    runner_->Open();
    runner_->Run();
    EXPECT_TRUE(RunUntil([this] { return !runner_->IsRunning(); }));
  }

  QTemporaryDir folder_;
  testing::FakeAdapters adapters_;
  NoDesktop desktop_;
  AppContext context_;
  testing::FakePages pages_;
  std::unique_ptr<PageViewRunner> runner_;
};

TEST_F(PageViewTest, RunsTheViewScriptOnceAsTheOnlyEntryAndWithoutItsValues) {
  context_.job_flags.SetJobStopRequested(true);  // of a window that was closed before
  context_.job_flags.SetPageErrorPending(true);
  context_.job_flags.in_combo = true;
  Run({"nav_first_only(\"list.htm\")", "set_name_if_in_combo_true(\"n,\")",
       "set_port_range(\"p,\")", "set_textbox_number(\"e,\")", "click_button_not_last_only(\"b\")",
       "click_button_last_only(\"b\")"});
  EXPECT_EQ(pages_.calls, Lines({"nav http://192.168.1.1:8080/list.htm",
                                 "SetElementValue(n, , false)", "SetElementValue(p, -, false)",
                                 "SetElementValue(e, 1, false)", "ClickButton(b)"}));
  EXPECT_EQ(runner_->End(), RunEnd::kAllLinesDone);
  ASSERT_EQ(pages_.logins.size(), 1);
  EXPECT_EQ(pages_.logins[0].port, 8080);
  EXPECT_TRUE(runner_->Log().Text().startsWith(QStringLiteral("\r\nRunning Script From Database")));
  EXPECT_FALSE(runner_->Log().Text().contains(QStringLiteral("secret")));
}

TEST_F(PageViewTest, TheScriptStaysOnThePageWhileAPopupIsShown) {
  pages_.On(QStringLiteral("ClickButton"), [](FakePageHost& host) { host.OpenPopup().LoadPage(); });
  QSignalSpy shown(runner_.get(), &PageViewRunner::activeHostChanged);
  Run({"click_button(\"Edit\")", "set_name(\"n,\")"});
  EXPECT_EQ(pages_.calls, Lines({"ClickButton(Edit)", "SetElementValue(n, , false)"}));
  EXPECT_EQ(runner_->ActiveHost(), &pages_.Host(1));
  EXPECT_EQ(context_.job_flags.active_browser_index, 0) << "that of a job's window";
  pages_.Host(1).CloseWindow();
  EXPECT_EQ(runner_->ActiveHost(), &pages_.Host(0));
  EXPECT_EQ(shown.count(), 2);
}

TEST_F(PageViewTest, APageErrorEndsTheScriptAndNeverMoreThanThat) {
  pages_.On(QStringLiteral("nav"), [](FakePageHost& host) {
    host.LoadBrokenPage(QStringLiteral("http://192.168.1.1:8080/a"), 404);
  });
  QSignalSpy errors(runner_.get(), &PageViewRunner::errorAppended);
  QSignalSpy notices(runner_.get(), &PageViewRunner::noticeRequested);
  for (const bool stop_requested : {false, false}) {
    Run({"nav(\"a\")", "set_name(\"n,\")"});
    EXPECT_EQ(runner_->End(), RunEnd::kPageError);
    EXPECT_EQ(context_.job_flags.view_stop_requested, stop_requested) << "each view forgives one";
  }
  EXPECT_FALSE(context_.job_flags.JobStopRequested());
  EXPECT_EQ(pages_.calls.filter(QStringLiteral("Set")), QStringList());
  ASSERT_EQ(errors.count(), 2);
  EXPECT_EQ(errors[0][0].toString(),
            QStringLiteral("Last Error Status Code: NOT_FOUND(404) (http://192.168.1.1:8080/a)"));
  ASSERT_EQ(notices.count(), 2);
  EXPECT_TRUE(notices[0][0].toString().startsWith(QStringLiteral("You have received a NOT FOUND")));
}

TEST_F(PageViewTest, TheSecondErrorIsNotedAndTheScriptDecidesBySomethingElse) {
  Run({});
  runner_->Open();
  for (const bool stop_requested : {false, true}) {
    pages_.Host(0).FailNavigation(QStringLiteral("http://x/"), 500);
    EXPECT_EQ(context_.job_flags.view_stop_requested, stop_requested);
  }
  EXPECT_FALSE(context_.job_flags.JobStopRequested());
}

// Two windows, one set of flags: the window whose run has ended must leave the other's alone.
TEST_F(PageViewTest, APageOfAnEndedJobDoesNotDisturbTheView) {
  testing::FakePages job_pages;
  JobRunner job(context_, job_pages.Factory());
  job.Open();
  job.Run();
  EXPECT_TRUE(context_.job_flags.is_running);
  ASSERT_TRUE(RunUntil([&] { return !job.IsRunning(); }));
  EXPECT_FALSE(context_.job_flags.is_running);

  pages_.On(QStringLiteral("nav"), [&job_pages](FakePageHost& host) {
    host.BeginNavigation();
    job_pages.Host(0).FailNavigation(QStringLiteral("http://x/"), 500);
    job_pages.Host(0).FailNavigation(QStringLiteral("http://x/"), 500);
    job_pages.Host(0).LoadPage();
    job_pages.Host(0).OpenPopup();
    host.Later([&host] { host.EndNavigation(); });
  });
  Run({"nav(\"a\")", "set_name(\"n,\")"});
  EXPECT_EQ(runner_->End(), RunEnd::kAllLinesDone) << runner_->Log().Text().toStdString();
  EXPECT_EQ(pages_.calls.last(), QStringLiteral("SetElementValue(n, , false)"));
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

}  // namespace
}  // namespace quayline
