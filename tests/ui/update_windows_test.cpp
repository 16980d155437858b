// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QLabel>
#include <QProgressBar>

#include "demo/demo_site.h"
#include "demo/demo_updates.h"
#include "demo/update_package.h"
#include "transport/scripted_server.h"
#include "ui/updates/database_update_dialog.h"
#include "ui/updates/program_update_window.h"
#include "update/update_site.h"
#include "window_fixture.h"

namespace quayline::testing {
namespace {

using Then = Reply::Then;

const SigningKey kKey = MakeSigningKey(QByteArray(32, 'k'));
constexpr const char* kManifestPath = "/updates/qyl_v3/update.ini";
constexpr const char* kPackagePath = "/updates/qyl_v3/databases.exe";

class UpdateTest : public WindowTest {
 protected:
  UpdateTest() {
    qputenv("TMPDIR", temp_.path().toLocal8Bit());
    context_->settings.SetValue(setting::kUpdateSite, server_.Address({}).toString());
    server_.replies["/setup.exe"] = Answer("200 OK", installer_);
    folder_.WriteDatabases({RouterRow(3, u"Alpha 1"_s, u"admin"_s)}, {{1, u"Game"_s}});
  }
  ~UpdateTest() override { qunsetenv("TMPDIR"); }

  // Of a server that has `version`, and what its files really are.
  QByteArray Manifest(const QByteArray& version, const QByteArray& more = {}) const {
    return "[update]\ncurrent=" + version +
           "\ndownload=" + server_.Address(u"/setup.exe"_s).toString().toLatin1() + '\n' + more;
  }
  QByteArray Complete(const QByteArray& version, int serial = 5) const {
    return Manifest(version, "downloadsha256=" + DigestOf(installer_).toHex() +
                                 "\ndatabasessha256=" + DigestOf(package_).toHex() + "\nserial=" +
                                 QByteArray::number(serial) + "\nexpires=2999-01-01\n");
  }
  void RequireSignatures(const SigningKey& key = kKey) {
    context_->settings.SetValue(setting::kUpdateKey,
                                QString::fromLatin1(key.for_everybody.toHex()));
  }
  void Serve(const char* path, const QByteArray& bytes) {
    server_.replies[path] = Answer("200 OK", bytes);
  }
  bool HasAsked(const char* path) const {
    return std::ranges::any_of(server_.requests, [&](const QByteArray& request) {
      return request.startsWith("GET " + QByteArray(path) + ' ');
    });
  }
  QMap<QString, QByteArray> Disk() const {
    QMap<QString, QByteArray> files;
    for (const QString& folder : {folder_.dir.path(), temp_.path()}) {
      for (const QString& name : Names(folder)) {
        if (name != u"settings.ini"_s) {
          files[folder + u'/' + name] = ReadBytes(folder + u'/' + name);
        }
      }
    }
    return files;
  }

  QTemporaryDir temp_;
  ScriptedServer server_;
  QByteArray installer_ = QByteArray(5000, 'i');
  QByteArray package_ = "made by each test";
  int exits_ = 0;
};

class ProgramUpdateTest : public UpdateTest {
 protected:
  void Open() {
    delete window_.data();
    prompts_.shown.clear();
    auto* update =
        new ProgramUpdateWindow(*context_, prompts_, u"3.0.0"_s, &main_, [this] { ++exits_; });
    window_ = update;
  }
  void Check(const QByteArray& manifest) {
    Serve(kManifestPath, manifest);
    Open();
    window_->show();
    Click("check_button");
  }
  // Of the installer, a third comes.
  void BeginEndlessDownload() {
    prompts_.answers = {true};
    server_.replies["/setup.exe"] = {
        "HTTP/1.1 200 OK\r\nContent-Length: 900000\r\n\r\n" + QByteArray(300'000, 'b'),
        Then::kSilence};
    Check(Manifest("3.1.0"));
  }
  bool IsIdle() const {
    return RunUntil([this] { return !Find("cancel_button")->isEnabled(); });
  }

  QWidget main_;
};

TEST_F(ProgramUpdateTest, SaysThatTheProgramIsUpToDateAndCloses) {
  main_.show();
  Check(Manifest("3.0.0"));
  ExpectTexts({{"current_version_label", "3.0.0"},
               {"status_label", "Status - Initiating Connection."},
               {"error_label", "Error Code - "}});
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: You Are Up To Date"));
  EXPECT_TRUE(QFileInfo::exists(folder_.Path("update.ini")));
}

TEST_F(ProgramUpdateTest, FetchesAndStartsTheInstallerWhereNoPackageManagerDoes) {
  prompts_.answers = {true};
  Check(Manifest("3.1.0"));
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_EQ(exits_, 1);
  ASSERT_EQ(folder_.desktop.files, QStringList(temp_.filePath(u"update3.1.0.exe"_s)));
  EXPECT_EQ(ReadBytes(folder_.desktop.files.first()), installer_);

  Check(Manifest("3.1.0"));
  EXPECT_TRUE(RunUntil([this] { return !prompts_.shown.empty(); }));
  EXPECT_THAT(prompts_.shown,
              ElementsAre("Ask: Quayline: There is a new version available - v3.1.0\n"
                          "Would you like to download the update now?"));
  EXPECT_TRUE(IsIdle());
  EXPECT_EQ(TextOf("new_version_label"), "3.1.0");
  EXPECT_EQ(folder_.desktop.files.size(), 1) << "the answer was no";

  folder_.desktop.update_command = u"apt-get"_s;
  Check(Manifest("3.1.0"));
  EXPECT_TRUE(RunUntil([this] { return !prompts_.shown.empty(); }));
  EXPECT_THAT(prompts_.shown,
              ElementsAre(AllOf(StartsWith("Tell: There is a new version"),
                                HasSubstr("package manager"), EndsWith("apt-get"))));
  EXPECT_EQ(folder_.desktop.files.size(), 1);
}

TEST_F(ProgramUpdateTest, TheAutomaticCheckIsSeenOnlyForANewVersionThatIsWanted) {
  Serve(kManifestPath, Manifest("3.0.0"));
  Open();
  static_cast<ProgramUpdateWindow*>(window_.data())->CheckSilently();
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_THAT(prompts_.shown, IsEmpty());

  Serve(kManifestPath, Manifest("3.0.1"));
  server_.replies["/setup.exe"] = {"", Then::kSilence};
  prompts_.answers = {true};
  Open();
  static_cast<ProgramUpdateWindow*>(window_.data())->CheckSilently();
  EXPECT_FALSE(window_->isVisible());
  EXPECT_TRUE(RunUntil([this] { return window_->isVisible(); }));

  server_.replies.remove(kManifestPath);
  Open();
  static_cast<ProgramUpdateWindow*>(window_.data())->CheckSilently();
  EXPECT_TRUE(ComesToSay("error_label", "Error Code - [2] File Doesn't Exist!"));
  EXPECT_FALSE(window_->isVisible());
  EXPECT_THAT(prompts_.shown, IsEmpty());

  // The user opens what is left of it, and checks himself.
  Serve(kManifestPath, Manifest("3.0.0"));
  window_->show();
  EXPECT_TRUE(IsIdle());
  Click("check_button");
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_THAT(prompts_.shown, ElementsAre("Tell: You Are Up To Date"));
}

TEST_F(ProgramUpdateTest, ASiteThatIsTriedDoesNotLockOutTheFormerOne) {
  const SigningKey other = MakeSigningKey(QByteArray(32, 'x'));
  const struct {
    const SigningKey& key;
    int serial;
    const char* reason;
  } cases[] = {
      {kKey, 7, ""}, {other, 2000, ""}, {other, 1999, "older"}, {kKey, 6, "older"}, {kKey, 7, ""}};
  for (const auto& c : cases) {
    RequireSignatures(c.key);
    Check(SignManifest(Complete("3.0.0", c.serial), c.key));
    EXPECT_TRUE(RunUntil([&] {
      return *c.reason == '\0' ? !prompts_.shown.empty()
                               : TextOf("reason_label").find(c.reason) != std::string::npos;
    })) << c.serial;
  }
}

// Whatever the server does, nothing is opened, and the disk is as it was.
TEST_F(ProgramUpdateTest, AHostileServerGetsNothingStarted) {
  RequireSignatures();
  QByteArray other_file = Complete("4.0.0");
  other_file.replace(DigestOf(installer_).toHex(), QByteArray(64, 'a'));
  QByteArray to_file = Complete("4.0.0");
  to_file.replace("http://127", "file://127");
  QByteArray elsewhere = Complete("4.0.0");
  elsewhere.replace("127.0.0.1", "192.0.2.1");
  const struct {
    const char* fault;
    Reply reply;
    const char* reason;
  } cases[] = {
      {"unsigned", Answer("200 OK", Complete("4.0.0")), "not signed"},
      {"large", Answer("200 OK", QByteArray(kMaxManifestBytes + 1, 'x')), "too large"},
      {"an error page", Answer("500 Oops", "<html>"), "not signed"},
      {"another installer", Answer("200 OK", SignManifest(other_file, kKey)), "was removed"},
      {"a local file", Answer("200 OK", SignManifest(to_file, kKey)), "not safe"},
      {"plain http", Answer("200 OK", SignManifest(elsewhere, kKey)), "not safe"},
      {"a redirect to a file", RedirectTo("file:///etc/passwd"), "not safe"},
      {"cut off", {"HTTP/1.1 200 OK\r\nContent-Length: 900\r\n\r\n[update]"}, "before the file"},
      {"no length",
       {"HTTP/1.1 200 OK\r\n\r\n" + SignManifest(Complete("4.0.0"), kKey)},
       "how large"},
  };
  const auto before = Disk();
  for (const auto& c : cases) {
    NoteManifest(*context_, {.serial = 5});
    prompts_.answers = {true};
    Check({});
    server_.replies[kManifestPath] = c.reply;
    EXPECT_TRUE(RunUntil(
        [&] {
          const auto* reason = Find<QLabel>("reason_label");
          return !Find("cancel_button")->isEnabled() &&
                 reason->text().contains(QLatin1String(c.reason));
        },
        std::chrono::seconds(10)))
        << c.fault << ": " << TextOf("reason_label");
    auto after = Disk();
    after.remove(folder_.Path("update.ini"));  // of a manifest that is good in itself
    EXPECT_EQ(after, before) << c.fault;
    EXPECT_EQ(folder_.desktop.files, QStringList()) << c.fault;
    QFile::remove(folder_.Path("update.ini"));
  }
  EXPECT_EQ(exits_, 0);
}

TEST_F(ProgramUpdateTest, AWindowWithATransferStaysUntilItIsCancelled) {
  BeginEndlessDownload();
  ASSERT_TRUE(RunUntil([this] { return Find<QProgressBar>("progress_bar")->value() > 200'000; }));
  EXPECT_THAT(TextOf("total_bytes_label"), "Total Bytes - 900000");
  EXPECT_THAT(TextOf("bytes_label"), StartsWith("Current Bytes Read - "));
  EXPECT_THAT(TextOf("percent_label"), StartsWith("Percent Complete - "));
  Click("close_button");
  EXPECT_TRUE(window_->isVisible());
  Click("cancel_button");
  EXPECT_TRUE(ComesToSay("error_label", "[4] Download Was Cancelled By User!"));
  EXPECT_TRUE(IsIdle());
  EXPECT_EQ(Names(temp_.path()), QStringList());
  Click("close_button");
  EXPECT_TRUE(ComesToItsEnd());

  prompts_.answers = {true};
  Check(Manifest("3.1.0"));
  ASSERT_TRUE(RunUntil([this] { return Find<QProgressBar>("progress_bar")->value() > 200'000; }));
  delete window_.data();  // as the program's end does
  EXPECT_EQ(Names(temp_.path()), QStringList());
}

TEST_F(ProgramUpdateTest, APauseEndsWithItsTransfer) {
  BeginEndlessDownload();
  ASSERT_TRUE(RunUntil([this] { return Find<QProgressBar>("progress_bar")->value() > 262'000; }));
  Click("pause_button");
  server_.Disconnect();
  EXPECT_TRUE(ComesToSay("error_label", "Error Code - [1] Uknown Error!"));
  EXPECT_TRUE(IsIdle());
  EXPECT_THAT(TextOf("status_label"), HasSubstr("Aborted"));
  EXPECT_FALSE(Find<QAbstractButton>("pause_button")->isChecked());
  Serve("/setup.exe", installer_);
  prompts_.answers = {true};
  Click("check_button");
  EXPECT_TRUE(ComesToItsEnd()) << TextOf("status_label");
  EXPECT_EQ(exits_, 1);
}

TEST_F(ProgramUpdateTest, TheBoxAndTheMissingSiteAreShown) {
  context_->settings.SetValue(setting::kUpdateSite, {});
  folder_.desktop.update_command = u"apt-get"_s;
  Open();
  window_->show();
  EXPECT_THAT(TextOf("reason_label"), AllOf(HasSubstr("no server"), EndsWith("apt-get")));
  EXPECT_FALSE(Find("check_button")->isEnabled());
  Click("auto_check_box");
  EXPECT_EQ(Stored(setting::kCheckForUpdates), "1");
  Click("auto_check_box");
  EXPECT_EQ(Stored(setting::kCheckForUpdates), "0");
}

class DatabaseUpdateTest : public UpdateTest {
 protected:
  DatabaseUpdateTest() {
    const ProgramFolder theirs;
    theirs.WriteDatabases({RouterRow(3, u"Alpha 1"_s, u"admin"_s), RouterRow(4, u"New"_s, u"n"_s)},
                          {{1, u"Game"_s}});
    QList<PackedFile> files;
    for (const char* name : kPackageNames) {
      files.append({name, theirs.ReadFile(name)});
    }
    package_ = demo::MakePackage(files, "MZ program in front");
    Serve(kPackagePath, package_);
    EXPECT_TRUE(context_->databases.Open(folder_.dir.path()));
  }

  void Open() {
    delete window_.data();
    prompts_.shown.clear();
    window_ = new DatabaseUpdateDialog(*context_, prompts_, nullptr, [this] { ++updates_; });
    window_->show();
  }

  int updates_ = 0;
};

TEST_F(DatabaseUpdateTest, TheNewRowsAreThereWhenTheBoxIsClosed) {
  WriteBytes(folder_.Path("databases.exe"), "of an earlier run");
  Open();
  EXPECT_FALSE(QFileInfo::exists(folder_.Path("databases.exe")));
  EXPECT_TRUE(context_->databases.IsOpen()) << "until the window is painted";
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_THAT(prompts_.shown,
              ElementsAre("Tell: The Databases are now being updated.\n"
                          "Once done (When the new window closes) click OK to Continue.\n"
                          "if you see no new windows then your good to go.\n\n"
                          "Routers: 1 new, 0 changed, 1 as before, 0 removed.\n"
                          "Programs: 0 new, 0 changed, 1 as before, 0 removed."));
  EXPECT_EQ(updates_, 1);
  EXPECT_EQ(context_->databases.RouterCount(), 2);
  EXPECT_FALSE(QFileInfo::exists(folder_.Path("databases.exe")));
}

TEST_F(DatabaseUpdateTest, AHostileServerLeavesTheOldDatabasesOpenAndUnchanged) {
  const QByteArray good = SignManifest(Complete("3.0.0"), kKey);
  const struct {
    const char* fault;
    Reply package;
    QByteArray manifest;  // with it, signatures are required
    const char* error;
    const char* reason;
  } cases[] = {
      {"404", Answer("404 No", "x"), {}, "[2] File Doesn't Exist!", ""},
      {"a reset connection", {"", Then::kReset}, {}, "[3] Server Timed Out!", "does not answer"},
      {"an error page", Answer("500 Oops", "<html>"), {}, "Error Code - ", "not a package"},
      {"too large",
       {"HTTP/1.1 200 OK\r\nContent-Length: 99000000\r\n\r\n" + QByteArray(70 << 20, 'x')},
       {},
       "[1] Uknown Error!",
       "too large"},
      {"no manifest", Answer("200 OK", package_), "", "Error Code - ", "cannot be fetched"},
      {"unsigned", Answer("200 OK", package_), Complete("3.0.0"), "Error Code - ", "not signed"},
      {"another package", Answer("200 OK", package_ + "x"), good, "Error Code - ", "not the one"},
  };
  const auto before = Disk();
  for (const auto& c : cases) {
    server_.replies[kPackagePath] = c.package;
    server_.replies.remove(kManifestPath);
    if (!c.manifest.isNull()) {
      RequireSignatures();
      server_.replies[kManifestPath] =
          c.manifest.isEmpty() ? Answer("404 No", "x") : Answer("200 OK", c.manifest);
    }
    Open();
    EXPECT_TRUE(RunUntil([&] {
      return Find<QLabel>("error_label")->text().contains(QLatin1String(c.error)) &&
             Find<QLabel>("reason_label")->text().contains(QLatin1String(c.reason)) &&
             context_->databases.IsOpen() && server_.requests.size() > 0 &&
             (c.reason[0] == '\0' || !Find<QLabel>("reason_label")->text().isEmpty());
    })) << c.fault
        << ": " << TextOf("error_label") << TextOf("reason_label");
    server_.requests.clear();
    EXPECT_EQ(context_->databases.RouterCount(), 1) << c.fault;
    EXPECT_EQ(Disk(), before) << c.fault;
    EXPECT_TRUE(window_->isVisible()) << c.fault;
    EXPECT_EQ(updates_, 0) << c.fault;
  }
  EXPECT_THAT(prompts_.shown, IsEmpty());

  Serve(kManifestPath, good);
  Serve(kPackagePath, package_);
  Open();
  EXPECT_TRUE(ComesToItsEnd()) << "signed and as promised";
  EXPECT_EQ(context_->databases.RouterCount(), 2);
}

TEST_F(DatabaseUpdateTest, AWindowThatIsClosedWhileNothingComesOpensTheDatabasesAgain) {
  server_.replies[kPackagePath] = {"", Then::kSilence};
  Open();
  ASSERT_TRUE(RunUntil([this] { return !context_->databases.IsOpen(); }));
  ASSERT_TRUE(RunUntil([this] { return HasAsked(kPackagePath); }));
  Click("close_button");
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_TRUE(context_->databases.IsOpen());
  EXPECT_EQ(context_->databases.RouterCount(), 1);
}

TEST_F(DatabaseUpdateTest, ACancelCountsAlsoWhileTheManifestIsFetched) {
  RequireSignatures();
  server_.replies[kManifestPath] = Answer("200 OK", SignManifest(Complete("3.0.0"), kKey));
  server_.replies[kManifestPath].delay = std::chrono::milliseconds(500);
  Open();
  ASSERT_TRUE(RunUntil([this] { return HasAsked(kManifestPath); }));
  Click("cancel_button");
  EXPECT_TRUE(ComesToSay("error_label", "[4] Download Was Cancelled By User!"));
  Click("close_button");
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_FALSE(HasAsked(kPackagePath));
  EXPECT_EQ(context_->databases.RouterCount(), 1);
  EXPECT_FALSE(QFileInfo::exists(folder_.Path("databases.exe")));
}

// The demo site as a user meets it: signed, with a newer program and one router more.
TEST_F(DatabaseUpdateTest, TheDemoSiteUpdatesBothWindows) {
  demo::DemoSite site;
  const ProgramFolder theirs;
  theirs.WriteDatabases({RouterRow(3, u"Alpha 1"_s, u"admin"_s)}, {{1, u"Game"_s}});
  const auto port = site.Start({.databases = theirs.dir.path(), .offered_version = u"3.2.1"_s});
  ASSERT_TRUE(port.has_value());
  context_->settings.SetValue(setting::kUpdateSite, u"http://127.0.0.1:%1"_s.arg(*port));
  context_->settings.SetValue(setting::kUpdateKey,
                              QString::fromLatin1(demo::DemoKey().for_everybody.toHex()));
  Open();
  EXPECT_TRUE(ComesToItsEnd());
  EXPECT_THAT(prompts_.shown.back(), HasSubstr("Routers: 1 new, 0 changed, 1 as before"));
  EXPECT_EQ(context_->databases.RouterCount(), 2);

  prompts_.answers = {true};
  window_ = new ProgramUpdateWindow(*context_, prompts_, u"3.0.0"_s, nullptr, [this] { ++exits_; });
  window_->show();
  Click("check_button");
  EXPECT_TRUE(ComesToItsEnd());
  ASSERT_EQ(folder_.desktop.files, QStringList(temp_.filePath(u"update3.2.1.exe"_s)));
  EXPECT_THAT(ReadBytes(folder_.desktop.files.first()).toStdString(), StartsWith("MZ This is no"));
  EXPECT_EQ(exits_, 1);
}

}  // namespace
}  // namespace quayline::testing
