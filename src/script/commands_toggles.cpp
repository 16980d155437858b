// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_fields.h"
#include "script/command_table.h"
#include "script/lint_texts.h"
#include "script/page_operations.h"
#include "script/script_line.h"

// Check boxes and radio buttons.
namespace quayline {

namespace {

using Question = std::optional<PageCall>;

Question SetBox(CommandCall& call) { return page_operation::SetCheckbox(call.run.argument); }

Question SetTcpBox(CommandCall& call) {
  return call.run.given.UsesTcp() ? SetBox(call) : std::nullopt;
}

Question SetUdpBox(CommandCall& call) {
  return call.run.given.UsesUdp() ? SetBox(call) : std::nullopt;
}

Question SetBoxByNameString(CommandCall& call) {
  const QStringList& fields = call.run.fields;
  return page_operation::SetCheckboxByPageText(call.run.given.entry_name,
                                               WholeNumber(fields[0]).value_or(0), fields.value(1),
                                               fields.value(2));
}

Question SetRadio(CommandCall& call) {
  return page_operation::SetRadioButton(call.run.argument, call.run.extra_field);
}

Question SetTcpRadio(CommandCall& call) {
  return call.run.given.UsesTcp() ? SetRadio(call) : std::nullopt;
}

Question SetUdpRadio(CommandCall& call) {
  return call.run.given.UsesUdp() ? SetRadio(call) : std::nullopt;
}

Question SetSecondRadio(CommandCall& call) {
  return page_operation::SetSecondRadioButton(call.run.argument);
}

using enum Condition;
using command_field::kBoxPosition;
using command_field::kBoxPositionValue;

constexpr FieldSpec kSpanAndMarkers[] = {
    {.name = "span",
     .kind = FieldKind::kWholeNumber,
     .help = "How many characters of markup in front of the entry's name are looked at."},
    {.name = "start marker", .help = "The markup in front of the check box's name."},
    {.name = "end marker", .help = "The markup after the check box's name."}};

constexpr CommandRow kSetRadio{
    .name = "set_radiobutton",
    .use = PageUse::kPicks,
    .fields = kBoxPositionValue,
    .ask = SetRadio,
    .help = "Chooses the radio button that has this name and value.",
};
constexpr CommandRow kSetBox{
    .name = "set_checkbox",
    .use = PageUse::kPicks,
    .fields = kBoxPosition,
    .ask = SetBox,
    .help = "Checks a check box.",
};
constexpr CommandRow kSetBoxByNameString{
    .name = "set_checkbox_by_name_string",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kSpanAndMarkers,
    .ask = SetBoxByNameString,
    .help =
        "Checks the check box whose name appears between two markers in front of the entry's "
        "name on the page.",
};
constexpr CommandRow kSetTcpRadio{
    .name = "set_tcp_radiobutton",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kBoxPositionValue,
    .ask = SetTcpRadio,
    .help =
        "The same as set_radiobutton, for an entry of protocol TCP or TCP/UDP; for another "
        "entry, nothing.",
};
constexpr CommandRow kSetUdpRadio{
    .name = "set_udp_radiobutton",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kBoxPositionValue,
    .ask = SetUdpRadio,
    .help =
        "The same as set_radiobutton, for an entry of protocol UDP or TCP/UDP; for another "
        "entry, nothing.",
};
constexpr CommandRow kSetTcpBox{
    .name = "set_tcp_checkbox",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = SetTcpBox,
    .help =
        "Checks a check box for an entry of protocol TCP or TCP/UDP; for another entry it "
        "stays as it is.",
};
constexpr CommandRow kSetUdpBox{
    .name = "set_udp_checkbox",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = SetUdpBox,
    .help =
        "Checks a check box for an entry of protocol UDP or TCP/UDP; for another entry it "
        "stays as it is.",
};

constexpr CommandRow kToggles[] = {
    kSetRadio,
    kSetRadio.Member("set_radiobutton_if_in_combo_false", kNotInCombo),
    kSetRadio.Member("set_radiobutton_if_in_combo_true", kInCombo),
    {
        .name = "set_2ndradiobutton",
        .use = PageUse::kPicks,
        .fields = kBoxPosition,
        .ask = SetSecondRadio,
        .help = "Chooses the second radio button of this name.",
    },
    // These two use the first button of the name, as scripts in the field expect.
    kSetRadio.Member("set_2ndradiobutton_if_in_combo_false", kNotInCombo, &lint_text::kFirstButton),
    kSetRadio.Member("set_2ndradiobutton_if_in_combo_true", kInCombo, &lint_text::kFirstButton),
    kSetBox,
    kSetBox.Member("set_checkbox_if_in_combo_false", kNotInCombo),
    kSetBox.Member("set_checkbox_if_in_combo_true", kInCombo),
    kSetBoxByNameString,
    kSetBoxByNameString.Member("set_checkbox_by_name_string_if_in_combo_false", kNotInCombo),
    kSetBoxByNameString.Member("set_checkbox_by_name_string_if_in_combo_true", kInCombo),
    kSetTcpRadio,
    kSetTcpRadio.Member("set_tcp_radiobutton_if_in_combo_false", kNotInCombo),
    kSetTcpRadio.Member("set_tcp_radiobutton_if_in_combo_true", kInCombo),
    kSetUdpRadio,
    kSetUdpRadio.Member("set_udp_radiobutton_if_in_combo_false", kNotInCombo),
    kSetUdpRadio.Member("set_udp_radiobutton_if_in_combo_true", kInCombo),
    kSetTcpBox,
    kSetTcpBox.Member("set_tcp_checkbox_if_in_combo_false", kNotInCombo),
    kSetTcpBox.Member("set_tcp_checkbox_if_in_combo_true", kInCombo),
    kSetUdpBox,
    kSetUdpBox.Member("set_udp_checkbox_if_in_combo_false", kNotInCombo),
    kSetUdpBox.Member("set_udp_checkbox_if_in_combo_true", kInCombo),
};

}  // namespace

std::span<const CommandRow> ToggleCommands() { return kToggles; }

}  // namespace quayline
