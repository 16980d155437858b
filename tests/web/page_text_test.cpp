// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;

TEST_F(WebTest, WordsAreLookedForInTheMarkupBelowTheRoot) {
  const char* const body = "<p class=Rules>Port <b>8080</b></p><input name=a>";
  Check({{"the root's own tag counts", body, PageContainsWords(u"roots-own-tag"_s), false},
         {"text is not found, or case counts", body, PageContainsWords(u"PORT <B>8080"_s), true},
         {"a tag is not found", body, PageContainsWords(u"class=\"rules\""_s), true},
         {"the head is not looked at", body, PageContainsWords(u"charset"_s), true},
         {"the body's own tag is not looked at", body, PageContainsWords(u"<body>"_s), true},
         {"words that are not there are found", body, PageContainsWords(u"Port 8080"_s), false},
         {"no words at all are not found", body, PageContainsWords({}), true}});
  Show(body);
  EXPECT_EQ(Ask(SetElementValue(u"a"_s, u"typed"_s)), kSuccessful);
  EXPECT_EQ(Ask(PageContainsWords(u"typed"_s)), QJsonValue(false))
      << "what was typed is no markup of the page";
}

TEST_F(WebTest, TextIsTakenBetweenTheFirstMarkersThatHoldAny) {
  const struct {
    const char* fault;
    const char* body;
    QString before;
    QString after;
    QString between;
  } cases[] = {
      {"the second piece is taken", "<p>id=[17] id=[18]</p>", u"["_s, u"]"_s, u"17"_s},
      {"an element with nothing between its markers ends the walk", "<p>{}</p><p><b>{7}</b></p>",
       u"<b>{"_s, u"}"_s, u"7"_s},
      {"an empty piece ends the walk", "<p>key=;</p><p>key=5;</p>", u"key="_s, u";"_s, u"5"_s},
      {"a missing end marker gives nothing", "<p>key=5</p>", u"key="_s, u"</p>"_s, u"5"_s},
      {"case is ignored", "<p>KEY=5;</p>", u"key="_s, u";"_s, {}},
      {"an empty marker takes all", "<p>5;</p>", {}, u";"_s, {}},
      {"an empty end marker takes all", "<p>key=5;</p>", u"key="_s, {}, {}},
      {"the root's own tag counts", "<p>5;</p>", u"lang=\"roots-"_s, u"-"_s, {}},
      {"the head is passed by", "<p>5;</p>", u"charset=\""_s, u"\""_s, u"utf-8"_s},
  };
  for (const auto& row : cases) {
    Check({{row.fault, row.body, ExtractBetweenMarkers(row.before, row.after), row.between}});
  }
}

TEST_F(WebTest, NamelessBoxesAreNumberedByTheirKind) {
  const char* const boxes =
      "<input><input type=TEXT><input name=own><input type=password><input type=radio>"
      "<input type=checkbox><select></select><select multiple></select><input type=checkbox>";
  Check("names()",
        {{"a box is named that shall not be, or not as it shall", boxes, NameNamelessBoxes(),
          "QYL_Text1|QYL_Text2|own|||QYL_CheckBox1|QYL_DropDownBox1||QYL_CheckBox2"},
         {"nothing to name counts as success", "<input name=own><input type=password>",
          NameNamelessBoxes(), "own|", kFailed},
         {"a box without a handler is named, or one that script gave a handler is not",
          "<input onchange='check()'><input onchange=''><input><input id=s><input type=checkbox>"
          "<script>document.getElementById('s').onchange = function () {}</script>",
          NameOnchangeBoxes(), "QYL_Text1|||QYL_Text2|QYL_CheckBox1"}});
  Show(boxes);
  EXPECT_EQ(Ask(NameNamelessBoxes()), kSuccessful);
  EXPECT_EQ(Ask(NameNamelessBoxes()), kFailed) << "boxes are named twice";
  EXPECT_EQ(Ask(SetElementValue(u"qyl_text2"_s, u"x"_s)), kSuccessful)
      << "a box is not found under its new name";
  EXPECT_EQ(Read("values().substring(0, 3)"), u"|x|"_s);
}

TEST_F(WebTest, TheMarkupStateChangesWithTheMarkupAndNotWithoutIt) {
  Show("<p id=p>text</p><input name=a>");
  QJsonValue before = Ask(ReadMarkupState());
  EXPECT_NE(before, QJsonValue(u""_s));
  EXPECT_EQ(Ask(ReadMarkupState()), before);
  for (const char* change :
       {"document.getElementById('p').firstChild.data = 'other'",
        "document.getElementById('p').className = 'other'", "document.body.append('more')",
        "document.open(); document.write('<p>anew'); document.close()"}) {
    RunInPage(change);
    const QJsonValue after = Ask(ReadMarkupState());
    EXPECT_NE(after, before) << change;
    EXPECT_EQ(Ask(ReadMarkupState()), after) << change;
    before = after;
  }
  RunInPage("document.body.textContent = ''");
  EXPECT_EQ(Ask(ReadMarkupState()), QJsonValue(u""_s));
}

// Until then the page is not idle, or a line would use a page that is still written.
TEST_F(WebTest, AnIdlePageReportsItsMarkupStateAfterTwoEqualLooks) {
  const auto settled_state = [this] {
    std::optional<QString> state;
    host->ReportIdle(PendingWork::kAny,
                     [&](const IdleReport& report) { state = report.settled_state; });
    EXPECT_TRUE(RunUntil([&] { return state.has_value(); }));
    return QJsonValue(state.value_or(QString()));
  };
  Show("<input name=a>");
  EXPECT_EQ(settled_state(), Ask(ReadMarkupState()));
  // The timer is too long to be waited for.
  Show("<p id=p></p><script>setTimeout(() => { p.textContent = 'late'; }, 200)</script>");
  EXPECT_TRUE(RunUntil([this] { return Read("p.textContent") == u"late"_s; }));
  EXPECT_EQ(settled_state(), QJsonValue(u""_s)) << "the page has changed since it was loaded";
  EXPECT_EQ(settled_state(), Ask(ReadMarkupState()));
}

}  // namespace
}  // namespace quayline::testing
