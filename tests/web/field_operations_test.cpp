// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;

const PageCall kSet = SetElementValue(u"a"_s, u"x"_s);
const PageCall kSetIfEmpty = SetElementValue(u"a"_s, u"x"_s, true);
const PageCall kSetSecond = SetSecondElementValue(u"a"_s, u"x"_s);
const PageCall kGet = GetElementValue(u"a"_s);

// Empties the first field behind the browser's back: its markup still says 7.
constexpr char kEmptied[] =
    "<input name=a value=7><script>document.querySelector('input').value = '';</script>";

TEST_F(WebTest, SetElementValueTakesTheFirstElementOfItsLadder) {
  Check("values()",
        {
            {"not the first of two", "<input name=a value=1><input name=a value=2>", kSet, "x|2"},
            {"case is ignored too early", "<input name=A value=1><input name=a value=2>", kSet,
             "1|x"},
            {"an id wins over a name in another case", "<input id=a value=1><input name=A value=2>",
             kSet, "1|x"},
            {"an id to the letter loses to one in another case",
             "<input id=A value=1><input id=a value=2>", kSet, "1|x"},
            {"an id in another case is not found", "<input id=RULE>",
             SetElementValue(u"rule"_s, u"x"_s), "x"},
            {"a field of another kind is passed by",
             "<input type=hidden name=a><input type=password name=a>", kSet, "x|"},
            {"an element that is no field is passed by", "<a name=a></a><input name=a value=1>",
             kSet, "1"},
            {"an empty name takes a field with a name", "<input name=b value=1>",
             SetElementValue({}, u"x"_s), "1"},
            {"an empty list of matches counts as success", "<input name=b value=1>", kSet, "1",
             kFailed},
        });
}

TEST_F(WebTest, SetElementValueWritesAsTypingWould) {
  Check("notes + values()",
        {
            {"the value comes ahead of the focus, twice or unheard",
             "<input name=a value=1 onfocus=\"note('focus ' + value)\""
             " oninput=\"note('input ' + value)\" onchange=\"note('change')\">",
             kSet, "focus 1,input x,changex"},
            {"a text that was there before is announced as a change",
             "<input name=a value=x onchange=\"note('change')\">", kSet, "x"},
            {"what the page puts over the value keeps the text from it",
             "<input name=a id=i><script>var own = Object.getOwnPropertyDescriptor("
             "HTMLInputElement.prototype, 'value'); Object.defineProperty(i, 'value', {get() {"
             "return own.get.call(i) }, set() {}})</script>",
             kSet, "x"},
            {"the length is cut", "<input name=a maxlength=3>",
             SetElementValue(u"a"_s, u"abcdef"_s), "abcdef"},
            {"the text is taken for script", "<input name=a>",
             SetElementValue(u"a"_s, u"'\"\\</script>\u2028\u00fc\u20ac${x}"_s),
             "'\"\\</script>\u2028\u00fc\u20ac${x}"},
            {"a field that cannot be typed into is left",
             "<input name=a disabled><input name=b readonly>", kSet, "x|"},
            {"a select is left", "<select name=a><option value=1>one<option value=2>two</select>",
             SetElementValue(u"a"_s, u"2"_s), "2"},
            {"a value that the field refuses counts as set", "<input type=file name=a>", kSet, "",
             kFailed},
        });
}

TEST_F(WebTest, OnlyAnEmptyElementIsSetWhereThatIsAskedFor) {
  Check("values()",
        {
            {"a filled field is overwritten", "<input name=a value=1>", kSetIfEmpty, "1", kFailed},
            {"the search stops at a filled field",
             "<input name=a><input name=a>"
             "<script>document.querySelector('input').value = 1;</script>",
             kSetIfEmpty, "1|x"},
            {"a filled field does not stand for the others of its name",
             "<input name=a value=1><input name=a>", kSetIfEmpty, "1|", kFailed},
            {"the search stops at the names", "<input name=a value=1><input id=a>", kSetIfEmpty,
             "1|x"},
            {"a value that only the markup has counts for nothing", kEmptied, kSetIfEmpty, "",
             kFailed},
            {"the markup's value counts when it should not", kEmptied, kSet, "x"},
            {"filled fields are counted",
             "<input name=a><input name=a value=1><input name=a><input name=a>",
             SetSecondElementValue(u"a"_s, u"x"_s, true), "|1|x|"},
        });
}

TEST_F(WebTest, SetSecondElementValueTakesTheSecondMatch) {
  Check("notes + values()",
        {
            {"the first or the third is set",
             "<input name=a><input name=b><input name=a><input name=a>", kSetSecond, "||x|"},
            {"the count goes on from one search to the next", "<input name=a><input name=A>",
             kSetSecond, "|x"},
            {"ids are not counted", "<input id=a><input id=a>", kSetSecond, "|x"},
            {"the only one is not set, or gets the focus",
             "<input name=a onfocus=\"note('focus')\">", kSetSecond, "x"},
            {"the only one is set in a name of another case", "<input name=A>", kSetSecond, "",
             kFailed},
        });
}

TEST_F(WebTest, GetElementValueReadsWithoutTouching) {
  Check({
      {"an id wins over a name in another case", "<input id=a value=1><input name=A value=2>", kGet,
       u"2"_s},
      {"an id is not found", "<input id=A value=1>", kGet, u"1"_s},
      {"an empty field hides what the markup says", kEmptied, kGet, u"7"_s},
      {"a select or a text area has no value",
       "<select name=a><option value=1>one<option value=2 selected>two</select>", kGet, u"2"_s},
      {"the search goes on behind an empty field", "<input name=a><input name=a value=1>", kGet,
       u""_s},
      {"something is made up", "<input name=b value=1>", kGet, u""_s},
  });
}

// The position of the first input among all elements.
constexpr char kPosition[] =
    "[...document.getElementsByTagName('*')].indexOf(document.querySelector('input'))";

TEST_F(WebTest, KeysGoIntoTheElementAtAPosition) {
  const struct {
    const char* fault;
    const char* keys;
    const char* values;
  } cases[] = {
      {"letters and their case are lost", "aB c9", "aB c9|"},
      {"letters of other languages are lost", "\u00e4\u00df\u20ac", "\u00e4\u00df\u20ac|"},
      {"plus does not hold Shift", "a+bc", "aBc|"},
      {"a key by name is typed", "ab{LEFT}c{RIGHT}d", "acbd|"},
      {"caret does not hold Ctrl", "abc^ax", "x|"},
      {"Tab stays in the field", "a{TAB}b", "a|b"},
      {"many keys overtake each other",
       "0123456789012345678901234567890123456789012345678901234567890123456789",
       "0123456789012345678901234567890123456789012345678901234567890123456789|"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    Show("<p>first</p><input name=a><input name=b>");
    EXPECT_EQ(Ask(FocusElementByPosition(Read(kPosition).toInt())), kSuccessful);
    host->SendKeys(QString::fromUtf8(row.keys));
    EXPECT_EQ(Ask(kGet).toString() + u'|' + Ask(GetElementValue(u"b"_s)).toString(),
              QString::fromUtf8(row.values));
  }
}

TEST_F(WebTest, KeysThatNothingHearsHoldNoQuestionUp) {
  Show("<input name=a value=1>");
  RunInPage("document.open(); document.write('<input name=a value=1>'); document.close()");
  host->SendKeys(u"x"_s);
  EXPECT_EQ(Ask(kGet), u"1"_s);
}

TEST_F(WebTest, EnterSubmitsTheFormThatWasTypedInto) {
  Show("<form action=/saved><input name=a></form>");
  server.replies["/saved?a=8080"] = Html("saved");
  EXPECT_EQ(Ask(FocusElementByPosition(Read(kPosition).toInt())), kSuccessful);
  host->SendKeys(u"8080~"_s);
  EXPECT_TRUE(RunUntil([&] { return host->Navigation().busy; }));
  Settle();
  EXPECT_EQ(Read("document.body.innerText"), u"saved"_s);
}

TEST_F(WebTest, FocusElementByPositionKnowsItsLimits) {
  // html, head, meta, script, body, input
  Check("document.activeElement.localName",
        {
            {"a negative position counts from the end", "<input>", FocusElementByPosition(-1),
             "body", kFailed},
            {"a position behind the end is taken for the last", "<input>",
             FocusElementByPosition(1000000), "body", kFailed},
            {"the root has no position", "<input>", FocusElementByPosition(0), "body"},
            {"a filled field gets the focus", "<input value=1>", FocusElementByPosition(5, true),
             "body", kFailed},
            {"an empty field does not get the focus", "<input>", FocusElementByPosition(5, true),
             "input"},
        });
}

}  // namespace
}  // namespace quayline::testing
