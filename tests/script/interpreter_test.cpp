// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/interpreter.h"

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

const QString kRule = QString(71, QLatin1Char('-'));

QString Log(const std::vector<const char*>& lines) {
  QString text = Lines(lines).join(QStringLiteral("\r\n"));
  text.replace(QStringLiteral("RULE"), kRule);
  return text;
}

TEST(RunLog, IsRightToTheCharacter) {
  const struct {
    const char* fault;
    std::vector<const char*> script;
    int broken_status;
    std::vector<const char*> log;
  } cases[] = {
      {"an empty script",
       {},
       0,
       {"", "Running Script From Database For Selected Router", "RULE", "RULE", ""}},
      {"a comment, a command, a command whose condition fails",
       {"Log in first", "SET_name(\"rule,0\")", " set_name(\"rule,0\")",
        "set_name_if_in_combo_true(\"rule,0\")"},
       0,
       {"", "Running Script From Database For Selected Router", "RULE", "Step 01. Log in first",
        "Step 02. SET_name(\"rule,0\")", "(Successful)", "Step 03.  set_name(\"rule,0\")",
        "Step 04. set_name_if_in_combo_true(\"rule,0\")", "RULE", ""}},
      {"a page that fails behind nav",
       {"nav(\"a.htm\")", "set_name(\"rule,0\")"},
       404,
       {"", "Running Script From Database For Selected Router", "RULE", "Step 01. nav(\"a.htm\")",
        "", "!ERROR! (Navigating to http://192.168.1.1/a.htm)", "This Entry Will be Skipped.",
        "Please Check your Router Info And Try Again.", "RULE", "NOT_FOUND(404) (http://x/)",
        "RULE", ""}},
      {"a page that fails behind a click",
       {"click_button(\"Save, now\")", "set_name(\"rule,0\")"},
       404,
       {"", "Running Script From Database For Selected Router", "RULE",
        "Step 01. click_button(\"Save, now\")", "(Successful)", "",
        "!ERROR! (Navigating to http://192.168.1.1/Save, now)", "This Entry Will be Skipped.",
        "Please Check your Router Info And Try Again.", "RULE", ""}},
      {"a page that fails behind script code",
       {"call_javascript(\"save()\")"},
       404,
       {"", "Running Script From Database For Selected Router", "RULE",
        "Step 01. call_javascript(\"save()\")", "", "!ERROR! Running JavaScript",
        "This Entry Will be Skipped.", "Please Check your Router Info And Try Again.", "RULE", ""}},
      {"a page that fails while words are waited for",
       {"wait_until_words_found(\"Saved\")"},
       404,
       {"", "Running Script From Database For Selected Router", "RULE",
        "Step 01. wait_until_words_found(\"Saved\")", "", "!ERROR! ()",
        "This Entry Will be Skipped.", "Please Check your Router Info And Try Again.", "RULE", ""}},
      {"an entry that exists",
       {"check_if_name_exists(\"\")", "nav(\"a.htm\")"},
       0,
       {"", "Running Script From Database For Selected Router", "RULE",
        "Step 01. check_if_name_exists(\"\")", "",
        "This Entry (Web) Already Exists On The Router, This Entry Will be Skipped.", "RULE", ""}},
  };
  for (const auto& c : cases) {
    ScriptRig rig;
    rig.pages.Answer(QStringLiteral("PageContainsWords(Web)"), {true});
    if (c.broken_status != 0) {
      QObject::connect(&rig.pages.Host(0), &PageHost::navigateError, &rig.browsers, [&rig] {
        rig.flags.last_page_error = QStringLiteral("NOT_FOUND(404) (http://x/)");
        rig.flags.SetPageErrorPending(true);
      });
      const auto fail = [](FakePageHost& host) {
        host.LoadBrokenPage(QStringLiteral("http://x/"), 404);
      };
      for (const char* call : {"nav", "ClickButton", "run"}) {
        rig.pages.On(QString::fromLatin1(call), fail);
      }
      bool failed = false;
      rig.pages.On(QStringLiteral("PageContainsWords(Saved)"), [&failed, fail](FakePageHost& host) {
        if (!std::exchange(failed, true)) {
          fail(host);
        }
      });
      EXPECT_EQ(rig.Run(Lines(c.script)), RunEnd::kPageError) << c.fault;
      EXPECT_FALSE(rig.flags.PageErrorPending()) << c.fault << ": ends the next entry, too";
    } else {
      rig.Run(Lines(c.script));
    }
    EXPECT_EQ(rig.log.Text(), Log(c.log)) << c.fault;
  }
}

TEST(Run, IsNotEvenHeadedWhenItWasStoppedBefore) {
  ScriptRig rig;
  rig.flags.SetJobStopRequested(true);
  EXPECT_EQ(rig.Run({QStringLiteral("nav(\"a\")")}), RunEnd::kStopped);
  EXPECT_EQ(rig.log.Text(), QString());
  EXPECT_EQ(rig.pages.calls, QStringList());
}

TEST(SettleCheck, ReadsUntilTwoReadsAreEqualAndSixTimesAtMost) {
  const struct {
    const char* fault;
    QList<QJsonValue> states;
    int reads;
  } cases[] = {
      {"a page at rest", {QStringLiteral("a")}, 2},
      {"a page that changes once", {QStringLiteral("a"), QStringLiteral("b")}, 3},
      {"an empty page", {QString()}, 1},
      {"a page that never rests",
       {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b"),
        QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")},
       6},
  };
  for (const auto& c : cases) {
    ScriptRig rig;
    rig.pages.Answer(QStringLiteral("ReadMarkupState"), c.states);
    EXPECT_EQ(rig.Run({QStringLiteral("set_name(\"a,\")")}), RunEnd::kAllLinesDone) << c.fault;
    EXPECT_EQ(rig.pages.settle_reads, c.reads) << c.fault;
    EXPECT_EQ(rig.pages.calls.size(), 1) << c.fault;
  }
}

TEST(DebugMode, HoldsBehindEveryLineAndArmsTheNextHold) {
  ScriptRig rig;
  rig.options.debug_mode = true;
  rig.flags.SetJobDebugMode(true);  // as a job does that begins in debug mode
  rig.Start(Lines({"one", "two", "three"}));
  for (int hold = 1; hold <= 3; ++hold) {
    ASSERT_TRUE(RunUntil([&] { return rig.order.count(QStringLiteral("hold")) == hold; }));
    if (hold == 3) {
      rig.options.debug_mode = false;
    }
    rig.flags.SetJobDebugMode(false);
  }
  ASSERT_TRUE(RunUntil([&] { return !rig.IsRunning(); }));
  EXPECT_EQ(rig.order, Lines({"Step 01", "hold", "button on", "button on", "Step 02", "hold",
                              "button on", "button on", "Step 03", "hold", "button on"}));
  EXPECT_TRUE(rig.log.Text().contains(
      QStringLiteral("\r\n-------Click 'Proceed To Next Command' To Continue-------\r\n\r\nStep")));
}

TEST(DebugMode, CheckedDuringAJobHoldsOneLineLater) {
  ScriptRig rig;
  rig.options.debug_mode = true;
  rig.Start(Lines({"one", "two"}));
  ASSERT_TRUE(RunUntil([&] { return rig.order.contains(QStringLiteral("hold")); }));
  EXPECT_EQ(rig.order, Lines({"Step 01", "button on", "Step 02", "hold", "button on"}));
}

TEST(Throttle, StandsBehindTheHold) {
  ScriptRig rig;
  rig.options.throttle = true;
  rig.flags.SetJobDebugMode(true);
  QElapsedTimer since_proceed;
  rig.Start(Lines({"one"}));
  ASSERT_TRUE(RunUntil([&] { return rig.order.contains(QStringLiteral("hold")); }));
  since_proceed.start();
  rig.flags.SetJobDebugMode(false);
  ASSERT_TRUE(RunUntil([&] { return !rig.IsRunning(); }));
  EXPECT_GE(since_proceed.elapsed(), 490);
}

TEST(Run, GoesOnWithTheBrowserOnShow) {
  ScriptRig rig;
  rig.pages.On(QStringLiteral("ClickButton(Edit)"),
               [](FakePageHost& host) { host.OpenPopup().LoadPage(); });
  rig.pages.On(QStringLiteral("ClickButton(Close)"),
               [](FakePageHost& host) { host.CloseWindow(); });
  EXPECT_EQ(rig.Run(Lines({"click_button(\"Edit\")", "set_name(\"a,\")", "click_button(\"Close\")",
                           "set_name(\"b,\")"})),
            RunEnd::kAllLinesDone);
  EXPECT_EQ(rig.pages.calls,
            Lines({"ClickButton(Edit)", "popup 1: SetElementValue(a, Web, false)",
                   "popup 1: ClickButton(Close)", "SetElementValue(b, Web, false)"}));
  // The page that opened the popup is still there to answer; the one that closed itself is not.
  EXPECT_EQ(rig.Results(),
            Lines({"(Successful)", "(Successful)", "(Failed - Object Not Found)", "(Successful)"}));
}

TEST(Run, KeepsItsStateForItselfAndTheFlagsForTheNext) {
  ScriptRig rig;
  rig.pages.Answer(QStringLiteral("ComboHasOption"), {true});
  rig.pages.Answer(QStringLiteral("ExtractBetweenMarkers"), {QStringLiteral("?id=7")});
  rig.Run(Lines({"set_frame_number(\"2\")", "set_frame_name(\"main\")", "set_next_letter(\"\")",
                 "set_custom(\"a,1,x\")", "set_type_choices(\"T|U|B\")", "is_in_combo(\"list\")",
                 "add_to_nav(\"b,a\")"}));
  rig.pages.calls.clear();
  rig.entry.is_first_entry = false;
  rig.Run(Lines({"set_custom(\"abc\")", "set_combobox(\"p,0\")", "nav(\"x\")",
                 "set_name_if_in_combo_true(\"n\")"}));
  EXPECT_EQ(rig.pages.calls,
            Lines({"SetElementValue(abc, , false)", "SetComboValue(p, , , false)",
                   "nav http://192.168.1.1/x?id=7", "SetElementValue(n, Web, false)"}));
}

}  // namespace
}  // namespace quayline
