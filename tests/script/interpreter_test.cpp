// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/interpreter.h"

#include <QElapsedTimer>

#include "script/script_rig.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

TEST(RunLog, IsRightToTheCharacter) {
  const struct {
    const char* fault;
    Texts script;
    RunEnd end;
    Texts log;  // after its head and before its last separator
  } cases[] = {
      {"an empty script", {}, RunEnd::kAllLinesDone, {}},
      {"a comment, a command, a command whose condition fails",
       {"Log in first", "SET_name(\"rule,0\")", " set_name(\"rule,0\")",
        "set_name_if_in_combo_true(\"rule,0\")"},
       RunEnd::kAllLinesDone,
       {"Step 01. Log in first", "Step 02. SET_name(\"rule,0\")", "(Successful)",
        "Step 03.  set_name(\"rule,0\")", "Step 04. set_name_if_in_combo_true(\"rule,0\")"}},
      {"an entry that exists",
       {"check_if_name_exists(\"its argument counts for nothing\")", "nav(\"a.htm\")"},
       RunEnd::kEntryExists,
       {"Step 01. check_if_name_exists(\"its argument counts for nothing\")", "",
        "This Entry (Web) Already Exists On The Router, This Entry Will be Skipped."}},
      {"a page that fails behind nav",
       {"nav(\"a.htm\")", "set_name(\"rule,0\")"},
       RunEnd::kPageError,
       {"Step 01. nav(\"a.htm\")", "", "!ERROR! (Navigating to http://192.168.1.1/a.htm)",
        "SKIPPED", "RULE", "NOT_FOUND(404) (http://x/)"}},
      {"a page that fails behind a click",
       {"click_button(\"Save, now\")", "set_name(\"rule,0\")"},
       RunEnd::kPageError,
       {"Step 01. click_button(\"Save, now\")", "(Successful)", "",
        "!ERROR! (Navigating to http://192.168.1.1/Save, now)", "SKIPPED"}},
      {"a page that fails behind script code",
       {"call_javascript(\"save()\")"},
       RunEnd::kPageError,
       {"Step 01. call_javascript(\"save()\")", "", "!ERROR! Running JavaScript", "SKIPPED"}},
      {"a page that fails while words are waited for",
       {"wait_until_words_found(\"Saved\")"},
       RunEnd::kPageError,
       {"Step 01. wait_until_words_found(\"Saved\")", "", "!ERROR! ()", "SKIPPED"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    ScriptRig rig;
    bool failed = false;  // words are asked for again and again
    rig.pages.Answer("PageContainsWords(Web)", {true});
    if (c.end == RunEnd::kPageError) {
      QObject::connect(&rig.pages.Host(0), &PageHost::navigateError, &rig.browsers, [&rig] {
        rig.flags.last_page_error = u"NOT_FOUND(404) (http://x/)"_s;
        rig.flags.SetPageErrorPending(true);
      });
      rig.pages.On({"nav", "ClickButton", "run", "PageContainsWords(Saved)"},
                   [&failed](FakePageHost& host) {
                     if (!std::exchange(failed, true)) {
                       host.LoadBrokenPage(404);
                     }
                   });
    }
    EXPECT_EQ(rig.Run(c.script), c.end);
    EXPECT_FALSE(rig.flags.PageErrorPending()) << "ends the next entry, too";
    QStringList log = Lines({"", "Running Script From Database For Selected Router", "RULE"}) +
                      Lines(c.log) + Lines({"RULE", ""});
    log.replaceInStrings(u"RULE"_s, QString(71, u'-'));
    log.replaceInStrings(u"SKIPPED"_s,
                         u"This Entry Will be Skipped.\r\n"
                         "Please Check your Router Info And Try Again."_s);
    EXPECT_EQ(rig.log.Text(), log.join(u"\r\n"_s));
  }
}

TEST(Run, IsNotEvenHeadedWhenItWasStoppedBefore) {
  ScriptRig rig;
  rig.flags.SetJobStopRequested(true);
  EXPECT_EQ(rig.Run({"nav(\"a\")"}), RunEnd::kStopped);
  EXPECT_EQ(rig.log.Text(), QString());
  EXPECT_EQ(rig.pages.calls, QStringList());
}

TEST(SettleCheck, ReadsUntilTwoReadsAreEqualAndSixTimesAtMost) {
  const struct {
    const char* fault;
    QString states;  // a letter a read
    int reads;
  } cases[] = {
      {"a page at rest", u"a"_s, 2},
      {"a page that changes once", u"ab"_s, 3},
      {"an empty page", u""_s, 1},
      {"a page that never rests", u"abababab"_s, 6},
  };
  for (const auto& c : cases) {
    ScriptRig rig;
    QList<QJsonValue> states;
    for (const QChar state : c.states) {
      states.append(QString(state));
    }
    rig.pages.Answer("ReadMarkupState", states.isEmpty() ? QList<QJsonValue>{u""_s} : states);
    EXPECT_EQ(rig.Run({"set_name(\"a,\")"}), RunEnd::kAllLinesDone) << c.fault;
    EXPECT_EQ(rig.pages.settle_reads, c.reads) << c.fault;
    EXPECT_EQ(rig.pages.calls.size(), 1) << c.fault;
  }
}

TEST(SettleCheck, IsNotRepeatedBeforeAPageIsUsedOrTimePasses) {
  const struct {
    const char* fault;
    Texts script;
    int reads;
  } cases[] = {
      {"a line that uses no page",
       {"comment", "set_type_choices(\"a|b|c\")", "set_name(\"a,\")"},
       2},
      {"a page that was waited for", {"nav(\"a\")", "comment", "set_name(\"a,\")"}, 2},
      {"a box that was set", {"nav(\"a\")", "set_name(\"a,\")", "comment"}, 3},
      {"a pause", {"nav(\"a\")", "timeout(\"1\")", "comment"}, 3},
      {"a frame", {"set_frame_number(\"1\")", "nav(\"a\")", "comment"}, 4},
  };
  for (const auto& c : cases) {
    ScriptRig rig;
    rig.pages.settled_state = u"a"_s;
    rig.pages.Answer("ReadMarkupState", {u"a"_s});
    EXPECT_EQ(rig.Run(c.script), RunEnd::kAllLinesDone) << c.fault;
    EXPECT_EQ(rig.pages.settle_reads, c.reads) << c.fault;
  }
}

TEST(DebugMode, PausesAfterEveryLineAndRequestsTheNextPause) {
  ScriptRig rig;
  rig.options.debug_mode = true;
  rig.flags.SetJobDebugMode(true);  // as a job does that begins in debug mode
  rig.Start({"one", "two", "three"});
  for (int hold = 1; hold <= 3; ++hold) {
    ASSERT_TRUE(RunUntil([&] { return rig.order.count(u"hold"_s) == hold; }));
    rig.options.debug_mode = hold < 3;
    rig.flags.SetJobDebugMode(false);
  }
  ASSERT_TRUE(rig.Ends());
  EXPECT_EQ(rig.order, Lines({"Step 01", "hold", "button on", "button on", "Step 02", "hold",
                              "button on", "button on", "Step 03", "hold", "button on"}));
  EXPECT_TRUE(rig.log.Text().contains(
      u"\r\n-------Click 'Proceed To Next Command' To Continue-------\r\n\r\nStep"_s));
}

TEST(DebugMode, CheckedDuringAJobHoldsOneLineLater) {
  ScriptRig rig;
  rig.options.debug_mode = true;
  rig.Start({"one", "two"});
  ASSERT_TRUE(RunUntil([&] { return rig.order.contains(u"hold"_s); }));
  EXPECT_EQ(rig.order, Lines({"Step 01", "button on", "Step 02", "hold", "button on"}));
}

TEST(Throttle, WaitsAfterThePause) {
  ScriptRig rig;
  rig.options.throttle = true;
  rig.flags.SetJobDebugMode(true);
  rig.Start({"one"});
  ASSERT_TRUE(RunUntil([&] { return rig.order.contains(u"hold"_s); }));
  QElapsedTimer since_proceed;
  since_proceed.start();
  rig.flags.SetJobDebugMode(false);
  ASSERT_TRUE(rig.Ends());
  EXPECT_GE(since_proceed.elapsed(), 490);
}

TEST(Run, GoesOnWithTheBrowserOnShow) {
  ScriptRig rig;
  rig.pages.On({"ClickButton(Edit)"}, OpenPopup);
  rig.pages.On({"ClickButton(Close)", "run close()"}, CloseWindow);
  rig.Run({"click_button(\"Edit\")", "set_name(\"a,\")", "click_button(\"Close\")",
           "set_name(\"b,\")", "click_button(\"Edit\")", "call_javascript(\"close()\")",
           "set_name(\"c,\")"});
  EXPECT_EQ(rig.End(), RunEnd::kAllLinesDone);
  EXPECT_EQ(rig.pages.calls,
            Lines({"ClickButton(Edit)", "popup 1: SetElementValue(a, Web, false)",
                   "popup 1: ClickButton(Close)", "SetElementValue(b, Web, false)",
                   "ClickButton(Edit)", "popup 1: run close()", "SetElementValue(c, Web, false)"}));
  // The page that opened the popup is still there to answer, and so is the one that closed itself.
  EXPECT_EQ(rig.Results(), Lines({kOk, kOk, kOk, kOk, kOk, kOk, kOk}));
}

TEST(Run, KeepsItsStateForItselfAndTheFlagsForTheNext) {
  ScriptRig rig;
  rig.pages.Answer("ComboHasOption", {true});
  rig.pages.Answer("ExtractBetweenMarkers", {u"?id=7"_s});
  rig.Run({"set_frame_number(\"2\")", "set_frame_name(\"main\")", "set_next_letter(\"\")",
           "set_custom(\"a,1,x\")", "set_type_choices(\"T|U|B\")", "is_in_combo(\"list\")",
           "add_to_nav(\"b,a\")"});
  rig.pages.calls.clear();
  rig.entry.is_first_entry = false;
  rig.Run({"set_custom(\"abc\")", "set_combobox(\"p,0\")", "nav(\"x\")",
           "set_name_if_in_combo_true(\"n\")"});
  EXPECT_EQ(rig.pages.calls,
            Lines({"SetElementValue(abc, , false)", "SetComboValue(p, , , false)",
                   "nav http://192.168.1.1/x?id=7", "SetElementValue(n, Web, false)"}));
}

}  // namespace
}  // namespace quayline::testing
