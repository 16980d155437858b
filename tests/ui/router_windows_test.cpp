// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QLineEdit>

#include <gtest/gtest.h>

#include "main_fixture.h"

namespace quayline::testing {
namespace {

using RouterWindowsTest = MainWindowTest;

TEST_F(RouterWindowsTest, ThePortsAreLookedAtOnlyWhereThereIsARouterAndNoJob) {
  Start();
  auto* button = Find<QAbstractButton>("Command7");
  Find<QLineEdit>("Text1")->setText(QStringLiteral("0.0.0.0"));
  button->click();
  EXPECT_EQ(prompts_.shown, QStringList(QStringLiteral("Tell: Please Set Router IP.")));
  Find<QLineEdit>("Text1")->setText(QStringLiteral("192.168.1.1"));
  context_->job_flags.is_running = true;
  button->click();
  ASSERT_EQ(prompts_.shown.size(), 2);
  EXPECT_TRUE(prompts_.shown[1].startsWith(QStringLiteral("Tell: An update is running")));
  EXPECT_TRUE(dialog_.isNull());
  EXPECT_FALSE(context_->job_flags.JobStopRequested());

  context_->job_flags.is_running = false;
  context_->job_flags.SetJobStopRequested(true);
  context_->job_flags.view_error_grace = 0;
  button->click();
  ASSERT_TRUE(dialog_);
  EXPECT_TRUE(dialog_->isModal());
  EXPECT_FALSE(context_->job_flags.JobStopRequested());
  EXPECT_EQ(context_->job_flags.view_error_grace, 1);
}

TEST_F(RouterWindowsTest, TheRouterOfTheListIsReadAsOneOfTheBox) {
  Start();
  Find<QAbstractButton>("vkCommand8")->click();
  ASSERT_TRUE(dialog_ && choose_router_);
  choose_router_(7);
  EXPECT_EQ(Find<QComboBox>("Combo1")->currentText(), QStringLiteral("Beta 2"));
  EXPECT_EQ(Find<QLineEdit>("Text2")->text(), QStringLiteral("root"));
  EXPECT_EQ(context_->session.router_id, 7);
  choose_router_(99);  // gone from the database meanwhile
  EXPECT_EQ(context_->session.router_id, 7);
}

TEST_F(RouterWindowsTest, ScriptsThatWereWrittenAreReadAndTheLoginStays) {
  Start();
  Find<QAbstractButton>("vkCommand8")->click();
  choose_router_(3);
  Find<QLineEdit>("Text2")->setText(QStringLiteral("me"));
  Find<QLineEdit>("Text3")->setText(QStringLiteral("my own"));
  Find<QAction>("MenuViewScripts")->trigger();
  ASSERT_TRUE(scripts_written_);
  ASSERT_TRUE(context_->databases.UpdateRouterScripts(3, QStringLiteral("a\r\nb"), QString()));
  scripts_written_();
  EXPECT_EQ(context_->session.update_script,
            (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
  EXPECT_EQ(context_->session.view_script, QStringList());
  EXPECT_EQ(Find<QLineEdit>("Text2")->text(), QStringLiteral("me"));
  EXPECT_EQ(Find<QLineEdit>("Text3")->text(), QStringLiteral("my own"));
  EXPECT_EQ(Stored(setting::kRouterPassword), QStringLiteral("my own"));
}

}  // namespace
}  // namespace quayline::testing
