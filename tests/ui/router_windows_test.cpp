// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

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
    Find("update_button")->setFocus();
    Click("update_button");
    EXPECT_THAT(prompts_.shown, ElementsAre(HasSubstr(c.message)));
    EXPECT_TRUE(jobs_.isEmpty());
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
  ASSERT_EQ(jobs_.size(), 1);
  EXPECT_TRUE(jobs_.first()->isVisible());
  EXPECT_FALSE(flags.JobStopRequested());
  EXPECT_FALSE(flags.JobDebugMode());
  EXPECT_EQ(flags.job_error_grace, 1);
  EXPECT_EQ(Rows(), "A 1.1.1.1() 1-65535 TCP x");
  EXPECT_EQ(folder_.ReadFile("list.qyl"), list);
  flags.is_running = true;
  prompts_.answers = {false, true};
  Click("update_button");
  EXPECT_EQ(jobs_.size(), 1) << "a job that runs was dropped unasked";
  for (const bool is_running : {true, false}) {
    const qsizetype before = jobs_.size();
    flags.is_running = is_running;
    Click("update_button");
    ASSERT_EQ(jobs_.size(), before + 1);
    const QWidget* former = jobs_[before - 1];
    EXPECT_FALSE(former && former->isVisible());
  }
  EXPECT_THAT(prompts_.shown, ElementsAre(StartsWith("Ask: Start again?"), StartsWith("Ask: ")));
}

TEST_F(RouterWindowsTest, ThePortsAreLookedAtOnlyWhereThereIsARouterAndNoJob) {
  Start();
  JobFlags& flags = context_->job_flags;
  Type("router_ip_edit", "0.0.0.0");
  Click("view_ports_button");
  Type("router_ip_edit", "192.168.1.1");
  flags.is_running = true;
  Click("view_ports_button");
  EXPECT_THAT(prompts_.shown,
              ElementsAre("Tell: Please Set Router IP.", StartsWith("Tell: An update is running")));
  EXPECT_TRUE(dialog_.isNull());
  EXPECT_FALSE(flags.JobStopRequested());

  flags.is_running = false;
  flags.SetJobStopRequested(true);
  flags.view_error_grace = 0;
  Click("view_ports_button");
  ASSERT_TRUE(dialog_);
  EXPECT_TRUE(dialog_->isModal());
  EXPECT_FALSE(flags.JobStopRequested());
  EXPECT_EQ(flags.view_error_grace, 1);
}

TEST_F(RouterWindowsTest, AnotherRouterOfTheBoxOrTheListReplacesTheTypedPassword) {
  Start();
  Click("router_list_button");
  ASSERT_TRUE(dialog_ && choose_router_);
  const std::function<void()> ways[] = {[this] { Choose("router_box", 2); },
                                        [this] { choose_router_(7); }};
  for (const auto& choose : ways) {
    choose_router_(3);
    Type("password_edit", "typed");
    choose();
    choose_router_(99);  // gone from the database meanwhile
    ExpectTexts({{"router_box", "Beta 2"}, {"username_edit", "root"}, {"password_edit", "secret"}});
    EXPECT_EQ(Stored(setting::kRouterPassword), "secret");
    EXPECT_EQ(context_->session.router_id, 7);
    EXPECT_EQ(context_->session.router_name, u"Beta 2"_s);
  }
}

TEST_F(RouterWindowsTest, ScriptsThatWereWrittenAreReadAndTheLoginStays) {
  Start();
  Click("router_list_button");
  choose_router_(3);
  Type("username_edit", "me");
  Type("password_edit", "my own");
  Trigger("view_scripts_action");
  ASSERT_TRUE(scripts_written_);
  ASSERT_TRUE(context_->databases.UpdateRouterScripts(3, u"a\r\nb"_s, QString()));
  scripts_written_();
  EXPECT_EQ(context_->session.update_script, QStringList({u"a"_s, u"b"_s}));
  EXPECT_EQ(context_->session.view_script, QStringList());
  ExpectTexts({{"username_edit", "me"}, {"password_edit", "my own"}});
  EXPECT_EQ(Stored(setting::kRouterPassword), "my own");
}

}  // namespace
}  // namespace quayline::testing
