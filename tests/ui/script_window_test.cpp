// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractItemView>
#include <QCompleter>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>

#include <gtest/gtest.h>

#include "test_main.h"
#include "ui/tools/frm_view_scripts.h"
#include "window_doubles.h"

namespace quayline::testing {
namespace {

class ScriptWindowTest : public ::testing::Test {
 protected:
  ScriptWindowTest() {
    folder_.WriteDatabases({RouterRow(3, QStringLiteral("Alpha 1"), QStringLiteral("admin"))});
    EXPECT_TRUE(context_.databases.Open(folder_.dir.path()));
    SelectRouter(context_.session, *context_.databases.FindRouter(3));
    Open();
  }
  ~ScriptWindowTest() override { delete window_.data(); }

  void Open() {
    delete window_.data();
    window_ = new FrmViewScripts(context_, prompts_, nullptr, [this] { ++writes_; });
    window_->open();
    window_->activateWindow();
  }
  template <typename T>
  T* Find(const char* name) {
    return window_->findChild<T*>(QLatin1String(name));
  }
  ScriptEditor& Update() { return *Find<ScriptEditor>("Text2"); }
  ScriptEditor& View() { return *Find<ScriptEditor>("Text1"); }
  RouterRecord Stored() { return *context_.databases.FindRouter(3); }

  ProgramFolder folder_;
  FakePrompts prompts_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  QPointer<FrmViewScripts> window_;
  int writes_ = 0;
};

TEST_F(ScriptWindowTest, EachButtonWritesItsOwnScriptAndLeavesTheOtherAlone) {
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("Current Scripts For - Alpha 1"));
  EXPECT_EQ(Update().toPlainText(), QStringLiteral("nav(\"one\")\nnav(\"two\")\n"));
  EXPECT_FALSE(View().isVisible());
  View().appendPlainText(QStringLiteral("not to be saved"));
  Update().setPlainText(QStringLiteral("nav(\"\u00a0\u2192\")\n\nx"));
  Find<QPushButton>("Command2")->click();
  EXPECT_EQ(Stored().routercommands, QStringLiteral("nav(\"\u00a0\u2192\")\r\n\r\nx"));
  EXPECT_EQ(Stored().routerportpage, QStringLiteral("nav(\"list\")"));
  EXPECT_FALSE(Find<QPushButton>("Command2")->isEnabled());

  Find<QPushButton>("Command4")->click();
  EXPECT_TRUE(View().isVisible());
  View().clear();
  Find<QPushButton>("Command1")->click();
  EXPECT_EQ(Stored().routerportpage, QString());
  EXPECT_EQ(Stored().routercommands, QStringLiteral("nav(\"\u00a0\u2192\")\r\n\r\nx"));
  EXPECT_EQ(writes_, 2);
  EXPECT_EQ(prompts_.shown, QStringList());
}

TEST_F(ScriptWindowTest, AWriteThatFailsIsToldAndTheTextStays) {
  Update().insertPlainText(QStringLiteral("new"));
  context_.databases.Close();
  Find<QPushButton>("Command2")->click();
  ASSERT_EQ(prompts_.shown.size(), 1);
  EXPECT_TRUE(prompts_.shown[0].startsWith(QStringLiteral("Tell: The script cannot be saved")));
  EXPECT_EQ(writes_, 1) << "what the database holds is read anew in any case";
  EXPECT_TRUE(Find<QPushButton>("Command2")->isEnabled());
  EXPECT_TRUE(Update().document()->isModified());
  context_.session.router_id = 0;
  Open();
  Find<QPushButton>("Command2")->click();
  EXPECT_TRUE(prompts_.shown.last().startsWith(QStringLiteral("Tell: Please choose a router")));
}

TEST_F(ScriptWindowTest, ChangesAreNotThrownAwayUnasked) {
  QTest::keyClicks(&Update(), QStringLiteral("x"));
  window_->close();
  EXPECT_TRUE(window_ && window_->isVisible());
  prompts_.answers = {true};
  window_->close();
  EXPECT_TRUE(RunUntil([this] { return window_.isNull(); }));
  EXPECT_EQ(prompts_.shown.size(), 2);
  Open();
  window_->close();
  EXPECT_TRUE(RunUntil([this] { return window_.isNull(); }));
  EXPECT_EQ(prompts_.shown.size(), 2) << "nothing was changed";
}

TEST_F(ScriptWindowTest, FaultyLinesAreListedWhileTypingAndLeadToTheirPlace) {
  auto* list = Find<QListWidget>("list_findings");
  EXPECT_EQ(list->count(), 0);
  Update().setPlainText(QStringLiteral("nav(\"one\")\nset_nmae(\"a,\")\ntimeout(\"0\")\n"));
  ASSERT_TRUE(RunUntil([&] { return list->count() == 2; }));
  EXPECT_TRUE(list->item(0)->text().startsWith(QStringLiteral("Line 2 (warning): There is no")));
  EXPECT_TRUE(list->item(1)->text().startsWith(QStringLiteral("Line 3: With 0")));
  EXPECT_EQ(Find<QLabel>("label_findings")->text(),
            QStringLiteral("Lines to look at: 2 (errors: 1)"));
  list->setFocus();
  list->setCurrentRow(1);
  EXPECT_EQ(Update().textCursor().selectedText(), QStringLiteral("0"));
  Update().document()->clear();  // the list is a moment behind
  list->setCurrentRow(0);
  EXPECT_EQ(Update().textCursor().selectedText(), QString());
  EXPECT_TRUE(RunUntil([&] { return list->count() == 0; }));
}

bool IsUnderlined(const QTextBlock& block) {
  return std::ranges::any_of(block.layout()->formats(), [](const auto& range) {
    return range.format.underlineStyle() == QTextCharFormat::WaveUnderline;
  });
}

TEST_F(ScriptWindowTest, TheLineThatIsWrongIsMarkedAndOnlyThat) {
  Update().setPlainText(QStringLiteral("nav(\"one\")\nnav(one)\na comment"));
  const auto underlined = [this](int line) {
    return IsUnderlined(Update().document()->findBlockByNumber(line));
  };
  ASSERT_TRUE(RunUntil([&] { return underlined(1); }));
  EXPECT_FALSE(underlined(0));
  EXPECT_FALSE(underlined(2));
}

TEST_F(ScriptWindowTest, NamesAreCompletedAtTheBeginningOfALineOnly) {
  QAbstractItemView* popup = Update().findChild<QCompleter*>()->popup();
  Update().clear();
  QTest::keyClicks(&Update(), QStringLiteral("set_stop_port"));
  ASSERT_TRUE(popup->isVisible()) << "three commands begin so";
  EXPECT_EQ(popup->currentIndex().data().toString(),
            QStringLiteral("set_stop_port(\"field,position\")"));
  QTest::keyClick(popup, Qt::Key_Return);
  EXPECT_EQ(Update().toPlainText(), QStringLiteral("set_stop_port(\"\")"));
  EXPECT_EQ(Find<QLabel>("label_shape_text2")->text(),
            QStringLiteral("set_stop_port(\"field,position\")"));
  QTest::keyClicks(&Update(), QStringLiteral("nav"));
  EXPECT_FALSE(popup->isVisible());
  EXPECT_EQ(Update().toPlainText(), QStringLiteral("set_stop_port(\"nav\")"));
}

}  // namespace
}  // namespace quayline::testing
