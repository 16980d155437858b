// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Nothing that the user collected goes without a way back.

#include "main_fixture.h"
#include "ui/main/list_commands.h"

namespace quayline::testing {
namespace {

constexpr char kTwoRows[] = "A|1.1.1.1()|1|1|TCP|x\r\nB|1.1.1.2()|2|2|UDP|y\r\n";
constexpr char kOneRow[] = "C|1.1.1.3()|3|3|TCP|z\r\n";

class ListSafetyTest : public ::testing::Test {
 protected:
  ListSafetyTest() {
    folder_.WriteFile("other.qyl", kOneRow);
    folder_.WriteFile("list.qyl", kTwoRows);
  }

  ProgramFolder folder_;
  FakePrompts prompts_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  QWidget window_;
  ListCommands list_{context_, prompts_, &window_};
};

TEST_F(ListSafetyTest, WhatWasRemovedOrReplacedComesBackWithItsFile) {
  list_.LoadAtStart();
  EXPECT_FALSE(list_.CanUndo()) << "the start is no change";
  prompts_.answers = {true};
  list_.RemoveAll();
  list_.OpenFile(folder_.Path("other.qyl"));
  list_.Undo();
  EXPECT_EQ(folder_.ReadFile("list.qyl"), "");
  list_.Undo();
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kTwoRows);
  EXPECT_EQ(context_.port_list.rowCount(), 2);
  list_.Redo();
  list_.Redo();
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kOneRow);
  list_.Redo();
  EXPECT_EQ(context_.port_list.rowCount(), 1) << "there is nothing more";
}

TEST_F(ListSafetyTest, AnOfferedListAsksForTheOneThatItReplaces) {
  list_.OfferFile(folder_.Path("other.qyl"));
  EXPECT_TRUE(prompts_.shown.isEmpty()) << "an empty list has nothing to lose";
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kOneRow);
  list_.OfferFile(folder_.Path("other.qyl"));
  EXPECT_TRUE(prompts_.shown.isEmpty()) << "the same rows again";
  folder_.WriteFile("other.qyl", kTwoRows);
  prompts_.answers = {false, true};
  list_.OfferFile(folder_.Path("other.qyl"));
  EXPECT_EQ(prompts_.shown.value(0),
            QStringLiteral("Ask: Open List: Put the ports of \"other.qyl\" in place of those in "
                           "your list?\n\nEntries now: 1, then: 2."));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kOneRow);
  list_.OfferFile(folder_.Path("other.qyl"));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kTwoRows);
}

TEST_F(ListSafetyTest, AListThatCannotBeReadOutlivesTheFirstChange) {
  QFile::remove(folder_.Path("list.qyl"));
  QDir(folder_.dir.path()).mkdir(QStringLiteral("list.qyl"));
  folder_.WriteFile("list.qyl/proof", "kept");
  folder_.WriteFile("list-unread.qyl", "of an earlier time");
  list_.LoadAtStart();
  EXPECT_TRUE(prompts_.shown.value(0).contains(QStringLiteral("\"list-unread-2.qyl\"")));
  EXPECT_EQ(folder_.ReadFile("list.qyl/proof"), "kept") << "looking changes nothing";
  list_.OpenFile(folder_.Path("other.qyl"));
  EXPECT_EQ(folder_.ReadFile("list-unread-2.qyl/proof"), "kept");
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kOneRow);
  EXPECT_EQ(folder_.ReadFile("list-unread.qyl"), "of an earlier time");
  EXPECT_EQ(prompts_.shown.size(), 1);
}

}  // namespace
}  // namespace quayline::testing
