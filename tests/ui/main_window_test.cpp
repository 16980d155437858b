// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAction>
#include <QComboBox>
#include <QDate>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include "main_fixture.h"
#include "ui/main/frm_splash.h"
#include "ui/toolkit/controls.h"

namespace quayline::testing {
namespace {

TEST_F(MainWindowTest, AFirstStartShowsTheDefaultsAndTheGateway) {
  folder_.adapters.adapters = {{.description = QStringLiteral("eth0"),
                                .address = QStringLiteral("192.168.1.20"),
                                .mask = QStringLiteral("255.255.255.0"),
                                .gateway = QStringLiteral("192.168.1.1")}};
  Start();
  EXPECT_EQ(Find<QComboBox>("Combo1")->currentText(),
            QStringLiteral("(((Please Choose A Router)))"));
  EXPECT_EQ(Find<QLineEdit>("Text1")->text(), QStringLiteral("192.168.1.1"));
  EXPECT_EQ(Stored(setting::kRouterIp), QStringLiteral("192.168.1.1"));
  EXPECT_EQ(Find<QLineEdit>("Text10")->text(), QStringLiteral("80"));
  EXPECT_EQ(Find<QComboBox>("Combo2")->currentText(), QStringLiteral("http://"));
  EXPECT_EQ(Find<QComboBox>("Combo3")->currentText(), QStringLiteral("English | English"));
  EXPECT_EQ(TextOf("Label5"), QStringLiteral("Routers Loaded: (2)"));
  EXPECT_TRUE(context_->job_options.silent_mode);
  EXPECT_TRUE(context_->job_options.throttle);
  EXPECT_TRUE(RunUntil([&] {
    return TextOf("LabelLocalIP") == QStringLiteral("(Current Local IP): 192.168.1.20");
  }));
}

TEST_F(MainWindowTest, TheStoredLoginWinsOverTheRoutersDefaultInWindowAndFile) {
  folder_.WriteFile("settings.ini",
                    "[main]\r\nrouter=beta 2\r\nrouterip=10.0.0.1\r\nhttpport=8080\r\n"
                    "httptype=https://\r\nrouterusername=me\r\nrouterpassword=a=b;c\r\n"
                    "showpassword=1\r\nsilentmode=False\r\nscriptthrottle=banana\r\n");
  Start();
  EXPECT_EQ(context_->session.router_id, 7);
  EXPECT_EQ(context_->session.update_script,
            QStringList({QStringLiteral("nav(\"one\")"), QStringLiteral("nav(\"two\")")}));
  EXPECT_EQ(TextOf("Label9"), QStringLiteral("Max Router Can Hold: (16)"));
  EXPECT_EQ(context_->session.router_ip, QStringLiteral("10.0.0.1"));
  EXPECT_EQ(context_->session.http_port, QStringLiteral("8080"));
  EXPECT_EQ(context_->session.http_type, QStringLiteral("https://"));
  EXPECT_EQ(context_->session.username, QStringLiteral("me"));
  EXPECT_EQ(context_->session.password, QStringLiteral("a=b;c"));
  EXPECT_EQ(Stored(setting::kRouterUsername), QStringLiteral("me"));
  EXPECT_EQ(Stored(setting::kRouterPassword), QStringLiteral("a=b;c"));
  EXPECT_EQ(Find<QLineEdit>("Text3")->echoMode(), QLineEdit::Normal);
  EXPECT_FALSE(Find<QAction>("MenuDisablePopups")->isChecked());
  EXPECT_TRUE(Find<QAction>("MenuScriptThrottle")->isChecked()) << "garbage keeps the design state";
}

TEST_F(MainWindowTest, AStoredRouterThatIsGoneStaysAsTextAndSelectsNothing) {
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Gone 9\r\nrouterusername=me\r\n");
  Start();
  EXPECT_EQ(Find<QComboBox>("Combo1")->currentText(), QStringLiteral("Gone 9"));
  EXPECT_EQ(context_->session.router_name, QStringLiteral("Gone 9"));
  EXPECT_TRUE(context_->session.update_script.isEmpty());
  EXPECT_EQ(Stored(setting::kRouter), QStringLiteral("Gone 9"));
  EXPECT_TRUE(Find<QLabel>("ImageLogo")->isVisible());
}

TEST_F(MainWindowTest, ThePlaceholderKeepsTheLoginAndTheScriptsOfTheRouterBefore) {
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Alpha 1\r\nrouterusername=me\r\n");
  Start();
  auto* routers = Find<QComboBox>("Combo1");
  routers->setCurrentIndex(0);
  Q_EMIT routers->activated(0);
  EXPECT_EQ(context_->session.update_script.size(), 2);
  EXPECT_EQ(context_->session.username, QStringLiteral("me"));
  EXPECT_EQ(Stored(setting::kRouter), QStringLiteral("Alpha 1"));
  EXPECT_TRUE(Find<QLabel>("ImageLogo")->isVisible());
  EXPECT_FALSE(Find<QWidget>("Image1")->isVisible());
}

TEST_F(MainWindowTest, EveryFieldIsInTheFileAtEachChange) {
  Start();
  struct Case {
    const char* control;
    const char* typed;
    const char* key;
    const char* stored;
  };
  const Case cases[] = {
      {"Text1", "HTTP://10.0.0.138", setting::kRouterIp, "10.0.0.138"},
      {"Text1", "http://https://fritz.lan", setting::kRouterIp, "fritz.lan"},
      {"Text10", "8080", setting::kHttpPort, "8080"},
      {"Text2", " me ", setting::kRouterUsername, " me "},
      {"Text3", "p=\"w;\"", setting::kRouterPassword, "p=\"w;\""},
      {"Text3", "", setting::kRouterPassword, ""},
  };
  for (const Case& c : cases) {
    Find<QLineEdit>(c.control)->setText(QLatin1String(c.typed));
    EXPECT_EQ(Stored(c.key), QLatin1String(c.stored)) << c.control << " " << c.typed;
  }
  Find<QComboBox>("Combo2")->setCurrentText(QStringLiteral("https://"));
  EXPECT_EQ(Stored(setting::kHttpType), QStringLiteral("https://"));
  Find<QAbstractButton>("Check1")->click();
  EXPECT_EQ(Stored(setting::kShowPassword), QStringLiteral("1"));
  Find<QAction>("MenuDisablePopups")->trigger();
  EXPECT_EQ(Stored(setting::kSilentMode), QStringLiteral("False"));
  EXPECT_FALSE(context_->job_options.silent_mode);
  Find<QAction>("MenuScriptThrottle")->trigger();
  EXPECT_EQ(Stored(setting::kScriptThrottle), QStringLiteral("False"));
  Find<QAction>("MenuDebugMode")->trigger();
  EXPECT_TRUE(context_->job_options.debug_mode);
}

TEST_F(MainWindowTest, AnotherRouterReplacesTheTypedPasswordInWindowAndFile) {
  Start();
  Find<QLineEdit>("Text3")->setText(QStringLiteral("typed"));
  auto* routers = Find<QComboBox>("Combo1");
  routers->setCurrentIndex(2);
  Q_EMIT routers->activated(2);
  EXPECT_EQ(Find<QLineEdit>("Text2")->text(), QStringLiteral("root"));
  EXPECT_EQ(Stored(setting::kRouterPassword), QStringLiteral("secret"));
  EXPECT_EQ(context_->session.router_name, QStringLiteral("Beta 2"));
}

TEST_F(MainWindowTest, AnEmptyPortFieldGetsItsDefaultOnlyWhenItIsLeft) {
  Start();
  auto* port = Find<QLineEdit>("Text10");
  port->setText(QStringLiteral("  "));
  EXPECT_EQ(Stored(setting::kHttpPort), QStringLiteral("  ")) << "while typing";
  Q_EMIT port->editingFinished();
  EXPECT_EQ(port->text(), QStringLiteral("80"));
  EXPECT_EQ(Stored(setting::kHttpPort), QStringLiteral("80"));
}

TEST_F(MainWindowTest, TheRoutersComeInStepsBetweenWhichTheWindowAnswers) {
  QList<QStringList> routers;
  for (int i = 1; i <= 10000; ++i) {
    routers.append(RouterRow(i, QStringLiteral("R%1").arg(i), QString()));
  }
  folder_.WriteDatabases(routers);
  Make();
  QString order;
  QTimer events;
  QObject::connect(&events, &QTimer::timeout, window_.get(), [&] { order += u'e'; });
  events.start(0);
  const auto* model = Find<QComboBox>("Combo1")->model();
  QObject::connect(model, &QAbstractItemModel::rowsInserted, window_.get(), [&] { order += u'r'; });
  window_->Load();
  window_->show();
  ASSERT_TRUE(
      RunUntil([&] { return TextOf("Label5") == QStringLiteral("Routers Loaded: (10,000)"); }));
  EXPECT_FALSE(order.contains(QStringLiteral("rr"))) << "two steps without a look at events";
  EXPECT_EQ(model->rowCount(), 10001);
}

TEST_F(MainWindowTest, TheTotalsFollowTheListFile) {
  folder_.WriteFile("list.qyl",
                    "A|1.1.1.1()|100|109|TCP/UDP|x\r\n\r\nB|1.1.1.1()|1|65535|tcp|y\r\nshort\r\n");
  Start();
  ASSERT_TRUE(
      RunUntil([&] { return TextOf("Label7") != QStringLiteral("Total Entries To Add: (0)"); }));
  EXPECT_EQ(TextOf("Label7"), QStringLiteral("Total Entries To Add: (3)"));
  EXPECT_TRUE(TextOf("Label8").startsWith(
      QStringLiteral("Ports To Be Opened: (65555)\nPort Type: (TCP: 65545)")))
      << TextOf("Label8").toStdString();
  EXPECT_EQ(window_->Main().Totals().rows, 3);
}

TEST_F(MainWindowTest, TheDailyCheckIsNotedOncePerDayAndOnlyWhenWanted) {
  const QByteArray today = QDate::currentDate().toString(QStringLiteral("MM/dd/yyyy")).toLatin1();
  const std::pair<const char*, QByteArray> cases[] = {
      {"1", today}, {"0", "01/02/2003"}, {"", "01/02/2003"}, {"maybe", "01/02/2003"}};
  for (const auto& [wanted, expected] : cases) {
    folder_.WriteFile(
        "settings.ini",
        QByteArray("[main]\r\nlastcheck=01/02/2003\r\ncheckforupdates=") + wanted + "\r\n");
    Make();
    window_->Load();
    EXPECT_EQ(Stored(setting::kLastCheck), QString::fromLatin1(expected)) << wanted;
  }
}

TEST_F(MainWindowTest, WithoutItsDatabasesTheProgramSaysWhyAndEnds) {
  QFile::remove(folder_.Path("routers.mdb"));
  Make();
  QSignalSpy closed(window_.get(), &FrmMain2::closed);
  window_->Load();
  ASSERT_EQ(prompts_.shown.size(), 1);
  const QString text = prompts_.shown.first();
  EXPECT_TRUE(text.startsWith(QStringLiteral("Tell: ERROR: "))) << text.toStdString();
  EXPECT_TRUE(text.contains(QStringLiteral("routers.mdb"))) << text.toStdString();
  EXPECT_TRUE(text.endsWith(QStringLiteral("\n\nThe Program Will Now Close.")));
  EXPECT_TRUE(window_->HasFailed());
  EXPECT_EQ(closed.size(), 1);
}

TEST_F(MainWindowTest, ASplashThatIsClosedBringsUpNoWindow) {
  FrmSplash splash;
  QSignalSpy turn(&splash, &FrmSplash::timeForMainWindow);
  splash.show();
  splash.close();
  EXPECT_FALSE(RunUntil([&] { return !turn.isEmpty(); }, std::chrono::milliseconds(1700)));
  FrmSplash patient;
  QSignalSpy patient_turn(&patient, &FrmSplash::timeForMainWindow);
  patient.show();
  EXPECT_TRUE(RunUntil([&] { return !patient_turn.isEmpty() && !patient.isVisible(); }));
}

TEST_F(MainWindowTest, ClosingTakesTheJobTheDatabasesAndAllWindowsAlong) {
  folder_.WriteFile("list.qyl", "A|1.1.1.1()|1|1|TCP|x\r\n");
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Alpha 1\r\nrouterip=10.0.0.1\r\n");
  Start();
  Find<QAbstractButton>("Command8")->click();
  ASSERT_EQ(jobs_.size(), 1);
  Find<QAction>("MenuAbout")->trigger();
  QSignalSpy closed(window_.get(), &FrmMain2::closed);
  context_->job_flags.AddLeavingRuns(1);
  Find<QAction>("menuExit")->trigger();
  EXPECT_FALSE(RunUntil([&] { return closed.size() == 1; }, std::chrono::milliseconds(100)))
      << "a save on its way is cut off";
  context_->job_flags.AddLeavingRuns(-1);
  EXPECT_TRUE(RunUntil([&] { return closed.size() == 1; }));
  EXPECT_TRUE(jobs_.first().isNull());
  EXPECT_FALSE(context_->databases.IsOpen());
  for (const QWidget* widget : QApplication::topLevelWidgets()) {
    EXPECT_FALSE(widget->isVisible()) << widget->objectName().toStdString();
  }
}

TEST_F(MainWindowTest, AWindowClosedDuringItsStartDoesNotGoOnWithIt) {
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Alpha 1\r\n");
  Make();
  bool is_ready = false;
  QObject::connect(&window_->Main(), &FrmMain::ready, window_.get(), [&] { is_ready = true; });
  QObject::connect(Find<QComboBox>("Combo1")->model(), &QAbstractItemModel::rowsInserted,
                   window_.get(), &QWidget::close, Qt::QueuedConnection);
  window_->Load();
  window_->show();
  ASSERT_TRUE(RunUntil([&] { return !window_->isVisible(); }));
  EXPECT_FALSE(RunUntil([&] { return is_ready; }, std::chrono::milliseconds(100)));
  EXPECT_TRUE(context_->session.update_script.isEmpty());
}

TEST_F(MainWindowTest, TheWheelOverTheRoutersChoosesNone) {
  folder_.WriteFile("settings.ini", "[main]\r\nrouter=Alpha 1\r\nrouterpassword=mine\r\n");
  Start();
  auto* routers = Find<QComboBox>("Combo1");
  QWheelEvent wheel(QPointF(5, 5), routers->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(routers, &wheel);
  EXPECT_EQ(routers->currentText(), QStringLiteral("Alpha 1"));
  EXPECT_EQ(Stored(setting::kRouterPassword), QStringLiteral("mine"));
}

TEST_F(MainWindowTest, AMissingBrowserIsToldWithTheAddress) {
  Start();
  folder_.desktop.has_browser = false;
  Find<QAbstractButton>("Label11")->click();
  ASSERT_EQ(folder_.desktop.opened.size(), 1);
  EXPECT_TRUE(prompts_.shown.last().contains(folder_.desktop.opened.first().toString()));
}

}  // namespace
}  // namespace quayline::testing
