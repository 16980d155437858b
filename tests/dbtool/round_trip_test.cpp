// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "dbtool/commands.h"
#include "dbtool/database_file.h"

namespace quayline::dbtool {
namespace {

QByteArray Bytes(const QString& name) {
  QFile file(name);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
  return file.readAll();
}

void Save(const QString& name, const QString& text) {
  QFile file(name);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(text.toUtf8());
}

RouterRecord Router(int id, const QString& commands, const QString& port_page) {
  return {.id = id,
          .routername = QStringLiteral("Router %1").arg(id),
          .routerusername = {},
          .routerpassword = {},
          .routersupportsboth = QStringLiteral("YES"),
          .routerneedscomputername = QStringLiteral("no"),
          .routermaxentries = QStringLiteral("007"),
          .routermaxrange = QStringLiteral("65535"),
          .routerminport = QStringLiteral("1"),
          .routermaxport = QStringLiteral("65535"),
          .routerpic = {},
          .routercommands = commands,
          .routerportpage = port_page};
}

RouterSource AsSource(const RouterRecord& record) {
  RouterSource source;
  source.record = record;
  return source;
}

template <typename Record>
QList<Sourced<Record>> AsSources(const QList<Record>& records) {
  QList<Sourced<Record>> sources;
  for (const Record& record : records) {
    sources.append({record, {}, 1});
  }
  return sources;
}

class RoundTripTest : public ::testing::Test {
 protected:
  QString Path(const char* name) const { return folder_.filePath(QLatin1String(name)); }

  // Writes the databases, dumps them into a data folder, and builds it: both sets of files must be
  // the same, byte by byte.
  void ExpectRoundTrip(const ProgramData& data) {
    ASSERT_TRUE(WriteDatabases(data, Path("first")).has_value());
    ASSERT_TRUE(QDir().mkpath(Path("data/routers")));
    const char* const files[][2] = {{"routers.mdb", "data/routers/all.txt"},
                                    {"ports.mdb", "data/ports.txt"},
                                    {"custom.mdb", "data/custom.txt"}};
    for (const auto& [database, text_file] : files) {
      const auto text = DumpDatabase(Path("first/") + QLatin1String(database));
      ASSERT_TRUE(text.has_value()) << text.error().toStdString();
      Save(Path(text_file), *text);
    }
    const Result built = RunCommand({QStringLiteral("build"), Path("data"), Path("second")});
    ASSERT_EQ(built.exit_code, kExitFine) << built.error.toStdString();
    for (const auto& [database, text_file] : files) {
      EXPECT_TRUE(Bytes(Path("first/") + QLatin1String(database)) ==
                  Bytes(Path("second/") + QLatin1String(database)))
          << Bytes(Path(text_file)).constData();
    }
  }

  QTemporaryDir folder_;
};

TEST_F(RoundTripTest, OddTextsComeBackAsTheyWere) {
  ProgramData data;
  const char* const scripts[] = {
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
  };
  int id = 0;
  for (const char* script : scripts) {
    const QString text = QString::fromUtf8(script);
    data.routers.append(AsSource(Router(++id, text, QStringLiteral("x"))));
    data.routers.append(AsSource(Router(++id, QStringLiteral("x"), text)));
  }
  for (const char* value :
       {"\\", "\\u0041", " x ", "a: b", "#x", "[x]", "x;y", "\n", "\t\xC2\xA0"}) {
    RouterRecord record = Router(++id, QStringLiteral("x"), QStringLiteral("x"));
    record.routername += QString::fromUtf8(value);
    record.routerusername = QString::fromUtf8(value);
    data.routers.append(AsSource(record));
  }
  data.routers.last().record.id = 2147483647;
  data.ports = AsSources<AppPortRecord>({
      {1, QStringLiteral("A;B # \\c"), QStringLiteral(" ;A"), QStringLiteral("21-21|5-9"), {}, {}},
      {2, QStringLiteral("\\x"), QStringLiteral("#"), {}, QStringLiteral("|21-21||"), {}},
      {9,
       QStringLiteral(" n\n"),
       QStringLiteral("n"),
       {},
       {},
       QStringLiteral("0021-0021|1-65535").left(9)},
  });
  data.custom = AsSources<CustomPortRecord>({{5, QStringLiteral(" ;x\\"), QStringLiteral("TCP/UDP"),
                                              QStringLiteral("7"), QStringLiteral("0007")}});
  ExpectRoundTrip(data);
}

TEST_F(RoundTripTest, ASingleRouterNeedsNoSeparatorAndEmptyTablesStay) {
  ProgramData data;
  data.routers.append(AsSource(Router(3, QStringLiteral("a"), QStringLiteral("b"))));
  ExpectRoundTrip(data);
  EXPECT_FALSE(Bytes(Path("data/routers/all.txt")).contains("[file"));

  data.routers.append(AsSource(Router(4, QStringLiteral("a"), QStringLiteral("b"))));
  ExpectRoundTrip(data);
  EXPECT_TRUE(Bytes(Path("data/routers/all.txt")).startsWith("[file 3-router-3.txt]\n"));
}

TEST_F(RoundTripTest, TheDataOfThisProgramIsSoundAndComesBack) {
  const QString shipped = QStringLiteral(QUAYLINE_SOURCE_DIR "/data");
  const Result checked = RunCommand({QStringLiteral("check"), shipped});
  ASSERT_EQ(checked.exit_code, kExitFine) << checked.output.toStdString();
  Problems problems;
  ExpectRoundTrip(ReadDataFolder(shipped, {}, problems));
}

TEST_F(RoundTripTest, DumpReadsATableOfAnotherMakeAndChangesNothing) {
  const QString file = Path("foreign.mdb");
  {
    QSqlDatabase database =
        QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("foreign"));
    database.setDatabaseName(file);
    ASSERT_TRUE(database.open());
    QSqlQuery query(database);
    // No key, rows out of order, a number for a text, NULL, a column too many and some missing.
    ASSERT_TRUE(query.exec(
        QStringLiteral("CREATE TABLE Ports (extra, appname, TCPPORTSONLY, id INTEGER)")));
    ASSERT_TRUE(
        query.exec(QStringLiteral("INSERT INTO Ports VALUES (1, 'B', '1-1', 2), (1, 'A', NULL, 1), "
                                  "(1, 12, '2-3', 3)")));
  }
  QSqlDatabase::removeDatabase(QStringLiteral("foreign"));
  const QByteArray before = Bytes(file);
  const auto text = DumpDatabase(file);
  ASSERT_TRUE(text.has_value()) << text.error().toStdString();
  const QStringList lines = text->split(QLatin1Char('\n'));
  ASSERT_EQ(lines.size(), 5);
  EXPECT_EQ(lines.at(1).simplified(), QStringLiteral("1 ; A ; ; ; ;"));
  EXPECT_EQ(lines.at(2).simplified(), QStringLiteral("2 ; B ; ; 1 ; ;"));
  EXPECT_EQ(lines.at(3).simplified(), QStringLiteral("3 ; 12 ; ; 2-3 ; ;"));
  EXPECT_EQ(Bytes(file), before);
}

TEST_F(RoundTripTest, WhatIsNoDatabaseIsSaidAndNotMade) {
  Save(Path("text.mdb"), QStringLiteral("not a database").repeated(1000));
  Save(Path("empty.mdb"), QString());
  for (const char* name : {"text.mdb", "empty.mdb", "missing.mdb", "."}) {
    const auto text = DumpDatabase(Path(name));
    ASSERT_FALSE(text.has_value()) << name;
    EXPECT_TRUE(text.error().contains(Path(name))) << text.error().toStdString();
  }
  EXPECT_FALSE(QFile::exists(Path("missing.mdb")));
}

TEST_F(RoundTripTest, ATargetThatCannotBeWrittenLeavesTheOtherFiles) {
  ProgramData data;
  data.routers.append(AsSource(Router(3, QStringLiteral("a"), QStringLiteral("b"))));
  ASSERT_TRUE(QDir().mkpath(Path("out/custom.mdb")));  // a folder stands in the way
  Save(Path("out/routers.mdb"), QStringLiteral("old"));
  const auto written = WriteDatabases(data, Path("out"));
  ASSERT_FALSE(written.has_value());
  EXPECT_TRUE(written.error().contains(QStringLiteral("custom.mdb")));
  EXPECT_EQ(Bytes(Path("out/routers.mdb")), "old");
  EXPECT_EQ(QDir(Path("out")).entryList(QDir::Files), QStringList{QStringLiteral("routers.mdb")});
  EXPECT_FALSE(WriteDatabases(data, Path("out/routers.mdb/below")).has_value());
}

}  // namespace
}  // namespace quayline::dbtool
