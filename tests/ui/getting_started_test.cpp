// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QLabel>
#include <QScreen>
#include <QTcpSocket>

#include "main_fixture.h"
#include "ui/main/getting_started_window.h"
#include "ui/main/practice_router.h"

namespace quayline::testing {
namespace {

class GettingStartedTest : public MainWindowTest {
 protected:
  GettingStartedTest() {
    folder_.WriteDatabases({RouterRow(3, u"Alpha 1"_s, u"root"_s),
                            RouterRow(7, QLatin1String(PracticeRouter::kName), u"admin"_s)});
    wants_guide_ = true;
  }

  GettingStartedWindow* Guide() const { return main_->findChild<GettingStartedWindow*>(); }
  bool GuideIsShown() const { return Guide() != nullptr && Guide()->isVisible(); }
  void Do(const char* button) { Child<QAbstractButton>(Guide(), button)->click(); }
  bool HasTick(const char* tick) const {
    return !Child<QLabel>(Guide(), tick)->pixmap(Qt::ReturnByValue).isNull();
  }
};

TEST_F(GettingStartedTest, StandsBesideTheMainWindowAtTheStartUnlessItIsUnwanted) {
  for (const char* wanted : {"", "showgettingstarted=0\r\n"}) {
    Start(wanted);
    ASSERT_TRUE(RunUntil([this] { return GuideIsShown(); }));
    const QRect room = main_->screen()->availableGeometry();
    EXPECT_EQ(main_->Surface().left(), room.left());
    EXPECT_EQ(Guide()->Surface().right(), room.right());
    EXPECT_EQ(Guide()->Surface().top(), main_->Surface().top());
    QTest::keyClick(Guide(), Qt::Key_Escape);
    EXPECT_FALSE(GuideIsShown());
  }
  Trigger("getting_started_action");
  Child<QAbstractButton>(Guide(), "hide_check")->click();
  ExpectStored({{setting::kShowGettingStarted, "1"}});
  Start();
  EXPECT_FALSE(RunUntil([this] { return GuideIsShown(); }, std::chrono::milliseconds(500)));
  Trigger("getting_started_action");
  ASSERT_TRUE(GuideIsShown());
  Child<QAbstractButton>(Guide(), "hide_check")->click();
  ExpectStored({{setting::kShowGettingStarted, "0"}});
}

TEST_F(GettingStartedTest, ComesAfterTheMainWindowAndAfterTheQuestionsOfTheStart) {
  Make();
  main_->Load();
  const auto comes = [this](std::chrono::milliseconds limit) {
    return RunUntil([this] { return GuideIsShown(); }, limit);
  };
  EXPECT_FALSE(comes(std::chrono::milliseconds(500))) << "under the splash screen";
  main_->show();
  AwaitReady();
  QDialog question(main_);
  question.open();
  EXPECT_FALSE(comes(std::chrono::milliseconds(500)));
  question.close();
  EXPECT_TRUE(comes(std::chrono::seconds(30)));
}

TEST_F(GettingStartedTest, AStepHasItsTickUntilTheWindowIsClosed) {
  Start("showgettingstarted=1\r\n");
  Trigger("getting_started_action");
  EXPECT_EQ(Guide()->focusWidget(), Child(Guide(), "practice_button"));
  Child(Guide(), "router_button")->setFocus();
  QTest::keyClick(Child(Guide(), "router_button"), Qt::Key_Return);
  EXPECT_TRUE(HasTick("router_tick"));
  EXPECT_FALSE(HasTick("ports_tick"));
  ASSERT_NE(windows_->dialog, nullptr);  // the list of routers
  windows_->dialog->close();
  EXPECT_TRUE(HasTick("router_tick"));
  Do("update_button");  // says what is missing
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: Please Choose A Router."));
  Do("close_button");
  ASSERT_TRUE(RunUntil([this] { return Guide() == nullptr; }));
  Trigger("getting_started_action");
  EXPECT_FALSE(HasTick("router_tick"));
}

TEST_F(GettingStartedTest, ASecondRouterIsMentioned) {
  Start("showgettingstarted=1\r\n");
  Trigger("getting_started_action");
  EXPECT_FALSE(Child(Guide(), "second_router_link")->isVisible());
  Guide()->close();
  windows_->has_second_router = true;
  ASSERT_TRUE(RunUntil([this] { return Guide() == nullptr; }));
  Trigger("getting_started_action");
  ASSERT_TRUE(RunUntil([this] { return Child(Guide(), "second_router_link")->isVisible(); }));
  Do("second_router_link");
  EXPECT_THAT(Find("help_view")->property("plainText").toString().toStdString(),
              StartsWith("Two routers"));
}

TEST_F(GettingStartedTest, ThePracticeRouterReplacesTheOwnOneWithoutBeingStored) {
  const QByteArray settings =
      "showgettingstarted=1\r\nrouter=Alpha 1\r\nrouterip=10.0.0.1\r\nrouterusername=me\r\n"
      "routerpassword=secret\r\nhttpport=81\r\n";
  Start(settings);
  Trigger("getting_started_action");
  Do("practice_button");
  ASSERT_TRUE(RunUntil([this] { return TextOf("router_ip_edit") == "127.0.0.1"; }));
  ExpectTexts({{"router_box", PracticeRouter::kName}, {"username_edit", "admin"}});
  QTcpSocket router;
  const auto port = static_cast<quint16>(std::stoi(TextOf("http_port_edit")));
  router.connectToHost(u"127.0.0.1"_s, port);
  EXPECT_TRUE(router.waitForConnected(5000));
  router.abort();
  Type("username_edit", "guest");  // would be stored
  ExpectStored({{setting::kRouterIp, "10.0.0.1"}, {setting::kRouterUsername, "me"}});

  Do("own_router_button");
  ExpectTexts({{"router_box", "Alpha 1"},
               {"router_ip_edit", "10.0.0.1"},
               {"http_port_edit", "81"},
               {"username_edit", "me"},
               {"password_edit", "secret"}});
  router.connectToHost(u"127.0.0.1"_s, port);
  EXPECT_FALSE(router.waitForConnected(5000));
  Type("username_edit", "you");
  ExpectStored({{setting::kRouterIp, "10.0.0.1"}, {setting::kRouterUsername, "you"}});
}

TEST_F(GettingStartedTest, OtherDatabasesEndThePractice) {
  Start("showgettingstarted=1\r\nrouter=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  Trigger("getting_started_action");
  Do("practice_button");
  ASSERT_TRUE(RunUntil([this] { return TextOf("router_ip_edit") == "127.0.0.1"; }));
  prompts_.answers = {true};
  Trigger("update_databases_action");
  ASSERT_TRUE(windows_->databases_updated);
  windows_->databases_updated();
  EXPECT_TRUE(RunUntil([this] { return TextOf("router_ip_edit") == "10.0.0.1"; }));
  EXPECT_FALSE(Child(Guide(), "own_router_button")->isVisible());
  Type("username_edit", "you");
  ExpectStored({{setting::kRouterIp, "10.0.0.1"}, {setting::kRouterUsername, "you"}});
}

}  // namespace
}  // namespace quayline::testing
