// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAbstractButton>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTest>

#include <gtest/gtest.h>

#include "test_main.h"
#include "ui/tools/frm_router_list.h"
#include "window_doubles.h"

namespace quayline::testing {
namespace {

class RouterListTest : public ::testing::Test {
 protected:
  void Open(const QStringList& names) {
    QList<QStringList> rows;
    for (const QString& name : names) {
      rows.append(RouterRow(10 + static_cast<int>(rows.size()), name, QStringLiteral("admin")));
    }
    context_.databases.Close();
    folder_.WriteDatabases(rows);
    ASSERT_TRUE(context_.databases.Open(folder_.dir.path()));
    Reopen();
  }
  void Reopen() {
    delete window_.data();
    window_ = new FrmRouterList(context_, prompts_, nullptr, [this](int id) { chosen_ = id; });
    window_->show();
    ASSERT_TRUE(RunUntil([this] { return !Find<QLabel>("Label5")->isVisible(); }));
  }
  ~RouterListTest() override { delete window_.data(); }

  template <typename T>
  T* Find(const char* name) {
    return window_->findChild<T*>(QLatin1String(name));
  }
  QString Selected() { return Find<QListView>("List1")->currentIndex().data().toString(); }
  void Type(const char* text) { QTest::keyClicks(Find<QLineEdit>("Text1"), QLatin1String(text)); }

  ProgramFolder folder_;
  FakePrompts prompts_;
  AppContext context_{folder_.dir.path(), folder_.adapters, folder_.desktop};
  QPointer<FrmRouterList> window_;
  int chosen_ = 0;
};

const QStringList kNames{QStringLiteral("Alpha 1"), QStringLiteral("Beta-20"),
                         QStringLiteral("Gamma (Alpha)"), QStringLiteral("ALPHA 2")};

TEST_F(RouterListTest, FindNextGoesOnAndBeginsAnewOnlyWithTheNextSearch) {
  Open(kNames);
  Type("alpha");
  Find<QLineEdit>("Text1")->blockSignals(true);  // from here on the button alone
  QStringList found;
  context_.router_search_position = 0;
  for (int i = 0; i < 4; ++i) {
    QTest::keyClick(Find<QLineEdit>("Text1"), Qt::Key_Return);
    found.append(Selected());
  }
  EXPECT_EQ(found, (QStringList{kNames[3], kNames[0], kNames[3], kNames[0]}));
  EXPECT_EQ(prompts_.shown, QStringList());
  Find<QCheckBox>("Check2")->setChecked(true);
  QTest::keyClick(Find<QLineEdit>("Text1"), Qt::Key_Return);
  EXPECT_EQ(Selected(), kNames[2]);
  Reopen();
  Type("a");
  EXPECT_EQ(Selected(), kNames[3]) << "the place outlives the window";
}

TEST_F(RouterListTest, TypingDoesNotRunIntoABoxAndOneThatIsRightComesLater) {
  Open(kNames);
  Type("beta");  // each letter searches behind the one name there is
  EXPECT_EQ(Selected(), kNames[1]);
  EXPECT_FALSE(RunUntil([&] { return !prompts_.shown.isEmpty(); }, std::chrono::milliseconds(800)));
  Type("x'<b>");
  EXPECT_EQ(prompts_.shown, QStringList());
  ASSERT_TRUE(RunUntil([&] { return !prompts_.shown.isEmpty(); }));
  EXPECT_EQ(prompts_.shown, QStringList(QStringLiteral("Tell: Find: Could Not Find 'betax'<b>'")));
  EXPECT_EQ(Selected(), kNames[1]);
  Find<QAbstractButton>("Command1")->click();
  EXPECT_EQ(prompts_.shown.size(), 2) << "the button tells at once";
}

TEST_F(RouterListTest, EveryWayOfChoosingHandsOverTheKeyOfTheRow) {
  for (const int way : {0, 1, 2}) {
    Open(kNames);
    chosen_ = 0;
    auto* list = Find<QListView>("List1");
    list->setCurrentIndex(list->model()->index(2, 0));
    if (way == 0) {
      const QPoint place = list->visualRect(list->currentIndex()).center();
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
      QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
    } else if (way == 1) {
      window_->activateWindow();
      list->setFocus();
      QTest::keyClick(list, Qt::Key_Return);
    } else {
      Find<QAbstractButton>("command_choose")->click();
    }
    EXPECT_EQ(chosen_, 12) << way;
    EXPECT_TRUE(RunUntil([this] { return window_.isNull(); })) << way;
  }
}

TEST_F(RouterListTest, AnEmptyTableIsNothingToSearchIn) {
  Open({});
  EXPECT_EQ(Find<QLineEdit>("Text2")->text(), QStringLiteral("Routers Loaded: (0)"));
  Type("a");
  Find<QAbstractButton>("Command1")->click();
  EXPECT_FALSE(Find<QAbstractButton>("command_choose")->isEnabled());
  EXPECT_EQ(prompts_.shown, QStringList());
  EXPECT_EQ(chosen_, 0);
}

TEST_F(RouterListTest, TenThousandNamesAreSearchedBetweenTwoKeys) {
  QStringList names;
  for (int i = 0; i < 10'000; ++i) {
    names.append(QStringLiteral("Harbour HB-%1 (rev. B)").arg(i));
  }
  names.append(QStringLiteral("Zulu"));
  Open(names);
  EXPECT_EQ(Find<QLineEdit>("Text2")->text(), QStringLiteral("Routers Loaded: (10,001)"));
  QElapsedTimer clock;
  clock.start();
  Type("z*lu");
  RecordProperty("milliseconds", static_cast<int>(clock.elapsed()));
  EXPECT_LT(clock.elapsed(), 4 * 50);
  EXPECT_EQ(Selected(), QStringLiteral("Zulu"));
}

}  // namespace
}  // namespace quayline::testing
