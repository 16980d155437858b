// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/program_folder.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include "core/databases.h"
#include "core/files.h"
#include "core/own_routers.h"
#include "core/shipped_databases.h"
#include "core/table_file.h"
#include "core/test_databases.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;
using testing::Names;
using testing::ReadBytes;
using testing::WriteBytes;

class ProgramFolder : public ::testing::Test {
 protected:
  ProgramFolder() {
    qputenv("XDG_DATA_HOME", QFile::encodeName(data_));
    QDir().mkpath(bin_);
    QDir().mkpath(shipped_);
    WriteBytes(shipped_ + u"/routers.mdb"_s, "seed routers");
    WriteBytes(shipped_ + u"/custom.mdb"_s, "seed custom");
  }
  ~ProgramFolder() override { qunsetenv("XDG_DATA_HOME"); }

  QTemporaryDir folder_;
  QString data_ = folder_.filePath(u"data"_s);
  QString bin_ = folder_.filePath(u"bin"_s);
  QString shipped_ = folder_.filePath(u"share/quayline-data"_s);
  QString home_ = data_ + u"/quayline"_s;
};

TEST_F(ProgramFolder, APortableProgramStaysInItsFolder) {
  WriteBytes(bin_ + u"/routers.mdb"_s, "own");
  EXPECT_EQ(FindProgramFolder(bin_, shipped_), bin_);
  EXPECT_FALSE(QFileInfo::exists(data_));
}

TEST_F(ProgramFolder, TheFirstStartCopiesWhatIsMissingAndReplacesNothing) {
  EXPECT_EQ(ShippedFolder(home_), QString());
  EXPECT_EQ(FindProgramFolder(bin_, QString()), home_) << "also where there is nothing to copy";
  EXPECT_EQ(Names(home_), QStringList());
  WriteBytes(home_ + u"/custom.mdb"_s, "mine");
  QFile::setPermissions(shipped_ + u"/routers.mdb"_s, QFile::ReadOwner);
  EXPECT_EQ(ShippedFolder(bin_), shipped_);
  EXPECT_EQ(FindProgramFolder(bin_, ShippedFolder(bin_)), home_);
  EXPECT_EQ(ReadBytes(home_ + u"/custom.mdb"_s), "mine");
  EXPECT_EQ(ReadBytes(home_ + u"/routers.mdb"_s), "seed routers");
  EXPECT_EQ(Names(home_),
            (QStringList{u"custom.mdb"_s, u"routers.mdb"_s, u"routers.mdb.shipped"_s}))
      << "a file that is not shipped, or a temporary one";
  EXPECT_TRUE(QFileInfo(home_ + u"/routers.mdb"_s).permission(QFile::WriteOwner));
}

TEST_F(ProgramFolder, AFolderThatCannotBeMadeIsNamedAndAFullDiskIsInNobodysWay) {
  WriteBytes(data_, "a file where the folder should be");
  const auto no_folder = FindProgramFolder(bin_, shipped_);
  ASSERT_FALSE(no_folder);
  EXPECT_TRUE(EnglishOf(no_folder.error()).contains(home_));
  QFile::remove(data_);
  QDir().mkpath(home_);
  const auto full = testing::OnFullDisk(3, [&] { return FindProgramFolder(bin_, shipped_); });
  EXPECT_EQ(full, home_);
  EXPECT_EQ(Names(home_), QStringList());
}

class ShippedDatabases : public ProgramFolder {
 protected:
  void Ship(const QList<RouterRecord>& routers) {
    ASSERT_TRUE(testing::MakeTestDatabases(shipped_, routers, {}, {}));
  }
  void Start() {
    databases_.Close();
    ASSERT_EQ(FindProgramFolder(bin_, shipped_), home_);
    ASSERT_TRUE(databases_.Open(home_));
  }
  // "ID name script", sorted by ID.
  QStringList Routers() const {
    QStringList routers;
    for (const RouterName& router : databases_.RouterNames(0, 100)) {
      const auto record = databases_.FindRouter(router.id);
      routers.append(u"%1 %2 %3"_s.arg(record->id).arg(record->routername, record->routercommands));
    }
    return routers;
  }
  static RouterRecord Router(int id, const QString& name, const QString& script) {
    return {.id = id, .routername = name, .routercommands = script};
  }

  Databases databases_;
};

TEST_F(ShippedDatabases, AnUpdateBringsWhatIsNewAndKeepsWhatTheUserChanged) {
  Ship({Router(1, u"Kept"_s, u"a"_s), Router(2, u"Edited"_s, u"b"_s), Router(3, u"Gone"_s, u"c"_s),
        Router(4, u"Edited and gone"_s, u"d"_s)});
  Start();
  EXPECT_TRUE(databases_.UpdateRouterScripts(2, u"mine"_s, {}));
  EXPECT_TRUE(databases_.UpdateRouterScripts(4, u"mine too"_s, {}));
  Start();
  EXPECT_EQ(Routers(), (QStringList{u"1 Kept a"_s, u"2 Edited mine"_s, u"3 Gone c"_s,
                                    u"4 Edited and gone mine too"_s}))
      << "nothing was shipped again";

  // The new row has the ID of a row that stays.
  Ship({Router(1, u"Kept"_s, u"better"_s), Router(2, u"Edited"_s, u"better"_s),
        Router(4, u"New"_s, u"e"_s)});
  for (int start = 0; start < 2; ++start) {
    Start();
    EXPECT_EQ(Routers(), (QStringList{u"1 Kept better"_s, u"2 Edited mine"_s, u"4 New e"_s,
                                      u"5 Edited and gone mine too"_s}));
  }
  EXPECT_EQ(FindShippedRouter(home_, u"Edited"_s)->routercommands, u"better"_s);
  EXPECT_FALSE(FindShippedRouter(home_, u"Edited and gone"_s));
}

TEST_F(ShippedDatabases, RoutersOfTheUserStayWithTheirIds) {
  Ship({Router(1, u"One"_s, u"a"_s)});
  Start();
  RouterRecord own = Router(0, u" Mine "_s, u"m"_s);
  ForeignScripts foreign(home_);
  const int first = kFirstOwnRouterId;
  EXPECT_TRUE(foreign.Note(first, {.name = u"Bob"_s, .key = {}})) << "of a router that is gone";
  EXPECT_EQ(AddOwnRouter(databases_, foreign, own), first);
  EXPECT_EQ(AddOwnRouter(databases_, foreign, own).error().error, OwnRouterError::kNameTaken);
  own.routername = u"Other"_s;
  EXPECT_EQ(AddOwnRouter(databases_, foreign, own), first + 1);
  EXPECT_FALSE(foreign.OriginOf(first));
  EXPECT_FALSE(databases_.AddRouter(first, own)) << "taken";
  databases_.Close();
  Ship({Router(1, u"One"_s, u"b"_s), Router(2, u"New"_s, u"n"_s), Router(3, u"Mine"_s, u"t"_s)});
  Start();
  EXPECT_EQ(Routers(), (QStringList{u"1 One b"_s, u"2 New n"_s, u"%1 Mine m"_s.arg(first),
                                    u"%1 Other m"_s.arg(first + 1)}));
  const QList<RouterName> names{{1, u"Harbour 5"_s}, {2, u"Quay Q20"_s}, {3, u"Quay T1"_s}};
  EXPECT_EQ(NearestRouter(names, u"quay t9"_s), 2);
  EXPECT_EQ(NearestRouter(names, u"Qu"_s), -1);
}

TEST_F(ShippedDatabases, ASetThatWasBeingPutInPlaceComesBeforeAShippedFile) {
  Ship({Router(1, u"One"_s, u"a"_s)});
  Start();
  EXPECT_TRUE(databases_.UpdateRouterScripts(1, u"new"_s, {}));
  databases_.Close();
  QDir().mkpath(home_ + u"/databases.complete"_s);
  ASSERT_TRUE(
      QFile::rename(home_ + u"/routers.mdb"_s, home_ + u"/databases.complete/routers.mdb"_s));
  Start();
  EXPECT_EQ(Routers(), QStringList(u"1 One new"_s));
}

// What a user has made goes to another computer without a loss.
TEST_F(ShippedDatabases, ARouterOfTheUsersOwnComesBackFromItsFileAsItWas) {
  Ship({Router(1, u"One"_s, u"a"_s)});
  Start();
  RouterRecord own;
  int number = 0;
  for (const Column<RouterRecord>& column : kRouterColumns) {
    own.*(column.member) = u" \\ ; [x] \u00e9 %1 "_s.arg(++number);
    if (column.kind == ColumnKind::kScript) {
      own.*(column.member) = u"\r\n[nav]\r\n  nav(\"%1\")\r\n\r\n# \\x\r\n"_s.arg(number);
    }
  }
  own.routername = u"# own: [1]"_s;
  ForeignScripts scripts(home_);
  const auto id = AddOwnRouter(databases_, scripts, own);
  const RouterRecord made = *databases_.FindRouter(id.value_or(0));
  const QString file = shipped_ + u"/own.txt"_s;
  ASSERT_TRUE(ExportRouter(made, file));
  databases_.Close();
  QDir(home_).removeRecursively();  // another computer
  Start();
  ForeignScripts foreign(home_);
  const auto ids = ImportRouters(databases_, foreign, {}, file);
  ASSERT_TRUE(ids) << qPrintable(FormatProblems(ids.error().problems));
  EXPECT_EQ(databases_.FindRouter(ids->first()), made);
}

TEST_F(ShippedDatabases, AMergeThatWasCutOffOrCannotBeDoneChangesNothingForGood) {
  Ship({Router(1, u"One"_s, u"a"_s), Router(2, u"Two"_s, u"b"_s)});
  Start();
  EXPECT_TRUE(databases_.UpdateRouterScripts(2, u"mine"_s, {}));
  databases_.Close();
  const QByteArray base = ReadBytes(home_ + u"/routers.mdb.shipped"_s);
  Ship({Router(1, u"One"_s, u"better"_s), Router(2, u"Two"_s, u"better"_s)});

  WriteBytes(home_ + u"/routers.mdb.shipped"_s, "damaged");
  Start();
  EXPECT_EQ(Routers(), (QStringList{u"1 One a"_s, u"2 Two mine"_s})) << "all may be the user's";

  // Killed after the rows were written and before the copy was.
  WriteBytes(home_ + u"/routers.mdb.shipped"_s, base);
  Start();
  WriteBytes(home_ + u"/routers.mdb.shipped"_s, base);
  Start();
  EXPECT_EQ(Routers(), (QStringList{u"1 One better"_s, u"2 Two mine"_s}));
}

TEST_F(ShippedDatabases, FieldsThatOnlyOneFileHasAreKept) {
  ASSERT_TRUE(testing::MakeTestDatabases(shipped_, {}, {}, {}));
  QFile::remove(shipped_ + u"/routers.mdb"_s);
  const auto write = [&](const QString& path, const char* column, const char* value) {
    QFile::remove(path);
    ASSERT_TRUE(WriteTables({{.name = u"routers"_s,
                              .columns = {u"ID"_s, u"routername"_s, QLatin1String(column)},
                              .rows = {{u"1"_s, u"One"_s, QLatin1String(value)}}}},
                            path));
  };
  QDir().mkpath(home_);
  write(home_ + u"/routers.mdb"_s, "note", "mine");
  write(shipped_ + u"/routers.mdb"_s, "routercommands", "script");
  Start();
  EXPECT_EQ(Routers(), QStringList(u"1 One script"_s))
      << "a row with a note of the user is his own; he cannot have changed what his file lacked";
  const auto file = TableFile::Open(home_, ShapeOf<RouterRecord>());
  ASSERT_TRUE(file);
  EXPECT_EQ((*file)->ReadAll().columns,
            (QStringList{u"id"_s, u"routername"_s, u"note"_s, u"routercommands"_s}));
}

}  // namespace
}  // namespace quayline
