// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

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
