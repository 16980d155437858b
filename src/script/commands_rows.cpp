// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <functional>

#include "script/command_fields.h"
#include "script/command_table.h"
#include "script/page_operations.h"
#include "script/script_line.h"
#include "script/script_texts.h"

// Names of a page's rows, and the tests by which a script decides between a new rule and one that
// the router holds already.
namespace quayline {

namespace {

using FlowResult = Task<std::optional<RunEnd>>;

QStringList NameArray(const ScriptRun& run) {
  return run.name_array_text.isEmpty() ? QStringList()
                                       : run.name_array_text.split(QLatin1Char('|'));
}

FlowResult SetNameArray(CommandCall& call) {
  call.run.name_array_text = call.run.argument;
  call.LogLine(call.Text(script_text::kSuccessful));
  co_return std::nullopt;
}

FlowResult SetNextNameArray(CommandCall& call) {
  call.run.current_name = NameArray(call.run).value(call.run.given.entry_index - 1);
  call.LogSuccessWith(call.run.current_name);
  co_return std::nullopt;
}

FlowResult SetNextLetter(CommandCall& call) {
  call.run.current_name = EntryLetter(call.run.given.entry_index);
  call.LogSuccessWith(call.run.current_name);
  co_return std::nullopt;
}

// The template's text for one element of the name array. An empty position counts as 0 from here
// on.
QString FillTemplate(ScriptRun& run, const QString& element) {
  if (run.position.isEmpty()) {
    run.position = QStringLiteral("0");
  }
  return InsertAt(run.argument, run.position, element);
}

// Reads the boxes of the rows in turn. Where no row is as wanted, the current name is left holding
// what the last box held: scripts in the field are written around it.
FlowResult FindRow(CommandCall& call, bool wants_free) {
  ScriptRun& run = call.run;
  run.current_name.clear();
  for (const QString& element : NameArray(run)) {
    if (element.trimmed().isEmpty()) {
      continue;
    }
    const QString field = FillTemplate(run, element);
    const QJsonValue value = co_await call.Ask(page_operation::GetElementValue(field));
    if (call.Stopped()) {
      co_return RunEnd::kStopped;
    }
    run.current_name = value.toString();
    const bool is_free = run.current_name.isEmpty() || run.current_name == QLatin1String("0");
    if (is_free == wants_free) {
      run.current_name = element;
      break;
    }
  }
  call.LogLine(call.Text(script_text::kCurrentName) + QLatin1Char(' ') + run.current_name +
               QLatin1Char(')'));
  co_return std::nullopt;
}

FlowResult SetNameToCheck(CommandCall& call) { return FindRow(call, true); }

FlowResult SetNameToCheckFindValue(CommandCall& call) { return FindRow(call, false); }

FlowResult SetStringToCheck(CommandCall& call) {
  ScriptRun& run = call.run;
  run.checked_string.clear();
  for (const QString& element : NameArray(run)) {
    if (element.trimmed().isEmpty()) {
      continue;
    }
    const QString words = FillTemplate(run, element);
    const QJsonValue is_used = co_await call.Ask(page_operation::PageContainsWords(words));
    if (call.Stopped()) {
      co_return RunEnd::kStopped;
    }
    if (!is_used.toBool()) {
      run.checked_string = element;
      break;
    }
  }
  call.LogSuccessWith(run.checked_string);
  co_return std::nullopt;
}

FlowResult TestCombo(CommandCall& call, QString name) {
  const PageCall question = page_operation::ComboHasOption(call.run.argument, name);
  const QJsonValue shown = co_await call.Ask(question);
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.LogLine(shown.toBool() ? QStringLiteral("True") : QStringLiteral("False"));
  const QJsonValue found = co_await call.Ask(question);
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.env.flags.in_combo = found.toBool();
  co_return std::nullopt;
}

FlowResult IsInCombo(CommandCall& call) { return TestCombo(call, call.run.given.entry_name); }

FlowResult IsInComboByLabel(CommandCall& call) {
  if (const std::optional<QString> label = EntryLabel(call.run.given)) {
    co_return co_await TestCombo(call, *label);
  }
  co_return std::nullopt;
}

std::optional<PageCall> NameOnchangeBoxes(CommandCall&) {
  return page_operation::NameOnchangeBoxes();
}

using enum Condition;

constexpr FieldSpec kNames[] = {
    {.name = "name|name|...", .help = "The names of the page's rows, in their order."}};
constexpr FieldSpec kTemplate[] = {command_field::kTemplate, command_field::kPosition};
constexpr FieldSpec kComboBox[] = {command_field::kComboBox};

constexpr CommandRow kNameArray[] = {
    {
        .name = "set_name_array",
        .gives = Kept::kNameArray,
        .fields = kNames,
        .flow = SetNameArray,
        .help = "Sets the name array: the texts in which the names of the page's rows differ.",
    },
};

constexpr CommandRow kFreeRow[] = {
    {
        .name = "set_name_to_check",
        .use = PageUse::kReads,
        .gives = Kept::kCurrentName,
        .needs = Kept::kNameArray,
        .fields = kTemplate,
        .flow = SetNameToCheck,
        .help = "Makes the first name of the name array whose box is empty or 0 the current name; "
                "where every box is used, the value of the last one.",
    },
    {
        .name = "set_name_to_check_find_value",
        .use = PageUse::kReads,
        .gives = Kept::kCurrentName,
        .needs = Kept::kNameArray,
        .fields = kTemplate,
        .flow = SetNameToCheckFindValue,
        .help = "Makes the first name of the name array whose box is neither empty nor 0 the "
                "current name.",
    },
    {
        .name = "set_next_name_array",
        .uses_entry = true,
        .gives = Kept::kCurrentName,
        .needs = Kept::kNameArray,
        .flow = SetNextNameArray,
        .help = "Makes the name of the name array that goes with the entry's number the current "
                "name; beyond the array, an empty text.",
    },
    {
        .name = "set_next_letter",
        .uses_entry = true,
        .gives = Kept::kCurrentName,
        .flow = SetNextLetter,
        .help = "Makes the entry's letter the current name: A for the first entry.",
    },
    {
        .name = "set_string_to_check",
        .use = PageUse::kReads,
        .gives = Kept::kCheckedText,
        .needs = Kept::kNameArray,
        .fields = kTemplate,
        .flow = SetStringToCheck,
        .help = "Chooses the first name of the name array whose words the page does not hold; "
                "set_number writes it.",
    },
};

constexpr CommandRow kComboTest[] = {
    {
        .name = "is_in_combo",
        .use = PageUse::kReads,
        .uses_entry = true,
        .gives = Kept::kListTest,
        .fields = kComboBox,
        .flow = IsInCombo,
        .help = "Tests whether a combo box has an option with the entry's name; the commands "
                "that end in _if_in_combo_true and _if_in_combo_false follow the answer.",
    },
    {
        .name = "is_in_combo_special_1",
        .use = PageUse::kReads,
        .uses_entry = true,
        .gives = Kept::kListTest,
        .fields = kComboBox,
        .flow = IsInComboByLabel,
        .help = "The same with the label under which some routers list a rule: Web [TCP/80~80].",
    },
};

constexpr CommandRow kFirmware[] = {
    {
        .name = "set_tomato_firmware_v1_tweak",
        .use = PageUse::kReads,
        .ask = NameOnchangeBoxes,
        .help = "Names the boxes of the page that have no name, text boxes only where they have "
                "an onchange handler: QYL_Text1, QYL_CheckBox1, QYL_DropDownBox1.",
    },
};

}  // namespace

std::optional<QString> EntryLabel(const RunArguments& entry) {
  const QString protocol = entry.entry_protocol.toLower();
  const bool is_tcp = protocol == QLatin1String("tcp") || protocol == QLatin1String("tcp/udp");
  if (!is_tcp && protocol != QLatin1String("udp")) {
    return std::nullopt;
  }
  return QStringLiteral("%1 [%2/%3~%4]")
      .arg(entry.entry_name, is_tcp ? QStringLiteral("TCP") : QStringLiteral("UDP"),
           entry.entry_start_port, entry.entry_end_port);
}

std::span<const CommandRow> NameArrayCommands() { return kNameArray; }

std::span<const CommandRow> FreeRowCommands() { return kFreeRow; }

std::span<const CommandRow> ComboTestCommands() { return kComboTest; }

std::span<const CommandRow> FirmwareCommands() { return kFirmware; }

}  // namespace quayline
