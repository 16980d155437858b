// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include "test_main.h"
#include "ui/job/frm_view_page.h"
#include "window_doubles.h"

namespace quayline::testing {
namespace {

class PageViewWindowTest : public ::testing::Test {
 protected:
  PageViewWindowTest() {
    context_.job_options.throttle = false;
    context_.session.router_ip = QStringLiteral("1.1.1.1");
    context_.session.view_script = {QStringLiteral("nav(\"list\")"), QStringLiteral("comment")};
  }
  ~PageViewWindowTest() override { delete window_.data(); }

  void Open() {
    window_ = new FrmViewPage(
        context_, prompts_,
        [this](QObject* parent) {
          page_ = new FakePage(parent, new QLabel(QStringLiteral("page")));
          page_->hangs = hangs_;
          return page_;
        },
        nullptr);
    window_->open();
  }
  template <typename T>
  T* Find(const char* name) {
    return window_->findChild<T*>(QLatin1String(name));
  }
  QString Log() { return Find<QPlainTextEdit>("Text1")->toPlainText(); }
  bool StandsAt(const char* words) {
    return RunUntil(
        [&] { return Find<QLabel>("label_entry")->text().contains(QLatin1String(words)); });
  }

  ProgramFolder folder_;
  FakePrompts prompts_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  bool hangs_ = false;
  QPointer<FakePage> page_;
  QPointer<FrmViewPage> window_;
};

TEST_F(PageViewWindowTest, ThePageStaysInViewBehindTheScript) {
  Open();
  EXPECT_EQ(Find<QPlainTextEdit>("Text2")->toPlainText(),
            QStringLiteral("Router Status: Loading...\n"));
  ASSERT_TRUE(StandsAt("The script has run"));
  EXPECT_TRUE(Log().contains(QStringLiteral("Step 02. comment")));
  EXPECT_TRUE(page_->Widget()->isVisible());
  EXPECT_FALSE(Find<QPushButton>("command_stop")->isEnabled());
  EXPECT_FALSE(Find<QPushButton>("Command1")->isVisible());
  Q_EMIT page_->statusTextChanged(QStringLiteral("Done"));
  EXPECT_TRUE(Find<QPlainTextEdit>("Text2")->toPlainText().endsWith(
      QStringLiteral("\nRouter Status: Done")));
}

TEST_F(PageViewWindowTest, ClosingInTheMiddleOfAPageEndsTheScriptAndCutsNoSaveOff) {
  hangs_ = true;
  Open();
  ASSERT_TRUE(RunUntil([this] { return Log().contains(QStringLiteral("nav(\"list\")")); }));
  EXPECT_TRUE(context_.job_flags.is_running);
  QTest::keyClick(window_, Qt::Key_Escape);
  EXPECT_FALSE(RunUntil([this] { return page_.isNull(); }, std::chrono::milliseconds(300)));
  EXPECT_FALSE(window_->isVisible());
  page_->Arrive();
  ASSERT_TRUE(RunUntil([this] { return window_.isNull(); }));
  EXPECT_TRUE(page_.isNull());
  EXPECT_TRUE(context_.job_flags.JobStopRequested());
  EXPECT_FALSE(context_.job_flags.is_running) << "the next run would be refused";
}

TEST_F(PageViewWindowTest, StopFreesTheScriptAheadOfItsFirstStepAndInAHangingPage) {
  hangs_ = true;
  for (const bool at_once : {true, false}) {
    Open();
    if (!at_once) {
      ASSERT_TRUE(RunUntil([this] { return Log().contains(QStringLiteral("Step 01")); }));
    }
    Find<QPushButton>("command_stop")->click();
    EXPECT_TRUE(StandsAt("Stopped"));
    EXPECT_EQ(Log().contains(QStringLiteral("Step 01")), !at_once);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_FALSE(context_.job_flags.is_running);
    delete window_.data();
  }
}

TEST_F(PageViewWindowTest, APopupTakesThePlaceOfThePageAndGivesItBack) {
  Open();
  ASSERT_TRUE(StandsAt("The script has run"));
  auto* popup = new FakePage(nullptr, new QLabel(QStringLiteral("popup")));
  const QPointer<QWidget> view = popup->Widget();
  Q_EMIT page_->newWindow(popup);
  EXPECT_TRUE(view->isVisible());
  EXPECT_FALSE(page_->Widget()->isVisible());
  QTimer::singleShot(0, popup, [popup] { Q_EMIT popup->windowClosing(); });
  EXPECT_TRUE(RunUntil([&] { return view.isNull(); }));
  EXPECT_TRUE(page_->Widget()->isVisible());
}

TEST_F(PageViewWindowTest, DebugModeHoldsEachStepAndItsButtonLeadsOn) {
  context_.job_options.debug_mode = true;
  Open();
  auto* proceed = Find<QPushButton>("Command1");
  for (int step = 1; step <= 2; ++step) {
    ASSERT_TRUE(RunUntil([&] { return proceed->isEnabled(); }));
    EXPECT_EQ(Log().count(QStringLiteral("Step ")), step);
    proceed->click();
  }
  ASSERT_TRUE(StandsAt("The script has run"));
  EXPECT_FALSE(proceed->isEnabled());
}

TEST_F(PageViewWindowTest, ARouterWithoutAScriptIsToldAndNothingIsLoaded) {
  context_.session.view_script.clear();
  Open();
  EXPECT_TRUE(StandsAt("There is no script"));
  EXPECT_EQ(Log(), QString());
  EXPECT_FALSE(context_.job_flags.is_running);
}

}  // namespace
}  // namespace quayline::testing
