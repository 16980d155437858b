// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QSqlQuery>

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/sql_connection.h"
#include "dbtool/commands.h"
#include "dbtool/database_file.h"
#include "test_main.h"

namespace quayline::dbtool {
namespace {

using namespace Qt::StringLiterals;
using testing::ReadBytes;
using testing::WriteBytes;

RouterSource Router(int id, const QString& commands = u"x"_s, const QString& port_page = u"x"_s) {
  RouterSource source;
  source.record = {.id = id,
                   .routername = u"Router %1"_s.arg(id),
                   .routersupportsboth = u"YES"_s,
                   .routerneedscomputername = u"no"_s,
                   .routermaxentries = u"007"_s,
                   .routermaxrange = u"65535"_s,
                   .routerminport = u"1"_s,
                   .routermaxport = u"65535"_s,
                   .routercommands = commands,
                   .routerportpage = port_page};
  return source;
}

class RoundTripTest : public ::testing::Test {
 protected:
  QString Path(const QString& name) const { return folder_.filePath(name); }

  // Writes the databases, dumps them into a data folder, and builds it: both sets of files must be
  // the same, byte by byte.
  void ExpectRoundTrip(const ProgramData& data) {
    ASSERT_TRUE(WriteDatabases(data, Path(u"first"_s)).has_value());
    ASSERT_TRUE(QDir().mkpath(Path(u"data/routers"_s)));
    ASSERT_TRUE(QDir().mkpath(Path(u"data/ports"_s)));
    const std::pair<QString, QString> files[] = {{u"routers.mdb"_s, u"data/routers/all.txt"_s},
                                                 {u"ports.mdb"_s, u"data/ports/all.txt"_s},
                                                 {u"custom.mdb"_s, u"data/custom.txt"_s}};
    for (const auto& [database, text_file] : files) {
      const auto text = DumpDatabase(Path(u"first/"_s + database));
      ASSERT_TRUE(text.has_value()) << qPrintable(text.error());
      ASSERT_TRUE(WriteBytes(Path(text_file), text->toUtf8()));
    }
    const Result built = RunCommand({u"build"_s, Path(u"data"_s), Path(u"second"_s)});
    ASSERT_EQ(built.exit_code, kExitFine) << qPrintable(built.error);
    for (const auto& [database, text_file] : files) {
      const QByteArray first = ReadBytes(Path(u"first/"_s + database));
      EXPECT_TRUE(!first.isEmpty() && first == ReadBytes(Path(u"second/"_s + database)))
          << ReadBytes(Path(text_file)).constData();
    }
  }

  QTemporaryDir folder_;
};

TEST_F(RoundTripTest, OddTextsComeBackAsTheyWere) {
  ProgramData data;
  int id = 0;
  for (const char* script : {
           "nav(\"a\")",
           "nav(\"a\")\r\n",
           "\r\nnav(\"a\")",
           "a\r\n\r\nb\r\n   \r\n\t",
           "[routerportpage]\r\n[file x]\r\n[",
           "\\\r\n\\\\u0041\r\n\\[x",
           "id: 5\r\n# no comment\r\n; x",
           "  blanks around \r\n\ttabs\t",
           "lone\nfeed\rreturn\x01\x7f\r\n\r\r\n\n",
           "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x9A\xA2 \xE2\x80\xA8 \xC2\x85\xC2\xA0",
           "\xEF\xBB\xBFx",
       }) {
    data.routers.append(Router(++id, QString::fromUtf8(script)));
    data.routers.append(Router(++id, u"x"_s, QString::fromUtf8(script)));
    data.routers.last().record.routerremove = QString::fromUtf8(script);
  }
  for (const char* value :
       {"\\", "\\u0041", " x ", "a: b", "#x", "[x]", "x;y", "\n", "\t\xC2\xA0"}) {
    RouterSource router = Router(++id);
    router.record.routername += QString::fromUtf8(value);
    router.record.routerusername = QString::fromUtf8(value);
    router.record.routerversions = QString::fromUtf8(value);
    data.routers.append(router);
  }
  data.routers.last().record.id = 2147483647;
  data.ports = {{.record = {1, u"A;B # \\c"_s, u" ;A"_s, u"21-21|5-9"_s, {}, {}}},
                {.record = {2, u"\\x"_s, u"#"_s, {}, u"|21-21||"_s, {}}},
                {.record = {9, u" n\n"_s, u"n"_s, {}, {}, u"0021-0021"_s}}};
  data.custom = {{.record = {5, u" ;x\\"_s, u"TCP/UDP"_s, u"7"_s, u"0007"_s}}};
  ExpectRoundTrip(data);
}

TEST_F(RoundTripTest, ASingleRouterNeedsNoSeparatorAndEmptyTablesStay) {
  ProgramData data;
  data.routers.append(Router(3));
  ExpectRoundTrip(data);
  EXPECT_FALSE(ReadBytes(Path(u"data/routers/all.txt"_s)).contains("[file"));
  data.routers.append(Router(4));
  ExpectRoundTrip(data);
  EXPECT_TRUE(ReadBytes(Path(u"data/routers/all.txt"_s)).startsWith("[file 3-router-3.txt]\n"));
}

TEST_F(RoundTripTest, EachModelIsARouterWithTheScriptsAndValuesOfItsFile) {
  ASSERT_TRUE(QDir().mkpath(Path(u"data/routers"_s)));
  ASSERT_TRUE(QDir().mkpath(Path(u"data/ports"_s)));
  WriteBytes(Path(u"data/ports/a.txt"_s), "");
  ProgramData data;
  data.routers = {Router(3), Router(4)};
  data.routers.first().record.routerremove = u"y"_s;
  data.routers.first().record.routertested = u"real"_s;
  ASSERT_TRUE(WriteDatabases(data, Path(u"first"_s)));
  QString text = *DumpDatabase(Path(u"first/routers.mdb"_s));
  text.replace(u"\n[routercommands]"_s, u"\n[models]\n30; A; b\n\n[routercommands]"_s);
  const qsizetype second = text.lastIndexOf(u"30; A"_s);
  text.replace(second, 2, u"40"_s).replace(text.lastIndexOf(u"A; b"_s), 4, u"\\\\u0020B"_s);
  WriteBytes(Path(u"data/routers/all.txt"_s), text.toUtf8());
  const Result built = RunCommand({u"build"_s, Path(u"data"_s), Path(u"out"_s)});
  ASSERT_EQ(built.exit_code, kExitFine) << qPrintable(built.error);

  RouterSource other = data.routers.first();
  other.record.id = 30;
  other.record.routername = u"A; b"_s;
  data.routers.append(other);
  other = Router(40);
  other.record.routername = u" B"_s;
  data.routers.append(other);
  ASSERT_TRUE(WriteDatabases(data, Path(u"second"_s)));
  EXPECT_EQ(*DumpDatabase(Path(u"out/routers.mdb"_s)),
            *DumpDatabase(Path(u"second/routers.mdb"_s)));
}

TEST_F(RoundTripTest, TheDataOfThisProgramIsSoundAndComesBack) {
  const QString shipped = QStringLiteral(QUAYLINE_SOURCE_DIR "/data");
  const Result checked = RunCommand({u"check"_s, shipped});
  ASSERT_EQ(checked.exit_code, kExitFine) << qPrintable(checked.output);
  EXPECT_FALSE(checked.output.contains(u"data/ports/"_s)) << qPrintable(checked.output);
  Problems problems;
  ExpectRoundTrip(ReadDataFolder(shipped, {}, problems));
}

TEST_F(RoundTripTest, DumpReadsATableOfAnotherMakeAndChangesNothing) {
  const QString file = Path(u"foreign.mdb"_s);
  {
    const SqlConnection connection(file, SqlAccess::kReadWrite);
    QSqlQuery query(connection.Handle());
    // No key, rows out of order, a number for a text, NULL, a column too many and some missing.
    ASSERT_TRUE(query.exec(u"CREATE TABLE Ports (extra, appname, TCPPORTSONLY, id INTEGER)"_s));
    ASSERT_TRUE(
        query.exec(u"INSERT INTO Ports VALUES (1, 'B', '1-1', 2), (1, 'A', NULL, 1), "
                   "(1, 12, '2-3', 3)"_s));
  }
  const QByteArray before = ReadBytes(file);
  const auto text = DumpDatabase(file);
  ASSERT_TRUE(text.has_value()) << qPrintable(text.error());
  const QStringList lines = text->split(u'\n');
  ASSERT_EQ(lines.size(), 5);
  EXPECT_EQ(lines[1].simplified(), u"1 ; A ; ; ; ; ;"_s);
  EXPECT_EQ(lines[2].simplified(), u"2 ; B ; ; 1 ; ; ;"_s);
  EXPECT_EQ(lines[3].simplified(), u"3 ; 12 ; ; 2-3 ; ; ;"_s);
  EXPECT_EQ(ReadBytes(file), before);
}

TEST_F(RoundTripTest, WhatIsNoDatabaseIsSaidAndNotMade) {
  WriteBytes(Path(u"text.mdb"_s), QByteArray("not a database").repeated(1000));
  WriteBytes(Path(u"empty.mdb"_s), "");
  for (const QString& name : {u"text.mdb"_s, u"empty.mdb"_s, u"missing.mdb"_s, u"."_s}) {
    const auto text = DumpDatabase(Path(name));
    ASSERT_FALSE(text.has_value()) << qPrintable(name);
    EXPECT_TRUE(text.error().contains(Path(name))) << qPrintable(text.error());
  }
  EXPECT_FALSE(QFile::exists(Path(u"missing.mdb"_s)));
}

TEST_F(RoundTripTest, ProgramsThatAUserEnteredAreReplacedOnlyIfRequested) {
  const QString out = Path(u"out"_s);
  ProgramData data;
  data.custom = {{.record = {1, u"Mine"_s, u"TCP"_s, u"1"_s, u"1"_s}}};
  ASSERT_TRUE(WriteDatabases(data, out));
  ASSERT_TRUE(WriteDatabases(data, out)) << "nothing would be lost";
  const QByteArray before = ReadBytes(out + u"/custom.mdb"_s);
  const auto refused = WriteDatabases({}, out);
  ASSERT_FALSE(refused);
  EXPECT_TRUE(refused.error().contains(u"--replace-custom"_s));
  EXPECT_EQ(ReadBytes(out + u"/custom.mdb"_s), before);
  EXPECT_TRUE(WriteDatabases({}, out, OwnPrograms::kReplace));
  WriteBytes(out + u"/custom.mdb"_s, "damaged, and perhaps to be saved");
  EXPECT_FALSE(WriteDatabases({}, out));
}

TEST_F(RoundTripTest, ATargetThatCannotBeWrittenLeavesTheOtherFiles) {
  ProgramData data;
  data.routers.append(Router(3));
  ASSERT_TRUE(QDir().mkpath(Path(u"out/custom.mdb"_s)));  // a folder of that name
  WriteBytes(Path(u"out/routers.mdb"_s), "old");
  const auto written = WriteDatabases(data, Path(u"out"_s));
  ASSERT_FALSE(written.has_value());
  EXPECT_TRUE(written.error().contains(u"custom.mdb"_s));
  EXPECT_EQ(ReadBytes(Path(u"out/routers.mdb"_s)), "old");
  EXPECT_EQ(testing::Names(Path(u"out"_s)).join(u' '), u"custom.mdb routers.mdb"_s);
  EXPECT_FALSE(WriteDatabases(data, Path(u"out/routers.mdb/below"_s)).has_value());
}

TEST_F(RoundTripTest, AJetFileIsImportedIntoANewFile) {
  const QString jet = QStringLiteral(QUAYLINE_SOURCE_DIR "/tests/core/fixtures/jet_routers.mdb");
  const QByteArray original = ReadBytes(jet);
  const Result imported = RunCommand({u"import"_s, jet, Path(u"new.mdb"_s)});
  EXPECT_EQ(imported.exit_code, kExitFine) << qPrintable(imported.error);
  EXPECT_TRUE(imported.output.contains(u"routers: 2 rows\n"_s)) << qPrintable(imported.output);
  EXPECT_EQ(ReadBytes(jet), original);
  const QString dump = DumpDatabase(Path(u"new.mdb"_s)).value_or(QString());
  for (const char* text : {"Gr\xC3\xBC\xC3\x9F"
                           "e",
                           "\xD0\x96", "nav=page1499.htm"}) {
    EXPECT_TRUE(dump.contains(QString::fromUtf8(text))) << text;
  }
  EXPECT_EQ(RunCommand({u"import"_s, jet, Path(u"new.mdb"_s)}).error,
            Path(u"new.mdb"_s) + u" exists already.\n"_s);
}

TEST_F(RoundTripTest, WhatIsNoWholeJetFileIsNotImported) {
  const QByteArray jet =
      ReadBytes(QStringLiteral(QUAYLINE_SOURCE_DIR "/tests/core/fixtures/jet_routers.mdb"));
  const QString path = Path(u"old.mdb"_s);
  const QString out = Path(u"new.mdb"_s);
  const struct {
    const char* name;
    QByteArray bytes;
    QString error;  // after the name of the file
  } cases[] = {
      {"empty", "", u" is not a Jet file."_s},
      {"another database", "SQLite format 3" + QByteArray(4096, '\0'), u" is not a Jet file."_s},
      {"cut within a page", jet.chopped(100), u": Its content is damaged."_s},
      {"a page of a long text lost",
       QByteArray(jet).replace(9 * 4096, 4096, QByteArray(4096, '\0')),
       u": Its content is damaged."_s},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    ASSERT_TRUE(WriteBytes(path, each.bytes));
    const Result imported = RunCommand({u"import"_s, path, out});
    EXPECT_EQ(imported.exit_code, kExitFailed);
    EXPECT_EQ(imported.error, path + each.error + u'\n');
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{u"old.mdb"_s});
  }
  EXPECT_EQ(RunCommand({u"import"_s, Path(u"none"_s), out}).error,
            Path(u"none"_s) + u" does not exist.\n"_s);
}

}  // namespace
}  // namespace quayline::dbtool
