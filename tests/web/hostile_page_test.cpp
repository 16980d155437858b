// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;

// What page libraries and worse do to the built-ins, in one.
constexpr char kReplaced[] = R"(
  for (const name of ['find', 'map', 'from', 'join', 'some', 'forEach', Symbol.iterator]) {
    Array.prototype[name] = () => 7;
  }
  Array.from = () => 7;
  JSON.stringify = () => '"[]"';
  JSON.parse = () => 7;
  for (const name of ['trim', 'toLowerCase', 'split', 'includes', 'replaceAll', 'slice']) {
    String.prototype[name] = () => 'other';
  }
  Function.prototype.call = Function.prototype.bind = Function.prototype.toString = () => 'none';
  HTMLElement.prototype.click = HTMLElement.prototype.focus = () => 7;
  HTMLFormElement.prototype.submit = () => 7;
  EventTarget.prototype.dispatchEvent = EventTarget.prototype.addEventListener = () => 7;
  Element.prototype.getAttribute = () => 'other';
  Element.prototype.matches = Element.prototype.closest = () => true;
  Document.prototype.querySelectorAll = Node.prototype.contains = () => { throw 1; };
  for (const name of ['shadowRoot', 'assignedSlot', 'innerHTML']) {
    Object.defineProperty(Element.prototype, name, {get() { throw 1; }});
  }
  for (const name of ['isConnected', 'parentNode', 'textContent', 'nodeType', 'ownerDocument']) {
    Object.defineProperty(Node.prototype, name, {get() { throw 1; }});
  }
  Document.prototype.getElementById = () => null;
  Document.prototype.getElementsByTagName = Document.prototype.getElementsByName = () => [];
  Object.defineProperty(Element.prototype, 'outerHTML', {get: () => ''});
  Object.defineProperty(CustomEvent.prototype, 'detail', {get: () => 'other'});
  Object.prototype.toJSON = () => 7;
  window.CustomEvent = window.Event = window.console = window.performance = null;)";

constexpr char kPlainFields[] =
    "<form id=f><input name=a value=1><input type=checkbox name=c><select name=s>"
    "<option value=1>x<option value=2>Web</select>"
    "<input type=button id=b></form><a href='javascript:go()' onclick='hits += 1; return "
    "false'></a>"
    "<script>var hits = 0;"
    "document.querySelector('#b').onclick = function () { hits += 10; save(); };</script>";

TEST_F(WebTest, BuiltInsThatThePageReplacedAreNotUsed) {
  for (const bool before_the_load : {true, false}) {
    SCOPED_TRACE(before_the_load);
    Show(kPlainFields, before_the_load ? QByteArray("<script>") + kReplaced + "</script>" : "");
    RunInPage(before_the_load ? "" : kReplaced);
    EXPECT_EQ(Ask(SetElementValue(u"a"_s, u"x"_s)), kSuccessful);
    EXPECT_EQ(Ask(GetElementValue(u"A"_s)), u"x"_s);
    EXPECT_EQ(Ask(SetCheckbox(u"c"_s)), kSuccessful);
    EXPECT_EQ(Ask(SetComboValue(u"s"_s, {.text = u"web"_s})), kSuccessful);
    EXPECT_EQ(Ask(ComboHasOption(u"s"_s, u"Web"_s)), QJsonValue(true));
    EXPECT_EQ(Ask(ClickLinkByHref(u"GO()"_s)), u"javascript:go()"_s);
    EXPECT_EQ(Ask(ClickByOnclick(u"save()"_s)), kSuccessful);
    EXPECT_EQ(Ask(PageContainsWords(u"<option value=\"2\">"_s)), QJsonValue(true));
    EXPECT_EQ(Ask(ExtractBetweenMarkers(u"javascript:"_s, u"\""_s)), u"go()"_s);
    EXPECT_EQ(Read("hits + ' ' + document.querySelector('input').value + "
                   "document.querySelector('[type=checkbox]').checked + "
                   "document.querySelector('select').selectedIndex"),
              u"11 xtrue1"_s);
  }
}

TEST_F(WebTest, NamesOnThePageHideNothing) {
  const char* const controls =
      "<form id=f onclick=\"note('form')\">"
      "<input name=name value=n><input name=id value=i><input name=value value=v>"
      "<input name=click><input name=submit><input name=options><input name=children>"
      "<input name=outerHTML><input name=getAttribute><input name=tagName><input name=localName>"
      "<input name=dispatchEvent><input name=focus><input name=onclick><input name=type>"
      "<b>key=5;</b></form>";
  const char* const members =
      "<form name=body></form><img name=links><form name=forms></form>"
      "<img name=getElementsByTagName><img name=getElementsByName><img name=getElementById>"
      "<img name=documentElement><img name=defaultView><img name=addEventListener>"
      "<input name=a value=1><a href='javascript:go()'></a><b>key=5;</b>"
      "<a onclick=\"note('hit')\"></a>";
  Check("notes + values().substring(0, 6)",
        {{"a control named name", controls, SetElementValue(u"name"_s, u"x"_s), "x|i|v|"},
         {"a control named value", controls, SetElementValue(u"value"_s, u"x"_s), "n|i|x|"},
         {"a form whose id is a control", controls, ClickButton(u"f"_s), "formn|i|v|"},
         {"a form whose handler is a control", controls, ClickByOnclick(u"note('form')"_s),
          "formn|i|v|"},
         {"a document whose elements are hidden", members, SetElementValue(u"A"_s, u"x"_s), "x"},
         {"a document whose window is a picture", members, ClickByOnclick(u"'hit'"_s), "hit1"}});
  Check({{"a form whose children are a control", controls,
          ExtractBetweenMarkers(u"<b>key="_s, u";"_s), u"5"_s},
         {"a form whose type is a control", controls, NameNamelessBoxes(), kFailed},
         {"a document whose links are a picture", members, FindLinkByHref(u"go"_s),
          u"javascript:go()"_s},
         {"a document whose root is a picture", members, ExtractBetweenMarkers(u"key="_s, u";"_s),
          u"5"_s},
         {"a document whose body is a form", members,
          SetCheckboxByPageText(u"key"_s, 3, u"<"_s, u"="_s), kSuccessful}});
  Show(members);
  EXPECT_NE(Ask(ReadMarkupState()), QJsonValue(u""_s));
}

TEST_F(WebTest, MessagesFromHandlersHoldNothingUp) {
  Check(
      "notes + values() + checks()",
      {{"focus", "<input name=a onfocus=\"alert('focus'); note('focus')\">",
        SetElementValue(u"a"_s, u"x"_s), "focusxfalse"},
       {"click", "<input type=checkbox name=a onclick=\"if (confirm('sure?')) note('click')\">",
        SetCheckbox(u"a"_s), "clickontrue"},
       {"change", "<select name=a onchange=\"note(prompt('which', 'this'))\"><option>Web</select>",
        SetComboValue(u"a"_s, {.text = u"Web"_s}), "thisWeb"}});
}

TEST_F(WebTest, PagesThatChangeInTheirHandlersHoldNothingUp) {
  Check("document.body.textContent.trim()",
        {{"a select whose change empties it",
          "<select name=a onchange='this.length = 0'><option>x<option>Web</select>",
          SetComboValue(u"a"_s, {.text = u"Web"_s}), ""},
         {"a button whose click writes the page anew",
          "<button name=a onclick=\"document.open(); document.write('anew'); document.close()\">",
          ClickButton(u"a"_s), "anew"},
         {"a box whose click replaces the whole page",
          "<input type=checkbox name=a onclick=\"document.body.textContent = 'gone'\">",
          SetCheckbox(u"a"_s), "gone", kFailed}});
}

}  // namespace
}  // namespace quayline::testing
