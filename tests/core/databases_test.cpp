// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/databases.h"

#include <QElapsedTimer>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/sql_connection.h"
#include "core/test_databases.h"
#include "test_main.h"

namespace quayline {
namespace {

using testing::MakeTestDatabases;
using testing::ReadBytes;
using testing::WriteBytes;

QString U(const char* text) { return QString::fromUtf8(text); }

RouterRecord Router(int id, const char* name) { return {.id = id, .routername = U(name)}; }

QByteArray JetFile() {
  return ReadBytes(U(QUAYLINE_SOURCE_DIR "/tests/core/fixtures/jet_routers.mdb"));
}

class DatabasesTest : public ::testing::Test {
 protected:
  QString Path(const char* name) const { return folder_.filePath(U(name)); }
  std::expected<void, DatabaseError> Open() { return databases_.Open(folder_.path()); }
  void MakeAndOpen(const QList<RouterRecord>& routers, const QList<AppPortRecord>& ports = {},
                   const QList<CustomPortRecord>& custom = {}) {
    ASSERT_TRUE(MakeTestDatabases(folder_.path(), routers, ports, custom));
    ASSERT_TRUE(Open());
  }
  bool Run(const char* file, const QString& statement) {
    const SqlConnection connection(Path(file), SqlAccess::kReadWrite);
    return QSqlQuery(connection.Handle()).exec(statement);
  }
  // Names of all routers, read in steps of `step`.
  QString Names(int step) const {
    QStringList names;
    int after = std::numeric_limits<int>::min();
    constexpr qsizetype kMany = 20'000;  // A step that does not move on must fail, not hang.
    for (auto page = databases_.RouterNames(after, step); !page.isEmpty() && names.size() < kMany;
         page = databases_.RouterNames(after, step)) {
      for (const RouterName& router : page) {
        names.append(router.name);
      }
      after = page.last().id;
    }
    return names.join(u' ');
  }

  // Open() refused `file` by its name and left its `bytes` alone.
  void ExpectRefused(const std::expected<void, DatabaseError>& opened, const char* file,
                     const QByteArray& bytes) {
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().number, 0);
    EXPECT_TRUE(EnglishOf(opened.error().description).contains(Path(file)));
    EXPECT_EQ(ReadBytes(Path(file)), bytes);
    EXPECT_FALSE(databases_.IsOpen());
    EXPECT_EQ(databases_.RouterCount(), 0);
  }

  // The folder of the files that came with the program.
  QString Shipped() {
    QFile::setPermissions(shipped_.path(), QFile::Permissions(0x7755));
    MakeTestDatabases(shipped_.path(), {Router(7, "shipped")}, {{8, U("shipped")}},
                      {{9, U("shipped")}});
    return shipped_.path();
  }

  // Open() puts the program's own file or an empty one in the place of `file`, and keeps it.
  void ExpectReplaced(const char* file, bool has_shipped) {
    const QByteArray spoiled = ReadBytes(Path(file));
    const QString aside = Path(file) + U(".damaged");
    ASSERT_TRUE(databases_.Open(folder_.path(), has_shipped ? Shipped() : QString()));
    EXPECT_EQ(databases_.Notices().size(), 1);
    EXPECT_TRUE(EnglishOf(databases_.Notices().value(0)).contains(Path(file)));
    EXPECT_TRUE(QFileInfo::exists(aside));
    EXPECT_EQ(ReadBytes(aside), spoiled);
    const bool is_routers = Path(file) == Path("routers.mdb");
    EXPECT_EQ(Names(9), U(is_routers ? (has_shipped ? "shipped" : "") : "A"));
    EXPECT_EQ(
        databases_.RouterCount() + databases_.AppPortCount() + databases_.CustomPorts().size(),
        has_shipped ? 3 : 2);
    EXPECT_TRUE(databases_.AddCustomPort({}));
    EXPECT_TRUE(Open());
    EXPECT_TRUE(databases_.Notices().isEmpty()) << "the next start finds nothing amiss";
    databases_.Close();
    EXPECT_TRUE(QFile::remove(aside) || QDir(aside).removeRecursively());
  }

  QTemporaryDir folder_;
  QTemporaryDir shipped_;
  Databases databases_;
};

TEST_F(DatabasesTest,
       InPlaceOfADamagedFileComesItsGoodCopyOrTheOneThatCameWithTheProgramOrAnEmptyOne) {
  const auto write = [](const QByteArray& bytes) {
    return [bytes](const QString& path) { WriteBytes(path, bytes); };
  };
  const struct {
    const char* fault;
    const char* file;
    std::function<void(const QString&)> spoil;
  } rows[] = {
      {"missing", "custom.mdb", [](const QString& path) { QFile::remove(path); }},
      {"a folder", "ports.mdb",
       [](const QString& path) { QFile::remove(path) && QDir().mkpath(path); }},
      {"garbage", "routers.mdb", write(QByteArray("not a database ").repeated(500))},
      {"empty", "ports.mdb", write({})},
      {"cut", "routers.mdb",
       [](const QString& path) { WriteBytes(path, ReadBytes(path).first(5000)); }},
      {"without its table", "custom.mdb",
       [this](const QString&) { Run("custom.mdb", U("ALTER TABLE custom RENAME TO other")); }},
      {"without its key", "custom.mdb",
       [this](const QString&) { Run("custom.mdb", U("ALTER TABLE custom RENAME ID TO number")); }},
      {"the head of a Jet file alone", "routers.mdb",
       write(QByteArray("\0\1\0\0Standard Jet DB\0", 20))},
      {"damaged within", "routers.mdb",
       [](const QString& path) {
         WriteBytes(path, ReadBytes(path).replace(12'288, 4096, QByteArray(4096, '\0')));
       }},
      {"a view without end", "routers.mdb",
       [this](const QString&) {
         Run("routers.mdb", U("DROP TABLE routers"));
         Run("routers.mdb", U("CREATE VIEW routers AS WITH RECURSIVE n(ID) AS (SELECT 1 UNION ALL "
                              "SELECT ID + 1 FROM n) SELECT ID, '' AS routername FROM n"));
       }},
      {"a trigger", "custom.mdb",
       [this](const QString&) {
         Run("custom.mdb", U("CREATE TRIGGER t AFTER INSERT ON custom BEGIN INSERT INTO custom "
                             "(appname) SELECT a.appname FROM custom AS a, custom AS b; END"));
       }},
      {"a column that is computed", "ports.mdb",
       [this](const QString&) {
         Run("ports.mdb", U("ALTER TABLE ports ADD COLUMN more AS (hex(zeroblob(400000000)))"));
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    QDir(Path("ports.mdb")).removeRecursively();
    RouterRecord router = Router(1, row.fault);
    router.routercommands = QString(20'000, u'x');
    MakeAndOpen({router});
    EXPECT_EQ(Names(9), U(row.fault)) << "the file that was replaced while closed is read";
    databases_.KeepGoodCopies();
    EXPECT_TRUE(Open());
    EXPECT_TRUE(databases_.Notices().isEmpty());
    databases_.Close();
    row.spoil(Path(row.file));
    const QByteArray spoiled = ReadBytes(Path(row.file));

    if (!QFileInfo::exists(Path(row.file))) {
      ExpectRefused(Open(), row.file, spoiled);
      continue;
    }
    ASSERT_TRUE(Open());
    EXPECT_EQ(databases_.FindRouter(1), router);
    ASSERT_EQ(databases_.Notices().size(), 1);
    EXPECT_TRUE(EnglishOf(databases_.Notices().first()).contains(Path(row.file)));
    databases_.KeepGoodCopies();
    EXPECT_EQ(ReadBytes(Path(row.file)), spoiled);
    databases_.Close();

    for (const bool has_shipped : {false, true}) {
      SCOPED_TRACE(has_shipped);
      QDir(Path("ports.mdb")).removeRecursively();
      router.routername = U("A");
      MakeAndOpen({router}, {{3, U("3")}}, {{4, U("4")}});
      databases_.Close();
      row.spoil(Path(row.file));
      for (const QString& copy : QDir(folder_.path()).entryList({U("*.good")})) {
        QFile::remove(folder_.filePath(copy));
      }
      ExpectReplaced(row.file, has_shipped);
    }
  }
  EXPECT_EQ(testing::Names(folder_.path()).size(), 3) << "temporary files stay behind";
}

TEST_F(DatabasesTest, AFileThatCannotBeReadOrReplacedIsStoodInFor) {
  const auto spoil = [this] { return WriteBytes(Path("custom.mdb"), "no database"); };
  const auto hide = [this] {
    const uid_t user = geteuid();
    return seteuid(getuid()) == 0 && QFile::setPermissions(Path("custom.mdb"), {}) &&
           seteuid(user) == 0;
  };
  for (const bool is_hidden : {false, true}) {
    for (const bool has_shipped : {false, true}) {
      SCOPED_TRACE(is_hidden * 2 + has_shipped);
      MakeAndOpen({Router(1, "A")});
      databases_.Close();
      ASSERT_TRUE(spoil());
      const QString shipped = has_shipped ? Shipped() : QString();
      const testing::ReadOnlyFolder folder(folder_.path());
      ASSERT_TRUE(!is_hidden || hide());
      ASSERT_TRUE(databases_.Open(folder_.path(), shipped));
      EXPECT_EQ(Names(1), U("A"));
      EXPECT_EQ(databases_.CustomPorts().size(), has_shipped ? 1 : 0);
      EXPECT_FALSE(databases_.AddCustomPort({})) << "would be lost";
      EXPECT_EQ(databases_.Notices().size(), 1);
      databases_.KeepGoodCopies();
    }
  }
  EXPECT_EQ(testing::Names(folder_.path()).size(), 3);
  QFile::remove(Path("custom.mdb"));
  EXPECT_TRUE(databases_.Open(folder_.path(), Shipped())) << "a full disk, at the first start";
  EXPECT_EQ(databases_.CustomPorts().size(), 1);
  EXPECT_EQ(testing::Names(Shipped()).size(), 3) << "a good copy beside what was installed";
}

TEST_F(DatabasesTest, AFileThatAnotherProgramHoldsIsReadFromItsGoodCopy) {
  MakeAndOpen({Router(1, "A")});
  databases_.KeepGoodCopies();
  databases_.Close();
  const SqlConnection other(Path("routers.mdb"), SqlAccess::kReadWrite);
  QSqlQuery query(other.Handle());
  ASSERT_TRUE(query.exec(U("BEGIN EXCLUSIVE")));
  ASSERT_TRUE(Open());
  EXPECT_EQ(Names(1), U("A"));
  EXPECT_TRUE(EnglishOf(databases_.Notices().value(0)).contains(U("in use by another program")));
  EXPECT_FALSE(databases_.UpdateRouterScripts(1, U("x"), U("x"))) << "the copy is only read";
}

TEST_F(DatabasesTest, EveryFieldComesBackUnderItsName) {
  const RouterRecord router = {20,        U("name"),   U("user"), U("pass"), U("no"),
                               U("yes"),  U("16"),     U("100"),  U("1"),    U("65535"),
                               U("a\\b"), U("x\r\ny"), U("Ж\"'")};
  const AppPortRecord ports = {2, U("app"), U("short"), U("1-2"), U("3-4"), U("5-6")};
  const CustomPortRecord custom = {9, U("c"), U("TCP/UDP"), U("7"), U("8")};
  MakeAndOpen({router}, {ports}, {custom});
  EXPECT_EQ(databases_.FindRouter(20), router);
  EXPECT_EQ(databases_.FindRouter(21), std::nullopt);
  EXPECT_EQ(databases_.AppPorts(), QList{ports});
  EXPECT_EQ(databases_.CustomPorts(), QList{custom});
}

TEST_F(DatabasesTest, TablesOfAnotherShapeAreRead) {
  ASSERT_TRUE(MakeTestDatabases(folder_.path(), {}));
  for (const char* shape : {"ID TEXT, routername TEXT, more BLOB", "id, RouterName, more",
                            "ID LONG INTEGER, routername VARCHAR(255), more TEXT"}) {
    SCOPED_TRACE(shape);
    QFile::remove(Path("routers.mdb"));
    ASSERT_TRUE(Run("routers.mdb", U("CREATE TABLE Routers(%1)").arg(U(shape))));
    ASSERT_TRUE(
        Run("routers.mdb",
            U("INSERT INTO routers VALUES ('10','ten',NULL), ('abc','bad',''), (NULL,'bad',''),"
              "(9,'nine',''), ('','bad',''), (1.5,'bad',''), (3000000000,'bad','')")));
    ASSERT_TRUE(Open());
    EXPECT_EQ(databases_.RouterCount(), 2);
    EXPECT_EQ(Names(1), U("nine ten"));
    EXPECT_EQ(databases_.FindRouter(10), Router(10, "ten"));
    EXPECT_TRUE(databases_.FindRouter(9));
  }
}

TEST_F(DatabasesTest, RoutersAndProgramsComeInStepsInTheOrderOfTheirIds) {
  const QList<AppPortRecord> programs = {{3, U("3")}, {5, U("5")}, {8, U("8")}};
  MakeAndOpen({Router(7, "c"), Router(-5, "a"), Router(1000, "e"), Router(8, "d"), Router(1, "b")},
              programs);
  for (const int step : {1, 2, 5, 100}) {
    EXPECT_EQ(Names(step), U("a b c d e")) << step;
  }
  EXPECT_TRUE(databases_.RouterNames(0, 0).isEmpty());
  EXPECT_TRUE(databases_.RouterNames(0, -1).isEmpty());
  EXPECT_EQ(databases_.AppPortCount(), 3);
  EXPECT_EQ(databases_.AppPorts(0, 2), programs.first(2));
  EXPECT_EQ(databases_.AppPorts(5, 2), programs.last(1));
  EXPECT_EQ(databases_.AppPorts(8, 2), QList<AppPortRecord>());
}

TEST_F(DatabasesTest, ScriptsAreStoredInAFileFromBeforeANewerColumn) {
  MakeAndOpen({Router(1, "A")});
  databases_.Close();
  ASSERT_TRUE(Run("routers.mdb", U("ALTER TABLE routers DROP COLUMN routertested")));
  ASSERT_TRUE(Open());
  EXPECT_TRUE(databases_.UpdateRouterScripts(1, U("new"), U("list"), U("rebuild")));
  EXPECT_EQ(databases_.FindRouter(1)->routerportpage, U("list"));
}

TEST_F(DatabasesTest, AWriteThatFailsLeavesTheOldScripts) {
  MakeAndOpen({Router(1, "A")});
  EXPECT_TRUE(databases_.UpdateRouterScripts(1, U("new"), {}));
  EXPECT_FALSE(databases_.UpdateRouterScripts(2, U("x"), U("x")));
  {
    const SqlConnection other(Path("routers.mdb"), SqlAccess::kReadWrite);
    QSqlQuery query(other.Handle());
    ASSERT_TRUE(query.exec(U("BEGIN EXCLUSIVE")));
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(databases_.UpdateRouterScripts(1, U("x"), U("x")));
    EXPECT_LT(timer.elapsed(), 20000);
  }
  databases_.Close();
  {
    const testing::ReadOnlyFolder folder(folder_.path());
    ASSERT_TRUE(Open());
    EXPECT_FALSE(databases_.UpdateRouterScripts(1, U("x"), U("x")));
    EXPECT_FALSE(databases_.RememberCustomPort({}));
    EXPECT_EQ(databases_.FindRouter(1)->routercommands, U("new"));
    databases_.Close();
  }
  ASSERT_TRUE(Open());
  EXPECT_EQ(databases_.FindRouter(1)->routercommands, U("new"));
}

TEST_F(DatabasesTest, AProgramIsKnownUnderAnyCaseAndANewOneGetsTheNextId) {
  const QList<CustomPortRecord> old = {{4, U("Web"), U("UDP"), U("1"), U("2")},
                                       {7, U("FTP"), U("UDP"), U("1"), U("2")},
                                       {9, U("ftp"), U("UDP"), U("1"), U("2")}};
  MakeAndOpen({}, {}, old);
  EXPECT_TRUE(databases_.RememberCustomPort({0, U("Ftp"), U("TCP"), U("21"), U("21")}));
  EXPECT_TRUE(databases_.RememberCustomPort({4, U("o'neil"), U("TCP"), U("5"), U("6")}));
  EXPECT_TRUE(databases_.AddCustomPort({}));
  ASSERT_TRUE(Open());
  EXPECT_EQ(databases_.CustomPorts(),
            (QList<CustomPortRecord>{old[0],
                                     {7, U("Ftp"), U("TCP"), U("21"), U("21")},
                                     old[2],
                                     {10, U("o'neil"), U("TCP"), U("5"), U("6")},
                                     {11}}));
}

TEST_F(DatabasesTest, AJetFileIsConvertedOnceAndItsOriginalKept) {
  ASSERT_TRUE(MakeTestDatabases(folder_.path(), {}));
  ASSERT_TRUE(WriteBytes(Path("routers.mdb"), JetFile()));
  for (int opening = 0; opening < 2; ++opening) {
    const auto opened = Open();
    ASSERT_TRUE(opened) << qPrintable(EnglishOf(opened.error().description));
    EXPECT_EQ(Names(1), U("Grüße Ж Harbour 20"));
    const RouterRecord long_script = *databases_.FindRouter(20);
    EXPECT_EQ(ScriptLines(long_script.routercommands).size(), 1500);
    EXPECT_TRUE(long_script.routercommands.endsWith(U("\r\nnav=page1499.htm")));
    EXPECT_EQ(long_script.routerpic, U("a\\b.jpg"));
    EXPECT_EQ(databases_.FindRouter(3)->routermaxentries, QString());
    EXPECT_EQ(ReadBytes(Path("routers.mdb.jet")), JetFile());
  }
  EXPECT_EQ(testing::Names(folder_.path()).size(), 4) << "temporary files stay behind";
  const SqlConnection connection(Path("routers.mdb"), SqlAccess::kReadOnly);
  QSqlQuery query(connection.Handle());
  ASSERT_TRUE(
      query.exec(U("SELECT (SELECT remark FROM routers WHERE ID = 20) || "
                   "group_concat(note) FROM notes WHERE ID = 1")));
  ASSERT_TRUE(query.next());
  EXPECT_EQ(query.value(0).toString(), U("keptfirst,second"));
}

TEST_F(DatabasesTest, AJetFileIsReplacedWhereItIsDamagedAndStaysWhereThereIsNoRoomToConvertIt) {
  const QByteArray jet = JetFile();
  for (qsizetype size = 20; size < jet.size(); size += jet.size() / 16) {
    SCOPED_TRACE(size);
    ASSERT_TRUE(MakeTestDatabases(folder_.path(), {}, {{3, U("3")}}, {{4, U("4")}}));
    ASSERT_TRUE(WriteBytes(Path("routers.mdb"), jet.first(size)));
    WriteBytes(Path("routers.mdb-journal"), "would be applied to the new file");
    ExpectReplaced("routers.mdb", false);
    EXPECT_TRUE(QFile::remove(Path("routers.mdb.damaged-journal")));
  }
  ASSERT_TRUE(WriteBytes(Path("routers.mdb"), jet));
  for (const rlim_t room : {0, 4096, 20'000, 90'000}) {
    SCOPED_TRACE(room);
    EXPECT_TRUE(testing::OnFullDisk(room, [&] { return Open(); }));
    EXPECT_EQ(databases_.Notices().size(), 1);
    EXPECT_EQ(databases_.RouterCount(), 0);
    EXPECT_EQ(ReadBytes(Path("routers.mdb")), jet) << "is not damaged";
    EXPECT_EQ(testing::Names(folder_.path()).size(), 3);
  }
  EXPECT_TRUE(Open());
}

}  // namespace
}  // namespace quayline
