// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;

TEST_F(WebTest, SetCheckboxEndsAsWantedAndLetsThePageHearOneClick) {
  const OperationCase cases[] = {
      {"the click comes behind the check, or twice",
       "<input type=checkbox name=a onclick='note(checked)'>", SetCheckbox(u"a"_s), kSuccessful,
       "notes + ' ' + checks()", "true true"},
      {"the click clears a checked box",
       "<input type=checkbox name=a checked onclick='note(checked)'>", SetCheckbox(u"a"_s),
       kSuccessful, "notes + ' ' + checks()", "false true"},
      {"a box is checked that shall not be", "<input type=checkbox name=a>",
       SetCheckbox(u"a"_s, false), kSuccessful, "checks()", "false"},
      {"the page's veto counts", "<input type=checkbox name=a onclick='return false'>",
       SetCheckbox(u"a"_s), kSuccessful, "checks()", "true"},
      {"a value wins over an id", "<input type=checkbox value=a><input type=checkbox id=A>",
       SetCheckbox(u"a"_s), kSuccessful, "checks()", "false|true"},
      {"an id wins over a name in another case",
       "<input type=checkbox id=a><input type=checkbox name=A>", SetCheckbox(u"a"_s), kSuccessful,
       "checks()", "false|true"},
      {"a value is not found", "<input type=checkbox value=b><input type=checkbox value=A>",
       SetCheckbox(u"a"_s), kSuccessful, "checks()", "false|true"},
      {"a box that is not there is set", "<input type=checkbox name=b>", SetCheckbox(u"a"_s),
       kFailed, "checks()", "false"},
  };
  Check(cases);
}

TEST_F(WebTest, SetCheckboxByPageTextFindsTheBoxInTheMarkupBeforeTheText) {
  const char* const rows =
      "<p><input type=checkbox name=r1>Web</p><p><input type=checkbox name=r2>Mail</p>";
  const OperationCase cases[] = {
      {"the box of another row is set", rows,
       SetCheckboxByPageText(u"mail"_s, 12, u"=\""_s, u"\""_s), kSuccessful, "checks()",
       "false|true"},
      {"the first box of a wide span is passed by", rows,
       SetCheckboxByPageText(u"Mail"_s, 90, u"name=\""_s, u"\""_s), kSuccessful, "checks()",
       "true|false"},
      {"a span that is too short finds a box", rows,
       SetCheckboxByPageText(u"Mail"_s, 3, u"name=\""_s, u"\""_s), kSuccessful, "checks()",
       "false|false"},
      {"a text that is not there finds a box", rows,
       SetCheckboxByPageText(u"Games"_s, 90, u"name=\""_s, u"\""_s), kFailed, "checks()",
       "false|false"},
      {"letters that grow in lower case move the cut",
       "<p>\u0130\u0130\u0130\u0130</p><input type=checkbox name=r1>Web",
       SetCheckboxByPageText(u"web"_s, 11, u"name=\""_s, u"\""_s), kSuccessful, "checks()", "true"},
      {"a span below nothing cuts", rows,
       SetCheckboxByPageText(u"Web"_s, -1, u"name=\""_s, u"\""_s), kSuccessful, "checks()",
       "true|false"},
  };
  Check(cases);
}

TEST_F(WebTest, RadioButtonsAreTakenByTheirValueOrTheirPlace) {
  const char* const three =
      "<input type=radio name=a value=TCP onclick='note(value)'>"
      "<input type=radio name=a value=udp onclick='note(value)'>"
      "<input type=radio name=a value=tcp onclick='note(value)'>";
  const OperationCase cases[] = {
      {"a value in another case comes first", three, SetRadioButton(u"a"_s, u"tcp"_s), kSuccessful,
       "notes + ' ' + checks()", "tcp false|false|true"},
      {"a value in another case is not found", three, SetRadioButton(u"a"_s, u"UDP"_s), kSuccessful,
       "notes + ' ' + checks()", "udp false|true|false"},
      {"an id is not found", "<input type=radio id=A value=1>", SetRadioButton(u"a"_s, u"1"_s),
       kSuccessful, "checks()", "true"},
      {"without the value nothing is set",
       "<input type=radio name=a value=1 onclick='note(checked)'>", SetRadioButton(u"a"_s, u"2"_s),
       kSuccessful, "notes + ' ' + checks()", "true true"},
      {"without the value the click comes ahead of the check",
       "<input type=checkbox name=a value=1 onclick='note(checked)'>",
       SetRadioButton(u"a"_s, u"2"_s), kSuccessful, "notes + ' ' + checks()", "false false"},
      {"a name that is not there sets", three, SetRadioButton(u"b"_s, u"tcp"_s), kFailed,
       "checks()", "false|false|false"},
      {"the second is not the second", three, SetSecondRadioButton(u"a"_s), kSuccessful,
       "notes + ' ' + checks()", "udp false|true|false"},
      {"the only one is taken for the second", "<input type=radio name=a>",
       SetSecondRadioButton(u"a"_s), kFailed, "checks()", "false"},
  };
  Check(cases);
}

TEST_F(WebTest, SetComboValueChoosesByItsRules) {
  const QString mac = u"00-11-22-33-aa-bb"_s;
  const struct {
    const char* fault;
    const char* options;
    ComboMatch match;
    const char* chosen;  // its number; -1: none, with the failure told
  } cases[] = {
      {"a text is not found", "<option>Mail<option>Web", {.text = u"Web"_s}, "1"},
      {"a value is not found", "<option value=1>Mail<option value=2>Web", {.text = u"2"_s}, "1"},
      {"a star in front is part of the name", "<option>*Web", {.text = u"Web"_s}, "0"},
      {"a star behind is part of the name", "<option>Web*", {.text = u"Web"_s}, "0"},
      {"a star stands for anything", "<option>Webcam<option>**Web", {.text = u"Web"_s}, "-1"},
      {"a part of a text is enough", "<option>Web server", {.text = u"Web"_s}, "-1"},
      {"case is ignored too early", "<option>web<option>Web", {.text = u"Web"_s}, "1"},
      {"case is not ignored", "<option>Mail<option>web", {.text = u"WEB"_s}, "1"},
      {"an empty second text matches", "<option><option>x", {.text = u"Web"_s}, "-1"},
      {"the second text is not tried", "<option>x<option>*me", {u"Web"_s, u"me"_s}, "1"},
      {"an address with hyphens", "<option>x<option>PC-1 (00-11-22-33-AA-BB)", {.text = mac}, "1"},
      {"an address with colons", "<option>x<option>PC 00:11:22:33:aa:bb", {.text = mac}, "1"},
      {"an address with nothing", "<option>x<option>pc 00112233aabb", {.text = mac}, "1"},
      {"an address that begins alike", "<option>00-11-22-33-aa-bc", {.text = mac}, "-1"},
      {"seven digits make an address",
       "<option>PC 1-2-3-4-5-6-7",
       {.text = u"1-2-3-4-5-6-7"_s},
       "-1"},
      {"eight digits make no address",
       "<option>PC 1:2:3:4:5:6:7:8",
       {.text = u"1-2-3-4-5-6-7-8"_s},
       "0"},
      {"a part is not enough where parts are wanted",
       "<option value=''><option>My Web server",
       {u"web"_s, u"none"_s, true},
       "1"},
      {"a part of the second text is not enough",
       "<option value=''><option>PC (10.0.0.5)",
       {u"games"_s, u"10.0.0.5"_s, true},
       "1"},
      {"with an empty second text the first option with any text is passed by",
       "<option value=''><option>Mail<option>Web",
       {u"Web"_s, {}, true},
       "1"},
      {"with an empty second text a value alone is passed by",
       "<option value=0><option>Web",
       {u"Web"_s, {}, true},
       "0"},
  };
  for (const auto& row : cases) {
    const QByteArray body =
        QByteArray("<select name=a>") + row.options +
        "</select><script>document.querySelector('select').selectedIndex = -1</script>";
    const bool is_found = row.chosen[0] != '-';
    const OperationCase question{row.fault,
                                 body.constData(),
                                 SetComboValue(u"a"_s, row.match),
                                 is_found ? kSuccessful : kFailed,
                                 "document.querySelector('select').selectedIndex",
                                 row.chosen};
    Check({&question, 1});
  }
}

TEST_F(WebTest, SetComboValueSearchesOnBehindASelectWithoutTheOption) {
  const ComboMatch web{.text = u"Web"_s};
  const OperationCase cases[] = {
      {"the first select of the name ends the search",
       "<select name=a><option>Mail</select><select name=a><option>Mail<option>Web</select>",
       SetComboValue(u"a"_s, web), kSuccessful, "values()", "Mail|Web"},
      {"an id wins over a name in another case",
       "<select id=a><option>x<option>Web</select><select name=A><option>x<option>Web</select>",
       SetComboValue(u"a"_s, web), kSuccessful, "values()", "x|Web"},
      {"an option in another case wins over a select behind",
       "<select name=a><option>x<option>web</select><select name=a><option>x<option>Web</select>",
       SetComboValue(u"a"_s, web), kSuccessful, "values()", "x|Web"},
      {"an id is not found", "<select id=A><option>x<option>Web</select>",
       SetComboValue(u"a"_s, web), kSuccessful, "values()", "Web"},
      {"a field that is no select stops the search",
       "<input name=a value=Web><select name=a><option>x<option>Web</select>",
       SetComboValue(u"a"_s, web), kSuccessful, "values()", "Web|Web"},
      {"the page is told before, twice or not at all",
       "<form onchange=\"note('form')\"><select name=a onchange='note(value)'>"
       "<option>x<option>Web</select></form>",
       SetComboValue(u"a"_s, web), kSuccessful, "notes", "Web,form"},
      {"the page hears of a choice that was not made",
       "<select name=a onchange='note(value)'><option>x</select>", SetComboValue(u"a"_s, web),
       kFailed, "notes", ""},
  };
  Check(cases);
}

TEST_F(WebTest, OptionsAreSeenAndSelectedByTheirTextAlone) {
  const char* const two =
      "<form><input name=length><select name=a onchange='note(value)'><option value=6>tcp"
      "</select></form><select name=a onchange='note(value)'><option value=17>udp"
      "<option value=6>TCP</select>";
  const OperationCase cases[] = {
      {"the second select of a name is not looked at", two, ComboHasOption(u"a"_s, u"udp"_s), true},
      {"a name in another case is not found", two, ComboHasOption(u"A"_s, u"UDP"_s), true},
      {"a value counts as an option", two, ComboHasOption(u"a"_s, u"17"_s), false},
      {"a part counts as an option", two, ComboHasOption(u"a"_s, u"ud"_s), false},
      {"a starred option is not found", "<select name=a><option>x<option>udp*</select>",
       ComboHasOption(u"a"_s, u"udp"_s), true},
      {"an id is taken for a name", "<select id=a><option>udp</select>",
       ComboHasOption(u"a"_s, u"udp"_s), false},
      {"an option in another case comes first", two, SelectOptionByText(u"TCP"_s), kSuccessful,
       "notes + ' ' + values()", "6 |6|6"},
      {"an option in another case is not found", two, SelectOptionByText(u"Udp"_s), kSuccessful,
       "notes", "17"},
      {"a part is enough", two, SelectOptionByText(u"TC"_s), kFailed, "notes", ""},
  };
  Check(cases);
}

}  // namespace
}  // namespace quayline::testing
