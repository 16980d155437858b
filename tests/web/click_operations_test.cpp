// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;
using namespace std::chrono_literals;

TEST_F(WebTest, ClickButtonTakesNamesThenCaptionsThenIds) {
  const PageCall click = ClickButton(u"go"_s);
  Check("notes",
        {{"an id wins over a caption",
          "<input type=button id=go onclick=\"note('id')\">"
          "<input type=button value=GO onclick=\"note('caption')\">",
          click, "caption"},
         {"a caption wins over a name in another case",
          "<input type=button value=go onclick=\"note('caption')\">"
          "<button name=Go onclick=\"note('name')\">x</button>",
          click, "name"},
         {"a caption with a comma and blanks is not found",
          "<input type=button value='Save, and go' onclick=\"note('saved')\">",
          ClickButton(u"save, and go"_s), "saved"},
         {"an id is not found", "<img id=Go onclick=\"note('picture')\">", click, "picture"},
         {"a disabled button fails or acts",
          "<input type=button name=go disabled onclick=\"note('acted')\">", click, ""},
         {"a drawing cannot be clicked", "<svg id=go onclick=\"note('drawing')\"></svg>", click,
          "drawing"},
         {"a handler that fails fails the click",
          "<input type=button name=go onclick=\"note('acted'); broken()\">", click, "acted"},
         {"something is clicked", "<input type=button name=stop onclick=\"note('stop')\">", click,
          "", kFailed}});
}

TEST_F(WebTest, HandlersAreFoundByTheirSource) {
  const char* const buttons =
      "<a id=first onclick=\"note('first'); edit(1)\"></a>"
      "<input type=button name=go onclick=\"note('second'); edit(2)\">"
      "<input type=button name=go id=third>"
      "<script>function edit() {}"
      "document.getElementById('third').onclick = function () { note('third'); remove(3); };"
      "</script>";
  Check("notes",
        {{"markup is not read", buttons, ClickByOnclick(u"edit(2)"_s), "second"},
         {"the first is passed by, or case counts", buttons, ClickByOnclick(u"EDIT("_s), "first"},
         {"a handler that script assigned is not seen", buttons, ClickByOnclick(u"remove(3)"_s),
          "third"},
         {"nothing is taken for something", buttons, ClickByOnclick(u"remove(4)"_s), "", kFailed},
         {"no text at all finds no handler", buttons, ClickByOnclick(u""_s), "first"},
         {"a handler is found that script has replaced",
          "<a id=x onclick='edit(1)'></a><script>document.getElementById('x').onclick = () => "
          "note('new')</script>",
          ClickByOnclick(u"edit(1)"_s), "", kFailed},
         {"the name is enough", buttons, ClickButtonByOnclick(u"go"_s, u"edit(1)"_s), "", kFailed},
         {"the name is not enough", buttons, ClickButtonByOnclick(u"GO"_s, u"remove"_s), "third"},
         {"an id is not found", buttons, ClickButtonByOnclick(u"First"_s, u"edit"_s), "first"}});
}

TEST_F(WebTest, AHandlerIsSeenOnAPageThatWroteItselfAnew) {
  Show("<a onclick='old()'></a>");
  RunInPage(
      "document.open(); document.write('<a id=x></a>'); document.close(); var hit = 0;"
      "document.getElementById('x').onclick = function () { hit = 1; save(); };");
  EXPECT_EQ(Ask(ClickByOnclick(u"old()"_s)), kFailed);
  EXPECT_EQ(Ask(ClickByOnclick(u"save()"_s)), kSuccessful);
  EXPECT_EQ(Read("hit"), u"1"_s);
}

TEST_F(WebTest, LinksAreFoundByAnyPartOfTheirAddress) {
  const char* const links =
      "<a name='port.htm' onclick=\"note('anchor')\">no link</a>"
      "<a href='javascript:go(1)' onclick=\"note('one'); return false\">1</a>"
      "<map><area href='javascript:Go(2)' onclick=\"note('two'); return false\"></map>";
  Check(
      "notes",
      {{"an area is no link, or case counts", links, ClickLinkByHref(u"GO(2"_s), "two",
        u"javascript:Go(2)"_s},
       {"the first is passed by", links, ClickLinkByHref(u"(1"_s), "one", u"javascript:go(1)"_s},
       {"an anchor is a link", links, ClickLinkByHref(u"port"_s), "", kFailedLink},
       {"looking for a link clicks it", links, FindLinkByHref(u"go("_s), "", u"javascript:go(1)"_s},
       {"a link that is not there has an address", links, FindLinkByHref(u"port"_s), "", u""_s},
       {"an address keeps the blanks around it", "<a href='  mailto:x  '>x</a>",
        FindLinkByHref(u"mail"_s), "", u"mailto:x"_s}});
  Show("<a href='../fw.htm?a=1&amp;b=2#c'>x</a>");
  EXPECT_EQ(Ask(FindLinkByHref(u"fw"_s)),
            server.Address(u"/fw.htm"_s).toString() + u"?a=1&b=2#c"_s);
}

TEST_F(WebTest, FormsAreSubmittedByNumberPastTheirOwnControls) {
  Show(
      "<form action=/none><input name=n></form>"
      "<form action=/saved onsubmit=\"return false\">"
      "<input name=submit value=1><input name=action value=2></form>");
  for (const int number : {2, -1, 2147483647}) {
    EXPECT_EQ(Ask(SubmitFormByNumber(number)), kSuccessful);
    EXPECT_EQ(Read("location.pathname"), u"/page"_s) << number;
  }
  server.replies["/saved?submit=1&action=2"] = Html("saved");
  EXPECT_EQ(Ask(SubmitFormByNumber(1)), kSuccessful);
  EXPECT_TRUE(RunUntil([&] { return host->Navigation().busy; }));
  Settle();
  EXPECT_EQ(Read("document.body.innerText"), u"saved"_s);
}

}  // namespace
}  // namespace quayline::testing
