// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include "script/script_rig.h"
#include "test_main.h"

namespace quayline {
namespace {

using testing::CheckScripts;
using testing::FakePageHost;
using testing::Lines;
using testing::RunUntil;
using testing::ScriptRig;

constexpr char kOk[] = "(Successful)";

TEST(Clicks, TakeTheirArgumentsApart) {
  CheckScripts({
      {"a comma in a button's name",
       {"click_button(\"Save, then go\")"},
       {"ClickButton(Save, then go)"},
       {kOk}},
      {"a comma in an onclick text",
       {"click_onclick(\"go(1, 2)\")"},
       {"ClickByOnclick(go(1)"},
       {kOk}},
      {"the name goes into the button's name instead of its onclick text",
       {"set_next_letter(\"\")", "click_button_onclick(\"Edit,edit('')x,3\")",
        "click_button_onclick(\"Edit,rm('')x\")", "click_button_onclick(\"Edit,a,\")"},
       {"ClickButtonByOnclick(Edit, edit('A')x)", "ClickButtonByOnclick(Edit, rm('A')x)",
        "ClickButtonByOnclick(Edit, a)"},
       {"(Successful) (A)", kOk, kOk, kOk}},
      {"a link is logged as written, or without its address",
       {"set_next_letter(\"\")", "click_link(\"edit,0\")", "click_link(\"other,\")"},
       {"ClickLinkByHref(editA)", "ClickLinkByHref(other)"},
       {"(Successful) (A)", "Looking For Link: editA", "http://r/editA.htm",
        "Looking For Link: other", "(Failed To Find Link)"},
       [](ScriptRig& rig) {
         rig.pages.Answer(QStringLiteral("ClickLinkByHref(editA"),
                          {QStringLiteral("http://r/editA.htm")});
         rig.pages.Answer(QStringLiteral("ClickLinkByHref(other"), {QStringLiteral("failed_link")});
       }},
      {"a form number that is none submits the first form",
       {"call_page_submit(\"2\")", "call_page_submit(\"\")"},
       {"SubmitFormByNumber(2)", "SubmitFormByNumber(-1)"},
       {kOk, kOk}},
      {"script code runs in a frame, or ends at its first comma only",
       {"set_frame_number(\"2\")", "set_next_letter(\"\")", "call_javascript(\"f('');,3\")",
        "call_javascript_by_letter_order(\"g();,2\")", "call_javascript(\"h(1,2)\")"},
       {"run f('C');", "run g(C);", "run h(1"},
       {"(Successful) (C)", kOk, kOk, kOk},
       [](ScriptRig& rig) { rig.entry.entry_index = 3; }},
  });
}

// What a command that may change the page leaves for the next line.
TEST(Clicks, WaitForThePageTheyLeadTo) {
  for (const char* line :
       {"click_button(\"x\")", "click_button_onclick(\"x,y,\")", "click_onclick(\"x,\")",
        "click_link(\"x,\")", "call_page_submit(\"0\")", "call_javascript(\"x,\")",
        "nav_link(\"x,\")", "nav(\"x\")", "page_refresh(\"\")"}) {
    ScriptRig rig;
    QStringList order;
    const auto load = [&order](FakePageHost& host) {
      host.Later([&order, &host] {
        host.BeginNavigation();
        // A redirect, and a page that leaves by itself as soon as it is there.
        host.Later([&order, &host] {
          host.EndNavigation();
          host.BeginNavigation();
          QTimer::singleShot(20, &host, [&order, &host] {  // longer than the next line's settling
            order.append(QStringLiteral("loaded"));
            host.EndNavigation();
          });
        });
      });
    };
    rig.pages.Answer(QStringLiteral("FindLinkByHref"), {QStringLiteral("http://r/x")});
    for (const char* call : {"Click", "Submit", "run", "nav", "refresh"}) {
      rig.pages.On(QString::fromLatin1(call), load);
    }
    rig.pages.On(QStringLiteral("SetElementValue"),
                 [&order](FakePageHost&) { order.append(QStringLiteral("next line")); });
    EXPECT_EQ(rig.Run({QString::fromLatin1(line), QStringLiteral("set_name(\"n,\")")}),
              RunEnd::kAllLinesDone)
        << line;
    EXPECT_EQ(order, Lines({"loaded", "next line"})) << line;
  }
}

TEST(Clicks, ThatLeadNowhereGoOn) {
  ScriptRig rig;
  rig.flags.SetPageLoaded(false);  // as an earlier page that never came left it
  rig.pages.Answer(QStringLiteral("Click"), {QStringLiteral("failed")});
  EXPECT_EQ(rig.Run(Lines({"click_button(\"none\")", "set_name(\"n,\")"}), std::chrono::seconds(5)),
            RunEnd::kAllLinesDone);
  EXPECT_EQ(rig.Results(), Lines({"(Failed - Object Not Found)", kOk}));
}

TEST(ClickIgnoringPageLoad, WaitsItsTimeWhateverThePageDoes) {
  const struct {
    const char* fault;
    std::vector<const char*> script;
    std::vector<const char*> calls;
    int timer_before;
    int timer_after;
  } cases[] = {
      {"no time given", {"click_button_ignore_page_loading(\"S\")"}, {"ClickButton(S)"}, 1, 100},
      {"its own time", {"click_button_ignore_page_loading(\"S,30\")"}, {"ClickButton(S)"}, 1, 30},
      {"an empty time", {"click_button_ignore_page_loading(\"S,\")"}, {"ClickButton(S)"}, 20, 20},
      {"the plain one inserts the name",
       {"set_next_letter(\"\")", "click_button_ignore_page_loading(\"Save,2\")"},
       {"ClickButton(Save)"},
       1,
       2},
      {"the time is the place of the name as well",
       {"set_next_letter(\"\")", "click_button_ignore_page_loading_if_in_combo_false(\"Save,2\")"},
       {"ClickButton(SaAve)"},
       1,
       2},
      {"a default where there is none",
       {"set_name(\"n,3\")", "click_button_ignore_page_loading_if_in_combo_false(\"Save\")"},
       {"SetElementValue(n, Web, false)", "ClickButton(Save)"},
       1,
       3},
  };
  for (const auto& c : cases) {
    ScriptRig rig;
    rig.flags.script_timer_ms = c.timer_before;
    rig.pages.On(QStringLiteral("ClickButton"),
                 [](FakePageHost& host) { host.BeginNavigation(); });  // which never ends
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(rig.Run(Lines(c.script)), RunEnd::kAllLinesDone) << c.fault;
    EXPECT_GE(time.elapsed(), c.timer_after - 1) << c.fault;
    EXPECT_EQ(rig.pages.calls, Lines(c.calls)) << c.fault;
    EXPECT_EQ(rig.flags.script_timer_ms, c.timer_after) << c.fault;
  }
}

TEST(DebugButton, FreesAWaitForAPageThatNeverLoads) {
  ScriptRig rig;
  rig.pages.On(QStringLiteral("ClickButton"), [](FakePageHost& host) { host.BeginNavigation(); });
  rig.entry.shown_password = rig.entry.password;
  rig.Start(Lines({"nav(\"list.htm\")", "click_button(\"Save\")", "set_name(\"n,\")"}));
  // Only a wait that has begun to look at the page tells of a long wait.
  ASSERT_TRUE(RunUntil([&] { return !rig.waits.isEmpty(); }));
  EXPECT_TRUE(rig.IsRunning());
  rig.flags.SetPageLoaded(true);
  ASSERT_TRUE(RunUntil([&] { return !rig.IsRunning(); }));
  EXPECT_EQ(rig.End(), RunEnd::kAllLinesDone);
  EXPECT_EQ(rig.waits, Lines({"192.168.1.1", ""})) << "with the login of the address before";
}

}  // namespace
}  // namespace quayline
