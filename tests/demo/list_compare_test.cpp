// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/list_compare.h"

#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "demo/command_line.h"
#include "demo/compare_command.h"
#include "test_main.h"

namespace quayline::demo {
namespace {

using quayline::testing::RunUntil;

Rule MakeRule(const char* name, Protocol protocol, int first, int last, const char* address,
              bool enabled = true) {
  return {QString::fromUtf8(name), protocol, first, last, QString::fromUtf8(address), enabled};
}

QByteArray Marks(const QList<ComparedRow>& rows) {
  QByteArray marks;
  for (const ComparedRow& row : rows) {
    marks += "soDM+"[static_cast<int>(row.mark)];
  }
  return marks;
}

// stands, off, Differs, Missing, + for extra
TEST(CompareList, OnlyTheSameEnabledRuleMakesAnEntryStand) {
  const QByteArray entry = "Web|192.168.1.10(Desk)|80|90|TCP/UDP|Web server\r\n";
  const Rule rule = MakeRule("Web", Protocol::kBoth, 80, 90, "192.168.1.10");
  const Rule off = MakeRule("Web", Protocol::kBoth, 80, 90, "192.168.1.10", false);
  const struct {
    const char* fault;
    QByteArray list;
    QList<Rule> rules;
    const char* marks;
    bool stands;
  } kRows[] = {
      {"the very rule", entry, {rule}, "s", true},
      {"an empty table", entry, {}, "M", false},
      {"disabled", entry, {off}, "o", false},
      {"disabled ahead of enabled", entry, {off, rule}, "s+", true},
      {"another case of the name",
       entry,
       {MakeRule("WEB", Protocol::kBoth, 80, 90, "192.168.1.10")},
       "D",
       false},
      {"another name",
       entry,
       {MakeRule("Web2", Protocol::kBoth, 80, 90, "192.168.1.10")},
       "M+",
       false},
      {"another start",
       entry,
       {MakeRule("Web", Protocol::kBoth, 81, 90, "192.168.1.10")},
       "D",
       false},
      {"another end",
       entry,
       {MakeRule("Web", Protocol::kBoth, 80, 80, "192.168.1.10")},
       "D",
       false},
      {"half the protocol",
       entry,
       {MakeRule("Web", Protocol::kTcp, 80, 90, "192.168.1.10")},
       "D",
       false},
      {"another computer",
       entry,
       {MakeRule("Web", Protocol::kBoth, 80, 90, "192.168.1.1")},
       "D",
       false},
      {"one of two missing", entry + "B|1.1.1.1()|1|1|TCP|\r\n", {rule}, "sM", false},
      {"two equal entries, one rule", entry + entry, {rule}, "sM", false},
      {"a changed twin does not take the rule",
       "Web|1.1.1.1()|80|90|TCP/UDP|\r\n" + entry,
       {rule},
       "Ms",
       false},
      {"more rules than entries",
       entry,
       {MakeRule("X", Protocol::kTcp, 1, 1, "1.1.1.1"), rule},
       "s+",
       true},
      {"an empty list", "", {rule}, "+", false},
      {"blank lines alone", "\r\n\r\n", {}, "", false},
      {"a line without fields", "Web\r\n", {rule}, "D", false},
      {"ports that are no numbers", "Web|192.168.1.10()|80x|90|TCP/UDP|\r\n", {rule}, "D", false},
      {"no CR and no end", "Web|192.168.1.10|80|90|TCP/UDP", {rule}, "s", true},
  };
  for (const auto& row : kRows) {
    const QList<ComparedRow> rows = CompareList(ReadList(row.list), row.rules);
    EXPECT_EQ(Marks(rows), row.marks) << row.fault;
    EXPECT_EQ(EveryEntryStands(rows), row.stands) << row.fault;
  }
}

TEST(CompareList, NamesInEitherEncodingAreTheSameName) {
  const QList<Rule> rules{MakeRule("\xC3\xA4\xE2\x82\xAC", Protocol::kTcp, 1, 1, "1.1.1.1")};
  for (const QByteArray name : {"\xC3\xA4\xE2\x82\xAC", "\xE4\x80"}) {
    EXPECT_EQ(Marks(CompareList(ReadList(name + "|1.1.1.1()|1|1|TCP|\r\n"), rules)), "s");
  }
}

TEST(CompareList, TheTableShowsBothSidesAndNoControlCharacter) {
  const QString text = FormatComparison(
      CompareList(ReadList("A\x1b[2J|1.1.1.1()|1|2|TCP|\r\nWeb|1.1.1.2()|80|80|UDP|\r\n"),
                  {MakeRule("Web", Protocol::kTcp, 80, 80, "1.1.1.2"),
                   MakeRule("Old", Protocol::kUdp, 7, 9, "1.1.1.3", false)}));
  const QStringList lines = text.split(QLatin1Char('\n'));
  EXPECT_FALSE(text.contains(QChar(0x1b)));
  EXPECT_TRUE(lines.at(1).startsWith(QStringLiteral("MISSING  A?[2J")));
  EXPECT_EQ(lines.at(2).simplified(),
            QStringLiteral("DIFFERS Web 80-80 UDP 1.1.1.2 | Web 80-80 TCP 1.1.1.2 on"));
  EXPECT_EQ(lines.at(3).simplified(), QStringLiteral("extra | Old 7-9 UDP 1.1.1.3 off"));
  EXPECT_EQ(lines.at(4), QStringLiteral("0 of 2 entries stand on the router."));
  const qsizetype bar = lines.at(1).indexOf(QLatin1Char('|'));
  EXPECT_EQ(lines.at(2).indexOf(QLatin1Char('|')), bar);
}

TEST(ReadState, AnAnswerThatIsNoStateIsNotTakenForAnEmptyTable) {
  const QByteArray rule =
      R"({"name":"a","protocol":"TCP","start":1,"end":2,"address":"1.1.1.1","enabled":true})";
  EXPECT_TRUE(ReadState("{\"rules\":[" + rule + "]}").has_value());
  for (const QByteArray& json : QList<QByteArray>{
           "", "[]", "{}", "<html>", "{\"rules\":{}}", "{\"rules\":[1]}", "{\"rules\":[{}]}",
           "{\"rules\":[" + QByteArray(rule).replace("TCP", "tcp") + "]}",
           "{\"rules\":[" + QByteArray(rule).replace("true", "1") + "]}",
           "{\"rules\":[" + QByteArray(rule).replace(":1,", ":\"1\",") + "]}"}) {
    EXPECT_FALSE(ReadState(json).has_value()) << json.constData();
  }
}

struct ProgramRun {
  int exit_code = -1;
  QString output;
  QString error;
};

// The program itself, since its exit code is what scripts rely on.
ProgramRun RunProgram(const QStringList& arguments) {
  QProcess process;
  process.start(QStringLiteral(QUAYLINE_DEMO_ROUTER), arguments);
  EXPECT_TRUE(RunUntil([&] { return process.state() == QProcess::NotRunning; }));
  return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
          QString::fromUtf8(process.readAllStandardOutput()),
          QString::fromUtf8(process.readAllStandardError())};
}

TEST(CompareProgram, TheExitCodeTellsWhetherTheListStands) {
  QTemporaryDir folder;
  const QString list = folder.filePath(QStringLiteral("a list.qyl"));
  QFile file(list);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("Web|192.168.1.10()|80|80|TCP|\r\n");
  file.close();
  DemoRouter router;
  const auto port = router.Start(QStringLiteral("rowtable"), {});
  ASSERT_TRUE(port.has_value());
  const QStringList arguments{QStringLiteral("--compare"), list,
                              QStringLiteral("--port=%1").arg(*port)};
  EXPECT_EQ(RunProgram(arguments).exit_code, 1);

  QTcpSocket browser;
  browser.connectToHost(QHostAddress::LocalHost, *port);
  const QByteArray body = "name_1=Web&start_1=80&end_1=80&proto_1=tcp&ip_1=192.168.1.10&enable_1=1";
  browser.write(
      "POST /forward.htm HTTP/1.1\r\nAuthorization: Basic YWRtaW46YWRtaW4=\r\nContent-Length: " +
      QByteArray::number(body.size()) + "\r\n\r\n" + body);
  ASSERT_TRUE(RunUntil([&] { return router.Saves() == 1; }));
  const ProgramRun run = RunProgram(arguments);
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_TRUE(run.output.contains(QStringLiteral("1 of 1 entries stand")));

  const ProgramRun unread = RunProgram({arguments.at(0), folder.path(), arguments.at(2)});
  EXPECT_EQ(unread.exit_code, 1);
  EXPECT_TRUE(unread.error.contains(folder.path())) << unread.error.toStdString();

  const auto secure = router.Start(QStringLiteral("rowtable"), {.https = true});
  ASSERT_TRUE(secure.has_value()) << secure.error().toStdString();
  const ProgramRun empty = RunProgram(
      {arguments.at(0), list, QStringLiteral("--port=%1").arg(*secure), QStringLiteral("--https")});
  EXPECT_TRUE(empty.output.contains(QStringLiteral("0 of 1 entries stand")))
      << empty.error.toStdString();
}

TEST(CompareProgram, AnAnswerFromAnotherServerIsAFailureAndARedirectIsNotFollowed) {
  DemoRouter router;
  const auto router_port = router.Start(QStringLiteral("formback"), {});
  ASSERT_TRUE(router_port.has_value());
  const QByteArray elsewhere = "http://127.0.0.1:" + QByteArray::number(*router_port) + "/__state";
  for (const QByteArray& reply :
       QList<QByteArray>{"", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}",
                         "HTTP/1.1 302 Found\r\nLocation: " + elsewhere +
                             "\r\nContent-Length: 12\r\n\r\n{\"rules\":[]}",
                         "HTTP/1.1 500 Oops\r\nContent-Length: 12\r\n\r\n{\"rules\":[]}"}) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
      QTcpSocket* socket = server.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, reply] {
        socket->write(reply);
        socket->disconnectFromHost();
      });
    });
    CompareCommand command(QStringLiteral(QUAYLINE_SOURCE_DIR "/data/sample-list.qyl"),
                           server.serverPort());
    std::optional<CompareCommand::Outcome> outcome;
    command.Start([&](const CompareCommand::Outcome& result) { outcome = result; });
    ASSERT_TRUE(RunUntil([&] { return outcome.has_value(); }));
    EXPECT_FALSE(outcome->every_entry_stands);
    EXPECT_FALSE(outcome->error.isEmpty()) << reply.constData();
  }
}

TEST(CommandLine, NothingIsGuessedFromABadArgument) {
  const struct {
    const char* line;
    const char* word;  // of the sentence; nothing: it is understood
  } kRows[] = {
      {"--port 0 --delay 0-50 --entries 1 --model rowtable --user a --password=", nullptr},
      {"--compare x --port 80", nullptr},
      {"--compare x --port 80 --https", nullptr},
      {"--https --certificate a.pem --key b.pem", nullptr},
      {"--help --nonsense", nullptr},
      {"--port", "needs a value"},
      {"--port 65536", "65535"},
      {"--port -1", "65535"},
      {"--port 8o", "8o"},
      {"--delay 50-", "no delay"},
      {"--delay 50-10", "no delay"},
      {"--delay 1-2-3", "no delay"},
      {"--delay 60001", "no delay"},
      {"--entries 0", "1000"},
      {"--model HR", "no model"},
      {"--user a:b", "colon"},
      {"--help=1", "not understood"},
      {"formback", "not understood"},
      {"--compare x", "--port"},
      {"--compare x --port 0", "--port"},
      {"--compare x --port 80 --entries 5", "--entries"},
      {"--compare x --port 80 --key k", "--key"},
      {"--https --key b.pem", "belong"},
      {"--https --certificate a.pem", "belong"},
      {"--certificate a.pem --key b.pem", "belong"},
  };
  for (const auto& row : kRows) {
    const auto command = ReadCommandLine(QStringList{QStringLiteral("program")} +
                                         QString::fromLatin1(row.line).split(QLatin1Char(' ')));
    EXPECT_EQ(command.has_value(), row.word == nullptr) << row.line;
    if (!command && row.word) {
      EXPECT_TRUE(command.error().contains(QLatin1String(row.word)))
          << command.error().toStdString();
    }
  }
}

TEST(CommandLine, ADelayMayBeOneNumberOrTwo) {
  const auto options = [](const char* delay) {
    return ReadCommandLine({QString(), QStringLiteral("--delay"), QLatin1String(delay)})
        .value()
        .options.delay;
  };
  using std::chrono::milliseconds;
  EXPECT_EQ(options("20").least, milliseconds(20));
  EXPECT_EQ(options("20").most, milliseconds(20));
  EXPECT_EQ(options("0-50").least, milliseconds(0));
  EXPECT_EQ(options("0-50").most, milliseconds(50));
}

}  // namespace
}  // namespace quayline::demo
