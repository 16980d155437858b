// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/list_compare.h"

#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "core/files.h"
#include "demo/command_line.h"
#include "demo/compare_command.h"
#include "demo/rules.h"
#include "test_main.h"
#include "transport/scripted_server.h"

namespace quayline::demo {
namespace {

using namespace Qt::StringLiterals;
using quayline::testing::RunUntil;
using quayline::testing::ScriptedServer;

QByteArray Marks(const QList<ComparedRow>& rows) {
  QByteArray marks;
  for (const ComparedRow& row : rows) {
    marks += "soDM+"[static_cast<int>(row.mark)];
  }
  return marks;
}

// The letter of each mark: matches, off, Differs, Missing, + for extra
TEST(CompareList, OnlyTheSameEnabledRuleMatches) {
  const QByteArray entry = "Web|192.168.1.10(Desk)|80|90|TCP/UDP|Web server\r\n";
  const char* const rule = "Web both 80 90 192.168.1.10";
  const struct {
    const char* fault;
    QByteArray list;
    const char* rules;
    const char* marks;
    bool matches = false;
  } kRows[] = {
      {"the same rule", entry, rule, "s", true},
      {"an empty table", entry, "", "M"},
      {"disabled", entry, "Web both 80 90 192.168.1.10 off", "o"},
      {"disabled ahead of enabled", entry,
       "Web both 80 90 192.168.1.10 off; Web both 80 90 192.168.1.10", "s+", true},
      {"another case of the name", entry, "WEB both 80 90 192.168.1.10", "D"},
      {"another name", entry, "Web2 both 80 90 192.168.1.10", "M+"},
      {"another start", entry, "Web both 81 90 192.168.1.10", "D"},
      {"another end", entry, "Web both 80 80 192.168.1.10", "D"},
      {"half the protocol", entry, "Web tcp 80 90 192.168.1.10", "D"},
      {"another computer", entry, "Web both 80 90 192.168.1.1", "D"},
      {"one of two missing", entry + "B|1.1.1.1()|1|1|TCP|\r\n", rule, "sM"},
      {"two equal entries, one rule", entry + entry, rule, "sM"},
      {"a changed twin does not take the rule", "Web|1.1.1.1()|80|90|TCP/UDP|\r\n" + entry, rule,
       "Ms"},
      {"more rules than entries", entry, "X tcp 1 1 1.1.1.1; Web both 80 90 192.168.1.10", "s+",
       true},
      {"an empty list", "", rule, "+"},
      {"blank lines alone", "\r\n\r\n", "", ""},
      {"a line without fields", "Web\r\n", rule, "D"},
      {"ports that are no numbers", "Web|192.168.1.10()|80x|90|TCP/UDP|\r\n", rule, "D"},
      {"no CR and no end", "Web|192.168.1.10|80|90|TCP/UDP", rule, "s", true},
      {"a name in UTF-8", "\xC3\xA4\xE2\x82\xAC|1.1.1.1()|1|1|TCP|", "ä€ tcp 1 1 1.1.1.1", "s",
       true},
      {"the same in Windows-1252", "\xE4\x80|1.1.1.1()|1|1|TCP|", "ä€ tcp 1 1 1.1.1.1", "s", true},
  };
  for (const auto& row : kRows) {
    const QList<ComparedRow> rows = CompareList(ReadList(row.list), RulesOf(row.rules));
    EXPECT_EQ(Marks(rows), row.marks) << row.fault;
    EXPECT_EQ(HasEveryEntry(rows), row.matches) << row.fault;
  }
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

TEST(CompareProgram, TheExitCodeIsWhetherEveryEntryIsThere) {
  const QTemporaryDir folder;
  const QString list = folder.filePath(u"a list.qyl"_s);
  ASSERT_TRUE(quayline::testing::WriteBytes(list, "Web|192.168.1.10()|80|80|TCP|\r\n"));
  DemoRouter router;
  const auto port = router.Start(u"rowtable"_s, {});
  ASSERT_TRUE(port.has_value());
  const auto compare = [](const QString& file, quint16 of_port, const QStringList& more = {}) {
    return RunProgram(QStringList{u"--compare"_s, file, u"--port=%1"_s.arg(of_port)} + more);
  };
  EXPECT_EQ(compare(list, *port).exit_code, 1);

  QTcpSocket browser;
  browser.connectToHost(QHostAddress::LocalHost, *port);
  const QByteArray body = "name_1=Web&start_1=80&end_1=80&proto_1=tcp&ip_1=192.168.1.10&enable_1=1";
  browser.write(
      "POST /forward.htm HTTP/1.1\r\nAuthorization: Basic YWRtaW46YWRtaW4=\r\nContent-Length: " +
      QByteArray::number(body.size()) + "\r\n\r\n" + body);
  ASSERT_TRUE(RunUntil([&] { return router.Saves() == 1; }));
  const ProgramRun run = compare(list, *port);
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_TRUE(run.output.contains(u"1 of 1 entries stand"_s));

  const ProgramRun unread = compare(folder.path(), *port);
  EXPECT_EQ(unread.exit_code, 1);
  EXPECT_TRUE(unread.error.contains(folder.path())) << qPrintable(unread.error);

  const auto secure = router.Start(u"rowtable"_s, {.https = true});
  ASSERT_TRUE(secure.has_value()) << qPrintable(secure.error());
  const ProgramRun empty = compare(list, *secure, {u"--https"_s});
  EXPECT_TRUE(empty.output.contains(u"0 of 1 entries stand"_s)) << qPrintable(empty.error);
}

TEST(CommandLine, NothingIsGuessedFromABadArgument) {
  const struct {
    const char* line;
    const char* word = nullptr;  // of the sentence; nothing: it is understood
  } kRows[] = {
      {"--port 0 --delay 0-50 --entries 1 --model rowtable --user a --password="},
      {"--compare x --port 80"},
      {"--compare x --port 80 --https"},
      {"--https --certificate a.pem --key b.pem"},
      {"--help --nonsense"},
      {"--port", "Missing value"},
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
      {"--help=1", "Unexpected value"},
      {"--https=1", "Unexpected value"},
      {"--prot 80", "'prot'"},
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
    const auto command =
        ReadCommandLine(QStringList{u"program"_s} + QString::fromLatin1(row.line).split(u' '));
    EXPECT_EQ(command.has_value(), row.word == nullptr) << row.line;
    EXPECT_TRUE(command || command.error().contains(QLatin1String(row.word))) << row.line;
  }
}

}  // namespace
}  // namespace quayline::demo
