// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/list_commands.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QSignalSpy>

#include "main_fixture.h"
#include "ui/toolkit/controls.h"

namespace quayline::testing {
namespace {

constexpr char kOneRow[] = "C|1.1.1.3()|3|3|TCP|z\r\n";
constexpr char kTwoRows[] = "A|1.1.1.1()|1|1|TCP|x\r\nB|1.1.1.2()|2|2|UDP|y\r\n";

class ListCommandsTest : public WindowTest {
 protected:
  void Load(const QByteArray& rows) {
    folder_.WriteFile("list.qyl", rows);
    list_.LoadAtStart();
  }
  QByteArray File() const { return folder_.ReadFile("list.qyl"); }

  QWidget parent_;
  ListCommands list_{*context_, prompts_, &parent_};
  QSignalSpy written_{&list_, &ListCommands::listWritten};
};

TEST_F(ListCommandsTest, RemovingAsksAndANoKeepsTheRows) {
  list_.RemoveAll();  // of nothing
  Load(kTwoRows);
  prompts_.answers = {false, false, true, true};
  list_.Remove({1});
  list_.RemoveAll();
  EXPECT_EQ(File(), kTwoRows);
  list_.Remove({0});
  EXPECT_EQ(File(), "B|1.1.1.2()|2|2|UDP|y\r\n");
  list_.Remove({-1});
  list_.Remove({1});  // neither is there
  list_.RemoveAll();
  const std::string one = "Ask: Confirm Delete:: Are You Sure You Want To Delete This Entry?\n";
  const auto all = StartsWith("Ask: Confirm Delete:: ");
  EXPECT_THAT(prompts_.shown, ElementsAre(one + "B", all, one + "A", all));
  EXPECT_EQ(Rows(), "");
  EXPECT_TRUE(QFile::exists(folder_.Path("list.qyl")));
  EXPECT_EQ(File(), "");
}

TEST_F(ListCommandsTest, SeveralRowsGoAtOnceAndAreNamedUpToALimit) {
  QByteArray rows;
  for (int i = 1; i <= 12; ++i) {
    rows += "R" + QByteArray::number(i) + "|||||\r\n";
  }
  Load(rows);
  prompts_.answers = {true, true};
  list_.Remove({11, 1, 99});
  EXPECT_EQ(prompts_.shown.back(),
            "Ask: Confirm Delete:: Are You Sure You Want To Delete These 2 Entries?\nR12\nR2");
  EXPECT_EQ(File(), rows.replace("R12|||||\r\n", "").replace("R2|||||\r\n", ""));
  context_->port_list.Append({{.app_name = QString(200, u'x')}});
  list_.Remove({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_THAT(prompts_.shown.back(), EndsWith("R11\n..."));
  EXPECT_EQ(File(), "");
}

TEST_F(ListCommandsTest, AnOpenedListIsTheWorkingListAtOnceAndOneThatCannotBeOpenedIsNot) {
  Load(kTwoRows);
  folder_.WriteFile("other.qyl", "C|1.1.1.3()|3|3|TCP|z|extra\r\n\r\n");
  prompts_.files = {folder_.Path("missing.qyl"), folder_.dir.path()};
  for (int i = 0; i < 3; ++i) {  // the third is cancelled
    list_.Open();
  }
  EXPECT_EQ(context_->port_list.rowCount(), 2);
  EXPECT_EQ(File(), kTwoRows);
  EXPECT_EQ(written_.size(), 1);
  prompts_.files = {folder_.Path("other.qyl")};
  list_.Open();
  EXPECT_EQ(Rows(), "C 1.1.1.3() 3-3 TCP z");
  EXPECT_EQ(File(), kOneRow);
  EXPECT_EQ(written_.size(), 2);
  const auto asked = StartsWith("Open: ");
  const auto told = StartsWith("Tell: This list cannot be opened");
  EXPECT_THAT(prompts_.shown, ElementsAre(asked, told, asked, told, asked, asked));
}

TEST_F(ListCommandsTest, LinesThatAreNoEntriesAreShownBeforeAnythingIsReplaced) {
  const QByteArray broken =
      "only text\r\n" + QByteArray(kOneRow) + "D|1.1.1.4()|70000|70000|TCP|\r\n";
  const struct {
    qsizetype choice;
    QByteArray list;
  } rows[] = {{2, kTwoRows},
              {0, kOneRow},
              {1, "only text|||||\r\n" + QByteArray(kOneRow) + "D|1.1.1.4()|70000|70000|TCP|\r\n"}};
  folder_.WriteFile("other.qyl", broken);
  for (const auto& row : rows) {
    context_->port_list.SetEntries({});
    Load(kTwoRows);
    for (const bool is_offered : {false, true}) {
      prompts_.shown.clear();
      prompts_.choices = {row.choice};
      int opened = 0;
      is_offered ? list_.OfferFile(folder_.Path("other.qyl"))
                 : list_.OpenFile(folder_.Path("other.qyl"), [&opened] { ++opened; });
      EXPECT_EQ(File(), row.list);
      EXPECT_EQ(opened, !is_offered && row.choice < 2 ? 1 : 0);
      if (!is_offered || row.choice != 1) {  // otherwise the same rows again
        EXPECT_THAT(prompts_.shown, ElementsAre(AllOf(HasSubstr("Line 1: only text\nLine 3: D|"),
                                                      Not(HasSubstr("Line 2")))));
      }
    }
  }
  EXPECT_EQ(folder_.ReadFile("other.qyl"), broken);
}

TEST_F(ListCommandsTest, SavingWritesTheCopyAndNotTheWorkingList) {
  list_.SaveAs();
  Load(kTwoRows);
  folder_.WriteFile("list.qyl", "untouched");
  prompts_.files = {folder_.Path("copy.qyl"), folder_.Path("no/such/folder.qyl")};
  list_.SaveAs();
  EXPECT_EQ(folder_.ReadFile("copy.qyl"), kTwoRows);
  list_.SaveAs();
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: The list is empty, there is nothing to save.",
                                          "Save: Select a file", "Save: Select a file",
                                          StartsWith("Tell: The list cannot be saved.")));
  EXPECT_EQ(File(), "untouched");
}

TEST_F(ListCommandsTest, AMissingListMakesAnEmptyFileAndALostFolderIsReportedOnce) {
  list_.LoadAtStart();
  EXPECT_TRUE(QFile::exists(folder_.Path("list.qyl")));
  QDir(folder_.dir.path()).removeRecursively();
  written_.clear();
  list_.Keep();
  context_->port_list.Append(ParsePortList(kOneRow));
  list_.Keep();
  EXPECT_THAT(prompts_.shown, SizeIs(1));
  EXPECT_EQ(written_.size(), 2) << "the totals have to be updated all the same";
  QDir().mkpath(folder_.dir.path());
  list_.Finish();
  EXPECT_EQ(File(), kOneRow) << "what could not be stored is stored when that is possible";
}

TEST_F(ListCommandsTest, WhatWasRemovedOrReplacedComesBackWithItsFile) {
  folder_.WriteFile("other.qyl", kOneRow);
  Load(kTwoRows);
  EXPECT_FALSE(list_.CanUndo()) << "the start is no change";
  prompts_.answers = {true};
  list_.RemoveAll();
  list_.OpenFile(folder_.Path("other.qyl"));
  list_.Undo();
  EXPECT_EQ(File(), "");
  list_.Undo();
  EXPECT_EQ(File(), kTwoRows);
  EXPECT_EQ(context_->port_list.rowCount(), 2);
  list_.Redo();
  list_.Redo();
  EXPECT_EQ(File(), kOneRow);
  list_.Redo();
  EXPECT_EQ(context_->port_list.rowCount(), 1) << "there is nothing more";
}

TEST_F(ListCommandsTest, AnOfferedListAsksForTheOneThatItReplaces) {
  folder_.WriteFile("other.qyl", kOneRow);
  list_.OfferFile(folder_.Path("other.qyl"));
  EXPECT_EQ(File(), kOneRow);
  list_.OfferFile(folder_.Path("other.qyl"));
  EXPECT_THAT(prompts_.shown, IsEmpty()) << "an empty list, and the same rows again";
  folder_.WriteFile("other.qyl", kTwoRows);
  prompts_.answers = {false, true};
  list_.OfferFile(folder_.Path("other.qyl"));
  EXPECT_THAT(prompts_.shown,
              ElementsAre("Ask: Open List: Put the ports of \"other.qyl\" in place of those in "
                          "your list?\n\nEntries now: 1, then: 2."));
  EXPECT_EQ(File(), kOneRow);
  list_.OfferFile(folder_.Path("other.qyl"));
  EXPECT_EQ(File(), kTwoRows);
}

TEST_F(ListCommandsTest, AListThatChangedOnTheDiskIsNotOverwrittenUnasked) {
  const QByteArray added = "N|||||\r\n";
  const struct {
    qsizetype choice;
    QByteArray list, copy;
  } rows[] = {{0, kTwoRows + added, kOneRow},
              {1, kOneRow, kTwoRows + added},
              {2, kTwoRows + added + kOneRow, kOneRow}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.choice);
    QFile::remove(folder_.Path("list-other.qyl"));
    context_->port_list.SetEntries({});
    Load(kTwoRows);
    folder_.WriteFile("list.qyl", kOneRow);
    context_->port_list.Append({{.app_name = u"N"_s}});
    prompts_.shown.clear();
    prompts_.choices = {row.choice};
    list_.Keep();
    EXPECT_THAT(prompts_.shown, ElementsAre(AllOf(StartsWith("Choose: List Changed: "),
                                                  HasSubstr("\"list-other.qyl\""))));
    EXPECT_EQ(File(), row.list);
    EXPECT_EQ(folder_.ReadFile("list-other.qyl"), row.copy);
    EXPECT_EQ(FormatPortList(context_->port_list.Entries()), row.list);
    list_.Keep();
    EXPECT_THAT(prompts_.shown, SizeIs(1)) << "it is asked once";
  }
}

TEST_F(ListCommandsTest, AnotherListOfTheSameRowsAndOneThatIsGoneAreNoQuestion) {
  Load(kTwoRows);
  folder_.WriteFile("list.qyl", QByteArray(kTwoRows).replace("\r\n", "\n") + kOneRow);
  context_->port_list.Append(ParsePortList(kOneRow));
  list_.Keep();
  EXPECT_EQ(File(), QByteArray(kTwoRows) + kOneRow);
  QFile::remove(folder_.Path("list.qyl"));
  list_.Keep();
  EXPECT_EQ(File(), QByteArray(kTwoRows) + kOneRow);
  EXPECT_THAT(prompts_.shown, IsEmpty());
}

TEST_F(ListCommandsTest, ACopyThatCannotBeKeptLeavesBothLists) {
  Load(kTwoRows);
  folder_.WriteFile("list.qyl", kOneRow);
  prompts_.choices = {0, 1, 2};
  OnFullDisk(0, [this] {
    for (int i = 0; i < 3; ++i) {
      list_.Keep();
    }
    return true;
  });
  EXPECT_EQ(File(), kOneRow);
  EXPECT_EQ(FormatPortList(context_->port_list.Entries()), kTwoRows);
  list_.Finish();
  EXPECT_EQ(folder_.ReadFile("list-other.qyl"), kTwoRows) << "at the end nothing may be lost";
  list_.Keep();
  EXPECT_EQ(prompts_.shown.size(), 5) << "four questions, and told once";
  EXPECT_EQ(File(), QByteArray(kTwoRows) + kOneRow);
}

TEST_F(ListCommandsTest, AListThatCannotBeReadOutlivesTheFirstChange) {
  QDir(folder_.dir.path()).mkdir(u"list.qyl"_s);
  folder_.WriteFile("list.qyl/proof", "kept");
  folder_.WriteFile("list-unread.qyl", "of an earlier time");
  folder_.WriteFile("other.qyl", kOneRow);
  list_.LoadAtStart();
  EXPECT_EQ(written_.size(), 1) << "the totals are due all the same";
  EXPECT_EQ(folder_.ReadFile("list.qyl/proof"), "kept") << "looking changes nothing";
  list_.OpenFile(folder_.Path("other.qyl"));
  EXPECT_EQ(folder_.ReadFile("list-unread-2.qyl/proof"), "kept");
  EXPECT_EQ(File(), kOneRow);
  EXPECT_EQ(folder_.ReadFile("list-unread.qyl"), "of an earlier time");
  EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr("\"list-unread-2.qyl\"")));
}

class ListOnScreenTest : public MainWindowTest {
 protected:
  // Of four rows the second is selected.
  void StartWithRows() {
    folder_.WriteFile("list.qyl", QByteArray(kTwoRows) + "C|||||\r\nD|||||\r\n");
    Start("router=Alpha 1\r\n");
    Activate();
    list_ = Find<HintedList>("port_list_view");
    EXPECT_EQ(list_->currentIndex().row(), 0) << "a row is selected from the start";
    list_->setCurrentIndex(context_->port_list.index(1, 0));
  }

  HintedList* list_ = nullptr;
};

TEST_F(ListOnScreenTest, TheDeleteKeyRemovesRowsInTheListAndEditsInAField) {
  StartWithRows();
  Press("router_ip_edit", Qt::Key_Delete);
  Press("router_ip_edit", Qt::Key_Return);
  EXPECT_THAT(prompts_.shown, IsEmpty());
  EXPECT_EQ(window_->findChild<QDialog*>(), nullptr);
  prompts_.answers = {true, true};
  Press("port_list_view", Qt::Key_Down, Qt::ShiftModifier);
  Press("port_list_view", Qt::Key_Delete);
  EXPECT_EQ(Rows(), "A 1.1.1.1() 1-1 TCP x; D  -  ");
  EXPECT_EQ(list_->selectionModel()->selectedRows().size(), 1);
  list_->setCurrentIndex(context_->port_list.index(1, 0));
  Press("port_list_view", Qt::Key_Delete);
  EXPECT_EQ(Rows(), "A 1.1.1.1() 1-1 TCP x");
  EXPECT_EQ(list_->currentIndex().row(), 0);
}

TEST_F(ListOnScreenTest, UndoWorksInEveryFieldAndKeepsTheSelection) {
  StartWithRows();
  prompts_.answers = {true};
  list_->setCurrentIndex(context_->port_list.index(0, 0));
  Press("port_list_view", Qt::Key_Delete);
  list_->setCurrentIndex(context_->port_list.index(2, 0));
  Press("router_box", Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(context_->port_list.rowCount(), 4);
  EXPECT_EQ(context_->port_list.Entries().at(list_->currentIndex().row()).app_name, u"D"_s);
  EXPECT_EQ(list_->selectionModel()->selectedRows().size(), 1);
  Press("username_edit", Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(context_->port_list.rowCount(), 3);
  Type("username_edit", "me");
  Press("username_edit", Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(TextOf("username_edit"), "") << "a field that was edited comes first";
  EXPECT_EQ(context_->port_list.rowCount(), 3);
}

TEST_F(ListOnScreenTest, InsertAddsEnterEditsAndEveryChangeIsInTheFile) {
  StartWithRows();
  Press("port_list_view", Qt::Key_Return);
  auto* edit = Find<QDialog>("EditEntryDialog");
  Child(edit, "name_edit")->setProperty("text", u"New"_s);
  Child<QAbstractButton>(edit, "update_button")->click();
  EXPECT_TRUE(folder_.ReadFile("list.qyl").contains("\r\nNew|1.1.1.2()|2|2|UDP|y\r\nC|"));
  ASSERT_TRUE(RunUntil([&] { return window_->findChild<QDialog*>() == nullptr; }));
  Activate();
  Press("port_list_view", Qt::Key_Insert);
  EXPECT_TRUE(Find("AddEntryDialog")->isVisible());
}

TEST_F(ListOnScreenTest, ADroppedListIsOpenedAndNothingElseIsTaken) {
  folder_.WriteFile("Other.QYL", kOneRow);
  StartWithRows();
  const auto drop = [this](const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&main_->Main(), &enter);
    if (enter.isAccepted()) {
      QDropEvent dropped({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
      QCoreApplication::sendEvent(&main_->Main(), &dropped);
    }
    return enter.isAccepted();
  };
  const QUrl other = QUrl::fromLocalFile(folder_.Path("Other.QYL"));
  EXPECT_FALSE(drop({other, other}));
  EXPECT_FALSE(drop({QUrl(u"http://127.0.0.1/x.qyl"_s)}));
  EXPECT_FALSE(drop({QUrl::fromLocalFile(folder_.Path("settings.ini"))}));
  EXPECT_TRUE(drop({QUrl::fromLocalFile(folder_.Path("missing.qyl"))}));
  EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith("Tell: This list cannot be opened")));
  EXPECT_EQ(context_->port_list.rowCount(), 4);
  prompts_.answers = {true};
  EXPECT_TRUE(drop({other}));
  EXPECT_EQ(folder_.ReadFile("list.qyl"), kOneRow);
}

TEST_F(ListOnScreenTest, ADrawnColumnKeepsItsWidthAndTheOthersFollowTheirTexts) {
  folder_.WriteFile("list.qyl", kTwoRows);
  Start("listcolumns=5,-5,99999\r\n");
  auto* list = Find<HintedList>("port_list_view");
  const int own = list->columnWidth(0);
  EXPECT_GT(own, 16) << "a stored width that is invalid";
  EXPECT_LT(list->columnWidth(2), 2000);
  list->header()->resizeSection(1, 222);
  context_->port_list.Replace(0, {.app_name = QString(30, u'x')});
  Click("open_button");
  Start();
  list = Find<HintedList>("port_list_view");
  EXPECT_EQ(list->columnWidth(1), 222);
  EXPECT_EQ(list->columnWidth(0), own);
  Q_EMIT list->header()->sectionHandleDoubleClicked(1);
  main_->Main().Unload();
  EXPECT_THAT(Stored(setting::kListColumns), Not(HasSubstr("222")));
}

}  // namespace
}  // namespace quayline::testing
