// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

#include <gtest/gtest.h>

#include "test_main.h"
#include "ui/job/frm_job_status.h"
#include "window_doubles.h"

namespace quayline::testing {
namespace {

class JobWindowTest : public ::testing::Test {
 protected:
  JobWindowTest() {
    context_.job_options.throttle = false;
    context_.session.router_name = QStringLiteral("Alpha 1");
    context_.session.router_ip = QStringLiteral("1.1.1.1");
    context_.session.update_script = {QStringLiteral("nav(\"one\")"),
                                      QStringLiteral("nav(\"two\")")};
    context_.port_list.SetEntries({Entry("A"), Entry("B")});
  }
  ~JobWindowTest() override { delete window_.data(); }

  static PortEntry Entry(const char* name) {
    return {.app_name = QLatin1String(name),
            .forwarded_to = QStringLiteral("1.1.1.5(x)"),
            .start_port = QStringLiteral("5"),
            .end_port = QStringLiteral("5"),
            .protocol = QStringLiteral("TCP")};
  }

  void Open() {
    window_ = new FrmJobStatus(context_, prompts_, [this](QObject* parent) {
      page_ = new FakePage(parent, new QLabel(QStringLiteral("page")));
      page_->hangs = hangs_;
      return page_;
    });
    window_->show();
  }
  template <typename T>
  T* Find(const char* name) {
    return window_->findChild<T*>(QLatin1String(name));
  }
  QString Log() { return Find<QPlainTextEdit>("Text1")->toPlainText(); }
  bool LogComesTo(const char* text) {
    return RunUntil([&] { return Log().contains(QLatin1String(text)); }, std::chrono::seconds(10));
  }

  ProgramFolder folder_;
  FakePrompts prompts_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  bool hangs_ = false;
  QPointer<FakePage> page_;
  QPointer<FrmJobStatus> window_;
};

TEST_F(JobWindowTest, TheLogBoxHoldsTheWholeLogAndItsEndIsInView) {
  Open();
  EXPECT_EQ(Log(), QStringLiteral("\nRouter: Alpha 1\nLoading Commands..."));
  EXPECT_TRUE(page_->Widget()->isVisible());
  QSignalSpy ended(window_, &FrmJobStatus::jobEnded);
  ASSERT_TRUE(RunUntil([&] { return ended.size() == 1; }));
  QString whole = Log();
  EXPECT_TRUE(whole.contains(QStringLiteral("(Current -  2/2)\nAdding B (TCP)")));
  EXPECT_TRUE(whole.endsWith(QStringLiteral("DONE! (All Commands Finished)-------------------")));
  EXPECT_TRUE(Find<QPlainTextEdit>("Text1")->textCursor().atEnd());
  EXPECT_FALSE(Find<QPushButton>("command_stop")->isEnabled());
  EXPECT_TRUE(Find<QLabel>("label_entry")->text().startsWith(QStringLiteral("Finished")));
}

TEST_F(JobWindowTest, ClosingInTheMiddleOfAPageEndsTheJobAndCutsNoSaveOff) {
  hangs_ = true;
  Open();
  ASSERT_TRUE(LogComesTo("nav(\"one\")"));
  window_->close();
  EXPECT_TRUE(context_.job_flags.JobStopRequested());
  EXPECT_FALSE(RunUntil([&] { return page_.isNull(); }, std::chrono::milliseconds(300)));
  EXPECT_FALSE(window_->isVisible());
  EXPECT_EQ(context_.job_flags.LeavingRuns(), 1);
  page_->Arrive();
  ASSERT_TRUE(RunUntil([&] { return window_.isNull(); }));
  EXPECT_TRUE(page_.isNull());
  EXPECT_EQ(context_.job_flags.LeavingRuns(), 0);
}

TEST_F(JobWindowTest, StopFreesAHangingPageAndTheWindowStays) {
  hangs_ = true;
  Open();
  ASSERT_TRUE(LogComesTo("nav(\"one\")"));
  QSignalSpy ended(window_, &FrmJobStatus::jobEnded);
  Find<QPushButton>("command_stop")->click();
  ASSERT_TRUE(RunUntil([&] { return ended.size() == 1; }));
  EXPECT_FALSE(Log().contains(QStringLiteral("2/2"))) << Log().toStdString();
  EXPECT_TRUE(Find<QLabel>("label_entry")->text().startsWith(QStringLiteral("Stopped")));
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(JobWindowTest, StopAheadOfTheFirstStepLetsNoneBegin) {
  Open();
  Find<QPushButton>("command_stop")->click();
  EXPECT_FALSE(RunUntil([&] { return Log().contains(QStringLiteral("Step")); },
                        std::chrono::milliseconds(700)));
}

TEST_F(JobWindowTest, DebugModeSwitchedOnDuringTheJobShowsTheWayOn) {
  context_.session.update_script = {QStringLiteral("nav(\"one\")"), QStringLiteral("nav(\"two\")"),
                                    QStringLiteral("nav(\"three\")")};
  Open();
  auto* proceed = Find<QPushButton>("Command1");
  EXPECT_FALSE(proceed->isVisible());
  context_.job_options.debug_mode = true;
  ASSERT_TRUE(RunUntil([&] { return proceed->isEnabled(); }));
  EXPECT_TRUE(proceed->isVisible());
  const QString held = Log();
  proceed->click();
  EXPECT_FALSE(proceed->isEnabled());
  EXPECT_TRUE(RunUntil([&] { return Log().size() > held.size(); }));
}

TEST_F(JobWindowTest, APopupIsShownInPlaceOfThePageAndGivesItBack) {
  hangs_ = true;
  Open();
  auto* popup = new FakePage(nullptr, new QLabel(QStringLiteral("popup")));
  QPointer<QWidget> view = popup->Widget();
  Q_EMIT page_->newWindow(popup);
  EXPECT_TRUE(view->isVisible());
  EXPECT_FALSE(page_->Widget()->isVisible());
  QTimer::singleShot(0, popup, [popup] { Q_EMIT popup->windowClosing(); });
  EXPECT_TRUE(RunUntil([&] { return view.isNull(); }));
  EXPECT_TRUE(page_->Widget()->isVisible());
}

TEST_F(JobWindowTest, ErrorsAndStatesAreListedWithoutRepeatingAndTheNoticeDoesNotHoldTheJob) {
  hangs_ = true;
  Open();
  for (const char* text : {"Connecting", "", "Connecting", "Done"}) {
    Q_EMIT page_->statusTextChanged(QLatin1String(text));
  }
  Q_EMIT page_->navigateError(QStringLiteral("http://1.1.1.1/one"), 401);
  EXPECT_EQ(Find<QPlainTextEdit>("Text2")->toPlainText(),
            QStringLiteral("Router Status: Loading...\n\nRouter Status: Connecting\n"
                           "Router Status: Done"));
  const QString errors = Find<QPlainTextEdit>("Text3")->toPlainText();
  EXPECT_TRUE(
      errors.endsWith(QStringLiteral("\nLast Error Status Code: DENIED(401) (http://1.1.1.1/one)")))
      << errors.toStdString();
  ASSERT_EQ(prompts_.shown.size(), 1);
  EXPECT_TRUE(
      prompts_.shown.first().startsWith(QStringLiteral("Notify: You have received an ACCESS")));
}

}  // namespace
}  // namespace quayline::testing
