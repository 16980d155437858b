// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_fields.h"
#include "script/command_table.h"
#include "script/lint_texts.h"
#include "script/page_operations.h"
#include "script/script_line.h"

// Choices in combo boxes, and the boxes that go with them on some pages.
namespace quayline {

namespace {

using Question = std::optional<PageCall>;
using FlowResult = Task<std::optional<RunEnd>>;
using page_operation::SetElementValue;

Question Choose(CommandCall& call, const page_operation::ComboMatch& match) {
  return page_operation::SetComboValue(call.run.argument, match);
}

FlowResult SetTypeChoices(CommandCall& call) {
  ScriptRun& run = call.run;
  run.type_choice_tcp = run.fields[0];
  run.type_choice_udp = run.fields.value(1, run.type_choice_udp);
  run.type_choice_both = run.fields.value(2, run.type_choice_both);
  co_return std::nullopt;
}

Question ChooseProtocol(CommandCall& call) {
  const std::optional<QString> choice = call.run.TypeChoice();
  return choice ? Choose(call, {.text = *choice}) : std::nullopt;
}

Question ChooseProtocolByText(CommandCall& call) {
  const std::optional<QString> choice = call.run.TypeChoice();
  return choice ? Question(page_operation::SelectOptionByText(*choice)) : std::nullopt;
}

Question ChooseNumber(CommandCall& call) {
  return Choose(call, {.text = QString::number(call.run.given.entry_index)});
}

Question SetEntryNumber(CommandCall& call) {
  return SetElementValue(call.run.argument, QString::number(call.run.given.entry_index));
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

bool IsRange(const RunArguments& entry) { return entry.entry_start_port != entry.entry_end_port; }

Question ChooseRangeOrSingle(CommandCall& call) {
  return Choose(call, {.text = call.run.fields.value(IsRange(call.run.given) ? 1 : 2)});
}

// One box for a single port, two for a range.
FlowResult SetPortsOneOrTwoBoxes(CommandCall& call) {
  const RunArguments& entry = call.run.given;
  const QJsonValue first =
      co_await call.Ask(SetElementValue(call.run.argument, entry.entry_start_port));
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.LogResult(first);
  if (IsRange(entry)) {
    call.run.argument = call.run.fields.value(1);
    const QJsonValue second =
        co_await call.Ask(SetElementValue(call.run.argument, entry.entry_end_port));
    if (call.Stopped()) {
      co_return RunEnd::kStopped;
    }
    call.LogResult(second);
  }
  co_return std::nullopt;
}

using enum Condition;
using command_field::kBoxPosition;
using command_field::kBoxPositionValue;

constexpr FieldSpec kChoiceTexts[] = {
    {.name = "tcp text", .help = "The page's option for TCP."},
    {.name = "udp text",
     .when_missing = WhenMissing::kUsesDefault,
     .help = "The page's option for UDP; an empty text where no line has stated it."},
    {.name = "both text",
     .when_missing = WhenMissing::kUsesDefault,
     .help = "The page's option for TCP/UDP; an empty text where no line has stated it."}};
constexpr FieldSpec kPlainBox{
    .name = "field", .kind = FieldKind::kElementName, .help = command_field::kBox.help};
constexpr FieldSpec kRangeOrSingle[] = {
    kPlainBox,
    {.name = "range option", .help = "The option for an entry of several ports."},
    {.name = "single port option", .help = "The option for an entry of one port."}};
constexpr FieldSpec kOneOrTwoBoxes[] = {
    {.name = "first field",
     .kind = FieldKind::kElementName,
     .help = "The name or the id of the box for the start port."},
    {.name = "second field",
     .kind = FieldKind::kElementName,
     .help = "The name or the id of the box for the end port."}};

constexpr CommandRow kTypeChoices[] = {
    {
        .name = "set_type_choices",
        .gives = Kept::kTypeChoices,
        .separator = '|',
        .fields = kChoiceTexts,
        .flow = SetTypeChoices,
        .help = "States the page's own words for the protocols; set_combobox chooses among them.",
    },
};

constexpr CommandRow kChooseProtocol{
    .name = "set_combobox",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .needs = Kept::kTypeChoices,
    .fields = kBoxPosition,
    .ask = ChooseProtocol,
    .help = "Chooses the option for the entry's protocol, as set_type_choices has stated it.",
};
constexpr CommandRow kChooseNumber{
    .name = "set_combobox_number",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = ChooseNumber,
    .help = "Chooses the option that is the entry's number in the list.",
};
constexpr CommandRow kWriteNumber{
    .name = "set_textbox_number",
    .use = PageUse::kFills,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = SetEntryNumber,
    .help = "Writes the entry's number in the list into a text box.",
};
constexpr CommandRow kChooseCustom{
    .name = "set_combobox_custom",
    .use = PageUse::kPicks,
    .fields = kBoxPositionValue,
    .ask = ChooseCustom,
    .help =
        "Chooses the first option of the combo box that has any text or value, whatever the "
        "line's own value is.",
    .quirk = &lint_text::kFirstOption,
};
constexpr CommandRow kChooseComputer{
    .name = "set_combobox_computername",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = ChooseComputer,
    .help =
        "Chooses the first option that holds the entry's computer name or its address; for an "
        "entry without a computer name, the first option that has any text or value.",
};
constexpr CommandRow kChooseName{
    .name = "set_combobox_name",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = ChooseName,
    .help =
        "Chooses the first option of the combo box that has any text or value, whatever the "
        "entry's name is.",
    .quirk = &lint_text::kFirstOption,
};
constexpr CommandRow kChooseLabel{
    .name = "set_combobox_name_if_in_combo_true_special_1",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .condition = kInCombo,
    .fields = kBoxPosition,
    .ask = ChooseLabel,
    .help =
        "Chooses the option with the label under which some routers list a rule: "
        "Web [TCP/80~80].",
};
constexpr CommandRow kChooseIp{
    .name = "set_combobox_ip",
    .use = PageUse::kPicks,
    .uses_entry = true,
    .fields = kBoxPosition,
    .ask = ChooseIp,
    .help =
        "Chooses the first option of the combo box that has any text or value, whatever the "
        "entry's address is.",
    .quirk = &lint_text::kFirstOption,
};

constexpr CommandRow kCombos[] = {
    kChooseProtocol,
    {
        .name = "set_combobox_by_text",
        .use = PageUse::kPicks,
        .uses_entry = true,
        .needs = Kept::kTypeChoices,
        .ask = ChooseProtocolByText,
        .help = "Chooses the option for the entry's protocol in whichever combo box of the page "
                "has it first.",
    },
    kChooseNumber,
    kChooseNumber.Member("set_combobox_number_if_in_combo_false", kNotInCombo),
    kChooseNumber.Member("set_combobox_number_if_in_combo_true", kInCombo),
    kWriteNumber,
    kWriteNumber.Member("set_textbox_number_if_in_combo_false", kNotInCombo),
    kWriteNumber.Member("set_textbox_number_if_in_combo_true", kInCombo),
    kChooseCustom,
    kChooseCustom.Member("set_combobox_custom_if_in_combo_false", kNotInCombo),
    kChooseCustom.Member("set_combobox_custom_if_in_combo_true", kInCombo),
    kChooseProtocol.Member("set_combobox_if_in_combo_false", kNotInCombo),
    kChooseProtocol.Member("set_combobox_if_in_combo_true", kInCombo),
    {
        .name = "set_combobox_actiontec_mi424wr_verizon_if_in_combo_false",
        .use = PageUse::kPicks,
        .uses_entry = true,
        .condition = kNotInCombo,
        .fields = kRangeOrSingle,
        .ask = ChooseRangeOrSingle,
        .help = "Chooses one option for an entry of several ports, another for one port.",
    },
    kChooseComputer,
    kChooseComputer.Member("set_combobox_computername_if_in_combo_false", kNotInCombo),
    kChooseComputer.Member("set_combobox_computername_if_in_combo_true", kInCombo),
    kChooseName,
    kChooseName.Member("set_combobox_name_if_in_combo_true", kInCombo),
    kChooseLabel,
    kChooseName.Member("set_combobox_name_if_in_combo_false", kNotInCombo),
    kChooseLabel.Member("set_combobox_name_if_in_combo_false_special_1", kNotInCombo),
    kChooseIp,
    kChooseIp.Member("set_combobox_ip_if_in_combo_true", kInCombo),
    kChooseIp.Member("set_combobox_ip_if_in_combo_false", kNotInCombo),
    {
        .name = "set_ports_actiontec_mi424wr_verizon_if_in_combo_false",
        .use = PageUse::kFills,
        .uses_entry = true,
        .condition = kNotInCombo,
        .fields = kOneOrTwoBoxes,
        .flow = SetPortsOneOrTwoBoxes,
        .help = "Writes the entry's start port into one box and, for an entry of several ports, "
                "its end port into another.",
    },
};

}  // namespace

std::span<const CommandRow> TypeChoiceCommands() { return kTypeChoices; }

std::span<const CommandRow> ComboCommands() { return kCombos; }

}  // namespace quayline
