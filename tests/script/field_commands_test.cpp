// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_rig.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

TEST(TextBoxes, AreFilledWithTheEntry) {
  CheckScripts({
      {"the values of the entry are mixed up",
       R"(set_name("n,")            > SetElementValue(n, Web, false)
          set_ip("i,")              > SetElementValue(i, 192.168.1.100, false)
          set_start_port("s,")      > SetElementValue(s, 80, false)
          set_stop_port("e,")       > SetElementValue(e, 90, false)
          set_textbox_number("t,")  > SetElementValue(t, 1, false)
          set_2ndname("n,")         > SetSecondElementValue(n, Web, false)
          set_custom("c,,x y")      > SetElementValue(c, x y, false))"},
      {"a box that is not there ends the run",
       R"(set_name("n,")  > SetElementValue(n, Web, false)  > NearestNames(n)
          = (Failed - Object Not Found)
          set_ip("i,")    > SetElementValue(i, 192.168.1.100, false))",
       [](ScriptRig& rig) { rig.pages.Answer("SetElementValue(n", {u"failed"_s}); }},
      {"the parts of the address",
       R"(set_ip1("a,,")       > SetElementValue(a, 192, false)
          set_ip2("b,,true")   > SetElementValue(b, 168, true)
          set_ip3("c,,False")  > SetElementValue(c, 1, false)
          set_ip4("d,,x")      > SetElementValue(d, 100, false)
          set_ip4("d,,-1")     > SetElementValue(d, 100, true)
          set_ip4("d")         > SetElementValue(d, 100, false))"},
      {"an address with two parts", R"(set_ip3("c,")  > SetElementValue(c, , false))",
       [](ScriptRig& rig) { rig.entry.entry_ip = u"10.0"_s; }},
      {"the separator of a port range",
       R"(set_port_range("p,")       > SetElementValue(p, 80-90, false)
          set_port_range("p,, to ")  > SetElementValue(p, 80 to 90, false)
          set_port_range("p,,")      > SetElementValue(p, 8090, false)
          set_port_range("p")        > SetElementValue(p, 80-90, false))"},
  });
}

TEST(Fields, ThatALineLacksKeepWhatWasSet) {
  CheckScripts({
      {"the flag of an address part becomes the value of the next line",
       R"(set_custom("c,,v")  > SetElementValue(c, v, false)
          set_ip1("a,,true")  > SetElementValue(a, 192, true)
          set_custom("c")     > SetElementValue(c, v, false))"},
      {"a line without a comma forgets the position of the line before",
       R"(set_next_letter("")      = ok (A)
          set_name("rule_name,5")  > SetElementValue(ruleA_name, Web, false)
          set_ip("rule_addr")      > SetElementValue(ruleA_addr, 192.168.1.100, false)
          set_ip("rule_addr,")     > SetElementValue(rule_addr, 192.168.1.100, false))"},
      {"a second radio button in the list takes its value from nowhere",
       R"(set_radiobutton("r,,on")                       > SetRadioButton(r, on)
          set_2ndradiobutton("r,")                       > SetSecondRadioButton(r)
          set_2ndradiobutton_if_in_combo_true("r,")      > SetRadioButton(r, on)
          set_2ndradiobutton_if_in_combo_true("r,,off")  > SetRadioButton(r, off))",
       [](ScriptRig& rig) { rig.flags.in_combo = true; }},
      {"a box found by the entry's name keeps the position of the line before",
       R"(set_checkbox("c,")                       > SetCheckbox(c, true)
          set_checkbox_by_name_string("40,id=,>")  > SetCheckboxByPageText(Web, 40, id=, >, true)
          set_checkbox_by_name_string("x")         > SetCheckboxByPageText(Web, 0, , , true))"},
  });
}

TEST(ProtocolCommands, ActOnTheirProtocolAlone) {
  const struct {
    const char* line;
    const char* call;  // "@" means the protocol's text
    const char* of;    // t: TCP, u: UDP, b: both
  } commands[] = {
      {"set_port_range_by_protocol_tcp(\"rt,\")", "SetElementValue(rt, 80-90, false)", "tb"},
      {"set_port_range_by_protocol_udp(\"ru,\")", "SetElementValue(ru, 80-90, false)", "ub"},
      {"set_port_range_by_protocol_both(\"rb,,:\")", "SetElementValue(rb, 80:90, false)", "b"},
      {"set_tcp_checkbox(\"ct,\")", "SetCheckbox(ct, true)", "tb"},
      {"set_udp_checkbox(\"cu,\")", "SetCheckbox(cu, true)", "ub"},
      {"set_tcp_radiobutton(\"bt,,1\")", "SetRadioButton(bt, 1)", "tb"},
      {"set_udp_radiobutton(\"bu,,2\")", "SetRadioButton(bu, 2)", "ub"},
      {"set_combobox(\"box,\")", "SetComboValue(box, @, , false)", "tub"},
      {"set_combobox_by_text(\"\")", "SelectOptionByText(@)", "tub"},
  };
  const std::pair<QString, char> protocols[] = {
      {u"TCP"_s, 't'}, {u"udp"_s, 'u'}, {u"TCP/UDP"_s, 'b'}, {u"ICMP"_s, 'x'}};
  for (const auto& [protocol, letter] : protocols) {
    ScriptRig rig;
    rig.entry.entry_protocol = protocol;
    Texts script{"set_type_choices(\"word t|word u|word b\")"};
    QStringList calls;
    for (const auto& command : commands) {
      script.push_back(command.line);
      if (std::string(command.of).contains(letter)) {
        calls.append(
            QString::fromLatin1(command.call).replace(u'@', u"word "_s + QLatin1Char(letter)));
      }
    }
    EXPECT_EQ(rig.Run(script), RunEnd::kAllLinesDone);
    EXPECT_EQ(rig.pages.calls, calls) << protocol.toStdString();
    EXPECT_EQ(rig.Results(), QStringList(calls.size(), QLatin1String(kOk)));
  }
}

TEST(Lists, AreChosenFrom) {
  CheckScripts({
      {"number, name, address, computer, own text",
       R"(set_combobox_number("b,")        > SetComboValue(b, 1, , false)
          set_combobox_name("b,")          > SetComboValue(b, Web, , true)
          set_combobox_ip("b,")            > SetComboValue(b, 192.168.1.100, , true)
          set_combobox_computername("b,")  > SetComboValue(b, FrontDesk, 192.168.1.100, true)
          set_combobox_custom("b,,x")      > SetComboValue(b, x, , true))"},
      {"no words for the protocols", R"(set_combobox("box,")  > SetComboValue(box, , , false))"},
      {"words that a later line lacks",
       R"(set_type_choices("T|U|B")  = -
          set_type_choices("t")      = -
          set_combobox("box,")       > SetComboValue(box, B, , false))",
       [](ScriptRig& rig) { rig.entry.entry_protocol = u"TCP/UDP"_s; }},
      {"a computer without a name",
       R"(set_combobox_computername("b,")  > SetComboValue(b, 192.168.1.100, , true))",
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
       R"(set_next_letter("")     = ok (A)
          set_username("user,0")  > SetElementValue(userA,  admin , false)  > keys {RIGHT}
          set_password("pass,")   > SetElementValue(pass,  p,w , false)  > keys {RIGHT})",
       with_blanks},
      {"the second entry logs in again",
       R"(set_username("user,")  = -
          set_password("pass,")  = -
          set_password_combine_value_to_name("p_,session,0")  = -)",
       second_entry},
      {"a name made from another box",
       R"(set_next_letter("")  = ok (A)
          set_password_combine_value_to_name("p_x,session,1")  > GetElementValue(session)
            > SetElementValue(p_Ax77,  p,w , false)  > keys {RIGHT}
          set_password_combine_value_to_name("q,session,")  > SetElementValue(q,  p,w , false)
            > keys {RIGHT})",
       with_blanks},
      {"keys without a box",
       R"(set_value_by_position("a+b,12")  > FocusElementByPosition(12, false)  > keys a+b
          set_username_by_position("3")    > FocusElementByPosition(3, false)  > keys admin
            = (Failed - Object Not Found)
          set_password_by_position("x")    > FocusElementByPosition(0, false)  > keys secret)",
       [](ScriptRig& rig) { rig.pages.Answer("FocusElementByPosition(3", {u"failed"_s}); }},
      {"a box by position belongs to the first entry",
       R"(set_username_by_position("3")  > FocusElementByPosition(3, false)  > keys admin
          set_username_by_position_first_only("4")  = -
          set_password_by_position_last_only("5")  > FocusElementByPosition(5, false)
            > keys secret)",
       second_entry},
  });
}

}  // namespace
}  // namespace quayline::testing
