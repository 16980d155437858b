// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/repair_dialog.h"

#include <QAbstractItemModel>
#include <QFile>
#include <QSqlQuery>

#include "core/sql_connection.h"
#include "ui/network/cache_dialog.h"
#include "ui/network/repair_plans.h"
#include "ui/toolkit/controls.h"
#include "window_fixture.h"

namespace quayline::testing {
namespace {

class RepairDialogTest : public WindowTest {
 protected:
  void Open(RepairPlan plan) {
    delete window_.data();
    window_ = new RepairDialog(std::move(plan), context_->translator, nullptr);
    window_->show();
  }
  // Presses the button; the results are joined.
  std::string Repair() {
    Click("repair_button");
    EXPECT_FALSE(Find("repair_button")->isEnabled());
    EXPECT_TRUE(RunUntil([this] { return Find("repair_button")->isEnabled(); }));
    return Results();
  }
  std::string Results() const {
    const auto* rows = Find<HintedList>("steps_view")->model();
    QStringList results;
    for (int row = 0; row < rows->rowCount(); ++row) {
      results.append(rows->index(row, 1).data().toString());
    }
    return results.join(u'|').toStdString();
  }
  // A part in the middle of the file, as a disk loses it: with its time as it was.
  void Damage(const char* name) {
    QFile file(folder_.Path(name));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QDateTime time = file.fileTime(QFileDevice::FileModificationTime);
    file.seek(4096);
    file.write(QByteArray(2000, '\xa5'));
    file.flush();
    file.setFileTime(time, QFileDevice::FileModificationTime);
  }
};

TEST_F(RepairDialogTest, ADamagedDatabaseIsRebuiltFromItsLastGoodCopyAndTheOthersStay) {
  folder_.WriteDatabases({RouterRow(7, u"Harbour"_s, u"admin"_s)});
  ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
  context_->databases.KeepGoodCopies();
  const QByteArray ports = folder_.ReadFile("ports.mdb");
  Damage("routers.mdb");
  QFile::remove(folder_.Path("custom.mdb.good"));
  Damage("custom.mdb");
  Open(DatabaseRepair(*context_, false));
  EXPECT_EQ(TextOf("note_label"),
            "The components of \"MDAC & MS Jet\" belong to another system. This repairs what does "
            "their work here.");
  EXPECT_EQ(Repair(),
            "It is damaged.|Rebuilt from its last good copy. The damaged file is kept as "
            "\"routers.mdb.damaged\".|It is in order.|Nothing to do.|It is damaged.|There was no "
            "good copy: it is empty now. The damaged file is kept as \"custom.mdb.damaged\".|Done");
  EXPECT_EQ(TextOf("state_label"), "Repairing: Done");
  EXPECT_EQ(context_->databases.FindRouter(7).value_or(RouterRecord()).routername, u"Harbour"_s);
  EXPECT_TRUE(context_->databases.AddCustomPort({.appname = u"Web"_s}));
  EXPECT_EQ(folder_.ReadFile("ports.mdb"), ports);
  EXPECT_TRUE(folder_.ReadFile("routers.mdb.damaged").contains("\xa5\xa5\xa5"));
  EXPECT_THAT(Repair(), StartsWith("It is in order.|Nothing to do.")) << "pressed again";
}

TEST_F(RepairDialogTest, ADatabaseThatCannotBeReadNowKeepsItsRowsAndIsNotReplaced) {
  folder_.WriteDatabases({RouterRow(7, u"Harbour"_s, u"admin"_s)});
  ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
  context_->databases.KeepGoodCopies();
  EXPECT_TRUE(context_->databases.AddCustomPort({.appname = u"Web"_s}));  // not in the good copy
  const SqlConnection other(folder_.Path("custom.mdb"), SqlAccess::kReadWrite);
  ASSERT_TRUE(QSqlQuery(other.Handle()).exec(u"BEGIN EXCLUSIVE"_s));
  Open(DatabaseRepair(*context_, false));
  EXPECT_EQ(Repair(),
            "It is in order.|Nothing to do.|It is in order.|Nothing to do.|It cannot be read now. "
            "Another program may be using it.|It cannot be read now. Another program may be using "
            "it.|Done");
  EXPECT_EQ(TextOf("state_label"), "Repairing: 1 of 7 steps failed");
  ASSERT_TRUE(QSqlQuery(other.Handle()).exec(u"COMMIT"_s));
  EXPECT_FALSE(QFile::exists(folder_.Path("custom.mdb.damaged")));
  EXPECT_TRUE(context_->databases.AddCustomPort({.appname = u"Game"_s}));
  EXPECT_EQ(context_->databases.CustomPorts().size(), 2);
}

// As after a crash: SQLite takes a half-done change back, for which it has to write.
TEST_F(RepairDialogTest, ADatabaseWithAJournalIsTakenBackAndNotReplaced) {
  folder_.WriteDatabases({RouterRow(7, u"Harbour"_s, u"admin"_s)});
  ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
  context_->databases.KeepGoodCopies();
  EXPECT_TRUE(context_->databases.AddCustomPort({.appname = u"Web"_s}));
  context_->databases.Close();
  const QString path = folder_.Path("custom.mdb");
  const QString journal = path + u"-journal"_s;
  {
    const SqlConnection crashing(path, SqlAccess::kReadWrite);
    QSqlQuery query(crashing.Handle());
    for (const char* line : {"PRAGMA cache_size = 1", "BEGIN", "CREATE TABLE more (text)",
                             "INSERT INTO more VALUES (hex(randomblob(100000)))"}) {
      ASSERT_TRUE(query.exec(QLatin1String(line))) << line;
    }
    ASSERT_TRUE(QFile::copy(path, path + u".crashed"_s) && QFile::copy(journal, journal + u"x"_s));
  }
  ASSERT_TRUE(QFile::remove(path) && QFile::rename(path + u".crashed"_s, path) &&
              QFile::rename(journal + u"x"_s, journal));
  {
    const SqlConnection reading(path, SqlAccess::kReadOnly);
    EXPECT_FALSE(QSqlQuery(reading.Handle()).exec(u"SELECT * FROM sqlite_master"_s))
        << "nothing has to be taken back: this test shows nothing";
  }
  Open(DatabaseRepair(*context_, false));
  EXPECT_THAT(Repair(), EndsWith("It is in order.|Nothing to do.|Done"));
  EXPECT_EQ(context_->databases.CustomPorts().size(), 1);
}

TEST_F(RepairDialogTest, AWindowThatIsClosedHalfwayLeavesTheDatabasesOpen) {
  folder_.WriteDatabases({RouterRow(7, u"Harbour"_s, u"admin"_s)});
  ASSERT_TRUE(context_->databases.Open(folder_.dir.path()));
  context_->databases.KeepGoodCopies();
  Damage("routers.mdb");
  Open(DatabaseRepair(*context_, false));
  Click("repair_button");
  EXPECT_TRUE(RunUntil([this] { return !context_->databases.IsOpen(); }));
  delete window_.data();
  EXPECT_EQ(context_->databases.FindRouter(7).value_or(RouterRecord()).routername, u"Harbour"_s);
}

TEST_F(RepairDialogTest, EachStepOfTheBrowserIsDoneAndWhatFailsIsCounted) {
  QStringList done;
  const auto tool = [&done](const char* name, bool works) {
    return [&done, name, works]() -> bool {
      done.append(QLatin1String(name));
      return works;
    };
  };
  const auto slow = [](std::function<bool()> work) {
    return [work]() -> Task<bool> {
      return [](std::function<bool()> inner) -> Task<bool> {
        co_await Sleep(std::chrono::milliseconds(1));
        co_return inner();
      }(work);
    };
  };
  Open(BrowserRepair({.clear_cache = slow(tool("cache", false)),
                      .remove_files = tool("files", true),
                      .try_new_browser = slow(tool("browser", false))},
                     false));
  EXPECT_EQ(TextOf("state_label"), "Repairing: ");
  EXPECT_EQ(Repair(),
            "Failed|Done|It does not start. Please install the package of Qt WebEngine again.");
  EXPECT_EQ(done, QStringList({u"cache"_s, u"files"_s, u"browser"_s}));
  EXPECT_EQ(TextOf("state_label"), "Repairing: 2 of 3 steps failed");
  SpeakGerman(
      {u"\"Failed\"|\"Misslungen\""_s,
       u"\"It does not start. Please install the package of Qt WebEngine again.\"|\"Er startet "
       "nicht.\""_s});
  EXPECT_EQ(Results(), "Misslungen|Done|Er startet nicht.");
  EXPECT_EQ(Find("progress_bar")->property("value").toInt(), 3);

  Open(BrowserRepair({}, true));
  EXPECT_EQ(window_->windowTitle(), u"Repair Internet Explorer"_s);
  EXPECT_FALSE(Find("note_label")->isVisible());
}

TEST(RepairPlans, AProgramOfWineRegistersNothingOfThisSystem) {
  const QTemporaryDir folder;
  QFile program(folder.filePath(u"regsvr32"_s));
  ASSERT_TRUE(program.open(QIODevice::WriteOnly));
  program.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", folder.path().toLocal8Bit());
  EXPECT_FALSE(HasRegsvr32());
  qputenv("PATH", path);
}

TEST_F(RepairDialogTest, TheCacheWindowSaysWhetherItWasEmptied) {
  for (const bool works : {true, false}) {
    delete window_.data();
    window_ = new CacheDialog(
        [works]() -> Task<bool> {
          return [](bool result) -> Task<bool> {
            co_await Sleep(std::chrono::milliseconds(1));
            co_return result;
          }(works);
        },
        context_->translator, nullptr);
    window_->show();
    EXPECT_EQ(TextOf("state_label"), "...");
    Click("clear_button");
    EXPECT_EQ(TextOf("state_label"), "Clearing Cache Please Wait...");
    EXPECT_FALSE(Find("clear_button")->isEnabled());
    EXPECT_TRUE(ComesToSay("state_label", works ? "Cache Cleared" : "Clearing Cache Failed"));
    EXPECT_TRUE(Find("clear_button")->isEnabled());
  }
}

}  // namespace
}  // namespace quayline::testing
