// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "dbtool/commands.h"
#include "dbtool/text_form.h"

namespace quayline::dbtool {
namespace {

// Thirteen lines of fields and two scripts, nothing wrong.
const char kRouter[] = R"(id: 1
routername: Example 100
routerusername: admin
routerpassword:
routersupportsboth: No
routerneedscomputername: yes
routermaxentries:
routermaxrange: 0
routerminport: 1
routermaxport: 65535
routerpic: pics\example.jpg
[routercommands]
nav("a")
[routerportpage]
nav("b")
)";

class CheckTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(QDir(folder_.path()).mkdir(QStringLiteral("routers"))); }

  void Write(const char* name, const QByteArray& bytes) {
    QFile file(folder_.filePath(QLatin1String(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }

  // The problems with the folder's name cut off.
  QByteArray Check(const ScriptLint& lint = {}) {
    const Result result = RunCommand({QStringLiteral("check"), folder_.path()}, lint);
    QString output = result.output;
    EXPECT_EQ(result.exit_code == kExitFine, output.contains(QLatin1String("Nothing is wrong")))
        << output.toStdString();
    return output.remove(folder_.path() + QLatin1Char('/')).toUtf8();
  }

  QByteArray CheckRouter(const QByteArray& router, const ScriptLint& lint = {}) {
    Write("routers/a.txt", router);
    Write("ports.txt", "");
    return Check(lint);
  }

  QByteArray CheckPorts(const QByteArray& lines) {
    Write("routers/a.txt", kRouter);
    Write("ports.txt", lines);
    return Check();
  }

  QTemporaryDir folder_;
};

TEST_F(CheckTest, EachFaultOfARouterIsToldWithItsLine) {
  const struct {
    const char* from;
    const char* to;
    const char* problem;  // its beginning
  } kRows[] = {
      {"id: 1\n", "", "a.txt:1: The router has no field id."},
      {"id: 1", "id: 0", "a.txt:1: \"0\" is no ID"},
      {"id: 1", "id: 2147483648", "a.txt:1: \"2147483648\" is no ID"},
      {"id: 1", "id: +1", "a.txt:1: \"+1\" is no ID"},
      {"Example 100", " ", "a.txt:2: The router has no name."},
      {"routerusername: admin", "routername: x", "a.txt:3: The field routername stands here for"},
      {"routerusername", "Routerusername", "a.txt:3: There is no field \"Routerusername\"."},
      {"routerpassword:", "routerpassword", "a.txt:4: This is neither"},
      {"routerpassword:", "routerpassword: \\\\x", "a.txt:4: Behind a leading"},
      {"both: No", "both: maybe", "a.txt:5: routersupportsboth is \"maybe\""},
      {"both: No", "both:", "a.txt:5: routersupportsboth is \"\""},
      {"name: yes", "name: 1", "a.txt:6: routerneedscomputername is \"1\""},
      {"entries:", "entries: 0", "a.txt:7: routermaxentries is \"0\""},
      {"entries:", "entries: many", "a.txt:7: routermaxentries is \"many\""},
      {"range: 0", "range:", "a.txt:8: routermaxrange is \"\""},
      {"range: 0", "range: -1", "a.txt:8: routermaxrange is \"-1\""},
      {"minport: 1", "minport: 0", "a.txt:9: routerminport is \"0\""},
      {"minport: 1", "minport: 0x1", "a.txt:9: routerminport is \"0x1\""},
      {"65535", "65536", "a.txt:10: routermaxport is \"65536\""},
      {"minport: 1\nroutermaxport: 65535", "minport: 9\nroutermaxport: 8",
       "a.txt:10: routermaxport is below routerminport."},
      {"pics\\example.jpg", "\\x.jpg", "a.txt:11: Behind a leading"},
      {"pics\\example.jpg", "\\u00", "a.txt:11: Behind a leading"},
      {"pics\\example.jpg", "..\\..\\passwd", "a.txt:11: routerpic is not a path"},
      {"pics\\example.jpg", "http://x/y", "a.txt:11: routerpic is not a path"},
      {"routerpic: pics\\example.jpg\n", "", "a.txt:1: The router has no field routerpic."},
      {"[routercommands]", "[commands]", "a.txt:12: The heading [commands] is not known."},
      {"nav(\"a\")", "", "a.txt:12: The script [routercommands] has no line."},
      {"nav(\"a\")", "\\\\n", "a.txt:13: Behind a leading"},
      {"nav(\"a\")", "\\nav", "a.txt:13: Behind a leading"},
      {"nav(\"a\")", "nav\x01", "a.txt:13: This line holds a control character"},
      {"nav(\"a\")", "nav\r(\"a\")", "a.txt:13: This line holds a control character"},
      {"nav(\"a\")", "nav(\"\xE4\")", "a.txt:13: This line is not UTF-8."},
      {"[routerportpage]", "[routercommands]", "a.txt:14: The script routercommands stands here"},
      {"[routerportpage]\n", "", "a.txt:1: The router has no script [routerportpage]."},
  };
  ASSERT_EQ(CheckRouter(kRouter).left(16), "Nothing is wrong");
  for (const auto& row : kRows) {
    QByteArray router = kRouter;
    ASSERT_TRUE(router.contains(row.from)) << row.from;
    router.replace(router.indexOf(row.from), qstrlen(row.from), row.to);
    const QByteArray problems = CheckRouter(router);
    EXPECT_TRUE(problems.contains(QByteArray("routers/") + row.problem))
        << row.problem << " is not in " << problems.constData();
  }
}

TEST_F(CheckTest, AllFaultsAreToldAtOnceInTheOrderOfTheLines) {
  QByteArray router = kRouter;
  router.replace("65535", "x").replace("id: 1", "id: y").replace("range: 0", "range: z");
  const QByteArrayList problems = CheckRouter(router).trimmed().split('\n');
  ASSERT_EQ(problems.size(), 3);
  EXPECT_TRUE(problems.at(0).startsWith("routers/a.txt:1:"));
  EXPECT_TRUE(problems.at(1).startsWith("routers/a.txt:8:"));
  EXPECT_TRUE(problems.at(2).startsWith("routers/a.txt:10:"));
}

TEST_F(CheckTest, TwoRoutersOfOneIdOrNameAreToldWithBothPlaces) {
  Write("routers/b.txt", QByteArray(kRouter).replace("Example", "EXAMPLE"));
  const QByteArray problems = CheckRouter(kRouter);
  EXPECT_TRUE(
      problems.contains("routers/b.txt:1: The ID \"1\" stands in routers/a.txt:1 already."));
  EXPECT_TRUE(problems.contains("routers/b.txt:2: The router name \"EXAMPLE 100\" stands in "));
  Write("routers/b.txt", QByteArray("[file x]\n") + kRouter + "[file y]\n");
  EXPECT_TRUE(CheckRouter(kRouter).contains("routers/b.txt:17: The router has no field id."));
}

TEST_F(CheckTest, TheLintSeesEveryLineOfBothScriptsAsItIsStored) {
  QStringList seen;
  const ScriptLint lint = [&](const QString& line) -> QList<ScriptRemark> {
    seen.append(line);
    return line.startsWith(QLatin1Char('[')) ? QList<ScriptRemark>{{QStringLiteral("No command.")}}
                                             : QList<ScriptRemark>();
  };
  const QByteArray problems = CheckRouter(
      QByteArray(kRouter).replace("nav(\"a\")", "  nav(\"a\") \n\n\\\n\\[x\\\\y"), lint);
  EXPECT_EQ(seen, (QStringList{QStringLiteral("  nav(\"a\") "), QStringLiteral("[x\\y"),
                               QStringLiteral("nav(\"b\")")}));
  EXPECT_EQ(problems, "routers/a.txt:16: No command.\n");
}

TEST_F(CheckTest, AWarningIsToldAndRefusesNothing) {
  const ScriptLint lint = [](const QString&) {
    return QList<ScriptRemark>{{.sentence = QStringLiteral("Odd."), .is_warning = true}};
  };
  const QByteArray told = CheckRouter(kRouter, lint);
  EXPECT_TRUE(told.startsWith("routers/a.txt:13: warning: Odd.\n")) << told.constData();
  EXPECT_TRUE(told.contains("Nothing is wrong")) << told.constData();
  const Result built = RunCommand({QStringLiteral("build"), folder_.path(), folder_.path()}, lint);
  EXPECT_EQ(built.exit_code, kExitFine) << built.error.toStdString();
  EXPECT_TRUE(built.output.contains(QStringLiteral("warning: Odd.")));
  EXPECT_TRUE(QFile::exists(folder_.filePath(QStringLiteral("routers.mdb"))));
}

TEST_F(CheckTest, EachFaultOfAProgramIsToldWithItsLine) {
  const struct {
    const char* line;
    const char* problem;  // nothing: the line is fine
  } kRows[] = {
      {"1 ; A ; Abcdefgh ; 1, 65535 ; 5-9 ; 2-4", nullptr},
      {"1 ; A ; Short Nam ; 80 ; 80 ;", nullptr},
      {"1 ; A ; B ; \\21-21||22-22 ; ;", nullptr},
      {"1 ; A ; B ; 80 ;", "The line has 5 cells"},
      {"1 ; A ; B ; 80 ; ; ;", "The line has 7 cells"},
      {"x ; A ; B ; 80 ; ;", "\"x\" is no ID"},
      {"1 ; \\q ; B ; 80 ; ;", "Behind a leading"},
      {"1 ;  ; B ; 80 ; ;", "The program has no name."},
      {"1 ; A ;  ; 80 ; ;", "The short name \"\" should"},
      {"1 ; A ; Abcdefghi ; 80 ; ;", "The short name \"Abcdefghi\" should"},
      {"1 ; A|B ; B ; 80 ; ;", "A name with \"|\""},
      {"1 ; A ; B ; ; ;", "The program has no ports."},
      {"1 ; A ; B ; 0 ; ;", "\"0-0\" is not made of ports"},
      {"1 ; A ; B ; ; 65536 ;", "\"65536-65536\" is not made of ports"},
      {"1 ; A ; B ; ; ; 1-2-3", "\"1-2-3\" is not made of ports"},
      {"1 ; A ; B ; 80,,81 ; ;", "\"-\" is not made of ports"},
      {"1 ; A ; B ; -5 ; ;", "\"-5\" is not made of ports"},
      {"1 ; A ; B ; 9-8 ; ;", "\"9-8\" ends before it starts."},
      {"1 ; A ; B ; \\21 ; ;", "\"21\" has no end port."},
      {"1 ; A ; B ; 5-9, 7 ; ;", "TCP port 7 stands twice."},
      {"1 ; A ; B ; ; 80 ; 80-81", "UDP port 80 stands twice."},
  };
  for (const auto& row : kRows) {
    const QByteArray problems = CheckPorts(QByteArray("# head\n\n") + row.line + "\n");
    if (row.problem) {
      EXPECT_TRUE(problems.startsWith(QByteArray("ports.txt:3: ") + row.problem))
          << row.line << ": " << problems.constData();
    } else {
      EXPECT_TRUE(problems.startsWith("Nothing")) << row.line << ": " << problems.constData();
    }
  }
  EXPECT_TRUE(CheckPorts("1;A;B;1;;\n1;a;C;2;;\n").startsWith("ports.txt:2: The ID \"1\" stands"));
}

TEST_F(CheckTest, EachFaultOfAnOwnProgramIsToldWithItsLine) {
  const struct {
    const char* line;
    const char* problem;
  } kRows[] = {
      {"1 ; Tencharact ; TCP/UDP ; 1 ; 65535", nullptr},
      {"1 ; Elevenchars ; TCP ; 1 ; 1", "The name \"Elevenchars\""},
      {"1 ; A ; tcp ; 1 ; 1", "The protocol is \"tcp\""},
      {"1 ; A ; TCP ; 2 ; 1", "\"2-1\" ends before"},
      {"1 ; A ; TCP ; ; 1", "\"-1\" is not made of ports"},
  };
  for (const auto& row : kRows) {
    Write("custom.txt", row.line);
    const QByteArray problems = CheckRouter(kRouter);
    EXPECT_TRUE(problems.startsWith(row.problem ? QByteArray("custom.txt:1: ") + row.problem
                                                : QByteArray("Nothing")))
        << problems.constData();
  }
}

TEST_F(CheckTest, FilesThatAreNoDataAreToldAndNeverTakenForEmptyOnes) {
  Write("ports.txt", "");
  EXPECT_TRUE(Check().startsWith("routers:1: There is no router file here."));
  EXPECT_TRUE(CheckRouter("").startsWith("routers/a.txt:1: There is no router in this file."));
  EXPECT_TRUE(CheckRouter("# nothing\n").contains("There is no router in this file."));
  EXPECT_TRUE(CheckRouter(QByteArray(kMaxTextFileBytes + 1, '\n')).contains("larger than 4 MB"));
  EXPECT_TRUE(CheckRouter(QByteArray(3000, '\0')).contains("a.txt:1: This line holds a control"));
  EXPECT_TRUE(CheckRouter("\xEF\xBB\xBF" + QByteArray(kRouter).replace("\n", "\r\n"))
                  .startsWith("Nothing"));
  QFile::remove(folder_.filePath(QStringLiteral("ports.txt")));
  EXPECT_TRUE(Check().startsWith("ports.txt:1: The file cannot be read"));
  ASSERT_TRUE(QDir(folder_.path()).mkdir(QStringLiteral("ports.txt")));
  EXPECT_TRUE(Check().startsWith("ports.txt:1: The file cannot be read"));
}

TEST_F(CheckTest, BuildRefusesWhatCheckRefusesAndTouchesNothing) {
  Write("routers/a.txt", QByteArray(kRouter).replace("65535", "x"));
  Write("ports.txt", "");
  Write("routers.mdb", "old");
  const Result result = RunCommand({QStringLiteral("build"), folder_.path(), folder_.path()});
  EXPECT_EQ(result.exit_code, kExitFailed);
  EXPECT_TRUE(result.error.contains(QStringLiteral("a.txt:10:")));
  QFile old(folder_.filePath(QStringLiteral("routers.mdb")));
  ASSERT_TRUE(old.open(QIODevice::ReadOnly));
  EXPECT_EQ(old.readAll(), "old");
  EXPECT_FALSE(QFile::exists(folder_.filePath(QStringLiteral("ports.mdb"))));
}

TEST(Commands, AnythingElseShowsTheUsage) {
  for (const QStringList& arguments :
       QList<QStringList>{{},
                          {QStringLiteral("build"), QStringLiteral("a")},
                          {QStringLiteral("check")},
                          {QStringLiteral("dump"), QStringLiteral("a"), QStringLiteral("b")},
                          {QStringLiteral("Build"), QStringLiteral("a"), QStringLiteral("b")}}) {
    const Result result = RunCommand(arguments);
    EXPECT_EQ(result.exit_code, kExitUsage);
    EXPECT_TRUE(result.error.contains(QStringLiteral("build DATA OUT")));
  }
}

}  // namespace
}  // namespace quayline::dbtool
