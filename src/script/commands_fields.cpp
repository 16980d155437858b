// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_fields.h"
#include "script/command_table.h"
#include "script/page_operations.h"
#include "script/script_line.h"

// The values of the entry, written into the text boxes of a page.
namespace quayline {

namespace {

using Question = std::optional<PageCall>;
using page_operation::SetElementValue;

Question Write(CommandCall& call, const QString& value) {
  return SetElementValue(call.run.argument, value);
}

Question SetNumber(CommandCall& call) { return Write(call, call.run.checked_string); }

Question SetName(CommandCall& call) { return Write(call, call.run.given.entry_name); }

Question SetCustom(CommandCall& call) { return Write(call, call.run.extra_field); }

Question SetStartPort(CommandCall& call) { return Write(call, call.run.given.entry_start_port); }

Question SetStopPort(CommandCall& call) { return Write(call, call.run.given.entry_end_port); }

Question SetIp(CommandCall& call) { return Write(call, call.run.given.entry_ip); }

Question SetSecondName(CommandCall& call) {
  return page_operation::SetSecondElementValue(call.run.argument, call.run.given.entry_name);
}

template <int kPart>
Question SetIpPart(CommandCall& call) {
  const bool only_if_empty = TruthValue(call.run.fields.value(2)).value_or(false);
  return SetElementValue(call.run.argument, call.run.IpPart(kPart), only_if_empty);
}

Question SetPortRange(CommandCall& call) {
  const QString separator =
      call.run.fields.value(2, FromAscii(command_field::kSeparator.default_value));
  return Write(call, call.run.given.entry_start_port + separator + call.run.given.entry_end_port);
}

Question SetPortRangeForTcp(CommandCall& call) {
  return call.run.given.UsesTcp() ? SetPortRange(call) : std::nullopt;
}

Question SetPortRangeForUdp(CommandCall& call) {
  return call.run.given.UsesUdp() ? SetPortRange(call) : std::nullopt;
}

Question SetPortRangeForBoth(CommandCall& call) {
  return call.run.given.UsesBoth() ? SetPortRange(call) : std::nullopt;
}

using enum Condition;
using command_field::kBoxPosition;
using command_field::kBoxPositionValue;

constexpr FieldSpec kPortRange[] = {command_field::kBox, command_field::kPosition,
                                    command_field::kSeparator};
constexpr FieldSpec kIpPart[] = {command_field::kBox, command_field::kPosition,
                                 command_field::kOnlyIfEmpty};

constexpr CommandRow kSetName{
    .name = "set_name",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = SetName,
    .help = "Writes the entry's name into a text box.",
};
constexpr CommandRow kSetCustom{
    .name = "set_custom",
    .use = PageUse::kFills,
    .fields = kBoxPositionValue,
    .ask = SetCustom,
    .help = "Writes the value of the line into a text box.",
};
constexpr CommandRow kSetSecondName{
    .name = "set_2ndname",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = SetSecondName,
    .help = "Writes the entry's name into the second text box of this name.",
};

constexpr CommandRow kNameBoxes[] = {
    {
        .name = "set_number",
        .use = PageUse::kFills,
        .uses_entry = true,
        .needs = Kept::kCheckedText,
        .fields = kBoxPosition,
        .ask = SetNumber,
        .help = "Writes what set_string_to_check chose into a text box.",
    },
    kSetName,
    kSetCustom,
    kSetCustom.Member("set_custom_if_in_combo_false", kNotInCombo),
    kSetCustom.Member("set_custom_if_in_combo_true", kInCombo),
    kSetName.Member("set_name_if_in_combo_false", kNotInCombo),
    kSetName.Member("set_name_if_in_combo_true", kInCombo),
    kSetSecondName,
    kSetSecondName.Member("set_2ndname_if_in_combo_false", kNotInCombo),
    kSetSecondName.Member("set_2ndname_if_in_combo_true", kInCombo),
};

constexpr CommandRow kSetStartPort{
    .name = "set_start_port",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = SetStartPort,
    .help = "Writes the entry's start port into a text box.",
};
constexpr CommandRow kSetStopPort{
    .name = "set_stop_port",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = SetStopPort,
    .help = "Writes the entry's end port into a text box.",
};
constexpr CommandRow kSetPortRange{
    .name = "set_port_range",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kPortRange,
    .ask = SetPortRange,
    .help = "Writes the entry's start port, the separator and its end port into a text box.",
};
constexpr CommandRow kSetPortRangeForTcp{
    .name = "set_port_range_by_protocol_tcp",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kPortRange,
    .ask = SetPortRangeForTcp,
    .help =
        "The same as set_port_range, for an entry of protocol TCP or TCP/UDP; for another "
        "entry, nothing.",
};
constexpr CommandRow kSetPortRangeForUdp{
    .name = "set_port_range_by_protocol_udp",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kPortRange,
    .ask = SetPortRangeForUdp,
    .help =
        "The same as set_port_range, for an entry of protocol UDP or TCP/UDP; for another "
        "entry, nothing.",
};
constexpr CommandRow kSetPortRangeForBoth{
    .name = "set_port_range_by_protocol_both",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kPortRange,
    .ask = SetPortRangeForBoth,
    .help =
        "The same as set_port_range, for an entry of protocol TCP/UDP; for another entry, "
        "nothing.",
};
constexpr CommandRow kSetIp{
    .name = "set_ip",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = SetIp,
    .help = "Writes the address that the entry forwards to into a text box.",
};
constexpr CommandRow kSetIp1{
    .name = "set_ip1",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kIpPart,
    .ask = SetIpPart<1>,
    .help = "Writes the first number of the entry's address into a text box.",
};
constexpr CommandRow kSetIp2{
    .name = "set_ip2",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kIpPart,
    .ask = SetIpPart<2>,
    .help = "Writes the second number of the entry's address into a text box.",
};
constexpr CommandRow kSetIp3{
    .name = "set_ip3",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kIpPart,
    .ask = SetIpPart<3>,
    .help = "Writes the third number of the entry's address into a text box.",
};
constexpr CommandRow kSetIp4{
    .name = "set_ip4",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kIpPart,
    .ask = SetIpPart<4>,
    .help = "Writes the fourth number of the entry's address into a text box.",
};

constexpr CommandRow kPortBoxes[] = {
    kSetStartPort,
    kSetStartPort.Member("set_start_port_if_in_combo_false", kNotInCombo),
    kSetStartPort.Member("set_start_port_if_in_combo_true", kInCombo),
    kSetStopPort,
    kSetStopPort.Member("set_stop_port_if_in_combo_false", kNotInCombo),
    kSetStopPort.Member("set_stop_port_if_in_combo_true", kInCombo),
    kSetPortRange,
    kSetPortRange.Member("set_port_range_if_in_combo_false", kNotInCombo),
    kSetPortRange.Member("set_port_range_if_in_combo_true", kInCombo),
    kSetPortRangeForTcp,
    kSetPortRangeForTcp.Member("set_port_range_by_protocol_tcp_if_in_combo_false", kNotInCombo),
    kSetPortRangeForTcp.Member("set_port_range_by_protocol_tcp_if_in_combo_true", kInCombo),
    kSetPortRangeForUdp,
    kSetPortRangeForUdp.Member("set_port_range_by_protocol_udp_if_in_combo_false", kNotInCombo),
    kSetPortRangeForUdp.Member("set_port_range_by_protocol_udp_if_in_combo_true", kInCombo),
    kSetPortRangeForBoth,
    kSetPortRangeForBoth.Member("set_port_range_by_protocol_both_if_in_combo_false", kNotInCombo),
    kSetPortRangeForBoth.Member("set_port_range_by_protocol_both_if_in_combo_true", kInCombo),
    kSetIp,
    kSetIp.Member("set_ip_if_in_combo_true", kInCombo),
    kSetIp.Member("set_ip_if_in_combo_false", kNotInCombo),
    kSetIp1,
    kSetIp1.Member("set_ip1_if_in_combo_false", kNotInCombo),
    kSetIp1.Member("set_ip1_if_in_combo_true", kInCombo),
    kSetIp2,
    kSetIp2.Member("set_ip2_if_in_combo_false", kNotInCombo),
    kSetIp2.Member("set_ip2_if_in_combo_true", kInCombo),
    kSetIp3,
    kSetIp3.Member("set_ip3_if_in_combo_false", kNotInCombo),
    kSetIp3.Member("set_ip3_if_in_combo_true", kInCombo),
    kSetIp4,
    kSetIp4.Member("set_ip4_if_in_combo_false", kNotInCombo),
    kSetIp4.Member("set_ip4_if_in_combo_true", kInCombo),
};

}  // namespace

std::span<const CommandRow> NameBoxCommands() { return kNameBoxes; }

std::span<const CommandRow> PortBoxCommands() { return kPortBoxes; }

}  // namespace quayline
