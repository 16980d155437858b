// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QDir>
#include <QLineEdit>

#include "main_fixture.h"

namespace quayline::testing {
namespace {

TEST_F(MainWindowTest, AnUpdateWithoutARouterMakesNoZerosOfThePorts) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|80|90|TCP|x\r\nB|1.1.1.1()|25|25|TCP|x\r\n");
  Start("routerip=10.0.0.1\r\n");
  const std::string before = Rows();
  Click("update_button");
  EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr("There is no script")));
  EXPECT_TRUE(jobs_.isEmpty());
  EXPECT_EQ(Rows(), before);
}

TEST_F(MainWindowTest, TheRouterThatIsShownIsTheOneThatAnUpdateUses) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|80|80|TCP|x\r\n");
  Start("router=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  struct Row {
    const char* typed;
    std::string shown;
    int router_id;
  };
  const Row rows[] = {
      {"alp", "Alpha 1", 3}, {"beta 2", "Beta 2", 7}, {"nonsense", "Beta 2", 7}, {"", "", 7}};
  for (const Row& row : rows) {
    Find<QComboBox>("router_box")->setEditText(QLatin1String(row.typed));
    prompts_.shown.clear();
    Click("update_button");
    EXPECT_EQ(TextOf("router_box"), row.shown) << row.typed;
    EXPECT_EQ(context_->session.router_id, row.router_id) << row.typed;
    EXPECT_EQ(prompts_.shown.empty(), !row.shown.empty()) << row.typed;
  }
}

TEST_F(MainWindowTest, SettingsThatCannotBeStoredAreReportedOnceAndStoredWhenThatIsPossible) {
  QDir(folder_.dir.path()).mkdir(u"settings.ini"_s);
  Start();
  Type("username_edit", "me");
  Type("password_edit", "secret");
  EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr("cannot be stored")));
  Trigger("view_scripts_action");
  scripts_written_();
  ExpectTexts({{"username_edit", "me"}, {"password_edit", "secret"}});
  QDir(folder_.dir.path()).rmdir(u"settings.ini"_s);
  main_->Main().Unload();
  EXPECT_TRUE(folder_.ReadFile("settings.ini").contains("routerpassword=secret\r\n"));
  EXPECT_TRUE(folder_.ReadFile("settings.ini").contains("routerusername=me\r\n"));
}

TEST_F(MainWindowTest, ASizeThatTheUserGaveIsThereAgainAndNonsenseIsNot) {
  Start();
  const QSize usual = window_->size();
  window_->resize(640, 480);
  window_->close();
  EXPECT_EQ(Stored(setting::kWindowSize), "640,480");
  for (const char* nonsense : {"", "9", "-5,x", "0,0"}) {
    Start("windowsize=" + QByteArray(nonsense) + "\r\n");
    EXPECT_EQ(window_->size(), usual) << nonsense;
  }
  Start("windowsize=640,480\r\n");
  EXPECT_EQ(window_->size(), QSize(640, 480));
}

TEST_F(MainWindowTest, ItFitsOnASmallScreenWhereItsRestIsScrolledTo) {
  Start();
  const QSize small(640, 480);
  window_->resize(small);
  EXPECT_EQ(window_->size(), small) << "the main button is beyond the screen";
}

TEST_F(MainWindowTest, WhatIsPastedAsAPortIsNeverGluedTogether) {
  Start();
  Click("add_button");
  auto* field = Child<QLineEdit>(Find("AddEntryDialog"), "start_port_edit");
  for (const auto& [pasted, shown] : std::initializer_list<std::pair<const char*, std::string>>{
           {" 80 ", "80"}, {"80\n", "80"}, {"80 81", ""}, {"80\n81", ""}}) {
    field->clear();
    field->insert(QLatin1String(pasted));
    EXPECT_EQ(field->text().toStdString(), shown) << pasted;
  }
}

}  // namespace
}  // namespace quayline::testing
