// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QDate>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QWheelEvent>

#include "main_fixture.h"
#include "ui/main/splash_screen.h"

namespace quayline::testing {
namespace {

TEST_F(MainWindowTest, AFirstStartShowsTheDefaultsAndTheGatewayWhichCanBeDetectedAgain) {
  folder_.adapters.adapters = {UsedAdapter()};
  Start();
  ExpectTexts({{"router_box", ""},
               {"router_ip_edit", "10.0.0.1"},
               {"http_port_edit", "80"},
               {"http_type_box", "http://"},
               {"language_box", "English | English"},
               {"router_count_label", "Routers Loaded: (2)"}});
  EXPECT_EQ(FieldOf("router_box")->placeholderText(), u"(((Please Choose A Router)))"_s);
  EXPECT_EQ(Stored(setting::kRouterIp), "10.0.0.1");
  EXPECT_TRUE(context_->job_options.silent_mode);
  EXPECT_TRUE(context_->job_options.throttle);
  EXPECT_TRUE(ComesToSay("local_ip_label", "(Current Local IP): 192.168.1.20"));
  Type("router_ip_edit", "9.9.9.9");
  Click("detect_ip_button");
  Child<QAbstractButton>(Find("AdapterDialog"), "ok_button")->click();
  EXPECT_EQ(Stored(setting::kRouterIp), "10.0.0.1");
}

TEST_F(MainWindowTest, TheStoredLoginWinsOverTheRoutersDefaultInWindowAndFile) {
  Start(
      "router=beta 2\r\nrouterip=10.0.0.1\r\nhttpport=8080\r\nhttptype=https://\r\n"
      "routerusername=me\r\nrouterpassword=a=b;c\r\nshowpassword=1\r\nsilentmode=False\r\n"
      "scriptthrottle=banana\r\n");
  const RouterSession& session = context_->session;
  EXPECT_EQ(session.router_id, 7);
  EXPECT_EQ(session.update_script, QStringList({u"nav(\"one\")"_s, u"nav(\"two\")"_s}));
  EXPECT_EQ(QStringList({session.router_ip, session.http_port, session.http_type, session.username,
                         session.password})
                .join(u' '),
            u"10.0.0.1 8080 https:// me a=b;c"_s);
  EXPECT_EQ(TextOf("max_entries_label"), "Max Router Can Hold: (16)");
  ExpectStored({{setting::kRouterUsername, "me"}, {setting::kRouterPassword, "a=b;c"}});
  EXPECT_EQ(Find<QLineEdit>("password_edit")->echoMode(), QLineEdit::Normal);
  EXPECT_FALSE(Find<QAction>("silent_mode_action")->isChecked());
  EXPECT_TRUE(Find<QAction>("throttle_action")->isChecked()) << "garbage keeps the design state";
}

TEST_F(MainWindowTest, TheChosenRouterShowsHowItsScriptsWereTried) {
  RouterRecord tried = RouterRow(3, u"Alpha 1"_s, u"admin"_s);
  tried.routertested = u"rebuild"_s;
  tried.routerversions = u"1.x"_s;
  folder_.WriteDatabases({tried, RouterRow(7, u"Beta 2"_s, u"root"_s)});
  Start();
  EXPECT_FALSE(Find("tested_label")->isVisible()) << "no router is chosen";
  Choose("router_box", 1);
  EXPECT_EQ(TextOf("tested_label"), "Tried on a faithful rebuild of its pages.\nFirmware: 1.x");
  EXPECT_TRUE(Find("tested_label")->isVisible());
  Choose("router_box", 2);
  EXPECT_EQ(TextOf("tested_label"), "It is not known whether anybody has tried it.");
  Choose("router_box", 0);
  EXPECT_FALSE(Find("tested_label")->isVisible());
}

TEST_F(MainWindowTest, AStoredRouterThatIsGoneStaysAsTextAndSelectsNothing) {
  Start("router=Gone 9\r\nrouterusername=me\r\n");
  EXPECT_EQ(TextOf("router_box"), "Gone 9");
  EXPECT_EQ(context_->session.router_name, u"Gone 9"_s);
  EXPECT_TRUE(context_->session.update_script.isEmpty());
  EXPECT_EQ(Stored(setting::kRouter), "Gone 9");
  EXPECT_TRUE(Find("logo_label")->isVisible());
  EXPECT_FALSE(Find("router_image")->isVisible());
}

TEST_F(MainWindowTest, EveryFieldIsInTheFileAtEachChangeAndAnEmptyPortGetsItsDefaultWhenLeft) {
  Start();
  const struct {
    const char* control;
    const char* typed;
    std::pair<Setting, std::string> stored;
  } cases[] = {
      {"router_ip_edit", "HTTP://10.0.0.138", {setting::kRouterIp, "10.0.0.138"}},
      {"router_ip_edit", "http://https://fritz.lan", {setting::kRouterIp, "fritz.lan"}},
      {"http_port_edit", "8080", {setting::kHttpPort, "8080"}},
      {"username_edit", " me ", {setting::kRouterUsername, " me "}},
      {"password_edit", "p=\"w;\"", {setting::kRouterPassword, "p=\"w;\""}},
      {"password_edit", "", {setting::kRouterPassword, ""}},
  };
  for (const auto& c : cases) {
    Type(c.control, c.typed);
    EXPECT_EQ(TextOf(c.control), c.stored.second);
    ExpectStored({c.stored});
  }
  Choose("http_type_box", 1);
  ExpectStored({{setting::kHttpType, "https://"}});
  Type("http_port_edit", "  ");
  EXPECT_EQ(Stored(setting::kHttpPort), "  ") << "while typing";
  Leave("http_port_edit");
  EXPECT_EQ(TextOf("http_port_edit"), "80");
  EXPECT_EQ(Stored(setting::kHttpPort), "80");
  Click("show_password_check");
  for (const char* option : {"silent_mode_action", "throttle_action", "debug_mode_action"}) {
    Trigger(option);
  }
  ExpectStored({{setting::kShowPassword, "1"},
                {setting::kSilentMode, "False"},
                {setting::kScriptThrottle, "False"}});
  EXPECT_FALSE(context_->job_options.silent_mode);
  EXPECT_TRUE(context_->job_options.debug_mode);
}

TEST_F(MainWindowTest, TheRoutersComeInStepsBetweenWhichTheWindowAnswers) {
  QList<RouterRecord> routers;
  for (int i = 1; i <= 10000; ++i) {
    routers.append(RouterRow(i, u"R%1"_s.arg(i), QString()));
  }
  folder_.WriteDatabases(routers);
  Begin();
  QString order;
  QTimer events;
  QObject::connect(&events, &QTimer::timeout, window_, [&] { order += u'e'; });
  events.start(0);
  const auto* model = Find<QComboBox>("router_box")->model();
  QObject::connect(model, &QAbstractItemModel::rowsInserted, window_, [&] { order += u'r'; });
  ASSERT_TRUE(ComesToSay("router_count_label", "Routers Loaded: (10,000)"));
  EXPECT_FALSE(order.contains(u"rr"_s)) << "two steps without a look at events";
  EXPECT_EQ(model->rowCount(), 10001);
}

TEST_F(MainWindowTest, TheTotalsFollowTheListFile) {
  folder_.WriteFile("list.qyl",
                    "A|1.1.1.1()|100|109|TCP/UDP|x\r\n\r\nB|1.1.1.1()|1|65535|tcp|y\r\nshort\r\n");
  Start();
  EXPECT_TRUE(ComesToSay("total_entries_label", "Total Entries To Add: (3)"));
  EXPECT_THAT(TextOf("total_ports_label"),
              StartsWith("Ports To Be Opened: (65555)\nPort Type: (TCP: 65545)"));
  EXPECT_EQ(main_->Main().Totals().rows, 3);
}

TEST_F(MainWindowTest, TheDailyCheckIsNotedOncePerDayAndOnlyWhenWanted) {
  const std::string today = QDate::currentDate().toString(u"MM/dd/yyyy"_s).toStdString();
  const Named cases[] = {
      {"1", today}, {"0", "01/02/2003"}, {"", "01/02/2003"}, {"maybe", "01/02/2003"}};
  for (const auto& [wanted, expected] : cases) {
    WriteSettings(QByteArray("lastcheck=01/02/2003\r\ncheckforupdates=") + wanted + "\r\n");
    Start();
    EXPECT_EQ(Stored(setting::kLastCheck), expected) << wanted;
    EXPECT_EQ(windows_->update_checks, expected == today ? 1 : 0) << wanted;
  }
  WriteSettings("lastcheck=" + QByteArray::fromStdString(today) + "\r\ncheckforupdates=1\r\n");
  Start();
  EXPECT_EQ(windows_->update_checks, 0) << "a second time on one day";
  maker_site_ = MakerSite().base;
  Start("lastcheck=01/02/2003\r\ncheckforupdates=1\r\n");
  EXPECT_EQ(Stored(setting::kLastCheck), "01/02/2003") << "noted, though nothing was checked";
}

TEST_F(MainWindowTest, OtherDatabasesAreShownAndTheChosenRouterStays) {
  Start("router=Beta 2\r\nrouterip=10.0.0.1\r\n");
  Trigger("update_databases_action");
  EXPECT_THAT(prompts_.shown.back(), EndsWith("This will overwrite your current databases.\n"
                                              "Do you want to continue?"));
  EXPECT_FALSE(windows_->databases_updated) << "the answer was no";
  prompts_.answers = {true, true};
  context_->job_flags.SetRunning(true);
  Trigger("update_databases_action");
  EXPECT_THAT(prompts_.shown.back(), StartsWith("Tell: A job is running"));
  EXPECT_FALSE(windows_->databases_updated);
  context_->job_flags.SetRunning(false);
  Trigger("update_databases_action");
  ASSERT_TRUE(windows_->databases_updated);
  context_->databases.Close();
  folder_.WriteDatabases({RouterRow(1, u"Gamma"_s, u"g"_s), RouterRow(9, u"Beta 2"_s, u"root"_s)});
  ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
  windows_->databases_updated();
  EXPECT_TRUE(RunUntil([this] { return context_->session.router_id == 9; }));
  EXPECT_EQ(TextOf("router_box"), "Beta 2");
  EXPECT_EQ(context_->port_list.rowCount(), 0);
}

TEST_F(MainWindowTest, WithoutItsDatabasesTheProgramSaysWhyAndEnds) {
  QFile::remove(folder_.Path("routers.mdb"));
  Make();
  main_->Load();
  EXPECT_THAT(prompts_.shown,
              ElementsAre(AllOf(StartsWith("Tell: ERROR: "), HasSubstr("routers.mdb"),
                                EndsWith("\n\nThe Program Will Now Close."))));
  EXPECT_TRUE(main_->HasFailed());
  EXPECT_EQ(closed_, 1);
}

TEST_F(MainWindowTest, ASplashThatIsClosedBringsUpNoWindow) {
  for (const bool is_closed : {true, false}) {
    SplashScreen splash;
    QSignalSpy turn(&splash, &SplashScreen::timeForMainWindow);
    splash.show();
    if (is_closed) {
      splash.close();
    }
    const auto limit = std::chrono::milliseconds(is_closed ? 1700 : 30000);
    EXPECT_NE(RunUntil([&] { return !turn.isEmpty() && !splash.isVisible(); }, limit), is_closed);
  }
}

TEST_F(MainWindowTest, ClosingTakesTheJobTheDatabasesAndAllWindowsAlong) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|1|1|TCP|x\r\n");
  Start("router=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  Click("update_button");
  ASSERT_EQ(windows_->jobs.size(), 1);
  Trigger("about_action");
  context_->job_flags.AddLeavingRuns(1);
  Trigger("exit_action");
  EXPECT_FALSE(RunUntil([this] { return closed_ > 0; }, std::chrono::milliseconds(100)))
      << "a save on its way is cut off";
  context_->job_flags.AddLeavingRuns(-1);
  EXPECT_TRUE(RunUntil([this] { return closed_ == 1; }));
  EXPECT_TRUE(windows_->jobs.first().isNull());
  EXPECT_FALSE(context_->databases.IsOpen());
  for (const QWidget* widget : QApplication::topLevelWidgets()) {
    EXPECT_FALSE(widget->isVisible()) << widget->objectName().toStdString();
  }
}

TEST_F(MainWindowTest, AJobIsStoppedOnlyByAUserWhoWantsThat) {
  Start();
  JobFlags& flags = context_->job_flags;
  prompts_.leaves_open = true;
  flags.SetRunning(true);
  window_->close();
  Trigger("exit_action");
  EXPECT_THAT(prompts_.shown, ElementsAre(AllOf(StartsWith("Careful: Stop the job?"),
                                                HasSubstr("Stop it and close Quayline?"))));
  EXPECT_TRUE(flags.IsRunning() && !flags.JobStopRequested());
  flags.SetRunning(false);
  EXPECT_FALSE(prompts_.IsOpen()) << "there is nothing to stop any more";
  EXPECT_TRUE(window_->isVisible()) << "the result of the job is never seen";
  for (const bool yes : {false, true}) {
    flags.SetRunning(true);
    window_->close();
    prompts_.Answer(yes);
    EXPECT_NE(window_->isVisible(), yes);
  }
  EXPECT_TRUE(RunUntil([this] { return closed_ == 1; }));
}

TEST_F(MainWindowTest, TheEndOfTheSessionAsksNothingAndCutsNoSaveOff) {
  const std::function<void()> ends[] = {[this] { main_->CloseWithoutAsking(); },
                                        [] {
                                          QEvent quit(QEvent::Quit);
                                          QCoreApplication::sendEvent(qApp, &quit);
                                        }};
  for (const auto& first : ends) {
    Start();
    closed_ = 0;
    context_->job_flags.SetRunning(true);
    context_->job_flags.AddLeavingRuns(1);
    first();
    EXPECT_FALSE(window_->isVisible());
    for (const auto& again : ends) {
      again();
    }
    EXPECT_FALSE(RunUntil([this] { return closed_ > 0; }, std::chrono::milliseconds(100)));
    context_->job_flags.AddLeavingRuns(-1);
    EXPECT_TRUE(RunUntil([this] { return closed_ == 1; }));
    EXPECT_THAT(prompts_.shown, IsEmpty());
  }
}

TEST_F(MainWindowTest, AWindowClosedDuringItsStartDoesNotGoOnWithIt) {
  WriteSettings("router=Alpha 1\r\n");
  Begin();
  QObject::connect(Find<QComboBox>("router_box")->model(), &QAbstractItemModel::rowsInserted,
                   window_, &QWidget::close, Qt::QueuedConnection);
  ASSERT_TRUE(RunUntil([&] { return !window_->isVisible(); }));
  EXPECT_FALSE(RunUntil([&] { return is_ready_; }, std::chrono::milliseconds(100)));
  EXPECT_TRUE(context_->session.update_script.isEmpty());
}

TEST_F(MainWindowTest, ARouterThatNamesItselfIsChosenAndOfOthersTheNearestAreOffered) {
  QTcpServer router;
  ASSERT_TRUE(router.listen(QHostAddress::LocalHost));
  QByteArray reply;
  QObject::connect(&router, &QTcpServer::newConnection, &router, [&] {
    QTcpSocket* client = router.nextPendingConnection();
    QObject::connect(client, &QTcpSocket::readyRead, client, [client, &reply] {
      client->write(reply);
      client->disconnectFromHost();
    });
  });
  const QByteArray settings =
      "routerip=127.0.0.1\r\nhttpport=" + QByteArray::number(router.serverPort()) + "\r\n";
  reply = "HTTP/1.0 401 X\r\nWWW-Authenticate: Basic realm=\"Beta\"\r\n\r\n";
  Start(settings);
  EXPECT_TRUE(ComesToSay("router_box", "Beta 2")) << "the start looks for the router";
  EXPECT_TRUE(
      RunUntil([&] { return Stored(setting::kRouter) == "Beta 2"; }, std::chrono::seconds(5)));
  EXPECT_EQ(TextOf("username_edit"), "root");
  EXPECT_THAT(prompts_.shown, IsEmpty());

  const struct {
    QByteArray reply;
    QList<qsizetype> choices;
    std::string box;
    std::string router;
  } cases[] = {
      {reply, {}, "Tell: I may have found your router.\nBeta 2\nI have selected it", "Beta 2"},
      {"HTTP/1.0 401 X\r\nA: \"zz\"\r\n\r\n", {}, "Tell: Sorry I was unable to", "Alpha 1"},
      {"HTTP/1.0 200 OK\r\n\r\n<title>Beta</title>", {0}, "Choose: Quayline: Your", "Beta 2"},
      {"HTTP/1.0 200 OK\r\n\r\n<title>Beta</title>", {}, "Choose: Quayline: Your", "Alpha 1"},
      {"HTTP/1.0 200 OK\r\n\r\n", {}, "Tell: I may have found your router.\n(((Please", ""},
  };
  for (const auto& c : cases) {
    Choose("router_box", 1);
    reply = c.reply;
    prompts_.shown.clear();
    prompts_.choices = c.choices;
    Click("detect_router_button");
    ASSERT_TRUE(RunUntil([&] { return !prompts_.shown.empty(); })) << c.box;
    EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith(c.box)));
    EXPECT_EQ(TextOf("router_box"), c.router) << c.box;
    EXPECT_TRUE(Find("router_box")->hasFocus());
  }
}

TEST_F(MainWindowTest, TheWheelOverTheRoutersChoosesNone) {
  Start("router=Alpha 1\r\nrouterpassword=mine\r\n");
  auto* routers = Find<QComboBox>("router_box");
  QWheelEvent wheel(QPointF(5, 5), routers->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(routers, &wheel);
  EXPECT_EQ(TextOf("router_box"), "Alpha 1");
  EXPECT_EQ(Stored(setting::kRouterPassword), "mine");
}

TEST_F(MainWindowTest, ACheckLeavesTheWindowOfAnUpdateOpen) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|1|1|TCP|x\r\n");
  Start("router=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  Click("update_button");
  Click("check_button");
  Click("check_button");
  ASSERT_EQ(windows_->jobs.size(), 3);
  EXPECT_TRUE(windows_->jobs[0] != nullptr && windows_->jobs[0]->isVisible());
  EXPECT_TRUE(RunUntil([this] { return windows_->jobs[1].isNull(); }));
  Click("update_button");
  EXPECT_TRUE(RunUntil([this] { return windows_->jobs[0].isNull() && windows_->jobs[2].isNull(); }))
      << "an update begins with its own window alone";
}

TEST_F(MainWindowTest, ACheckNeedsARouterAndAListAndShowsWhatItSawInTheList) {
  Start();
  Click("check_button");
  EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr("Set Router IP")));
  Type("router_ip_edit", "10.0.0.1");
  Click("check_button");
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|1|1|TCP|x\r\nB|1.1.1.1()|2|2|TCP|x\r\n");
  Start();
  Type("router_ip_edit", "10.0.0.1");
  Click("check_button");
  EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr("Set Router IP"), HasSubstr("list is empty"),
                                          HasSubstr("choose your router")));
  Start("router=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  Trigger("check_action");
  EXPECT_EQ(windows_->checks, 1);
  Click("check_button");
  EXPECT_EQ(windows_->checks, 2);

  PortListModel& list = context_->port_list;
  const auto cell = [&list](int row) {
    return list.index(row, PortListModel::kOnRouter).data().toString().toStdString();
  };
  const auto look = [&list](EntryState state) {
    list.NoteLooks(
        {{list.Entries()[0],
          {.on_router = state, .looked_at = QDateTime(QDate::currentDate(), QTime(14, 5))}}});
  };
  look(EntryState::kMissing);
  EXPECT_EQ(cell(0), "Not on the router, 14:05");
  EXPECT_EQ(cell(1), "");
  const auto* view = Find<QTreeView>("port_list_view");
  EXPECT_GE(view->columnWidth(PortListModel::kOnRouter),
            view->fontMetrics().horizontalAdvance(u"Not on the router, 14:05"_s));
  Type("username_edit", "me");
  EXPECT_NE(cell(0), "") << "still the same router";
  Type("router_ip_edit", "10.0.0.2");
  EXPECT_EQ(cell(0), "");
  look(EntryState::kOnRouter);
  Choose("router_box", 2);
  EXPECT_EQ(cell(0), "");
}

TEST_F(MainWindowTest, AMissingBrowserIsReportedWithTheAddress) {
  Start();
  folder_.desktop.has_browser = false;
  Click("router_request_link");
  ASSERT_EQ(folder_.desktop.opened.size(), 1);
  EXPECT_THAT(prompts_.shown,
              ElementsAre(HasSubstr(folder_.desktop.opened.first().toString().toStdString())));
}

}  // namespace
}  // namespace quayline::testing
