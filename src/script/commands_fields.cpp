// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_table.h"
#include "script/page_operations.h"
#include "script/script_line.h"

// The values of the entry, written into the boxes of a page.
namespace quayline {

namespace {

using Question = std::optional<PageCall>;
using page_operation::SetElementValue;

bool IsProtocol(const CommandCall& call, std::initializer_list<const char*> protocols) {
  return std::ranges::any_of(protocols, [&call](const char* protocol) {
    return call.run.given.entry_protocol.compare(QLatin1String(protocol), Qt::CaseInsensitive) == 0;
  });
}

bool UsesTcp(const CommandCall& call) { return IsProtocol(call, {"tcp", "tcp/udp"}); }

bool UsesUdp(const CommandCall& call) { return IsProtocol(call, {"udp", "tcp/udp"}); }

Question OnlyIf(bool condition, PageCall call) {
  return condition ? Question(std::move(call)) : std::nullopt;
}

// Text boxes.

Question Write(CommandCall& call, const QString& value) {
  return SetElementValue(call.run.argument, value);
}

Question SetNumber(CommandCall& call) { return Write(call, call.run.checked_string); }

Question SetName(CommandCall& call) { return Write(call, call.run.given.entry_name); }

Question SetCustom(CommandCall& call) { return Write(call, call.run.extra_field); }

Question SetEntryNumber(CommandCall& call) {
  return Write(call, QString::number(call.run.given.entry_index));
}

Question SetStartPort(CommandCall& call) { return Write(call, call.run.given.entry_start_port); }

Question SetStopPort(CommandCall& call) { return Write(call, call.run.given.entry_end_port); }

Question SetIp(CommandCall& call) { return Write(call, call.run.given.entry_ip); }

Question SetSecondName(CommandCall& call) {
  return page_operation::SetSecondElementValue(call.run.argument, call.run.given.entry_name);
}

// The third field says that only an empty box is to be filled. It does not outlive its line.
template <int kPart>
Question SetIpPart(CommandCall& call) {
  const QString flag = call.run.argument.split(QLatin1Char(',')).value(2);
  call.TakeFields(2);
  call.InsertCurrentName();
  return SetElementValue(call.run.argument, call.run.IpPart(kPart),
                         TruthValue(flag).value_or(false));
}

Question SetPortRange(CommandCall& call) {
  const bool has_separator = call.run.argument.count(QLatin1Char(',')) >= 2;
  call.TakeFields(3);
  call.InsertCurrentName();
  const QString separator = has_separator ? call.run.extra_field : QStringLiteral("-");
  return Write(call, call.run.given.entry_start_port + separator + call.run.given.entry_end_port);
}

Question SetPortRangeForTcp(CommandCall& call) {
  Question write = SetPortRange(call);
  return UsesTcp(call) ? write : std::nullopt;
}

Question SetPortRangeForUdp(CommandCall& call) {
  Question write = SetPortRange(call);
  return UsesUdp(call) ? write : std::nullopt;
}

Question SetPortRangeForBoth(CommandCall& call) {
  Question write = SetPortRange(call);
  return IsProtocol(call, {"tcp/udp"}) ? write : std::nullopt;
}

// One box for a single port, two for a range.
Task<std::optional<RunEnd>> SetPortsOneOrTwoBoxes(CommandCall& call) {
  const RunArguments& entry = call.run.given;
  const QStringList fields = call.run.argument.split(QLatin1Char(','));
  call.run.argument = fields[0];
  const QJsonValue first = co_await call.Ask(SetElementValue(fields[0], entry.entry_start_port));
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.LogResult(first);
  if (entry.entry_start_port != entry.entry_end_port) {
    const QJsonValue second =
        co_await call.Ask(SetElementValue(fields.value(1), entry.entry_end_port));
    if (call.Stopped()) {
      co_return RunEnd::kStopped;
    }
    call.LogResult(second);
  }
  co_return std::nullopt;
}

// Check boxes and radio buttons.

Question SetBox(CommandCall& call) { return page_operation::SetCheckbox(call.run.argument); }

Question SetTcpBox(CommandCall& call) { return OnlyIf(UsesTcp(call), *SetBox(call)); }

Question SetUdpBox(CommandCall& call) { return OnlyIf(UsesUdp(call), *SetBox(call)); }

// The span stays what it was, 0 at first, where the field is no number.
Question SetBoxByNameString(CommandCall& call) {
  const QStringList fields = call.run.argument.split(QLatin1Char(','));
  return page_operation::SetCheckboxByPageText(call.run.given.entry_name,
                                               WholeNumber(fields[0]).value_or(0), fields.value(1),
                                               fields.value(2));
}

Question SetRadio(CommandCall& call) {
  return page_operation::SetRadioButton(call.run.argument, call.run.extra_field);
}

Question SetTcpRadio(CommandCall& call) { return OnlyIf(UsesTcp(call), *SetRadio(call)); }

Question SetUdpRadio(CommandCall& call) { return OnlyIf(UsesUdp(call), *SetRadio(call)); }

Question SetSecondRadio(CommandCall& call) {
  return page_operation::SetSecondRadioButton(call.run.argument);
}

// Combo boxes.

Question Choose(CommandCall& call, const page_operation::ComboMatch& match) {
  return page_operation::SetComboValue(call.run.argument, match);
}

// The page's own word for the entry's protocol.
std::optional<QString> TypeChoice(const CommandCall& call) {
  if (IsProtocol(call, {"tcp"})) {
    return call.run.type_choice_tcp;
  }
  if (IsProtocol(call, {"udp"})) {
    return call.run.type_choice_udp;
  }
  if (IsProtocol(call, {"tcp/udp"})) {
    return call.run.type_choice_both;
  }
  return std::nullopt;
}

Task<std::optional<RunEnd>> SetTypeChoices(CommandCall& call) {
  ScriptRun& run = call.run;
  const QStringList choices = run.argument.split(QLatin1Char('|'));
  run.type_choice_tcp = choices[0];
  run.type_choice_udp = choices.value(1, run.type_choice_udp);
  run.type_choice_both = choices.value(2, run.type_choice_both);
  co_return std::nullopt;
}

Question ChooseProtocol(CommandCall& call) {
  const std::optional<QString> choice = TypeChoice(call);
  return choice ? Choose(call, {.text = *choice}) : std::nullopt;
}

Question ChooseProtocolByText(CommandCall& call) {
  const std::optional<QString> choice = TypeChoice(call);
  return choice ? Question(page_operation::SelectOptionByText(*choice)) : std::nullopt;
}

Question ChooseNumber(CommandCall& call) {
  return Choose(call, {.text = QString::number(call.run.given.entry_index)});
}

Question ChooseCustom(CommandCall& call) {
  return Choose(call, {.text = call.run.extra_field, .partial = true});
}

Question ChooseName(CommandCall& call) {
  return Choose(call, {.text = call.run.given.entry_name, .partial = true});
}

Question ChooseLabel(CommandCall& call) {
  const std::optional<QString> label = EntryLabel(call.run.given);
  return label ? Choose(call, {.text = *label}) : std::nullopt;
}

Question ChooseIp(CommandCall& call) {
  return Choose(call, {.text = call.run.given.entry_ip, .partial = true});
}

// By the computer's name where the entry has one, by its address as well.
Question ChooseComputer(CommandCall& call) {
  const RunArguments& entry = call.run.given;
  if (entry.entry_computer_name.isEmpty()) {
    return Choose(call, {.text = entry.entry_ip, .partial = true});
  }
  return Choose(
      call, {.text = entry.entry_computer_name, .second_text = entry.entry_ip, .partial = true});
}

Question ChooseRangeOrSingle(CommandCall& call) {
  const RunArguments& entry = call.run.given;
  const QStringList fields = call.run.argument.split(QLatin1Char(','));
  call.run.argument = fields[0];
  const bool is_range = entry.entry_start_port != entry.entry_end_port;
  return Choose(call, {.text = fields.value(is_range ? 1 : 2)});
}

using enum Condition;
using enum Shape;

constexpr std::string_view kFieldPosition = "field,position";
constexpr std::string_view kFieldPositionValue = "field,position,value";
constexpr std::string_view kFieldPositionSeparator = "field,position,separator";
constexpr std::string_view kFieldPositionOnlyEmpty = "field,position,only if empty";

constexpr CommandRow kTypeChoices[] = {
    {"set_type_choices", kAlways, kOwn, "tcp text|udp text|both text", nullptr, SetTypeChoices},
};

constexpr CommandRow kFields[] = {
    {"set_number", kAlways, kPosition, kFieldPosition, SetNumber},
    {"set_name", kAlways, kPosition, kFieldPosition, SetName},
    {"set_custom", kAlways, kPositionExtra, kFieldPositionValue, SetCustom},
    {"set_custom_if_in_combo_false", kNotInCombo, kPositionExtra, kFieldPositionValue, SetCustom},
    {"set_custom_if_in_combo_true", kInCombo, kPositionExtra, kFieldPositionValue, SetCustom},
    {"set_name_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, SetName},
    {"set_name_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetName},
    {"set_2ndname", kAlways, kPosition, kFieldPosition, SetSecondName},
    {"set_2ndname_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, SetSecondName},
    {"set_2ndname_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetSecondName},
    {"set_radiobutton", kAlways, kPositionExtra, kFieldPositionValue, SetRadio},
    {"set_radiobutton_if_in_combo_false", kNotInCombo, kPositionExtra, kFieldPositionValue,
     SetRadio},
    {"set_radiobutton_if_in_combo_true", kInCombo, kPositionExtra, kFieldPositionValue, SetRadio},
    {"set_2ndradiobutton", kAlways, kPosition, kFieldPosition, SetSecondRadio},
    // These two act on the first button of the name, as scripts in the field expect.
    {"set_2ndradiobutton_if_in_combo_false", kNotInCombo, kPositionExtra, kFieldPositionValue,
     SetRadio},
    {"set_2ndradiobutton_if_in_combo_true", kInCombo, kPositionExtra, kFieldPositionValue,
     SetRadio},
    {"set_checkbox", kAlways, kPosition, kFieldPosition, SetBox},
    {"set_checkbox_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, SetBox},
    {"set_checkbox_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetBox},
    {"set_checkbox_by_name_string", kAlways, kOwn, "span,start marker,end marker",
     SetBoxByNameString},
    {"set_checkbox_by_name_string_if_in_combo_false", kNotInCombo, kOwn,
     "span,start marker,end marker", SetBoxByNameString},
    {"set_checkbox_by_name_string_if_in_combo_true", kInCombo, kOwn, "span,start marker,end marker",
     SetBoxByNameString},
    {"set_tcp_radiobutton", kAlways, kPositionExtra, kFieldPositionValue, SetTcpRadio},
    {"set_tcp_radiobutton_if_in_combo_false", kNotInCombo, kPositionExtra, kFieldPositionValue,
     SetTcpRadio},
    {"set_tcp_radiobutton_if_in_combo_true", kInCombo, kPositionExtra, kFieldPositionValue,
     SetTcpRadio},
    {"set_udp_radiobutton", kAlways, kPositionExtra, kFieldPositionValue, SetUdpRadio},
    {"set_udp_radiobutton_if_in_combo_false", kNotInCombo, kPositionExtra, kFieldPositionValue,
     SetUdpRadio},
    {"set_udp_radiobutton_if_in_combo_true", kInCombo, kPositionExtra, kFieldPositionValue,
     SetUdpRadio},
    {"set_tcp_checkbox", kAlways, kPosition, kFieldPosition, SetTcpBox},
    {"set_tcp_checkbox_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, SetTcpBox},
    {"set_tcp_checkbox_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetTcpBox},
    {"set_udp_checkbox", kAlways, kPosition, kFieldPosition, SetUdpBox},
    {"set_udp_checkbox_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, SetUdpBox},
    {"set_udp_checkbox_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetUdpBox},
    {"set_combobox", kAlways, kPosition, kFieldPosition, ChooseProtocol},
    {"set_combobox_by_text", kAlways, kWhole, "", ChooseProtocolByText},
    {"set_combobox_number", kAlways, kPosition, kFieldPosition, ChooseNumber},
    {"set_combobox_number_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, ChooseNumber},
    {"set_combobox_number_if_in_combo_true", kInCombo, kPosition, kFieldPosition, ChooseNumber},
    {"set_textbox_number", kAlways, kPosition, kFieldPosition, SetEntryNumber},
    {"set_textbox_number_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition,
     SetEntryNumber},
    {"set_textbox_number_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetEntryNumber},
    {"set_combobox_custom", kAlways, kPositionExtra, kFieldPositionValue, ChooseCustom},
    {"set_combobox_custom_if_in_combo_false", kNotInCombo, kPositionExtra, kFieldPositionValue,
     ChooseCustom},
    {"set_combobox_custom_if_in_combo_true", kInCombo, kPositionExtra, kFieldPositionValue,
     ChooseCustom},
    {"set_combobox_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, ChooseProtocol},
    {"set_combobox_if_in_combo_true", kInCombo, kPosition, kFieldPosition, ChooseProtocol},
    {"set_combobox_actiontec_mi424wr_verizon_if_in_combo_false", kNotInCombo, kOwn,
     "field,range option,single port option", ChooseRangeOrSingle},
    {"set_combobox_computername", kAlways, kPosition, kFieldPosition, ChooseComputer},
    {"set_combobox_computername_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition,
     ChooseComputer},
    {"set_combobox_computername_if_in_combo_true", kInCombo, kPosition, kFieldPosition,
     ChooseComputer},
    {"set_combobox_name", kAlways, kPosition, kFieldPosition, ChooseName},
    {"set_combobox_name_if_in_combo_true", kInCombo, kPosition, kFieldPosition, ChooseName},
    {"set_combobox_name_if_in_combo_true_special_1", kInCombo, kPosition, kFieldPosition,
     ChooseLabel},
    {"set_combobox_name_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, ChooseName},
    {"set_combobox_name_if_in_combo_false_special_1", kNotInCombo, kPosition, kFieldPosition,
     ChooseLabel},
    {"set_combobox_ip", kAlways, kPosition, kFieldPosition, ChooseIp},
    {"set_combobox_ip_if_in_combo_true", kInCombo, kPosition, kFieldPosition, ChooseIp},
    {"set_combobox_ip_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, ChooseIp},
    {"set_ports_actiontec_mi424wr_verizon_if_in_combo_false", kNotInCombo, kOwn,
     "first field,second field", nullptr, SetPortsOneOrTwoBoxes},
    {"set_start_port", kAlways, kPosition, kFieldPosition, SetStartPort},
    {"set_start_port_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, SetStartPort},
    {"set_start_port_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetStartPort},
    {"set_stop_port", kAlways, kPosition, kFieldPosition, SetStopPort},
    {"set_stop_port_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, SetStopPort},
    {"set_stop_port_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetStopPort},
    {"set_port_range", kAlways, kOwn, kFieldPositionSeparator, SetPortRange},
    {"set_port_range_if_in_combo_false", kNotInCombo, kOwn, kFieldPositionSeparator, SetPortRange},
    {"set_port_range_if_in_combo_true", kInCombo, kOwn, kFieldPositionSeparator, SetPortRange},
    {"set_port_range_by_protocol_tcp", kAlways, kOwn, kFieldPositionSeparator, SetPortRangeForTcp},
    {"set_port_range_by_protocol_tcp_if_in_combo_false", kNotInCombo, kOwn, kFieldPositionSeparator,
     SetPortRangeForTcp},
    {"set_port_range_by_protocol_tcp_if_in_combo_true", kInCombo, kOwn, kFieldPositionSeparator,
     SetPortRangeForTcp},
    {"set_port_range_by_protocol_udp", kAlways, kOwn, kFieldPositionSeparator, SetPortRangeForUdp},
    {"set_port_range_by_protocol_udp_if_in_combo_false", kNotInCombo, kOwn, kFieldPositionSeparator,
     SetPortRangeForUdp},
    {"set_port_range_by_protocol_udp_if_in_combo_true", kInCombo, kOwn, kFieldPositionSeparator,
     SetPortRangeForUdp},
    {"set_port_range_by_protocol_both", kAlways, kOwn, kFieldPositionSeparator,
     SetPortRangeForBoth},
    {"set_port_range_by_protocol_both_if_in_combo_false", kNotInCombo, kOwn,
     kFieldPositionSeparator, SetPortRangeForBoth},
    {"set_port_range_by_protocol_both_if_in_combo_true", kInCombo, kOwn, kFieldPositionSeparator,
     SetPortRangeForBoth},
    {"set_ip", kAlways, kPosition, kFieldPosition, SetIp},
    {"set_ip_if_in_combo_true", kInCombo, kPosition, kFieldPosition, SetIp},
    {"set_ip_if_in_combo_false", kNotInCombo, kPosition, kFieldPosition, SetIp},
    {"set_ip1", kAlways, kOwn, kFieldPositionOnlyEmpty, SetIpPart<1>},
    {"set_ip1_if_in_combo_false", kNotInCombo, kOwn, kFieldPositionOnlyEmpty, SetIpPart<1>},
    {"set_ip1_if_in_combo_true", kInCombo, kOwn, kFieldPositionOnlyEmpty, SetIpPart<1>},
    {"set_ip2", kAlways, kOwn, kFieldPositionOnlyEmpty, SetIpPart<2>},
    {"set_ip2_if_in_combo_false", kNotInCombo, kOwn, kFieldPositionOnlyEmpty, SetIpPart<2>},
    {"set_ip2_if_in_combo_true", kInCombo, kOwn, kFieldPositionOnlyEmpty, SetIpPart<2>},
    {"set_ip3", kAlways, kOwn, kFieldPositionOnlyEmpty, SetIpPart<3>},
    {"set_ip3_if_in_combo_false", kNotInCombo, kOwn, kFieldPositionOnlyEmpty, SetIpPart<3>},
    {"set_ip3_if_in_combo_true", kInCombo, kOwn, kFieldPositionOnlyEmpty, SetIpPart<3>},
    {"set_ip4", kAlways, kOwn, kFieldPositionOnlyEmpty, SetIpPart<4>},
    {"set_ip4_if_in_combo_false", kNotInCombo, kOwn, kFieldPositionOnlyEmpty, SetIpPart<4>},
    {"set_ip4_if_in_combo_true", kInCombo, kOwn, kFieldPositionOnlyEmpty, SetIpPart<4>},
};

}  // namespace

std::span<const CommandRow> TypeChoiceCommands() { return kTypeChoices; }

std::span<const CommandRow> FieldCommands() { return kFields; }

}  // namespace quayline
