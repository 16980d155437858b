// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_rig.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

auto Protocol(const char* protocol) {
  return [protocol](ScriptRig& rig) { rig.entry.entry_protocol = QLatin1String(protocol); };
}

TEST(TextBoxes, AreFilledWithTheEntry) {
  CheckScripts({
      {"the values of the entry are mixed up",
       {"set_name(\"n,\")", "set_ip(\"i,\")", "set_start_port(\"s,\")", "set_stop_port(\"e,\")",
        "set_textbox_number(\"t,\")", "set_2ndname(\"n,\")", "set_custom(\"c,,x y\")"},
       {"SetElementValue(n, Web, false)", "SetElementValue(i, 192.168.1.100, false)",
        "SetElementValue(s, 80, false)", "SetElementValue(e, 90, false)",
        "SetElementValue(t, 1, false)", "SetSecondElementValue(n, Web, false)",
        "SetElementValue(c, x y, false)"}},
      {"a box that is not there ends the run",
       {"set_name(\"n,\")", "set_ip(\"i,\")"},
       {"SetElementValue(n, Web, false)", "SetElementValue(i, 192.168.1.100, false)"},
       {{"(Failed - Object Not Found)", kOk}},
       [](ScriptRig& rig) { rig.pages.Answer("SetElementValue(n", {u"failed"_s}); }},
      {"the parts of the address",
       {"set_ip1(\"a,,\")", "set_ip2(\"b,,true\")", "set_ip3(\"c,,False\")", "set_ip4(\"d,,x\")",
        "set_ip4(\"d,,-1\")", "set_ip4(\"d\")"},
       {"SetElementValue(a, 192, false)", "SetElementValue(b, 168, true)",
        "SetElementValue(c, 1, false)", "SetElementValue(d, 100, false)",
        "SetElementValue(d, 100, true)", "SetElementValue(d, 100, false)"}},
      {"an address with two parts",
       {"set_ip3(\"c,\")"},
       {"SetElementValue(c, , false)"},
       {},
       [](ScriptRig& rig) { rig.entry.entry_ip = u"10.0"_s; }},
      {"the separator of a port range",
       {"set_port_range(\"p,\")", "set_port_range(\"p,, to \")", "set_port_range(\"p,,\")",
        "set_port_range(\"p\")"},
       {"SetElementValue(p, 80-90, false)", "SetElementValue(p, 80 to 90, false)",
        "SetElementValue(p, 8090, false)", "SetElementValue(p, 80-90, false)"}},
  });
}

TEST(Fields, ThatALineLacksKeepWhatWasSet) {
  CheckScripts({
      {"the flag of an address part becomes the value of the next line",
       {"set_custom(\"c,,v\")", "set_ip1(\"a,,true\")", "set_custom(\"c\")"},
       {"SetElementValue(c, v, false)", "SetElementValue(a, 192, true)",
        "SetElementValue(c, v, false)"}},
      {"a line without a comma forgets the position of the line before",
       {"set_next_letter(\"\")", "set_name(\"rule_name,5\")", "set_ip(\"rule_addr\")",
        "set_ip(\"rule_addr,\")"},
       {"SetElementValue(ruleA_name, Web, false)",
        "SetElementValue(ruleA_addr, 192.168.1.100, false)",
        "SetElementValue(rule_addr, 192.168.1.100, false)"},
       {{"(Successful) (A)", kOk, kOk, kOk}}},
      {"a second radio button in the list takes its value from nowhere",
       {"set_radiobutton(\"r,,on\")", "set_2ndradiobutton(\"r,\")",
        "set_2ndradiobutton_if_in_combo_true(\"r,\")",
        "set_2ndradiobutton_if_in_combo_true(\"r,,off\")"},
       {"SetRadioButton(r, on)", "SetSecondRadioButton(r)", "SetRadioButton(r, on)",
        "SetRadioButton(r, off)"},
       {},
       [](ScriptRig& rig) { rig.flags.in_combo = true; }},
      {"a box found by the entry's name keeps the position of the line before",
       {"set_checkbox(\"c,\")", "set_checkbox_by_name_string(\"40,id=,>\")",
        "set_checkbox_by_name_string(\"x\")"},
       {"SetCheckbox(c, true)", "SetCheckboxByPageText(Web, 40, id=, >, true)",
        "SetCheckboxByPageText(Web, 0, , , true)"}},
  });
}

TEST(ProtocolCommands, ActOnTheirProtocolAlone) {
  const Texts script{"set_type_choices(\"T|U|B\")",
                     "set_port_range_by_protocol_tcp(\"rt,\")",
                     "set_port_range_by_protocol_udp(\"ru,\")",
                     "set_port_range_by_protocol_both(\"rb,,:\")",
                     "set_tcp_checkbox(\"ct,\")",
                     "set_udp_checkbox(\"cu,\")",
                     "set_tcp_radiobutton(\"bt,,1\")",
                     "set_udp_radiobutton(\"bu,,2\")",
                     "set_combobox(\"box,\")",
                     "set_combobox_by_text(\"\")"};
  CheckScripts({
      {"tcp",
       script,
       {"SetElementValue(rt, 80-90, false)", "SetCheckbox(ct, true)", "SetRadioButton(bt, 1)",
        "SetComboValue(box, T, , false)", "SelectOptionByText(T)"},
       Texts(5, kOk),
       Protocol("TCP")},
      {"udp, in another case",
       script,
       {"SetElementValue(ru, 80-90, false)", "SetCheckbox(cu, true)", "SetRadioButton(bu, 2)",
        "SetComboValue(box, U, , false)", "SelectOptionByText(U)"},
       Texts(5, kOk),
       Protocol("udp")},
      {"both",
       script,
       {"SetElementValue(rt, 80-90, false)", "SetElementValue(ru, 80-90, false)",
        "SetElementValue(rb, 80:90, false)", "SetCheckbox(ct, true)", "SetCheckbox(cu, true)",
        "SetRadioButton(bt, 1)", "SetRadioButton(bu, 2)", "SetComboValue(box, B, , false)",
        "SelectOptionByText(B)"},
       Texts(9, kOk),
       Protocol("TCP/UDP")},
      {"none of the three", script, {}, Texts(), Protocol("ICMP")},
      {"no words for the protocols", {"set_combobox(\"box,\")"}, {"SetComboValue(box, , , false)"}},
      {"words that a later line lacks",
       {"set_type_choices(\"T|U|B\")", "set_type_choices(\"t\")", "set_combobox(\"box,\")"},
       {"SetComboValue(box, B, , false)"},
       {{kOk}},
       Protocol("TCP/UDP")},
  });
}

TEST(Lists, AreChosenFrom) {
  CheckScripts({
      {"number, name, address, computer, own text",
       {"set_combobox_number(\"b,\")", "set_combobox_name(\"b,\")", "set_combobox_ip(\"b,\")",
        "set_combobox_computername(\"b,\")", "set_combobox_custom(\"b,,x\")"},
       {"SetComboValue(b, 1, , false)", "SetComboValue(b, Web, , true)",
        "SetComboValue(b, 192.168.1.100, , true)",
        "SetComboValue(b, FrontDesk, 192.168.1.100, true)", "SetComboValue(b, x, , true)"}},
      {"a computer without a name",
       {"set_combobox_computername(\"b,\")"},
       {"SetComboValue(b, 192.168.1.100, , true)"},
       {},
       [](ScriptRig& rig) { rig.entry.entry_computer_name.clear(); }},
  });
}

TEST(Login, IsTypedOnceAJobAndNotTrimmed) {
  const auto with_blanks = [](ScriptRig& rig) {
    rig.entry.username = u" admin "_s;
    rig.entry.password = u" p,w "_s;
    rig.pages.Answer("GetElementValue(session)", {u"77"_s});
  };
  const auto second_entry = [](ScriptRig& rig) { rig.entry.is_first_entry = false; };
  CheckScripts({
      {"trimmed, or no key behind it",
       {"set_next_letter(\"\")", "set_username(\"user,0\")", "set_password(\"pass,\")"},
       {"SetElementValue(userA,  admin , false)", "keys {RIGHT}",
        "SetElementValue(pass,  p,w , false)", "keys {RIGHT}"},
       {{"(Successful) (A)", kOk, kOk}},
       with_blanks},
      {"the second entry logs in again",
       {"set_username(\"user,\")", "set_password(\"pass,\")",
        "set_password_combine_value_to_name(\"p_,session,0\")"},
       {},
       Texts(),
       second_entry},
      {"a name made from another box",
       {"set_next_letter(\"\")", "set_password_combine_value_to_name(\"p_x,session,1\")",
        "set_password_combine_value_to_name(\"q,session,\")"},
       {"GetElementValue(session)", "SetElementValue(p_Ax77,  p,w , false)", "keys {RIGHT}",
        "SetElementValue(q,  p,w , false)", "keys {RIGHT}"},
       {{"(Successful) (A)", kOk, kOk}},
       with_blanks},
      {"keys without a box",
       {"set_value_by_position(\"a+b,12\")", "set_username_by_position(\"3\")",
        "set_password_by_position(\"x\")"},
       {"FocusElementByPosition(12, false)", "keys a+b", "FocusElementByPosition(3, false)",
        "keys admin", "FocusElementByPosition(0, false)", "keys secret"},
       {{kOk, "(Failed - Object Not Found)", kOk}},
       [](ScriptRig& rig) { rig.pages.Answer("FocusElementByPosition(3", {u"failed"_s}); }},
      {"a box by position belongs to the first entry",
       {"set_username_by_position(\"3\")", "set_username_by_position_first_only(\"4\")",
        "set_password_by_position_last_only(\"5\")"},
       {"FocusElementByPosition(3, false)", "keys admin", "FocusElementByPosition(5, false)",
        "keys secret"},
       Texts(2, kOk),
       second_entry},
  });
}

}  // namespace
}  // namespace quayline::testing
