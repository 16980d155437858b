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
       R"(set_next_letter("")  = ok (C)
          set_name("n,0")      > SetElementValue(nC, Web, false))",
       ThirdEntry},
      {"the first element belongs to entry 0",
       R"(set_name_array("x|y")
          set_next_name_array("")  = ok (x))"},
      {"an entry beyond the array keeps the name before",
       R"(set_next_letter("")      = ok (C)
          set_name_array("x|y")
          set_next_name_array("")  = ok ())",
       ThirdEntry},
      {"no array", R"(set_next_name_array("")  = ok ())"},
  });
}

TEST(FreeRow, IsLookedForBoxByBox) {
  CheckScripts({
      {"a box that holds 0 is taken",
       R"(set_name_array("1|2")
          set_name_to_check("port_x,2")  > GetElementValue(port1_x)
            = ok (Current Name From Name Array 1)
          set_name("n,0")                > SetElementValue(n1, Web, false))",
       Boxes({{"port1_x", u"0"_s}})},
      {"empty elements are asked for, or the search goes on behind the free row",
       R"(set_name_array("1|| |2|3")
          set_name_to_check("port,")  > GetElementValue(port1)  > GetElementValue(port2)
            = ok (Current Name From Name Array 2))",
       Boxes({{"port1", u"80"_s}, {"port2", u""_s}})},
      {"the empty position stays empty for the next line",
       R"(set_name_array("1|| |2|3")
          set_name_to_check("port,")  > GetElementValue(port1)
            = ok (Current Name From Name Array 1)
          set_name("n")               > SetElementValue(n1, Web, false))"},
      {"a full page leaves an element, not the last value",
       R"(set_name_array("1|2")
          set_name_to_check("port,0")  > GetElementValue(port1)  > GetElementValue(port2)
            = ok (Current Name From Name Array 90))",
       Boxes({{"port1", u"80"_s}, {"port2", u"90"_s}})},
      {"no array keeps the name before",
       R"(set_next_letter("")          = ok (A)
          set_name_to_check("port,0")  = ok (Current Name From Name Array ))"},
      {"the row that is in use",
       R"(set_name_array("1|| |2|3")
          set_name_to_check_find_value("port,0")  > GetElementValue(port1)
            > GetElementValue(port2)  > GetElementValue(port3)
            = ok (Current Name From Name Array 3))",
       Boxes({{"port1", u"0"_s}, {"port2", u""_s}, {"port3", u"80"_s}})},
  });
}

TEST(FreeString, IsLookedForInThePage) {
  const auto used = [](ScriptRig& rig) { rig.pages.Answer("PageContainsWords(Rule 1 )", {true}); };
  CheckScripts({
      {"a used string, or the name changes with it",
       R"(set_next_letter("")              = ok (A)
          set_name_array("1|2")
          set_string_to_check("Rule  ,1")  > PageContainsWords(Rule 1 )
            > PageContainsWords(Rule 2 )  = ok (2)
          set_number("n,0")                > SetElementValue(nA, 2, false))",
       used},
      {"all used: the one before stays",
       R"(set_name_array("2")
          set_string_to_check("Rule  ,1")  > PageContainsWords(Rule 2 )  = ok (2)
          set_name_array("1")
          set_string_to_check("Rule  ,1")  > PageContainsWords(Rule 1 )  = ok ())",
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
  CheckScripts({
      {"commas in the list's name, the first answer",
       R"(is_in_combo("a,b")  > ComboHasOption(a,b, %1 Web)  > ComboHasOption(a,b, %1 Web)  = True
          set_name_if_in_combo_true("t,")  = -
          set_name_if_in_combo_false("f,")  > SetElementValue(f, %1 Web, false))",
       entry("TCP", {true, false})},
      {"the label of both protocols",
       R"(is_in_combo_special_1("list")    > ComboHasOption(list, %1 Web [TCP/80~90])
            > ComboHasOption(list, %1 Web [TCP/80~90])  = False
          set_name_if_in_combo_true("n,")  > SetElementValue(n, %1 Web, false))",
       entry("TCP/UDP", {false, true})},
      {"the label of udp",
       R"(is_in_combo_special_1("list")    > ComboHasOption(list, %1 Web [UDP/80~90])
            > ComboHasOption(list, %1 Web [UDP/80~90])  = False
          set_name_if_in_combo_true("n,")  = -)",
       entry("udp", {false})},
      {"another protocol is asked for, or clears the flag",
       R"(is_in_combo_special_1("list")    = -
          set_name_if_in_combo_true("n,")  > SetElementValue(n, %1 Web, false))",
       entry("ICMP", {false})},
      {"a rule is chosen by part of its label",
       R"(set_combobox_name_if_in_combo_true_special_1("l,")
            > SetComboValue(l, %1 Web [TCP/80~90], , false)
          set_combobox_name_if_in_combo_false_special_1("l,")  = -)",
       entry("TCP", {})},
      {"a label for no protocol", R"(set_combobox_name_if_in_combo_true_special_1("l,")  = -)",
       entry("", {})},
  });
}

TEST(OddCommands, DoTheirOwn) {
  CheckScripts({
      {"a range, with the name inserted",
       R"(set_next_letter("")  = ok (A)
          set_name("n,0")      > SetElementValue(nA, Web, false)
          set_combobox_actiontec_mi424wr_verizon_if_in_combo_false("type,Range,Single")
            > SetComboValue(type, Range, , false)
          set_ports_actiontec_mi424wr_verizon_if_in_combo_false("from,to")
            > SetElementValue(from, 80, false)  > SetElementValue(to, 90, false)  = ok  = ok)"},
      {"a single port in two boxes",
       R"(set_next_letter("")  = ok (A)
          set_name("n,0")      > SetElementValue(nA, Web, false)
          set_combobox_actiontec_mi424wr_verizon_if_in_combo_false("type,Range,Single")
            > SetComboValue(type, Single, , false)
          set_ports_actiontec_mi424wr_verizon_if_in_combo_false("from,to")
            > SetElementValue(from, 80, false))",
       [](ScriptRig& rig) { rig.entry.entry_end_port = rig.entry.entry_start_port; }},
      {"a new entry is logged",
       R"(check_if_name_exists("")  > PageContainsWords(Web)  = -
          set_name("n,")            > SetElementValue(n, Web, false))"},
      {"boxes without names: one is logged, the other not",
       R"(give_names_to_nameless_boxes("")  > NameNamelessBoxes()  = -
          set_tomato_firmware_v1_tweak("")  > NameOnchangeBoxes())"},
  });
}

}  // namespace
}  // namespace quayline::testing
