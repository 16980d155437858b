// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/database_package.h"

#include <QSqlQuery>

#include <gtest/gtest.h>

#include "core/database_swap.h"
#include "core/databases.h"
#include "core/files.h"
#include "core/sql_connection.h"
#include "core/table_data.h"
#include "core/test_databases.h"
#include "demo/update_package.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using demo::MakePackage;
using testing::Names;
using testing::ReadBytes;
using testing::WriteBytes;

RouterRecord Router(int id, const QString& name, const QString& script) {
  return {.id = id, .routername = name, .routercommands = script};
}
AppPortRecord Program(int id, const QString& name) { return {.id = id, .appname = name}; }

class DatabasePackage : public ::testing::Test {
 protected:
  DatabasePackage() {
    for (const QString& name : {users_, shipped_, theirs_}) {
      QDir().mkpath(name);
    }
    Make(shipped_, {Router(1, u"One"_s, u"a"_s), Router(2, u"Edited"_s, u"b"_s),
                    Router(3, u"Gone"_s, u"c"_s)});
    FollowShippedDatabases(shipped_, users_);
    Make(theirs_, {Router(1, u"One"_s, u"better"_s), Router(2, u"Edited"_s, u"better"_s),
                   Router(4, u"New"_s, u"d"_s)});
  }

  static void Make(const QString& folder, const QList<RouterRecord>& routers) {
    ASSERT_TRUE(testing::MakeTestDatabases(folder, routers, {Program(1, u"Game"_s)},
                                           {{.id = 1, .appname = u"Theirs"_s}}));
  }
  QByteArray Theirs(const char* name) const {
    return ReadBytes(theirs_ + u'/' + QLatin1String(name));
  }
  QList<PackedFile> Set() const {
    QList<PackedFile> files;
    for (const char* name : kPackageNames) {
      files.append({name, Theirs(name)});
    }
    return files;
  }
  // Text of the error, or empty.
  QString Install(const QByteArray& package) {
    const QString path = folder_.filePath(u"databases.exe"_s);
    EXPECT_TRUE(WriteBytes(path, package));
    QString error = u"never ended"_s;
    const auto install = [&]() -> Task<> {
      const auto result = co_await InstallPackage(path, {users_, shipped_});
      error = result ? QString() : EnglishOf(result.error());
      changes_ = result.value_or(QList<RowChanges>());
    };
    EXPECT_TRUE(testing::RunTask(install(), 60s));
    return error;
  }
  QStringList Routers() {
    EXPECT_TRUE(databases_.Open(users_));
    QStringList routers;
    for (const RouterName& router : databases_.RouterNames(0, 100)) {
      const auto record = databases_.FindRouter(router.id);
      routers.append(u"%1 %2 %3"_s.arg(record->id).arg(record->routername, record->routercommands));
    }
    return routers;
  }
  QMap<QString, QByteArray> UsersFiles() const {
    QMap<QString, QByteArray> files;
    for (const QString& name : Names(users_)) {
      files[name] = ReadBytes(users_ + u'/' + name);
    }
    return files;
  }

  QTemporaryDir folder_;
  QString users_ = folder_.filePath(u"users"_s);
  QString shipped_ = folder_.filePath(u"shipped"_s);
  QString theirs_ = folder_.filePath(u"theirs"_s);
  QList<RowChanges> changes_;
  Databases databases_;
};

TEST_F(DatabasePackage, ItsRowsComeAndThoseOfTheUserStay) {
  ASSERT_TRUE(databases_.Open(users_));
  EXPECT_TRUE(databases_.UpdateRouterScripts(2, u"mine"_s, {}));
  EXPECT_TRUE(databases_.AddRouter(1000000, Router(0, u"Own"_s, u"o"_s)));
  EXPECT_TRUE(databases_.AddCustomPort({.appname = u"My program"_s}));
  databases_.Close();
  const QByteArray before = ReadBytes(users_ + u"/routers.mdb"_s);
  ASSERT_EQ(Install(MakePackage(Set(), QByteArray("MZ") + QByteArray(5000, '\x90'))), QString());
  const QStringList expected{u"1 One better"_s, u"2 Edited mine"_s, u"4 New d"_s,
                             u"1000000 Own o"_s};
  EXPECT_EQ(Routers(), expected);
  EXPECT_EQ(databases_.CustomPorts().size(), 2) << "with the one that came at the first start";
  EXPECT_EQ(databases_.CustomPorts().last().appname, u"My program"_s);
  ASSERT_EQ(changes_.size(), 2);
  EXPECT_EQ(changes_[0].came, 1);
  EXPECT_EQ(changes_[0].changed, 1);
  EXPECT_EQ(changes_[0].stayed, 2);
  EXPECT_EQ(changes_[0].gone, 1);
  EXPECT_EQ(changes_[1].stayed, 1);
  EXPECT_EQ(ReadBytes(users_ + u"/routers.mdb.previous"_s), before);
  EXPECT_EQ(FindShippedRouter(users_, u"Edited"_s)->routercommands, u"better"_s);

  // The installed databases are older, until an installation brings others.
  databases_.Close();
  FollowShippedDatabases(shipped_, users_);
  EXPECT_EQ(Routers(), expected);
  databases_.Close();
  Make(shipped_, {Router(1, u"One"_s, u"best"_s), Router(2, u"Edited"_s, u"best"_s),
                  Router(4, u"New"_s, u"d"_s)});
  FollowShippedDatabases(shipped_, users_);
  EXPECT_EQ(Routers(),
            (QStringList{u"1 One best"_s, u"2 Edited mine"_s, u"4 New d"_s, u"1000000 Own o"_s}));
}

TEST_F(DatabasePackage, WhateverIsWrongWithItChangesNothing) {
  const QList<PackedFile> good = Set();
  const auto with = [&](int place, const PackedFile& file) {
    QList<PackedFile> files = good;
    files[place] = file;
    return MakePackage(files, {});
  };
  const auto and_also = [&](const PackedFile& file) {
    QList<PackedFile> files = good;
    files.append(file);
    return MakePackage(files, {});
  };
  const QByteArray whole = MakePackage(good, {});
  QByteArray flipped = whole;
  flipped[whole.size() / 3] = static_cast<char>(~flipped[whole.size() / 3]);
  ASSERT_TRUE(testing::MakeTestDatabases(theirs_, {}, {}, {}));
  const PackedFile no_rows{"routers.mdb", Theirs("routers.mdb")};
  const QString other = folder_.filePath(u"other"_s);
  const auto with_rows = [&](const QStringList& ids) {
    TableData table{.name = u"routers"_s, .columns = {u"ID"_s, u"routername"_s}, .rows = {}};
    for (const QString& id : ids) {
      table.rows.append({id, u"R"_s + id});
    }
    QFile::remove(other);
    EXPECT_TRUE(WriteTables({table}, other));
    return with(0, {"routers.mdb", ReadBytes(other)});
  };
  QStringList many;
  for (int id = 1; id <= 100'001; ++id) {
    many.append(QString::number(id));
  }
  const struct {
    const char* fault;
    QByteArray package;
    const char* error;
  } cases[] = {
      {"nothing", "", "is not a package"},
      {"an error page", "<html>500</html>", "is not a package"},
      {"a program alone", QByteArray("MZ") + QByteArray(70'000, 'x'), "is not a package"},
      {"cut off", whole.left(whole.size() - 100), "is not a package"},
      {"a flipped bit", flipped, "is damaged"},
      {"another file", and_also({"readme.txt", "hello"}), "contains other files"},
      {"a file above its root", and_also({"../evil", "x"}), "contains other files"},
      {"an absolute path", and_also({"/tmp/evil", "x"}), "contains other files"},
      {"a folder", with(0, {"data/routers.mdb", good[0].bytes}), "contains other files"},
      {"a name twice", and_also(good[0]), "contains a file twice"},
      {"a bomb", with(0, {"routers.mdb", QByteArray(kMaxPackedFileBytes + 1, '\0')}), "too large"},
      {"no routers", MakePackage({good[1], good[2]}, {}), "is missing"},
      {"no database", with(0, {"routers.mdb", "text"}), "not a database"},
      {"no rows", with(0, no_rows), "is empty"},
      {"programs for routers", with(0, {"routers.mdb", good[1].bytes}), "no table"},
      {"no scripts", with_rows({u"1"_s}), "no field"},
      {"a row of the user", with_rows({u"1"_s, u"1000000000"_s}), "routers that you add"},
      {"far too many rows", with_rows(many), "too many rows"},
  };
  ASSERT_TRUE(databases_.Open(users_));
  databases_.KeepGoodCopies();
  databases_.Close();
  const auto before = UsersFiles();
  for (const auto& c : cases) {
    EXPECT_TRUE(Install(c.package).contains(QLatin1String(c.error)))
        << c.fault << ": " << Install(c.package).toStdString();
    EXPECT_EQ(UsersFiles(), before) << c.fault;
  }
  // A good copy does not take the place of a file that only cannot be read now.
  for (const auto& [lock, error] : {std::pair("BEGIN IMMEDIATE", "Another Quayline"),
                                    {"BEGIN EXCLUSIVE", "in use by another"}}) {
    const SqlConnection other_program(users_ + u"/ports.mdb"_s, SqlAccess::kReadWrite);
    ASSERT_TRUE(QSqlQuery(other_program.Handle()).exec(QLatin1String(lock)));
    EXPECT_TRUE(Install(whole).contains(QLatin1String(error))) << Install(whole).toStdString();
  }
  EXPECT_EQ(UsersFiles(), before);
  EXPECT_TRUE(testing::OnFullDisk(4096, [&] { return Install(whole); }).contains(u"disk full"_s));
  EXPECT_EQ(UsersFiles(), before);
}

TEST_F(DatabasePackage, WhatAnotherProgramWritesIsRefusedWhileANewSetIsMade) {
  const QString set = folder_.filePath(u"set"_s);
  QDir().mkpath(set);
  HeldFiles held;
  ASSERT_TRUE(PrepareSet(theirs_, users_, shipped_, set, held));
  ASSERT_TRUE(databases_.Open(users_));
  EXPECT_FALSE(databases_.UpdateRouterScripts(2, u"lost"_s, {}));
  held.clear();
  EXPECT_TRUE(databases_.UpdateRouterScripts(2, u"kept"_s, {}));
  ASSERT_TRUE(PutInPlace(set, users_));
  EXPECT_FALSE(databases_.UpdateRouterScripts(2, u"lost"_s, {})) << "in the previous file";
}

TEST_F(DatabasePackage, ASwapIsCompletedByTheNextStartOrTakenBack) {
  const QString set = users_ + u"/databases.complete"_s;
  QDir().mkpath(set);
  ASSERT_TRUE(WriteBytes(set + u"/routers.mdb"_s, Theirs("routers.mdb")));
  WriteBytes(users_ + u"/routers.mdb-journal"_s, "of the old one");
  EXPECT_EQ(Routers().size(), 3);
  EXPECT_EQ(Routers().first(), u"1 One better"_s);
  EXPECT_FALSE(QFileInfo::exists(set));
  EXPECT_FALSE(QFileInfo::exists(users_ + u"/routers.mdb-journal"_s));
  databases_.Close();

  // The second file cannot be moved: the first one comes back, and a new one goes.
  QFile::remove(users_ + u"/routers.mdb.previous"_s);
  QDir().mkpath(users_ + u"/routers.mdb.previous/in the way"_s);
  const QString next = users_ + u"/next"_s;
  QDir().mkpath(next);
  WriteBytes(next + u"/a"_s, "new");
  WriteBytes(next + u"/ports.mdb"_s, "new");
  WriteBytes(next + u"/routers.mdb"_s, "new");
  const QByteArray ports = ReadBytes(users_ + u"/ports.mdb"_s);
  WriteBytes(users_ + u"/ports.mdb-journal"_s, "of ports");
  EXPECT_FALSE(PutInPlace(next, users_));
  EXPECT_EQ(ReadBytes(users_ + u"/ports.mdb"_s), ports);
  EXPECT_EQ(ReadBytes(users_ + u"/ports.mdb-journal"_s), "of ports");
  EXPECT_FALSE(QFileInfo::exists(users_ + u"/a"_s));
  EXPECT_EQ(Routers().first(), u"1 One better"_s);
}

}  // namespace
}  // namespace quayline
