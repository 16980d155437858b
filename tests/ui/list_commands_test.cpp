// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/list_commands.h"

#include <QDialog>
#include <QDir>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
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

TEST_F(ListCommandsTest, AMissingListMakesAnEmptyFileAndALostFolderIsToldOnce) {
  list_.LoadAtStart();
  EXPECT_TRUE(QFile::exists(folder_.Path("list.qyl")));
  QDir(folder_.dir.path()).removeRecursively();
  QSignalSpy written(&list_, &ListCommands::listWritten);
  list_.Keep();
  list_.Keep();
  EXPECT_EQ(prompts_.shown.size(), 1);
  EXPECT_EQ(written.size(), 2) << "the totals are due all the same";
}

TEST_F(ListCommandsTest, SeveralRowsGoAtOnceAndAreNamedUpToALimit) {
  QByteArray file;
  for (int i = 1; i <= 12; ++i) {
    file += "R" + QByteArray::number(i) + "|||||\r\n";
  }
  folder_.WriteFile("list.qyl", file);
  list_.LoadAtStart();
  prompts_.answers = {true, true};
  list_.Remove({11, 1, 99});
  EXPECT_EQ(prompts_.shown.last(),
            QStringLiteral("Ask: Confirm Delete:: Are You Sure You Want To Delete These 2 "
                           "Entries?\nR12\nR2"));
  EXPECT_EQ(Names().join(u' '), QStringLiteral("R1 R3 R4 R5 R6 R7 R8 R9 R10 R11"));
  context_.port_list.Append({{.app_name = QString(200, u'x')}});
  list_.Remove({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_TRUE(prompts_.shown.last().endsWith(QStringLiteral("R11\n...")));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), "");
}

TEST_F(MainWindowTest, ManyRowsAreRemovedByOneKeyAndTheNextOneIsSelected) {
  folder_.WriteFile("list.qyl", QByteArray(kTwoRows) + "C|||||\r\nD|||||\r\n");
  Start();
  auto* list = Find<HintedList>("ListView1");
  window_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  list->setFocus();
  list->setCurrentIndex(context_->port_list.index(1, 0));
  QTest::keyClick(list, Qt::Key_Down, Qt::ShiftModifier);
  prompts_.answers = {true};
  QTest::keyClick(list, Qt::Key_Delete);
  ASSERT_EQ(context_->port_list.rowCount(), 2);
  EXPECT_EQ(context_->port_list.Entries().last().app_name, QStringLiteral("D"));
  EXPECT_EQ(list->selectionModel()->selectedRows().size(), 1);
}

TEST_F(MainWindowTest, InsertAddsEnterEditsAndEveryChangeIsInTheFile) {
  folder_.WriteFile("list.qyl", kTwoRows);
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Alpha 1\r\n");
  Start();
  window_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  auto* list = Find<HintedList>("ListView1");
  list->setFocus();
  list->setCurrentIndex(context_->port_list.index(1, 0));
  QTest::keyClick(list, Qt::Key_Return);
  auto* edit = Find<QDialog>("FrmEdit");
  edit->findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(QStringLiteral("New"));
  edit->findChild<QAbstractButton*>(QStringLiteral("Command1"))->click();
  EXPECT_TRUE(folder_.ReadFile("list.qyl").contains("\r\nNew|1.1.1.2()|2|2|UDP|y"));
  ASSERT_TRUE(RunUntil([&] { return window_->findChild<QDialog*>() == nullptr; }));
  window_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  list->setFocus();
  QTest::keyClick(list, Qt::Key_Insert);
  EXPECT_TRUE(Find<QDialog>("FrmAddNew")->isVisible());
}

TEST_F(MainWindowTest, ADroppedListIsOpenedAndNothingElseIsTaken) {
  folder_.WriteFile("list.qyl", kTwoRows);
  folder_.WriteFile("Other.QYL", "C|1.1.1.3()|3|3|TCP|z\r\n");
  Start();
  const auto drop = [this](const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window_->Main(), &enter);
    if (enter.isAccepted()) {
      QDropEvent dropped({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
      QCoreApplication::sendEvent(&window_->Main(), &dropped);
    }
    return enter.isAccepted();
  };
  const QUrl other = QUrl::fromLocalFile(folder_.Path("Other.QYL"));
  EXPECT_FALSE(drop({other, other}));
  EXPECT_FALSE(drop({QUrl(QStringLiteral("http://127.0.0.1/x.qyl"))}));
  EXPECT_FALSE(drop({QUrl::fromLocalFile(folder_.Path("settings.ini"))}));
  EXPECT_TRUE(drop({QUrl::fromLocalFile(folder_.Path("missing.qyl"))}));
  EXPECT_TRUE(prompts_.shown.last().startsWith(QStringLiteral("Tell: This list cannot be opened")));
  EXPECT_EQ(context_->port_list.rowCount(), 2);
  prompts_.answers = {true};
  EXPECT_TRUE(drop({other}));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), "C|1.1.1.3()|3|3|TCP|z\r\n");
}

TEST_F(MainWindowTest, ADrawnColumnKeepsItsWidthAndTheOthersFollowTheirTexts) {
  folder_.WriteFile("list.qyl", kTwoRows);
  folder_.WriteFile("settings.ini", "[main]\r\nlistcolumns=-5,x,99999999999\r\n");
  Start();
  auto* list = Find<HintedList>("ListView1");
  const int own = list->columnWidth(0);
  EXPECT_GT(own, 16) << "a stored width that is none";
  EXPECT_LT(list->columnWidth(2), 2000);
  list->header()->resizeSection(1, 222);
  context_->port_list.Replace(0, {.app_name = QString(30, u'x')});
  Find<QAbstractButton>("zCommand6")->click();
  window_->Main().Unload();
  Start();
  list = Find<HintedList>("ListView1");
  EXPECT_EQ(list->columnWidth(1), 222);
  EXPECT_EQ(list->columnWidth(0), own);
  Q_EMIT list->header()->sectionHandleDoubleClicked(1);
  window_->Main().Unload();
  EXPECT_FALSE(Stored(setting::kListColumns).contains(QStringLiteral("222")));
}

TEST_F(MainWindowTest, DetectRouterIpTakesTheGatewayOfTheAdapterInUse) {
  folder_.WriteFile("settings.ini", "[main]\r\nrouterip=9.9.9.9\r\n");
  folder_.adapters.adapters = {{.description = QStringLiteral("eth0"),
                                .address = QStringLiteral("10.0.0.7"),
                                .mask = QStringLiteral("255.0.0.0"),
                                .gateway = QStringLiteral("10.0.0.1")}};
  Start();
  Find<QAbstractButton>("zCommand3")->click();
  auto* chooser = Find<QDialog>("FrmNetworkList");
  chooser->findChild<QAbstractButton*>(QStringLiteral("Command1"))->click();
  EXPECT_EQ(Stored(setting::kRouterIp), QStringLiteral("10.0.0.1"));
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
