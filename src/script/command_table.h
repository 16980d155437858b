// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "async/task.h"
#include "script/command_call.h"
#include "script/page_call.h"

namespace quayline {

// When a command runs. First and last speak of the entry's place in the job.
enum class Condition {
  kAlways,
  kFirst,
  kNotFirst,
  kLast,
  kNotLast,
  kInCombo,
  kNotInCombo,
  kFirstInCombo,
  kFirstNotInCombo,
};

// How a command reads its argument.
enum class Shape {
  kWhole,             // not split
  kPosition,          // field, position; the current name goes into the field at the position
  kPositionExtra,     // field, position, value; likewise
  kPositionByLetter,  // field, position; the entry's letter goes in
  kOwn,               // the handler splits it
};

// One command of the script language. A row holds everything about it; the interpreter tests the
// condition, reads the argument and waits for the page around the handlers.
struct CommandRow {
  // Makes the one question to the page whose result is logged; nothing: the command has nothing to
  // do for this entry.
  using PageHandler = std::optional<PageCall> (*)(CommandCall&);
  // Does whatever else a command does. Nothing: the run goes on.
  using FlowHandler = Task<std::optional<RunEnd>> (*)(CommandCall&);

  std::string_view name;
  Condition condition;
  Shape shape;
  // How the argument is written, for people: "field,position".
  std::string_view usage;
  PageHandler ask = nullptr;
  FlowHandler flow = nullptr;
  bool awaits_page = false;  // for `ask`: the page may load afterwards
};

// All commands, in the order of the language's reference.
const std::vector<CommandRow>& CommandTable();

// The row of a name in lower case; nullptr for text that is no command, which serves as a comment.
const CommandRow* FindCommand(QStringView name);

bool ConditionHolds(Condition condition, const RunArguments& arguments, bool in_combo);

// The themed parts of the table.
std::span<const CommandRow> NavigationCommands();
std::span<const CommandRow> TypingCommands();
std::span<const CommandRow> NameArrayCommands();
std::span<const CommandRow> LoginCommands();
std::span<const CommandRow> FreeRowCommands();
std::span<const CommandRow> TypeChoiceCommands();
std::span<const CommandRow> ClickCommands();
std::span<const CommandRow> FieldCommands();
std::span<const CommandRow> ComboTestCommands();
std::span<const CommandRow> JavaScriptCommands();
std::span<const CommandRow> FirmwareCommands();
std::span<const CommandRow> TimeoutCommands();

}  // namespace quayline
