// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QFileSystemWatcher>

#include <sys/stat.h>

#include "main_fixture.h"
#include "ui/toolkit/controls.h"

namespace quayline::testing {
namespace {

using RouterWindowsTest = MainWindowTest;

constexpr char kOne[] = "A|1.1.1.1()|5|5|TCP|x\r\n";

TEST_F(RouterWindowsTest, AnUpdateThatCannotBeginSaysWhyAndPointsThere) {
  const struct {
    const char* router;
    const char* address;
    const char* list;
    const char* message;  // a part of it
    const char* focus;    // the control that has it afterwards; nullptr is any
    int row = 0;          // the selected one
  } cases[] = {
      {"", "1.1.1.1", kOne, "Please Choose A Router.", "router_box"},
      {"Alp", "1.1.1.1", kOne, "There is no router \"Alp\" in the list.", "router_box"},
      {"Alpha 1", "0.0.0.0", kOne, "Please Set Router IP.", "router_ip_edit"},
      {"Alpha 1", "1.1.1.1", "", "You must have at least 1 port", nullptr, -1},
      {"Alpha 1", "1.1.1.1",
       "B|1.1.1.1()|9|9|TCP|x\r\nA|1.1.1.1()|5|5|TCP|x\r\na|1.1.1.1()|7|7|UDP|x\r\n", "'A'",
       "port_list_view", 1},
      {"Alpha 1", "1.1.1.1", "A|1.1.1.1()|5|106|TCP|x\r\n", "101", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    folder_.WriteFile("list.qyl", c.list);
    Start("router=Alpha 1\r\n");
    Type("router_box", c.router);
    Type("router_ip_edit", c.address);
    prompts_.shown.clear();
    const std::string before = Rows();
    Find("update_button")->setFocus();
    Click("update_button");
    EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr(c.message)));
    EXPECT_TRUE(windows_->jobs.isEmpty());
    EXPECT_EQ(Rows(), before) << "ports were moved, without a router to 0";
    const QWidget* focused = window_->focusWidget();
    EXPECT_TRUE(!c.focus || (focused && focused->objectName() == QLatin1String(c.focus)));
    EXPECT_EQ(Find<HintedList>("port_list_view")->currentIndex().row(), c.row);
  }
}

TEST_F(RouterWindowsTest, AnAcceptedListIsClampedInTheViewAndNotInTheFile) {
  const QByteArray list = "A|1.1.1.1()|0|70000|TCP|x\r\n";
  RouterRecord router = RouterRow(3, u"Alpha 1"_s, QString());
  router.routermaxrange = u"70000"_s;
  folder_.WriteDatabases({router});
  folder_.WriteFile("list.qyl", list);
  Start("router=Alpha 1\r\nrouterip=1.1.1.1\r\n");
  JobFlags& flags = context_->job_flags;
  flags.SetJobStopRequested(true);
  flags.SetJobDebugMode(true);
  flags.job_error_grace = 0;
  Click("update_button");
  EXPECT_THAT(prompts_.shown, IsEmpty());
  ASSERT_EQ(windows_->jobs.size(), 1);
  EXPECT_TRUE(windows_->jobs.first()->isVisible());
  EXPECT_FALSE(flags.JobStopRequested());
  EXPECT_FALSE(flags.JobDebugMode());
  EXPECT_EQ(flags.job_error_grace, 1);
  EXPECT_EQ(Rows(), "A 1.1.1.1() 1-65535 TCP x");
  EXPECT_EQ(folder_.ReadFile("list.qyl"), list);
  flags.SetRunning(true);
  prompts_.answers = {false, true};
  Click("update_button");
  EXPECT_EQ(windows_->jobs.size(), 1) << "a job that runs was dropped unasked";
  for (const bool is_running : {true, false}) {
    const QPointer<QWidget> former = windows_->jobs.last();
    const QWidget* const former_job = former;
    const qsizetype before = windows_->jobs.size();
    flags.SetRunning(is_running);
    Click("update_button");
    ASSERT_EQ(windows_->jobs.size(), before + 1);
    EXPECT_FALSE(former && former->isVisible());
    EXPECT_EQ(windows_->former_job, former_job) << "its rules cannot be taken back any more";
  }
  EXPECT_THAT(prompts_.shown,
              ElementsAre(StartsWith("Careful: Start again?"), StartsWith("Careful: ")));
}

TEST_F(RouterWindowsTest, ThePortsAreLookedAtOnlyWhereThereIsARouterAndNoJob) {
  Start();
  JobFlags& flags = context_->job_flags;
  Type("router_ip_edit", "0.0.0.0");
  Click("view_ports_button");
  Type("router_ip_edit", "192.168.1.1");
  flags.SetRunning(true);
  Click("view_ports_button");
  EXPECT_THAT(prompts_.shown,
              ElementsAre("Tell: Please Set Router IP.", StartsWith("Tell: A job is running")));
  EXPECT_TRUE(windows_->dialog.isNull());
  EXPECT_FALSE(flags.JobStopRequested());

  flags.SetRunning(false);
  flags.SetJobStopRequested(true);
  flags.view_error_grace = 0;
  Click("view_ports_button");
  ASSERT_TRUE(windows_->dialog);
  EXPECT_TRUE(windows_->dialog->isModal());
  EXPECT_FALSE(flags.JobStopRequested());
  EXPECT_EQ(flags.view_error_grace, 1);
}

TEST_F(RouterWindowsTest, ScriptsThatWereWrittenAreReadAndTheLoginStays) {
  Start();
  Click("router_list_button");
  windows_->choose_router(3);
  Type("username_edit", "me");
  Type("password_edit", "my own");
  Trigger("view_scripts_action");
  ASSERT_TRUE(windows_->scripts_written);
  ASSERT_TRUE(context_->databases.UpdateRouterScripts(3, u"a\r\nb"_s, QString()));
  windows_->scripts_written();
  EXPECT_EQ(context_->session.update_script, QStringList({u"a"_s, u"b"_s}));
  EXPECT_EQ(context_->session.view_script, QStringList());
  ExpectTexts({{"username_edit", "me"}, {"password_edit", "my own"}});
  EXPECT_EQ(Stored(setting::kRouterPassword), "my own");
}

// What a run brings to the session, and what the user's own acts change in the file.
class LoginMemoryTest : public MainWindowTest {
 protected:
  ino_t FileNumber() const {
    struct stat status = {};
    EXPECT_EQ(stat(qPrintable(folder_.Path("settings.ini")), &status), 0);
    return status.st_ino;
  }
  std::string LoginText() const { return TextOf("username_edit") + '/' + TextOf("password_edit"); }
  // A choice is stored when its picture has come, or cannot come.
  void ChooseRouter(int id) {
    const int row =
        Find<QComboBox>("router_box")
            ->model()
            ->match(Find<QComboBox>("router_box")->model()->index(0, 0), Qt::UserRole, id)
            .value(0)
            .row();
    Choose("router_box", row);
    EXPECT_TRUE(RunUntil([&] { return Stored(setting::kRouter) == TextOf("router_box"); }));
  }
};

TEST_F(LoginMemoryTest, ALoginThatTheUserTypedComesBackWithItsRouter) {
  Start();
  Type("password_edit", "before any choice");
  ChooseRouter(3);
  EXPECT_EQ(LoginText(), "/before any choice") << "typed for the router that is chosen next";
  ChooseRouter(7);
  EXPECT_EQ(LoginText(), "root/secret") << "the factory's, for none was typed";
  Type("username_edit", "me");
  ChooseRouter(3);
  EXPECT_EQ(LoginText(), "/before any choice");
  Type("password_edit", "");
  ChooseRouter(7);
  Start();
  EXPECT_EQ(LoginText(), "me/secret");
  ChooseRouter(3);
  EXPECT_EQ(LoginText(), "/") << "an empty login is typed as well";
  ExpectStored({{setting::kRouterUsername, ""}, {setting::kRouterPassword, ""}});
  Click("router_list_button");
  windows_->choose_router(7);
  windows_->choose_router(99);  // gone from the database meanwhile
  EXPECT_EQ(TextOf("router_box") + ' ' + LoginText(), "Beta 2 me/secret");
  const QFileDevice::Permissions rights = QFile::permissions(folder_.Path("settings.ini"));
  EXPECT_FALSE(rights & (QFileDevice::ReadGroup | QFileDevice::ReadOther));
}

TEST_F(LoginMemoryTest, ALoginOfAnOlderVersionOrOfARouterThatIsGoneIsKept) {
  for (const char* router : {"Alpha 1", "Gone 9"}) {
    Start("router=" + QByteArray(router) + "\r\nrouterusername=me\r\nrouterpassword=mine\r\n");
    ChooseRouter(7);
    EXPECT_EQ(LoginText(), "root/secret");
    folder_.WriteDatabases(
        {RouterRow(7, u"Beta 2"_s, u"root"_s), RouterRow(8, QLatin1String(router), u"admin"_s)});
    Start();
    ChooseRouter(8);
    EXPECT_EQ(LoginText(), "me/mine") << router;
  }
}

// The identity of the file changes with each write.
TEST_F(LoginMemoryTest, AStartWritesNothingAndAChoiceWritesOnceWithRouterAndLoginTogether) {
  Start("router=Alpha 1\r\nrouterip=10.0.0.1\r\nrouterusername=me\r\nrouterpassword=mine\r\n");
  std::vector<QByteArray> versions = {folder_.ReadFile("settings.ini")};
  QFileSystemWatcher watcher({folder_.dir.path()});
  const auto note = [&] {
    if (QByteArray now = folder_.ReadFile("settings.ini"); now != versions.back()) {
      versions.push_back(now);
    }
  };
  QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, note);
  const ino_t before = FileNumber();
  Start();
  EXPECT_EQ(FileNumber(), before) << "a kill during the start could have lost the password";
  ChooseRouter(7);
  RunUntil([] { return false; }, std::chrono::milliseconds(50));
  for (const QByteArray& version : versions) {
    const bool is_first = version.contains("router=Alpha 1\r\n");
    EXPECT_EQ(version.contains("routerpassword=mine\r\n"), is_first);
    EXPECT_EQ(version.contains("routerpassword=secret\r\n"), !is_first);
  }
}

TEST_F(LoginMemoryTest, NamesAreToldApartByCaseAndKeysDoNotLeaveWhatIsTyped) {
  folder_.WriteDatabases({RouterRow(3, u"alpha"_s, u"small"_s), RouterRow(4, u"Alpha"_s, u"big"_s),
                          RouterRow(5, u"Beta"_s, u"beta"_s)});
  Start("router=Alpha\r\nrouterusername=me\r\n");
  EXPECT_EQ(context_->session.router_id, 4);
  Leave("router_box");
  Click("view_ports_button");
  EXPECT_EQ(context_->session.router_id, 4);
  Type("router_box", "alpha");
  Leave("router_box");
  EXPECT_EQ(context_->session.router_id, 3);
  Type("password_edit", "of the small one");
  Type("router_box", "ALPHA");
  Leave("router_box");
  EXPECT_EQ(LoginText(), "small/of the small one") << "the first one in another case";
  Type("router_box", "no such");
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown}) {
    Press("router_box", key);
    Find<QComboBox>("router_box")->hidePopup();
  }
  EXPECT_EQ(TextOf("router_box"), "no such");
  EXPECT_EQ(LoginText(), "small/of the small one");
  prompts_.shown.clear();
  for (const char* button : {"update_button", "view_ports_button"}) {
    Click(button);
  }
  Trigger("view_scripts_action");
  EXPECT_THAT(prompts_.shown, SizeIs(3));
  EXPECT_TRUE(windows_->dialog.isNull() || !windows_->dialog->isVisible());
}

}  // namespace
}  // namespace quayline::testing
