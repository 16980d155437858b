// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_rig.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

void ThirdEntry(ScriptRig& rig) { rig.entry.entry_index = 3; }

// What boxes of these names hold.
auto Boxes(const std::vector<std::pair<const char*, QString>>& values) {
  return [values](ScriptRig& rig) {
    for (const auto& [name, value] : values) {
      rig.pages.Answer(("GetElementValue(" + std::string(name) + ")").c_str(), {value});
    }
  };
}

TEST(RowNames, GoWithTheEntryNumber) {
  CheckScripts({
      {"the letter of the third entry",
       {"set_next_letter(\"\")", "set_name(\"n,0\")"},
       {"SetElementValue(nC, Web, false)"},
       {{"(Successful) (C)", kOk}},
       ThirdEntry},
      {"the first element belongs to entry 0",
       {"set_name_array(\"x|y\")", "set_next_name_array(\"\")"},
       {},
       {{kOk, "(Successful) (x)"}}},
      {"an entry beyond the array keeps the name before",
       {"set_next_letter(\"\")", "set_name_array(\"x|y\")", "set_next_name_array(\"\")"},
       {},
       {{"(Successful) (C)", kOk, "(Successful) ()"}},
       ThirdEntry},
      {"no array", {"set_next_name_array(\"\")"}, {}, {{"(Successful) ()"}}},
  });
}

TEST(FreeRow, IsLookedForBoxByBox) {
  const char* const kArray = "set_name_array(\"1|| |2|3\")";
  CheckScripts({
      {"a box that holds 0 is taken",
       {"set_name_array(\"1|2\")", "set_name_to_check(\"port_x,2\")", "set_name(\"n,0\")"},
       {"GetElementValue(port1_x)", "SetElementValue(n1, Web, false)"},
       {{kOk, "(Successful) (Current Name From Name Array 1)", kOk}},
       Boxes({{"port1_x", u"0"_s}})},
      {"empty elements are asked for, or the search goes on behind the free row",
       {kArray, "set_name_to_check(\"port,\")"},
       {"GetElementValue(port1)", "GetElementValue(port2)"},
       {{kOk, "(Successful) (Current Name From Name Array 2)"}},
       Boxes({{"port1", u"80"_s}, {"port2", u""_s}})},
      {"the empty position stays empty for the next line",
       {kArray, "set_name_to_check(\"port,\")", "set_name(\"n\")"},
       {"GetElementValue(port1)", "SetElementValue(n1, Web, false)"},
       {{kOk, "(Successful) (Current Name From Name Array 1)", kOk}}},
      {"a full page leaves an element, not the last value",
       {"set_name_array(\"1|2\")", "set_name_to_check(\"port,0\")"},
       {"GetElementValue(port1)", "GetElementValue(port2)"},
       {{kOk, "(Successful) (Current Name From Name Array 90)"}},
       Boxes({{"port1", u"80"_s}, {"port2", u"90"_s}})},
      {"no array keeps the name before",
       {"set_next_letter(\"\")", "set_name_to_check(\"port,0\")"},
       {},
       {{"(Successful) (A)", "(Successful) (Current Name From Name Array )"}}},
      {"the row that is in use",
       {kArray, "set_name_to_check_find_value(\"port,0\")"},
       {"GetElementValue(port1)", "GetElementValue(port2)", "GetElementValue(port3)"},
       {{kOk, "(Successful) (Current Name From Name Array 3)"}},
       Boxes({{"port1", u"0"_s}, {"port2", u""_s}, {"port3", u"80"_s}})},
  });
}

TEST(FreeString, IsLookedForInThePage) {
  const auto used = [](ScriptRig& rig) { rig.pages.Answer("PageContainsWords(Rule 1 )", {true}); };
  CheckScripts({
      {"a used string, or the name changes with it",
       {"set_next_letter(\"\")", "set_name_array(\"1|2\")", "set_string_to_check(\"Rule  ,1\")",
        "set_number(\"n,0\")"},
       {"PageContainsWords(Rule 1 )", "PageContainsWords(Rule 2 )",
        "SetElementValue(nA, 2, false)"},
       {{"(Successful) (A)", kOk, "(Successful) (2)", kOk}},
       used},
      {"all used: the one before stays",
       {"set_name_array(\"2\")", "set_string_to_check(\"Rule  ,1\")", "set_name_array(\"1\")",
        "set_string_to_check(\"Rule  ,1\")"},
       {"PageContainsWords(Rule 2 )", "PageContainsWords(Rule 1 )"},
       {{kOk, "(Successful) (2)", kOk, "(Successful) ()"}},
       used},
  });
}

TEST(InCombo, IsAskedTwiceAndTakesTheSecondAnswer) {
  const auto entry = [](const char* protocol, const QList<QJsonValue>& answers) {
    return [protocol, answers](ScriptRig& rig) {
      rig.entry.entry_protocol = QLatin1String(protocol);
      rig.entry.entry_name = u"%1 Web"_s;
      rig.flags.in_combo = true;
      rig.pages.Answer("ComboHasOption", answers);
    };
  };
  const Texts special{"is_in_combo_special_1(\"list\")", "set_name_if_in_combo_true(\"n,\")"};
  CheckScripts({
      {"commas in the list's name, the first answer",
       {"is_in_combo(\"a,b\")", "set_name_if_in_combo_true(\"t,\")",
        "set_name_if_in_combo_false(\"f,\")"},
       {"ComboHasOption(a,b, %1 Web)", "ComboHasOption(a,b, %1 Web)",
        "SetElementValue(f, %1 Web, false)"},
       {{"True", kOk}},
       entry("TCP", {true, false})},
      {"the label of both protocols",
       special,
       {"ComboHasOption(list, %1 Web [TCP/80~90])", "ComboHasOption(list, %1 Web [TCP/80~90])",
        "SetElementValue(n, %1 Web, false)"},
       {{"False", kOk}},
       entry("TCP/UDP", {false, true})},
      {"the label of udp",
       special,
       Texts(2, "ComboHasOption(list, %1 Web [UDP/80~90])"),
       {{"False"}},
       entry("udp", {false})},
      {"another protocol is asked for, or clears the flag",
       special,
       {"SetElementValue(n, %1 Web, false)"},
       {{kOk}},
       entry("ICMP", {false})},
      {"a rule is chosen by part of its label",
       {"set_combobox_name_if_in_combo_true_special_1(\"l,\")",
        "set_combobox_name_if_in_combo_false_special_1(\"l,\")"},
       {"SetComboValue(l, %1 Web [TCP/80~90], , false)"},
       {{kOk}},
       entry("TCP", {})},
      {"a label for no protocol",
       {"set_combobox_name_if_in_combo_true_special_1(\"l,\")"},
       {},
       Texts(),
       entry("", {})},
  });
}

TEST(CheckIfNameExists, EndsTheEntryAtItsNameAlone) {
  CheckScripts({
      {"the argument is looked for, or a line runs behind it",
       {"check_if_name_exists(\"Other\")", "set_name(\"n,\")"},
       {"PageContainsWords(Web)"},
       {{"This Entry (Web) Already Exists On The Router, This Entry Will be Skipped."}},
       [](ScriptRig& rig) { rig.pages.Answer("PageContainsWords(Web)", {true}); },
       RunEnd::kEntryExists},
      {"a new entry is logged",
       {"check_if_name_exists(\"\")", "set_name(\"n,\")"},
       {"PageContainsWords(Web)", "SetElementValue(n, Web, false)"},
       {{kOk}}},
  });
}

TEST(Firmware, CommandsOfSingleModels) {
  const Texts verizon{
      "set_next_letter(\"\")", "set_name(\"n,0\")",
      "set_combobox_actiontec_mi424wr_verizon_if_in_combo_false(\"type,Range,Single\")",
      "set_ports_actiontec_mi424wr_verizon_if_in_combo_false(\"from,to\")"};
  CheckScripts({
      {"a range, with the name inserted",
       verizon,
       {"SetElementValue(nA, Web, false)", "SetComboValue(type, Range, , false)",
        "SetElementValue(from, 80, false)", "SetElementValue(to, 90, false)"},
       {{"(Successful) (A)", kOk, kOk, kOk, kOk}}},
      {"a single port in two boxes",
       verizon,
       {"SetElementValue(nA, Web, false)", "SetComboValue(type, Single, , false)",
        "SetElementValue(from, 80, false)"},
       {{"(Successful) (A)", kOk, kOk, kOk}},
       [](ScriptRig& rig) { rig.entry.entry_end_port = rig.entry.entry_start_port; }},
      {"boxes without names: one is logged, the other not",
       {"give_names_to_nameless_boxes(\"\")", "set_tomato_firmware_v1_tweak(\"\")"},
       {"NameNamelessBoxes()", "NameOnchangeBoxes()"},
       {{kOk}}},
  });
}

}  // namespace
}  // namespace quayline::testing
