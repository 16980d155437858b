// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include "script/script_rig.h"
#include "test_main.h"

namespace quayline {
namespace {

using testing::FakePageHost;
using testing::Lines;
using testing::RunUntil;
using testing::ScriptRig;

// A line, and the call behind which the page falls silent and the user stops the job.
struct StopCase {
  const char* fault;
  const char* line;
  const char* silent_on;
};

const StopCase kStopCases[] = {
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
    {"ports", "set_ports_actiontec_mi424wr_verizon_if_in_combo_false(\"a,b\")", "SetElementValue"},
    {"the cache logged as failed", "clear_cache(\"\")", "clear"},
};

TEST(Stop, EndsASilentPageAtOnceAndLogsNothingMore) {
  for (const StopCase& c : kStopCases) {
    ScriptRig rig;
    rig.flags.in_combo = false;
    rig.flags.url_suffix = QStringLiteral("?sid=1");
    rig.pages.KeepSilentOn(QString::fromLatin1(c.silent_on));
    const bool in_settle = QLatin1String(c.silent_on) == QLatin1String("ReadMarkupState");
    const auto is_asked = [&] {
      return in_settle ? rig.pages.settle_reads > 0 : !rig.pages.calls.isEmpty();
    };
    rig.Start(Lines({"set_name_array(\"1|2\")", c.line, "set_ip(\"never,\")"}));
    ASSERT_TRUE(RunUntil(is_asked)) << c.fault;
    rig.log.Clear();
    QElapsedTimer time;
    time.start();
    rig.flags.SetJobStopRequested(true);
    ASSERT_TRUE(RunUntil([&] { return !rig.IsRunning(); })) << c.fault;
    EXPECT_LT(time.elapsed(), 200) << c.fault;
    EXPECT_EQ(rig.End(), RunEnd::kStopped) << c.fault;
    EXPECT_EQ(rig.log.Text(), QString()) << c.fault;
    EXPECT_EQ(rig.pages.calls.size(), in_settle ? 0 : 1) << c.fault;
    EXPECT_EQ(rig.flags.url_suffix, QStringLiteral("?sid=1")) << c.fault;
  }
}

TEST(Stop, EndsEveryWait) {
  const struct {
    const char* fault;
    const char* line;
    bool debug;
    bool throttle;
  } cases[] = {
      {"the wait for a page", "nav(\"a\")", false, false},
      {"the wait for a page behind a click", "click_button(\"b\")", false, false},
      {"a time", "timeout(\"60000\")", false, false},
      {"the time of a click", "click_button_ignore_page_loading(\"c,60000\")", false, false},
      {"words that never come", "wait_until_words_found(\"x\")", false, false},
      {"the hold of debug mode", "comment", true, false},
      {"the throttle", "comment", false, true},
  };
  for (const auto& c : cases) {
    ScriptRig rig;
    rig.flags.SetJobDebugMode(c.debug);
    rig.options.throttle = c.throttle;
    for (const char* call : {"nav", "ClickButton(b"}) {
      rig.pages.On(QString::fromLatin1(call), [](FakePageHost& host) { host.BeginNavigation(); });
    }
    rig.Start(Lines({c.line, "set_ip(\"never,\")"}));
    ASSERT_FALSE(RunUntil([&] { return !rig.IsRunning(); }, std::chrono::milliseconds(50)))
        << c.fault;
    QElapsedTimer time;
    time.start();
    rig.flags.SetJobStopRequested(true);
    ASSERT_TRUE(RunUntil([&] { return !rig.IsRunning(); })) << c.fault;
    EXPECT_LT(time.elapsed(), 200) << c.fault;
    EXPECT_EQ(rig.End(), RunEnd::kStopped) << c.fault;
    EXPECT_TRUE(rig.pages.calls.filter(QStringLiteral("never")).isEmpty()) << c.fault;
  }
}

TEST(Stop, WhileASaveEndsLeavesThePageAlone) {
  ScriptRig rig;
  rig.pages.On(QStringLiteral("ClickButton"), [](FakePageHost& host) { host.BeginNavigation(); });
  rig.Start(Lines({"click_button_ignore_page_loading(\"Save,1\")", "nav(\"list.htm\")"}));
  ASSERT_TRUE(RunUntil([&] { return rig.order.contains(QStringLiteral("Step 02")); }));
  rig.flags.SetJobStopRequested(true);
  ASSERT_TRUE(RunUntil([&] { return !rig.IsRunning(); }));
  EXPECT_EQ(rig.pages.calls, Lines({"ClickButton(Save)"}));
}

// The second error of a job sets both flags: the entry's block is written before the job ends.
TEST(Stop, TogetherWithAPageErrorLogsTheErrorFirst) {
  for (const char* line : {"nav(\"a\")", "click_button(\"b\")", "call_javascript(\"f()\")",
                           "click_button_ignore_page_loading(\"c,60000\")",
                           "wait_until_words_found(\"x\")", "wait_until_words_not_found(\"y\")"}) {
    ScriptRig rig;
    rig.pages.Answer(QStringLiteral("PageContainsWords(y)"), {true});
    for (const char* call : {"nav", "ClickButton", "run", "PageContainsWords"}) {
      rig.pages.On(QString::fromLatin1(call), [&rig](FakePageHost& host) {
        host.Later([&rig] {
          rig.flags.SetPageErrorPending(true);
          rig.flags.SetJobStopRequested(true);
        });
      });
    }
    EXPECT_EQ(rig.Run(Lines({line, "set_ip(\"never,\")"})), RunEnd::kPageError) << line;
    EXPECT_TRUE(rig.log.Text().contains(QStringLiteral("!ERROR!"))) << line;
    EXPECT_FALSE(rig.log.Text().contains(QStringLiteral("Not Found On Page"))) << line;
  }
}

// An error between two commands belongs to the next one that waits for a page; the others go on.
TEST(PageError, WaitsForACommandThatHeedsIt) {
  ScriptRig rig;
  rig.pages.On(QStringLiteral("SetElementValue(a"),
               [&rig](FakePageHost&) { rig.flags.SetPageErrorPending(true); });
  EXPECT_EQ(rig.Run(Lines({"set_name(\"a,\")", "set_ip(\"b,\")", "timeout(\"1\")",
                           "click_button(\"Save\")", "set_ip(\"never,\")"})),
            RunEnd::kPageError);
  EXPECT_EQ(rig.pages.calls,
            Lines({"SetElementValue(a, Web, false)", "SetElementValue(b, 192.168.1.100, false)",
                   "ClickButton(Save)"}));
}

}  // namespace
}  // namespace quayline
