// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_rig.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// The user stops the job, which has to end at once.
void ExpectStop(ScriptRig& rig) {
  rig.flags.SetJobStopRequested(true);
  EXPECT_TRUE(rig.Ends());
  EXPECT_EQ(rig.End(), RunEnd::kStopped);
}

TEST(Stop, EndsASilentPageAtOnceAndLogsNothingMore) {
  // A line, and the call after which the page gives no answer and the user stops the job.
  const struct {
    const char* fault;
    const char* line;
    const char* silent_on;
  } cases[] = {
      {"during the settle check", "set_name(\"n,\")", "ReadMarkupState"},
      {"a box logged as missing", "set_name(\"n,\")", "SetElementValue"},
      {"the login typed after the stop", "set_password(\"p,\")", "SetElementValue"},
      {"the name of the login's box", "set_password_combine_value_to_name(\"p,s,0\")",
       "GetElementValue"},
      {"keys typed after the stop", "set_password_by_position(\"1\")", "Focus"},
      {"a click", "click_button(\"b\")", "ClickButton"},
      {"a click with a time", "click_button_ignore_page_loading(\"b,5\")", "ClickButton"},
      {"script code", "call_javascript(\"f()\")", "run"},
      {"a link logged as missing", "nav_link(\"x,\")", "FindLinkByHref"},
      {"the suffix lost", "add_to_nav(\"a,b\")", "Extract"},
      {"words taken for gone", "wait_until_words_not_found(\"x\")", "PageContainsWords"},
      {"words waited for", "wait_until_words_found(\"x\")", "PageContainsWords"},
      {"the list's answer invented", "is_in_combo(\"l\")", "ComboHasOption"},
      {"a row taken for free", "set_name_to_check(\"a,0\")", "GetElementValue"},
      {"a string taken for free", "set_string_to_check(\"a,0\")", "PageContainsWords"},
      {"the name on the page", "check_if_name_exists(\"\")", "PageContainsWords"},
      {"ports", "set_ports_actiontec_mi424wr_verizon_if_in_combo_false(\"a,b\")",
       "SetElementValue"},
      {"the cache logged as failed", "clear_cache(\"\")", "clear"},
      {"an item taken for missing", "choose_item(\"l,x\")", "ChooseItem"},
      {"a key pressed after the stop", "press_key(\"f,Enter\")", "FocusField"},
      {"the rule on the page", "check_if_rule_exists(\"\")", "ReadRows"},
      {"a text taken for missing", "expect_page_text(\"x\")", "PageShowsText"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    ScriptRig rig;
    rig.flags.url_suffix = u"?sid=1"_s;
    rig.pages.KeepSilentOn(c.silent_on);
    const bool in_settle = QLatin1String(c.silent_on) == "ReadMarkupState"_L1;
    rig.Start({"set_name_array(\"1|2\")", c.line, "set_ip(\"never,\")"});
    ASSERT_TRUE(RunUntil(
        [&] { return in_settle ? rig.pages.settle_reads > 0 : !rig.pages.calls.isEmpty(); }));
    rig.log.Clear();
    ExpectStop(rig);
    EXPECT_EQ(rig.log.Text(), QString());
    EXPECT_EQ(rig.pages.calls.size(), in_settle ? 0 : 1);
    EXPECT_EQ(rig.flags.url_suffix, u"?sid=1"_s);
  }
}

TEST(Stop, EndsEveryWait) {
  const struct {
    const char* fault;
    const char* line;
    bool debug = false;
    bool throttle = false;
  } cases[] = {
      {"the wait for a page", "nav(\"a\")"},
      {"the wait for a page behind a click", "click_button(\"b\")"},
      {"a time", "timeout(\"60000\")"},
      {"the time of a click", "click_button_ignore_page_loading(\"c,60000\")"},
      {"words that never come", "wait_until_words_found(\"x\")"},
      {"an element that never comes", "wait_until_element(\"x\")"},
      {"a text that never comes", "expect_page_text(\"x\")"},
      {"an item that never comes", "choose_item(\"l,x\")"},
      {"the hold of debug mode", "comment", true},
      {"the throttle", "comment", false, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    ScriptRig rig(60s);
    rig.flags.SetJobDebugMode(c.debug);
    rig.options.throttle = c.throttle;
    rig.pages.On({"nav", "ClickButton(b"}, LoadForEver);
    rig.pages.Answer("ChooseItem", {u"opened"_s});
    rig.pages.Answer("ChooseOpenItem", {u"failed"_s});
    rig.Start({c.line, "set_ip(\"never,\")"});
    ASSERT_FALSE(rig.Ends(50ms));
    ExpectStop(rig);
    EXPECT_TRUE(rig.pages.calls.filter(u"never"_s).isEmpty());
  }
}

TEST(Stop, WhileASaveEndsLeavesThePageAlone) {
  ScriptRig rig;
  rig.pages.On({"ClickButton"}, LoadForEver);
  rig.Start({"click_button_ignore_page_loading(\"Save,1\")", "nav(\"list.htm\")"});
  ASSERT_TRUE(RunUntil([&] { return rig.order.contains(u"Step 02"_s); }));
  ExpectStop(rig);
  EXPECT_EQ(rig.pages.calls, Lines({"ClickButton(Save)"}));
}

// The second error of a job sets both flags: the entry's block is written before the job ends.
TEST(Stop, TogetherWithAPageErrorLogsTheErrorFirst) {
  for (const char* line : {"nav(\"a\")", "click_button(\"b\")", "call_javascript(\"f()\")",
                           "click_button_ignore_page_loading(\"c,60000\")",
                           "wait_until_words_found(\"x\")", "wait_until_words_not_found(\"y\")"}) {
    ScriptRig rig;
    rig.pages.Answer("PageContainsWords(y)", {true});
    rig.pages.On({"nav", "ClickButton", "run", "PageContainsWords"}, [&rig](FakePageHost& host) {
      host.Later([&rig] {
        rig.flags.SetPageErrorPending(true);
        rig.flags.SetJobStopRequested(true);
      });
    });
    EXPECT_EQ(rig.Run({line, "set_ip(\"never,\")"}), RunEnd::kPageError) << line;
    EXPECT_TRUE(rig.log.Text().contains(u"!ERROR!"_s)) << line;
    EXPECT_FALSE(rig.log.Text().contains(u"Not Found On Page"_s)) << line;
  }
}

// An error belongs to the line that caused it: a box that loads another form, for example.
TEST(PageError, IsReportedWithTheLineThatSetTheBox) {
  ScriptRig rig;
  rig.pages.On({"SetElementValue(a"},
               [&rig](FakePageHost&) { rig.flags.SetPageErrorPending(true); });
  EXPECT_EQ(rig.Run({"set_name(\"a,\")", "set_ip(\"never,\")"}), RunEnd::kPageError);
  EXPECT_EQ(rig.pages.calls, Lines({"SetElementValue(a, Web, false)"}));
  EXPECT_TRUE(rig.log.Text().contains(u"!ERROR! (Navigating to http://192.168.1.1/a)"_s));
  EXPECT_FALSE(rig.log.Text().contains(u"Step 02"_s));
}

// An error that came before belongs to the next command that waits for a page.
TEST(PageError, WaitsForACommandThatHeedsIt) {
  ScriptRig rig;
  rig.flags.SetPageErrorPending(true);
  EXPECT_EQ(rig.Run({"timeout(\"1\")", "click_button(\"Save\")", "set_ip(\"never,\")"}),
            RunEnd::kPageError);
  EXPECT_EQ(rig.pages.calls, Lines({"ClickButton(Save)"}));
}

}  // namespace
}  // namespace quayline::testing
