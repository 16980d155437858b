// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAccessible>
#include <QCompleter>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>

#include "main_fixture.h"

namespace quayline::testing {
namespace {

TEST_F(MainWindowTest, TheRouterThatIsShownIsTheOneThatAnUpdateUses) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|80|80|TCP|x\r\n");
  Start("router=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  Activate();
  struct Row {
    const char* typed;
    std::string shown;
    bool is_accepted;
  };
  const Row rows[] = {{"alp", "alp", false},
                      {"Alpha 1", "Alpha 1", true},
                      {"beta 2", "Beta 2", true},
                      {"nonsense", "nonsense", false},
                      {"", "", false}};
  for (const Row& row : rows) {
    Type("router_box", row.typed);
    Find("router_box")->setFocus();
    prompts_.shown.clear();
    windows_->jobs.clear();
    Trigger("update_action");
    EXPECT_EQ(TextOf("router_box"), row.shown) << row.typed;
    EXPECT_EQ(windows_->jobs.size(), row.is_accepted ? 1 : 0) << row.typed;
    EXPECT_EQ(prompts_.shown.empty(), row.is_accepted) << row.typed;
    EXPECT_TRUE(!row.is_accepted || context_->session.router_name.toStdString() == row.shown);
  }
}

TEST_F(MainWindowTest, SettingsThatCannotBeStoredAreReportedOnceAndStoredWhenThatIsPossible) {
  QDir(folder_.dir.path()).mkdir(u"settings.ini"_s);
  Start();
  Type("username_edit", "me");
  Type("password_edit", "secret");
  EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr("cannot be stored")));
  Choose("router_box", 1);
  Trigger("view_scripts_action");
  windows_->scripts_written();
  ExpectTexts({{"username_edit", "me"}, {"password_edit", "secret"}});
  QDir(folder_.dir.path()).rmdir(u"settings.ini"_s);
  main_->Main().Unload();
  EXPECT_TRUE(folder_.ReadFile("settings.ini").contains("routerpassword=secret\r\n"));
  EXPECT_TRUE(folder_.ReadFile("settings.ini").contains("routerusername=me\r\n"));
}

TEST_F(MainWindowTest, ASizeThatTheUserGaveIsThereAgainAndNonsenseIsNot) {
  Start();
  const QSize usual = main_->Surface().size();
  main_->ResizeSurface({640, 480});
  window_->close();
  EXPECT_EQ(Stored(setting::kWindowSize), "640,480");
  for (const char* nonsense : {"", "9", "-5,x", "0,0"}) {
    Start("windowsize=" + QByteArray(nonsense) + "\r\n");
    EXPECT_EQ(main_->Surface().size(), usual) << nonsense;
  }
  Start("windowsize=640,480\r\n");
  EXPECT_EQ(main_->Surface().size(), QSize(640, 480));
}

TEST_F(MainWindowTest, ItFitsOnASmallScreenWhereItsRestIsScrolledTo) {
  Start();
  for (const QSize small : {QSize(1024, 560), QSize(940, 700), QSize(800, 480)}) {
    main_->ResizeSurface(small);
    EXPECT_EQ(main_->Surface().size(), small) << "the main button is beyond the screen";
    RunUntil([] { return false; }, std::chrono::milliseconds(20));
    const auto* area = window_->findChild<QScrollArea*>();
    EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0) << small.width();
  }
}

TEST_F(MainWindowTest, AWebAddressMayBePastedAndACommandSettlesTheFieldThatHasTheFocus) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|80|80|TCP|x\r\n");
  Start("router=Alpha 1\r\nrouterip=1.1.1.1\r\n");
  Activate();
  Type("router_ip_edit", " https://192.168.1.1:8443/index.html");
  ExpectTexts({{"router_ip_edit", "192.168.1.1"},
               {"http_type_box", "https://"},
               {"http_port_edit", "8443"}});
  ExpectStored({{setting::kHttpPort, "8443"}, {setting::kHttpType, "https://"}});
  const std::function<void()> commands[] = {
      [this] { Trigger("update_action"); }, [this] { Click("update_button"); },
      [this] { QTest::keyClick(window_, Qt::Key_U, Qt::AltModifier); },
      [this] { QTest::keyClick(window_, Qt::Key_Return, Qt::ControlModifier); }};
  int port = 81;
  for (const auto& command : commands) {
    Find("router_ip_edit")->setFocus();
    Type("router_ip_edit", qPrintable(u"10.0.0.1:%1"_s.arg(++port)));
    command();
    EXPECT_TRUE(RunUntil([&] { return windows_->jobs.size() == port - 81; }));
    EXPECT_EQ(TextOf("router_ip_edit") + ' ' + Stored(setting::kHttpPort),
              "10.0.0.1 " + std::to_string(port));
    Activate();
  }
}

TEST_F(MainWindowTest, EnterPressesTheButtonThatHasTheFocusAndNoOther) {
  Start("router=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  Activate();
  for (const char* control : {"show_password_check", "username_edit", "language_box"}) {
    Find(control)->setFocus();
    QTest::keyClick(Find(control), Qt::Key_Return);
  }
  EXPECT_THAT(prompts_.shown, IsEmpty());
  EXPECT_FALSE(Find<QAbstractButton>("show_password_check")->isChecked());
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
    prompts_.shown.clear();
    Find("check_button")->setFocus();
    QTest::keyClick(Find("check_button"), key);
    EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr("list is empty")));
  }
}

TEST_F(MainWindowTest, AClickIntoTheRoutersReplacesTheNameAndOneLetterSuggests) {
  Start("router=Alpha 1\r\n");
  Activate();
  Find("username_edit")->setFocus();
  QTest::mouseClick(FieldOf("router_box"), Qt::LeftButton);
  QTest::keyClick(Find("router_box"), Qt::Key_2);
  EXPECT_EQ(TextOf("router_box"), "2");
  const QCompleter* completer = Find<QComboBox>("router_box")->completer();
  EXPECT_EQ(completer->completionCount(), 1);
  EXPECT_EQ(completer->currentCompletion(), u"Beta 2"_s);
}

TEST_F(MainWindowTest, BoxesOfTheStartWaitForTheWindow) {
  QDir(folder_.dir.path()).mkdir(u"list.qyl"_s);
  Make();
  main_->Load();
  RunUntil([] { return false; }, std::chrono::milliseconds(500));
  EXPECT_THAT(prompts_.shown, IsEmpty());
  main_->show();
  EXPECT_TRUE(RunUntil([&] { return !prompts_.shown.empty(); }));
}

// The items of the menus that can be seen; "-" is a menu of its own.
QStringList VisibleItems(const QList<QAction*>& actions) {
  QStringList items;
  for (const QAction* action : actions) {
    if (action->isVisible() && !action->isSeparator()) {
      items.append(QString(action->text()).remove(u'&'));
      if (action->menu() != nullptr) {
        items += VisibleItems(action->menu()->actions());
      }
    }
  }
  return items;
}

TEST_F(MainWindowTest, WhatDoesNotWorkYetIsHiddenAndHelpIsTheProgramsOwn) {
  maker_site_ = MakerSite().base;
  Start();
  EXPECT_EQ(VisibleItems(Find<QMenuBar>("menu_bar")->actions()).join(u'|').toStdString(),
            "File|Add Port/s|Remove Selected Port/s|Undo|Redo|Open List|Save List|Exit Program|"
            "Tools|Getting Started|Check Router|Detect if you are behind multiple routers|"
            "Set your computer's IP to static|"
            "Firewall Port Exceptions|Add Current Ports List|Remove All Ports Added By QYL|"
            "View Current Port Exceptions|Test Your Port Forwarding|"
            "Open Ports on Request (UPnP)|Router not listed? (Click Here)|"
            "Update Databases (Routers  Ports)|"
            "Advanced|Enable Silent Mode (No Popups or Script Errors)|"
            "View Current Scripts For The Selected Router|Enable Program Debug Mode|"
            "About Debug Mode|Enable Script Throttle|About Script Throttle|Clear Webpage Cache|"
            "Repair the Hosted Browser|Repair the Databases|Open Firewall Settings|"
            "Open Network Connections|Help|View Help|Check For Updates|About");
  Trigger("open_network_action");
  EXPECT_EQ(folder_.desktop.network_settings_opened, 1);
  EXPECT_TRUE(windows_->dialog.isNull());
  Trigger("static_ip_action");
  EXPECT_FALSE(windows_->dialog.isNull());
  EXPECT_FALSE(Find("default_logins_button")->isVisible());
  windows_->dialog->close();
  Click("router_request_link");
  EXPECT_TRUE(windows_->choose_router) << "a router that is missing leads nowhere";
  Trigger("help_action");
  EXPECT_THAT(Find("help_view")->property("plainText").toString().toStdString(),
              HasSubstr("Your first update"));
  EXPECT_TRUE(folder_.desktop.opened.isEmpty());
}

TEST_F(MainWindowTest, AScreenReaderHearsLiveTextsAndWholeRows) {
  folder_.WriteFile("list.qyl", "Ftp|1.1.1.1()|20|21|TCP|Files\r\n");
  Start();
  EXPECT_TRUE(ComesToSay("total_entries_label", "(1)"));
  for (const char* name : {"router_count_label", "max_entries_label", "total_entries_label",
                           "total_ports_label", "local_ip_label"}) {
    EXPECT_EQ(
        QAccessible::queryAccessibleInterface(Find(name))->text(QAccessible::Name).toStdString(),
        TextOf(name));
  }
  EXPECT_EQ(context_->port_list.index(0, 0).data(Qt::AccessibleTextRole).toString().toStdString(),
            "App Name Ftp, Forwarded To 1.1.1.1(), Start Port 20, End Port 21, TCP/UDP TCP, "
            "Description Files");
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
