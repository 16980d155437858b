// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QComboBox>
#include <QLineEdit>
#include <QLockFile>
#include <QPushButton>

#include <gtest/gtest.h>

#include "main_fixture.h"

namespace quayline::testing {
namespace {

TEST_F(MainWindowTest, ASecondCopyIsToldThatItTakesTheListOfTheFirst) {
  Start();
  EXPECT_TRUE(prompts_.shown.isEmpty());
  window_.reset();
  QLockFile other(folder_.Path("quayline.lock"));
  ASSERT_TRUE(other.tryLock(0)) << "the copy that has gone holds the folder";
  Start();
  ASSERT_EQ(prompts_.shown.size(), 1);
  EXPECT_TRUE(prompts_.shown.first().contains(QStringLiteral("open already")));
}

TEST_F(MainWindowTest, AnUpdateWithoutARouterMakesNoZerosOfThePorts) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|80|90|TCP|x\r\nB|1.1.1.1()|25|25|TCP|x\r\n");
  folder_.WriteFile("settings.ini", "[main]\r\nrouterip=10.0.0.1\r\n");
  Start();
  const QList<PortEntry> before = context_->port_list.Entries();
  Find<QPushButton>("Command8")->click();
  EXPECT_EQ(jobs_.size(), 1);
  EXPECT_EQ(context_->port_list.Entries(), before);
}

TEST_F(MainWindowTest, TheRouterThatIsShownIsTheOneThatAnUpdateUses) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|80|80|TCP|x\r\n");
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  Start();
  struct Row {
    const char* typed;
    const char* shown;
    int router_id;
  };
  constexpr Row kRows[] = {
      {"alp", "Alpha 1", 3}, {"beta 2", "Beta 2", 7}, {"nonsense", "Beta 2", 7}, {"", "", 7}};
  for (const Row& row : kRows) {
    Find<QComboBox>("Combo1")->setEditText(QLatin1String(row.typed));
    prompts_.shown.clear();
    Find<QPushButton>("Command8")->click();
    EXPECT_EQ(Find<QComboBox>("Combo1")->currentText(), QLatin1String(row.shown)) << row.typed;
    EXPECT_EQ(context_->session.router_id, row.router_id) << row.typed;
    EXPECT_EQ(prompts_.shown.isEmpty(), *row.shown != '\0') << row.typed;
  }
}

TEST_F(MainWindowTest, ItFitsOnASmallScreenWhereItsRestIsScrolledTo) {
  Start();
  const QSize small(640, 480);
  window_->resize(small);
  EXPECT_EQ(window_->size(), small) << "the main button is beyond the screen";
}

TEST_F(MainWindowTest, WhatIsPastedAsAPortIsNeverGluedTogether) {
  Start();
  Find<QPushButton>("Command1")->click();
  struct Row {
    const char* pasted;
    const char* shown;
  };
  constexpr Row kRows[] = {{" 80 ", "80"}, {"80\n", "80"}, {"80 81", ""}, {"80\n81", ""}};
  const auto* adding = window_->findChild<QDialog*>(QStringLiteral("FrmAddNew"));
  ASSERT_NE(adding, nullptr);
  auto* field = adding->findChild<QLineEdit*>(QStringLiteral("Text2"));
  for (const Row& row : kRows) {
    field->clear();
    field->insert(QLatin1String(row.pasted));
    EXPECT_EQ(field->text(), QLatin1String(row.shown)) << row.pasted;
  }
}

}  // namespace
}  // namespace quayline::testing
