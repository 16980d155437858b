// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>
#include <span>
#include <string_view>

#include "async/task.h"
#include "i18n/message.h"
#include "script/command_call.h"
#include "script/field_spec.h"
#include "script/page_call.h"

namespace quayline {

// When a command runs. First and last refer to the entry's place in the job.
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

// What a command does with the pages.
enum class PageUse {
  kNone,   // nothing: it keeps something for later lines
  kOpens,  // opens a page
  kReads,  // looks at the page
  kWaits,  // for a time, or for something on the page
  kFills,  // writes what the page has still to send
  kPicks,  // sets a box or chooses an item: many pages send that at once
  kActs,   // a click, a key or code, by which the page may send it
};

// What a line leaves for later ones of its pass.
enum class Kept { kNothing, kTypeChoices, kNameArray, kCurrentName, kCheckedText, kListTest };

// One command of the script language. A row holds everything about it: the interpreter tests the
// condition, reads the argument and waits for the page around the handlers; the lint, the editor
// and the reference read the same fields.
struct CommandRow {
  // The one page call whose result is logged; nothing: the command does nothing for this entry.
  using PageHandler = std::optional<PageCall> (*)(CommandCall&);
  // Carries out any other command. Nothing: the run continues.
  using FlowHandler = Task<std::optional<RunEnd>> (*)(CommandCall&);

  std::string_view name;
  // These five are for the lint of a whole script.
  PageUse use = PageUse::kNone;
  bool uses_entry = false;  // its effect depends on the entry
  bool logs_in = false;     // it types the router's password into a page
  Kept gives = Kept::kNothing;
  Kept needs = Kept::kNothing;
  Condition condition = Condition::kAlways;
  char separator = ',';  // of the argument
  // The command is a user action on the page: what earlier lines have started is waited for first.
  // After `ask` the page that the action leads to is waited for as well; `flow` waits for it
  // itself.
  bool awaits_page = false;
  // Empty: the command takes no argument. One: it contains the whole argument. More: the argument
  // is split at the separator.
  std::span<const FieldSpec> fields;
  PageHandler ask = nullptr;
  FlowHandler flow = nullptr;
  std::string_view help;  // a sentence or two; the condition is not repeated in it
  // A note for the author of a script, because the command's name says something else.
  const Message* quirk = nullptr;
  std::string_view family;  // the name of the row that this one is a member of

  // A member of this row's family: the same command under another condition.
  constexpr CommandRow Member(std::string_view member_name, Condition member_condition,
                              const Message* member_quirk = nullptr) const {
    CommandRow member = *this;
    member.name = member_name;
    member.condition = member_condition;
    member.quirk = member_quirk != nullptr ? member_quirk : quirk;
    member.family = name;
    return member;
  }
};

// The commands of the language, in the order of its reference.
std::span<const CommandRow> CommandTable();
// Commands beyond that reference, for pages that scripts build.
std::span<const CommandRow> ExtensionCommands();
// The commands of the language, and after them the extensions.
std::span<const CommandRow> AllCommands();

// The row of a name in lower case; nullptr for text that is no command: such a line is a comment.
const CommandRow* FindCommand(QStringView name);

bool ConditionHolds(Condition condition, const RunArguments& arguments, bool in_combo);

QString CommandName(const CommandRow& row);
// How the argument is written: "field,position".
QString CommandUsage(const CommandRow& row);
// How the command is written: set_name("field,position").
QString CommandShape(const CommandRow& row);

// Reads the run's argument as the row says. Field 0 becomes the argument; fields that are kept
// replace those of earlier lines where they are present; then the current name or the entry's
// letter is inserted at the position. ScriptRun::fields holds what the handler reads.
void ReadArgument(const CommandRow& row, ScriptRun& run);

// The themed parts of the table.
std::span<const CommandRow> NavigationCommands();
std::span<const CommandRow> TypingCommands();
std::span<const CommandRow> NameArrayCommands();
std::span<const CommandRow> LoginCommands();
std::span<const CommandRow> FreeRowCommands();
std::span<const CommandRow> TypeChoiceCommands();
std::span<const CommandRow> ClickCommands();
std::span<const CommandRow> NameBoxCommands();
std::span<const CommandRow> ToggleCommands();
std::span<const CommandRow> ComboCommands();
std::span<const CommandRow> PortBoxCommands();
std::span<const CommandRow> ComboTestCommands();
std::span<const CommandRow> JavaScriptCommands();
std::span<const CommandRow> FirmwareCommands();
std::span<const CommandRow> TimeoutCommands();

// The themed parts of the extensions.
std::span<const CommandRow> NavigationExtensions();
std::span<const CommandRow> EntryRowExtensions();
std::span<const CommandRow> PageElementExtensions();
std::span<const CommandRow> JavaScriptExtensions();

}  // namespace quayline
