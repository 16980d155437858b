// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;

TEST_F(WebTest, SetCheckboxEndsAsWantedAndLetsThePageHearOneClick) {
  const PageCall set = SetCheckbox(u"a"_s);
  Check(
      "notes + ' ' + checks()",
      {{"the click comes behind the check, or twice",
        "<input type=checkbox name=a onclick='note(checked)'>", set, "true true"},
       {"the click clears a checked box, or the page does not see that it stays checked",
        "<input type=checkbox name=a checked onclick='note(checked)'>", set, "false,true true"},
       {"a box is checked that shall not be", "<input type=checkbox name=a>",
        SetCheckbox(u"a"_s, false), " false"},
       {"the page's veto counts", "<input type=checkbox name=a onclick='return false'>", set,
        " true"},
       {"a value wins over an id", "<input type=checkbox value=a><input type=checkbox id=A>", set,
        " false|true"},
       {"an id wins over a name in another case",
        "<input type=checkbox id=a><input type=checkbox name=A>", set, " false|true"},
       {"a value is not found", "<input type=checkbox value=b><input type=checkbox value=A>", set,
        " false|true"},
       {"a box that is not there is set", "<input type=checkbox name=b>", set, " false", kFailed}});
}

TEST_F(WebTest, SetCheckboxByPageTextFindsTheBoxInTheMarkupBeforeTheText) {
  const char* const rows =
      "<p><input type=checkbox name=r1>Web</p><p><input type=checkbox name=r2>Mail</p>";
  const auto find = [](const QString& text, int span) {
    return SetCheckboxByPageText(text, span, u"name=\""_s, u"\""_s);
  };
  Check(
      "checks()",
      {{"the box of another row is set", rows,
        SetCheckboxByPageText(u"mail"_s, 12, u"=\""_s, u"\""_s), "false|true"},
       {"the first box of a wide span is passed by", rows, find(u"Mail"_s, 90), "true|false"},
       {"a span that is too short finds a box", rows, find(u"Mail"_s, 3), "false|false"},
       {"a text that is not there finds a box", rows, find(u"Games"_s, 90), "false|false", kFailed},
       {"letters that grow in lower case move the cut",
        "<p>\u0130\u0130\u0130\u0130</p><input type=checkbox name=r1>Web", find(u"web"_s, 11),
        "true"},
       {"a span below nothing cuts", rows, find(u"Web"_s, -1), "true|false"}});
}

TEST_F(WebTest, RadioButtonsAreTakenByTheirValueOrTheirPlace) {
  const char* const three =
      "<input type=radio name=a value=TCP onclick='note(value)'>"
      "<input type=radio name=a value=udp onclick='note(value)'>"
      "<input type=radio name=a value=tcp onclick='note(value)'>";
  Check("notes + ' ' + checks()",
        {{"a value in another case comes first", three, SetRadioButton(u"a"_s, u"tcp"_s),
          "tcp false|false|true"},
         {"a value in another case is not found", three, SetRadioButton(u"a"_s, u"UDP"_s),
          "udp false|true|false"},
         {"an id is not found", "<input type=radio id=A value=1>", SetRadioButton(u"a"_s, u"1"_s),
          " true"},
         {"without the value nothing is set",
          "<input type=radio name=a value=1 onclick='note(checked)'>",
          SetRadioButton(u"a"_s, u"2"_s), "true true"},
         {"without the value the click comes ahead of the check",
          "<input type=checkbox name=a value=1 onclick='note(checked)'>",
          SetRadioButton(u"a"_s, u"2"_s), "false false"},
         {"a name that is not there sets", three, SetRadioButton(u"b"_s, u"tcp"_s),
          " false|false|false", kFailed},
         {"the second is not the second", three, SetSecondRadioButton(u"a"_s),
          "udp false|true|false"},
         {"the only one is taken for the second", "<input type=radio name=a>",
          SetSecondRadioButton(u"a"_s), " false", kFailed}});
}

TEST_F(WebTest, SetComboValueChoosesByItsRules) {
  const QString mac = u"00-11-22-33-aa-bb"_s;
  const struct {
    const char* fault;
    const char* options;
    ComboMatch match;
    const char* chosen;  // its number; -1: none, with the failure told
  } cases[] = {
      {"a text is not found", "Mail<option>Web", {u"Web"_s}, "1"},
      {"a value is not found", "Mail<option value=2>Web", {u"2"_s}, "1"},
      {"a star in front is part of the name", "*Web", {u"Web"_s}, "0"},
      {"a star behind is part of the name", "Web*", {u"Web"_s}, "0"},
      {"a star stands for anything", "Webcam<option>**Web", {u"Web"_s}, "-1"},
      {"a part of a text is enough", "Web server", {u"Web"_s}, "-1"},
      {"case is ignored too early", "web<option>Web", {u"Web"_s}, "1"},
      {"case is not ignored", "Mail<option>web", {u"WEB"_s}, "1"},
      {"an empty second text matches", "<option>x", {u"Web"_s}, "-1"},
      {"the second text is not tried", "x<option>*me", {u"Web"_s, u"me"_s}, "1"},
      {"an address with hyphens", "x<option>PC-1 (00-11-22-33-AA-BB)", {mac}, "1"},
      {"an address with colons", "x<option>PC 00:11:22:33:aa:bb", {mac}, "1"},
      {"an address with nothing", "x<option>pc 00112233aabb", {mac}, "1"},
      {"an address that begins alike", "00-11-22-33-aa-bc", {mac}, "-1"},
      {"seven digits make an address", "PC 1-2-3-4-5-6-7", {u"1-2-3-4-5-6-7"_s}, "-1"},
      {"eight digits make no address", "PC 1:2:3:4:5:6:7:8", {u"1-2-3-4-5-6-7-8"_s}, "0"},
      {"a part is not enough where parts are wanted",
       "<option>My Web server",
       {u"web"_s, u"none"_s, true},
       "1"},
      {"a part of the second text is not enough",
       "<option>PC (10.0.0.5)",
       {u"games"_s, u"10.0.0.5"_s, true},
       "1"},
      {"with an empty second text the first option with any text is passed by",
       "<option>Mail<option>Web",
       {u"Web"_s, {}, true},
       "1"},
  };
  for (const auto& row : cases) {
    const QByteArray body =
        QByteArray("<select name=a><option>") + row.options +
        "</select><script>document.querySelector('select').selectedIndex = -1</script>";
    Check("document.querySelector('select').selectedIndex",
          {{row.fault, body.constData(), SetComboValue(u"a"_s, row.match), row.chosen,
            row.chosen[0] == '-' ? kFailed : kSuccessful}});
  }
}

TEST_F(WebTest, SetComboValueSearchesOnBehindASelectWithoutTheOption) {
  const PageCall set = SetComboValue(u"a"_s, {.text = u"Web"_s});
  Check("notes + ' ' + values()",
        {{"the first select of the name ends the search",
          "<select name=a><option>Mail</select><select name=a><option>Mail<option>Web</select>",
          set, " Mail|Web"},
         {"an id wins over a name in another case",
          "<select id=a><option>x<option>Web</select><select name=A><option>x<option>Web</select>",
          set, " x|Web"},
         {"an option in another case wins over a select behind",
          "<select name=a><option>x<option>web</select>"
          "<select name=a><option>x<option>Web</select>",
          set, " x|Web"},
         {"an id is not found", "<select id=A><option>x<option>Web</select>", set, " Web"},
         {"with an empty second text a value alone is passed by",
          "<select name=a onchange='note(value)'><option value=0><option>Web</select>",
          SetComboValue(u"a"_s, {u"Web"_s, {}, true}), "0 0"},
         {"a field that is no select stops the search",
          "<input name=a value=Web><select name=a><option>x<option>Web</select>", set, " Web|Web"},
         {"the page is told before, twice or not at all",
          "<form onchange=\"note('form')\"><select name=a onchange='note(value)'>"
          "<option>x<option>Web</select></form>",
          set, "Web,form Web"},
         {"the page hears of a choice that was not made",
          "<select name=a onchange='note(value)'><option>x</select>", set, " x", kFailed}});
}

TEST_F(WebTest, OptionsAreSeenAndSelectedByTheirTextAlone) {
  const char* const two =
      "<form><input name=length><select name=a onchange='note(value)'><option value=6>tcp"
      "</select></form><select name=a onchange='note(value)'><option value=17>udp"
      "<option value=6>TCP</select>";
  Check({{"the second select of a name is not looked at", two, ComboHasOption(u"a"_s, u"udp"_s),
          true},
         {"a name in another case is not found", two, ComboHasOption(u"A"_s, u"UDP"_s), true},
         {"a value counts as an option", two, ComboHasOption(u"a"_s, u"17"_s), false},
         {"a part counts as an option", two, ComboHasOption(u"a"_s, u"ud"_s), false},
         {"a star behind hides an option", "<select name=a><option>x<option>udp*</select>",
          ComboHasOption(u"a"_s, u"udp"_s), true},
         {"a star in front hides an option", "<select name=a><option>*udp</select>",
          ComboHasOption(u"a"_s, u"udp"_s), true},
         {"an id is taken for a name", "<select id=a><option>udp</select>",
          ComboHasOption(u"a"_s, u"udp"_s), false}});
  Check("notes + ' ' + values()",
        {{"an option in another case comes first", two, SelectOptionByText(u"TCP"_s), "6 |6|6"},
         {"an option in another case is not found", two, SelectOptionByText(u"Udp"_s), "17 |6|17"},
         {"a part is enough", two, SelectOptionByText(u"TC"_s), " |6|17", kFailed}});
}

TEST_F(WebTest, AnItemIsChosenFromAnyKindOfList) {
  // A drop-down that listens to the mouse alone, as component libraries make them.
  const char* const script = R"(<script>
    var items = ['TCP', 'UDP', 'TCP/UDP'];
    function show(parent, tag, around) {
      around = around || document.createElement('div');
      for (const text of items) {
        const item = document.createElement(tag);
        item.textContent = text;
        item.addEventListener('mousedown', (event) => {
          event.stopPropagation();
          t.firstChild.data = text;
          around.remove();
        });
        around.append(item);
      }
      parent.append(around);
    }
    function showSome(parent) {
      const list = document.createElement('div');
      list.style = 'height:100px;overflow:auto;position:fixed;z-index:9';
      list.setAttribute('role', 'listbox');
      const rows = document.createElement('div');
      rows.style = 'box-sizing:border-box;height:10000px';
      list.append(rows);
      list.onscroll = () => {
        const first = Math.floor(list.scrollTop / 20);
        rows.style.paddingTop = first * 20 + 'px';
        rows.innerHTML = [0, 1, 2, 3, 4, 5].map((i) => `<div role=option style="height:20px" onmousedown="t.firstChild.data=textContent">${first + i}</div>`).join('');
      };
      parent.append(list);
      list.scrollTop = 3000;
      list.onscroll();
    }
    function shadow() {
      const host = document.createElement('p');
      document.body.append(host);
      return host.attachShadow({mode: 'open'});
    }
  </script>)";
#define LIST(how) \
  "<ul><li>UDP</ul><label>Kind</label><div id=t tabindex=0 onmousedown=\"" how "\">TCP</div>"
  const struct {
    const char* fault;
    QByteArray body;
    QString text;
    const char* chosen;
    QJsonValue answer = kSuccessful;
  } cases[] = {
      {"items at the end of the page", LIST("show(document.body,'div')"), u"UDP"_s, "UDP"},
      {"the present choice is taken for the item", LIST("show(document.body,'li')"), u"tcp"_s,
       "TCP"},
      {"items inside the list", LIST("show(t,'span')"), u"TCP/UDP"_s, "TCP/UDP"},
      {"items in a shadow root", LIST("show(shadow(),'div')"), u"UDP"_s, "UDP"},
      {"items that were hidden before",
       LIST("p.hidden=false") "<p id=p hidden></p><script>show(document.body,'div',p)</script>",
       u"UDP"_s, "UDP"},
      {"a list that grows, with a copy of what it showed before",
       "<label>Kind</label><div id=t tabindex=0>TCP<ul id=all><li>UDP</li><li hidden>Any</ul></div>"
       "<script>const list = all; t.onmousedown = () => { t.onmousedown = null;"
       "list.after(list.cloneNode(true)); for (const item of list.children) { item.hidden = false;"
       "item.onmousedown = () => t.firstChild.data = item.textContent; } }</script>",
       u"UDP"_s, "UDP"},
      {"an item far down, and the list is not at its top", LIST("showSome(document.body)"), u"42"_s,
       "42"},
      {"no such item", LIST("showSome(document.body)"), u"900"_s, "TCP", kFailed},
      {"a select in place of the list",
       "<label>Kind <select id=t><option>TCP<option value=u>UDP"
       "</select></label>",
       u"U"_s, "u"},
      {"a select without the item", "<select id=t><option>TCP</select>", u"UDP"_s, "TCP", kFailed},
  };
  for (const QString& name : {u"t"_s, u"Kind"_s}) {
    for (const auto& row : cases) {
      SCOPED_TRACE(row.fault + (u" by "_s + name).toStdString());
      Show(script + row.body);
      QJsonValue answer = Ask(ChooseItem(name, row.text));
      for (int i = 0; i < 200 && (answer == QLatin1String(page_result::kOpened) ||
                                  answer == QLatin1String(page_result::kScrolled));
           ++i) {
        answer = Ask(ChooseOpenItem(row.text));
      }
      EXPECT_EQ(answer, row.answer);
      EXPECT_EQ(Read("t.value || t.firstChild.data"), QString::fromUtf8(row.chosen));
    }
  }
}

}  // namespace
}  // namespace quayline::testing
