// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QElapsedTimer>

#include "script/script_rig.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

TEST(Clicks, TakeTheirArgumentsApart) {
  CheckScripts({
      {"a comma in a button's name or an onclick text",
       R"x(click_button("Save, then go")  > ClickButton(Save, then go)
           click_onclick("go(1, 2)")      > ClickByOnclick(go(1))x"},
      {"the name goes into the button's name instead of its onclick text",
       R"(set_next_letter("")                       = ok (A)
          click_button_onclick("Edit,edit('')x,3")  > ClickButtonByOnclick(Edit, edit('A')x)
          click_button_onclick("Edit,rm('')x")      > ClickButtonByOnclick(Edit, rm('A')x)
          click_button_onclick("Edit,a,")           > ClickButtonByOnclick(Edit, a))"},
      {"a link is logged as written, or without its address",
       R"(set_next_letter("")   = ok (A)
          click_link("edit,0")  > ClickLinkByHref(editA)  = Looking For Link: editA
            = http://r/editA.htm
          click_link("other,")  > ClickLinkByHref(other)  = Looking For Link: other
            = (Failed To Find Link))",
       [](ScriptRig& rig) {
         rig.pages.Answer("ClickLinkByHref(editA", {u"http://r/editA.htm"_s});
         rig.pages.Answer("ClickLinkByHref(other", {u"failed_link"_s});
       }},
      {"a form number that is none submits the first form",
       R"(call_page_submit("2")  > SubmitFormByNumber(2)
          call_page_submit("")   > SubmitFormByNumber(-1))"},
      {"script code runs in a frame, or ends at its first comma only",
       R"x(set_frame_number("2")                      = -
           set_next_letter("")                        = ok (C)
           call_javascript("f('');,3")                > run f('C');
           call_javascript_by_letter_order("g();,2")  > run g(C);
           call_javascript("h(1,2)")                  > run h(1)x",
       [](ScriptRig& rig) { rig.entry.entry_index = 3; }},
      {"a click that leads nowhere waits for the page that never came before it",
       R"(click_button("none")  > ClickButton(none)  > NearestNames(none)  = (Failed - Object Not Found)
          set_name("n,")        > SetElementValue(n, Web, false))",
       [](ScriptRig& rig) {
         rig.flags.SetPageLoaded(false);
         rig.pages.Answer("Click", {u"failed"_s});
       }},
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
    rig.pages.Answer("FindLinkByHref", {u"http://r/x"_s});
    rig.pages.On({"Click", "Submit", "run", "nav", "refresh"}, [&order](FakePageHost& host) {
      host.Later([&order, &host] {
        host.BeginNavigation();
        // A redirect, and a page that leaves by itself as soon as it is there.
        host.Later([&order, &host] {
          host.EndNavigation();
          host.BeginNavigation();
          QTimer::singleShot(20, &host, [&order, &host] {  // longer than the next line's settling
            order.append(u"loaded"_s);
            host.EndNavigation();
          });
        });
      });
    });
    rig.pages.On({"SetElementValue"}, [&order](FakePageHost&) { order.append(u"next line"_s); });
    EXPECT_EQ(rig.Run({line, "set_name(\"n,\")"}), RunEnd::kAllLinesDone) << line;
    EXPECT_EQ(order, Lines({"loaded", "next line"})) << line;
  }
}

TEST(Times, AreKeptWhateverThePageDoesAndForTheNextLineWithoutOne) {
  const struct {
    const char* fault;
    int before;
    int after;
    const char* transcript;
  } cases[] = {
      {"none", 1, 100, R"(click_button_ignore_page_loading("S")  > ClickButton(S))"},
      {"its own", 1, 30, R"(click_button_ignore_page_loading("S,30")  > ClickButton(S))"},
      {"an empty one", 20, 20, R"(click_button_ignore_page_loading("S,")  > ClickButton(S))"},
      {"the plain one inserts the name", 1, 2,
       R"(set_next_letter("")  = ok (A)
          click_button_ignore_page_loading("Save,2")  > ClickButton(Save))"},
      {"the time is the place of the name as well", 1, 2,
       R"(set_next_letter("")  = ok (A)
          click_button_ignore_page_loading_if_in_combo_false("Save,2")  > ClickButton(SaAve))"},
      {"a default where there is none", 1, 3,
       R"(set_name("n,3")  > SetElementValue(n, Web, false)
          click_button_ignore_page_loading_if_in_combo_false("Save")  > ClickButton(Save))"},
      {"a pause", 1, 40, R"x(timeout("40"))x"},
      {"no number", 40, 40, R"x(timeout("soon"))x"},
      {"below zero", 40, 40, R"x(timeout("-5"))x"},
      {"beyond 32 bits", 40, 40, R"x(timeout("99999999999"))x"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    ScriptRig rig;
    rig.flags.script_timer_ms = c.before;
    rig.pages.On({"ClickButton"}, LoadForEver);
    QElapsedTimer time;
    time.start();
    CheckScript(rig, c.transcript);
    EXPECT_GE(time.elapsed(), c.after - 1);
    EXPECT_EQ(rig.flags.script_timer_ms, c.after);
  }
}

TEST(DebugButton, FreesAWaitForAPageThatNeverLoads) {
  ScriptRig rig;
  rig.pages.On({"ClickButton"}, LoadForEver);
  rig.entry.shown_password = rig.entry.password;
  rig.Start({"nav(\"list.htm\")", "click_button(\"Save\")", "set_name(\"n,\")"});
  // A long wait is reported only once the page is checked.
  ASSERT_TRUE(RunUntil([&] { return !rig.waits.isEmpty(); }));
  EXPECT_EQ(rig.End(), std::nullopt);
  rig.flags.SetPageLoaded(true);
  ASSERT_TRUE(rig.Ends());
  EXPECT_EQ(rig.End(), RunEnd::kAllLinesDone);
  EXPECT_EQ(rig.waits, Lines({"192.168.1.1", ""})) << "with the login of the address before";
}

}  // namespace
}  // namespace quayline::testing
