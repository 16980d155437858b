// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QDir>

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/text_form.h"
#include "dbtool/commands.h"
#include "test_main.h"

namespace quayline::dbtool {
namespace {

using namespace Qt::StringLiterals;

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
  void SetUp() override {
    ASSERT_TRUE(QDir(folder_.path()).mkdir(u"routers"_s));
    ASSERT_TRUE(QDir(folder_.path()).mkdir(u"ports"_s));
  }

  QString Path(const char* name) const { return folder_.filePath(QLatin1String(name)); }
  void Write(const char* name, const QByteArray& bytes) {
    ASSERT_TRUE(testing::WriteBytes(Path(name), bytes));
  }

  // The problems with the folder's name cut off.
  QByteArray Check(const ScriptLint& lint = {}) {
    const Result result = RunCommand({u"check"_s, folder_.path()}, lint);
    QString output = result.output;
    EXPECT_EQ(result.exit_code == kExitFine, output.contains(u"Nothing is wrong"_s))
        << qPrintable(output);
    return output.remove(folder_.path() + u'/').toUtf8();
  }

  QByteArray CheckRouter(const QByteArray& router, const ScriptLint& lint = {}) {
    Write("routers/a.txt", router);
    Write("ports/a.txt", "");
    return Check(lint);
  }

  Result Build(const ScriptLint& lint = {}) {
    return RunCommand({u"build"_s, folder_.path(), folder_.path()}, lint);
  }

  QTemporaryDir folder_;
};

TEST_F(CheckTest, EachFaultOfARouterIsReportedWithItsLine) {
  const struct {
    const char* from;
    const char* to;
    const char* problem;  // its beginning
  } kRows[] = {
      {"id: 1\n", "", "a.txt:1: The router has no field id."},
      {"id: 1", "id: 0", "a.txt:1: \"0\" is not an ID"},
      {"id: 1", "id: 2147483648", "a.txt:1: \"2147483648\" is not an ID"},
      {"id: 1", "id: +1", "a.txt:1: \"+1\" is not an ID"},
      {"Example 100", " ", "a.txt:2: The router has no name."},
      {"routerusername: admin", "routername: x", "a.txt:3: The field routername appears a second"},
      {"routerusername", "Routerusername", "a.txt:3: There is no field \"Routerusername\"."},
      {"routerpassword:", "routerpassword", "a.txt:4: This line is neither"},
      {"routerpassword:", "routerpassword: \\\\x", "a.txt:4: In a text that begins"},
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
      {"pics\\example.jpg", "\\x.jpg", "a.txt:11: In a text that begins"},
      {"pics\\example.jpg", "\\\\u00", "a.txt:11: In a text that begins"},
      {"pics\\example.jpg", "..\\..\\passwd", "a.txt:11: routerpic is not a path"},
      {"pics\\example.jpg", "http://x/y", "a.txt:11: routerpic is not a path"},
      {"routerpic: pics\\example.jpg\n", "", "a.txt:1: The router has no field routerpic."},
      {"[routercommands]", "[commands]", "a.txt:12: The heading [commands] is not known."},
      {"nav(\"a\")", "", "a.txt:12: The script [routercommands] has no line."},
      {"nav(\"a\")", "\\\\n", "a.txt:13: In a text that begins"},
      {"nav(\"a\")", "\\nav", "a.txt:13: In a text that begins"},
      {"nav(\"a\")", "nav\x01", "a.txt:13: This line has a control character"},
      {"nav(\"a\")", "nav\r(\"a\")", "a.txt:13: This line has a control character"},
      {"nav(\"a\")", "nav(\"\xE4\")", "a.txt:13: This line is not UTF-8."},
      {"[routerportpage]", "[routercommands]",
       "a.txt:14: The heading [routercommands] appears a second"},
      {"[routercommands]", "routertested: Real\n[routercommands]",
       "a.txt:12: routertested is \"Real\""},
      {"[routercommands]", "[routerremove]\n[routercommands]",
       "a.txt:12: The script [routerremove] has no line."},
      {"[routercommands]", "[models]\n2; B\n[models]\n[routercommands]",
       "a.txt:14: The heading [models] appears a second"},
      {"[routercommands]", "[models]\n2\n[routercommands]", "a.txt:13: This line should"},
      {"[routercommands]", "[models]\n; B\n[routercommands]", "a.txt:13: \"\" is not an ID"},
      {"[routercommands]", "[models]\n2;\n[routercommands]", "a.txt:13: The router has no name."},
      {"[routercommands]", "[models]\n# x\n1; B\n[routercommands]",
       "a.txt:14: The ID \"1\" stands in "},
      {"[routercommands]", "[models]\n2; EXAMPLE 100\n[routercommands]",
       "a.txt:13: The router name \"EXAMPLE 100\" stands in "},
      {"[routerportpage]\n", "", "a.txt:1: The router has no script [routerportpage]."},
  };
  ASSERT_EQ(CheckRouter(kRouter).left(16), "Nothing is wrong");
  for (const auto& row : kRows) {
    ASSERT_TRUE(QByteArray(kRouter).contains(row.from)) << row.from;
    const QByteArray problems = CheckRouter(QByteArray(kRouter).replace(row.from, row.to));
    EXPECT_TRUE(problems.contains(QByteArray("routers/") + row.problem))
        << row.problem << " is not in " << problems.constData();
  }
}

TEST_F(CheckTest, AllFaultsAreReportedAtOnceInTheOrderOfTheLines) {
  const QByteArrayList problems = CheckRouter(QByteArray(kRouter)
                                                  .replace("65535", "x")
                                                  .replace("id: 1", "id: y")
                                                  .replace("range: 0", "range: z"))
                                      .trimmed()
                                      .split('\n');
  ASSERT_EQ(problems.size(), 3);
  EXPECT_TRUE(problems[0].startsWith("routers/a.txt:1:"));
  EXPECT_TRUE(problems[1].startsWith("routers/a.txt:8:"));
  EXPECT_TRUE(problems[2].startsWith("routers/a.txt:10:"));
}

TEST_F(CheckTest, TwoRoutersOfOneIdOrNameAreReportedWithBothPlaces) {
  Write("routers/b.txt", QByteArray(kRouter).replace("Example", "EXAMPLE"));
  const QByteArray problems = CheckRouter(kRouter);
  EXPECT_TRUE(
      problems.contains("routers/b.txt:1: The ID \"1\" stands in routers/a.txt:1 already."));
  EXPECT_TRUE(problems.contains("routers/b.txt:2: The router name \"EXAMPLE 100\" stands in "));
  Write("routers/b.txt", QByteArray("[file x]\n") + kRouter + "[file y]\n");
  EXPECT_TRUE(CheckRouter(kRouter).contains("routers/b.txt:17: The router has no field id."));
}

TEST_F(CheckTest, AFaultOfTheRouterIsReportedOnceForAllItsModels) {
  const QByteArray router =
      QByteArray(kRouter).replace("[routercommands]", "[models]\n2; B\n3; C\n\n[routercommands]");
  EXPECT_TRUE(CheckRouter(router).startsWith("Nothing is wrong: routers 3"));
  const QByteArray problems = CheckRouter(QByteArray(router).replace("65535", "x"));
  EXPECT_EQ(problems.count('\n'), 1) << problems.constData();
}

TEST_F(CheckTest, TheLintSeesEveryLineOfTheScriptsAsItIsStored) {
  QStringList seen;
  const ScriptLint lint = [&](const SourceScript& script) {
    seen.append(script.column + u": "_s + script.lines.join(u'|'));
    EXPECT_EQ(script.update_lines.value(0).trimmed(), u"nav(\"a\")"_s) << "this router's own";
    return script.lines.size() > 1 ? QList<ScriptRemark>{{.sentence = u"No command."_s, .line = 2}}
                                   : QList<ScriptRemark>();
  };
  const QByteArray router =
      QByteArray(kRouter).replace("nav(\"a\")", "  nav(\"a\") \n\n\\\n\\[x\\\\y\\u000ahidden") +
      "[routerremove]\nnav(\"c\")\n";
  EXPECT_EQ(CheckRouter(router, lint), "routers/a.txt:16: No command.\n");
  EXPECT_EQ(seen, (QStringList{u"routercommands:   nav(\"a\") |[x\\y|hidden"_s,
                               u"routerportpage: nav(\"b\")"_s, u"routerremove: nav(\"c\")"_s}));
}

TEST_F(CheckTest, AWarningIsReportedAndRefusesNothing) {
  const ScriptLint lint = [](const SourceScript&) {
    return QList<ScriptRemark>{{.sentence = u"Odd."_s, .is_warning = true}};
  };
  const QByteArray told = CheckRouter(kRouter, lint);
  EXPECT_TRUE(told.startsWith("routers/a.txt:13: warning: Odd.\n")) << told.constData();
  EXPECT_TRUE(told.contains("Nothing is wrong")) << told.constData();
  const Result built = Build(lint);
  EXPECT_EQ(built.exit_code, kExitFine) << qPrintable(built.error);
  EXPECT_TRUE(built.output.contains(u"warning: Odd."_s));
  EXPECT_TRUE(QFile::exists(Path("routers.mdb")));
}

TEST_F(CheckTest, EachFaultOfAProgramIsReportedWithItsLine) {
  const struct {
    const char* line;
    const char* problem = nullptr;  // nothing: the line is fine
    const char* file = "ports/a.txt";
  } kRows[] = {
      {"1 ; A ; Abcdefgh ; 1, 65535 ; 5-9 ; 2-4 ; example.org/manual"},
      {"1 ; A ; Short Nam ; 80 ; 81 ; ; IANA"},
      {"1 ; A ; B ; \\21-21||22-22 ; ; ; IANA"},
      {"1 ; A ; B ; ; 1-20000 ; ; IANA"},
      {"1 ; A ; B ; 80 ; ;", "The line has 6 cells"},
      {"1 ; A ; B ; 80 ; ; ; IANA ;", "The line has 8 cells"},
      {"x ; A ; B ; 80 ; ; ; x", "\"x\" is not an ID"},
      {"0 ; A ; B ; 80 ; ; ; x", "\"0\" is not an ID"},
      {"1 ; \\q ; B ; 80 ; ; ; x", "In a text that begins"},
      {"1 ;  ; B ; 80 ; ; ; x", "The program has no name."},
      {"1 ; A ;  ; 80 ; ; ; x", "The short name \"\" should"},
      {"1 ; A ; Abcdefghi ; 80 ; ; ; x", "The short name \"Abcdefghi\" should"},
      {"1 ; A|B ; B ; 80 ; ; ; x", "A name with \"|\""},
      {"1 ; A ; B ; ; ; ; x", "The program has no ports."},
      {"1 ; A ; B ; 0 ; ; ; x", "\"0-0\" is not made of ports"},
      {"1 ; A ; B ; ; 65536 ; ; x", "\"65536-65536\" is not made of ports"},
      {"1 ; A ; B ; ; ; 1-2-3 ; x", "\"1-2-3\" is not made of ports"},
      {"1 ; A ; B ; 80,,81 ; ; ; x", "\"-\" is not made of ports"},
      {"1 ; A ; B ; -5 ; ; ; x", "\"-5\" is not made of ports"},
      {"1 ; A ; B ; 9-8 ; ; ; x", "\"9-8\" ends before it starts."},
      {"1 ; A ; B ; \\21 ; ; ; x", "\"21\" has no end port."},
      {"1 ; A ; B ; 5-9, 7 ; ; ; x", "TCP port 7 stands twice."},
      {"1 ; A ; B ; ; 80 ; 80-81 ; x", "UDP port 80 stands twice."},
      {"1 ; A ; B ; 80 ; ; ;", "warning: There is no source"},
      {"1 ; A ; B ; 1-20001 ; ; ; x", "warning: 1-20001 is more than 20000 ports."},
      {"1 ; A ; B ; 1, 5 ; 5 ; ; x", "warning: 5-5 is listed for TCP and for UDP"},
      {"1 ; Tencharact ; TCP/UDP ; 1 ; 65535", nullptr, "custom.txt"},
      {"1 ; Elevenchars ; TCP ; 1 ; 1", "The name \"Elevenchars\"", "custom.txt"},
      {"1 ; A ; tcp ; 1 ; 1", "The protocol is \"tcp\"", "custom.txt"},
      {"1 ; A ; TCP ; 2 ; 1", "\"2-1\" ends before", "custom.txt"},
      {"1 ; A ; TCP ; ; 1", "\"-1\" is not made of ports", "custom.txt"},
  };
  Write("routers/a.txt", kRouter);
  for (const auto& row : kRows) {
    Write("ports/a.txt", "");
    Write(row.file, QByteArray("# head\n\n") + row.line + "\n");
    const QByteArray problems = Check();
    EXPECT_TRUE(problems.startsWith(row.problem ? row.file + QByteArray(":3: ") + row.problem
                                                : QByteArray("Nothing")))
        << row.line << ": " << problems.constData();
  }
  QFile::remove(Path("custom.txt"));
  Write("ports/a.txt", "1;A;B c;1;;;x\n");
  Write("ports/b.txt", "1;a;bC;2;;;x\n");
  const QByteArray problems = Check();
  for (const char* what : {"ID \"1\"", "program name \"a\"", "short name \"bC\""}) {
    EXPECT_TRUE(problems.contains(QByteArray("ports/b.txt:1: The ") + what + " stands in ports/a"));
  }
}

TEST_F(CheckTest, FilesThatAreNoDataAreReportedAndNeverTakenForEmptyOnes) {
  Write("ports/a.txt", "");
  EXPECT_TRUE(Check().startsWith("routers:1: There is no router file here."));
  EXPECT_TRUE(CheckRouter("").startsWith("routers/a.txt:1: There is no router in this file."));
  EXPECT_TRUE(CheckRouter("# nothing\n").contains("There is no router in this file."));
  EXPECT_TRUE(CheckRouter(QByteArray(kMaxTextFileBytes + 1, '\n')).contains("larger than 4 MB"));
  EXPECT_TRUE(CheckRouter(QByteArray(3000, '\0')).contains("a.txt:1: This line has a control"));
  EXPECT_TRUE(CheckRouter("\xEF\xBB\xBF" + QByteArray(kRouter).replace("\n", "\r\n"))
                  .startsWith("Nothing"));
  QFile::remove(Path("ports/a.txt"));
  EXPECT_TRUE(Check().startsWith("ports:1: There is no file of programs here."));
  QFile::link(Path("missing"), Path("ports/a.txt"));
  EXPECT_TRUE(Check().startsWith("ports:1: There is no file of programs here."));
}

TEST_F(CheckTest, BuildRefusesWhatCheckRefusesAndTouchesNothing) {
  Write("routers/a.txt", QByteArray(kRouter).replace("65535", "x"));
  Write("ports/a.txt", "");
  Write("routers.mdb", "old");
  const Result result = Build();
  EXPECT_EQ(result.exit_code, kExitFailed);
  EXPECT_TRUE(result.error.contains(u"a.txt:10:"_s));
  EXPECT_EQ(testing::ReadBytes(Path("routers.mdb")), "old");
  EXPECT_FALSE(QFile::exists(Path("ports.mdb")));
}

TEST(Commands, AnythingElseShowsTheUsage) {
  for (const QString& line : {u""_s, u"build a"_s, u"check"_s, u"dump a b"_s, u"Build a b"_s,
                              u"check a --replace-custom"_s, u"build a b --replace"_s}) {
    const Result result = RunCommand(line.split(u' ', Qt::SkipEmptyParts));
    EXPECT_EQ(result.exit_code, kExitUsage);
    EXPECT_TRUE(result.error.contains(u"build DATA OUT"_s));
  }
}

}  // namespace
}  // namespace quayline::dbtool
