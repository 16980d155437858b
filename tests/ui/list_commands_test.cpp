// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/list_commands.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include "main_fixture.h"
#include "ui/toolkit/controls.h"

namespace quayline::testing {
namespace {

constexpr char kTwoRows[] = "A|1.1.1.1()|1|1|TCP|x\r\nB|1.1.1.2()|2|2|UDP|y\r\n";

class ListCommandsTest : public ::testing::Test {
 protected:
  void LoadTwoRows() {
    folder_.WriteFile("list.qyl", kTwoRows);
    list_.LoadAtStart();
    ASSERT_EQ(context_.port_list.rowCount(), 2);
  }
  QStringList Names() const {
    QStringList names;
    for (const PortEntry& entry : context_.port_list.Entries()) {
      names.append(entry.app_name);
    }
    return names;
  }

  ProgramFolder folder_;
  FakePrompts prompts_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  QWidget window_;
  ListCommands list_{context_, prompts_, &window_};
};

TEST_F(ListCommandsTest, RemoveAsksForTheRowByNameAndANoKeepsIt) {
  LoadTwoRows();
  prompts_.answers = {false, true};
  list_.Remove({1});
  EXPECT_EQ(prompts_.shown.last(),
            QStringLiteral("Ask: Confirm Delete:: Are You Sure You Want To Delete This Entry?\nB"));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kTwoRows);
  list_.Remove({0});
  EXPECT_EQ(Names(), QStringList(QStringLiteral("B")));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), "B|1.1.1.2()|2|2|UDP|y\r\n");
  prompts_.shown.clear();
  list_.Remove({-1});
  list_.Remove({1});
  EXPECT_TRUE(prompts_.shown.isEmpty()) << "rows that are not there";
}

TEST_F(ListCommandsTest, RemoveAllLeavesAnEmptyFileAndAsksOnlyWithRows) {
  list_.RemoveAll();
  EXPECT_TRUE(prompts_.shown.isEmpty());
  LoadTwoRows();
  prompts_.answers = {false, true};
  list_.RemoveAll();
  EXPECT_EQ(Names().size(), 2);
  list_.RemoveAll();
  EXPECT_TRUE(Names().isEmpty());
  EXPECT_TRUE(QFile::exists(folder_.Path("list.qyl")));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), "");
}

TEST_F(ListCommandsTest, AnOpenedListIsTheWorkingListAtOnce) {
  LoadTwoRows();
  folder_.WriteFile("other.qyl", "C|1.1.1.3()|3|3|TCP|z|extra\r\n\r\nD");
  prompts_.files = {folder_.Path("other.qyl")};
  QSignalSpy written(&list_, &ListCommands::listWritten);
  list_.Open();
  EXPECT_EQ(Names(), QStringList({QStringLiteral("C"), QStringLiteral("D")}));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), "C|1.1.1.3()|3|3|TCP|z\r\nD|||||\r\n");
  EXPECT_EQ(written.size(), 1);
}

TEST_F(ListCommandsTest, AListThatCannotBeOpenedLeavesTheOneThatIsThere) {
  LoadTwoRows();
  prompts_.files = {folder_.Path("missing.qyl"), folder_.dir.path()};
  list_.Open();
  list_.Open();
  list_.Open();  // cancelled
  EXPECT_EQ(prompts_.shown.filter(QStringLiteral("Tell: This list cannot be opened")).size(), 2);
  EXPECT_EQ(Names().size(), 2);
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kTwoRows);
}

TEST_F(ListCommandsTest, SavingWritesTheCopyAndNotTheWorkingList) {
  list_.SaveAs();
  EXPECT_EQ(prompts_.shown,
            QStringList(QStringLiteral("Tell: The list is empty, there is nothing to save.")));
  LoadTwoRows();
  folder_.WriteFile("list.qyl", "untouched");
  prompts_.files = {folder_.Path("copy.qyl"), folder_.Path("no/such/folder.qyl")};
  list_.SaveAs();
  EXPECT_EQ(prompts_.shown.last(), QStringLiteral("Save: Select a file"));
  EXPECT_EQ(folder_.ReadFile("copy.qyl"), kTwoRows);
  list_.SaveAs();
  EXPECT_TRUE(prompts_.shown.last().startsWith(QStringLiteral("Tell: The list cannot be saved.")));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), "untouched");
}

TEST_F(ListCommandsTest, AMissingListMakesAnEmptyFileAndAnUnreadableOneIsKept) {
  list_.LoadAtStart();
  EXPECT_TRUE(QFile::exists(folder_.Path("list.qyl")));
  QFile::remove(folder_.Path("list.qyl"));
  QDir(folder_.dir.path()).mkdir(QStringLiteral("list.qyl"));  // can be neither read nor replaced
  QSignalSpy written(&list_, &ListCommands::listWritten);
  list_.LoadAtStart();
  EXPECT_TRUE(prompts_.shown.isEmpty());
  EXPECT_EQ(written.size(), 1) << "the totals are due all the same";
  context_.port_list.SetEntries({{.app_name = QStringLiteral("A")}});
  list_.Keep();
  list_.Keep();
  EXPECT_EQ(prompts_.shown.size(), 1) << "told once";
}

TEST_F(MainWindowTest, TheDeleteKeyRemovesInTheListAndEditsInAField) {
  folder_.WriteFile("list.qyl", kTwoRows);
  Start();
  auto* list = Find<HintedList>("ListView1");
  EXPECT_EQ(list->currentIndex().row(), 0) << "a row is selected from the start";
  list->setCurrentIndex(context_->port_list.index(1, 0));
  window_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  Find<QWidget>("Text1")->setFocus();
  QTest::keyClick(Find<QWidget>("Text1"), Qt::Key_Delete);
  EXPECT_TRUE(prompts_.shown.isEmpty());
  prompts_.answers = {true};
  list->setFocus();
  QTest::keyClick(list, Qt::Key_Delete);
  ASSERT_EQ(context_->port_list.rowCount(), 1);
  EXPECT_EQ(context_->port_list.Entries().first().app_name, QStringLiteral("A"));
  EXPECT_EQ(list->currentIndex().row(), 0);
}

}  // namespace
}  // namespace quayline::testing
