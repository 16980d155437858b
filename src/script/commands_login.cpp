// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_fields.h"
#include "script/command_table.h"
#include "script/page_operations.h"
#include "script/script_line.h"

// Logins written into a page's own boxes, and values typed into boxes that have no usable name.
namespace quayline {

namespace {

using FlowResult = Task<std::optional<RunEnd>>;

// Moves the caret after what was written: some pages look at a box only when a key arrives.
constexpr char kRightKey[] = "{RIGHT}";

FlowResult SetLoginBox(CommandCall& call, QString value) {
  const QJsonValue result =
      co_await call.Ask(page_operation::SetElementValue(call.run.argument, value));
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.LogResult(result);
  call.SendKeys(QString::fromLatin1(kRightKey));
  co_return std::nullopt;
}

FlowResult SetUsername(CommandCall& call) { return SetLoginBox(call, call.run.given.username); }

FlowResult SetPassword(CommandCall& call) { return SetLoginBox(call, call.run.given.password); }

// The box's name ends with what another box of the page holds.
FlowResult SetPasswordCombineValueToName(CommandCall& call) {
  ScriptRun& run = call.run;
  if (!run.position.isEmpty()) {
    const QJsonValue end_of_name =
        co_await call.Ask(page_operation::GetElementValue(run.fields.value(1)));
    if (call.Stopped()) {
      co_return RunEnd::kStopped;
    }
    run.argument += end_of_name.toString();
  }
  co_return co_await SetLoginBox(call, run.given.password);
}

// Types into the box with the given number. The keys are not waited for, and they are sent whether
// the box was there or not.
FlowResult TypeByPosition(CommandCall& call, QString position, QString keys) {
  const QJsonValue result =
      co_await call.Ask(page_operation::FocusElementByPosition(WholeNumber(position).value_or(0)));
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.LogResult(result);
  call.SendKeys(keys);
  co_return std::nullopt;
}

FlowResult SetValueByPosition(CommandCall& call) {
  return TypeByPosition(call, call.run.position, call.run.argument);
}

FlowResult SetUsernameByPosition(CommandCall& call) {
  return TypeByPosition(call, call.run.argument, call.run.given.username);
}

FlowResult SetPasswordByPosition(CommandCall& call) {
  return TypeByPosition(call, call.run.argument, call.run.given.password);
}

using enum Condition;

constexpr FieldSpec kTypedValue[] = {
    {.name = "value", .help = "What is typed; + ^ % ~ { } ( ) have the meaning of keys."},
    {.name = "position",
     .kind = FieldKind::kWholeNumber,
     .kept_as = KeptAs::kPosition,
     .help = command_field::kElementNumber.help}};
constexpr FieldSpec kElementNumber[] = {command_field::kElementNumber};

constexpr CommandRow kSetValueByPosition{
    .name = "set_value_by_position",
    .use = PageUse::kFills,
    .fields = kTypedValue,
    .flow = SetValueByPosition,
    .help = "Gives the focus to an element by its number and types a value into it.",
};
constexpr CommandRow kSetPasswordByPosition{
    .name = "set_password_by_position",
    .use = PageUse::kFills,
    .logs_in = true,
    .fields = kElementNumber,
    .flow = SetPasswordByPosition,
    .help = "Gives the focus to an element by its number and types the router's password.",
};
constexpr CommandRow kSetUsernameByPosition{
    .name = "set_username_by_position",
    .use = PageUse::kFills,
    .fields = kElementNumber,
    .flow = SetUsernameByPosition,
    .help = "Gives the focus to an element by its number and types the router's user name.",
};

constexpr CommandRow kTyping[] = {
    kSetValueByPosition,
    kSetValueByPosition.Member("set_value_by_position_last_only", kLast),
    kSetValueByPosition.Member("set_value_by_position_first_only", kFirst),
    kSetPasswordByPosition,
    kSetPasswordByPosition.Member("set_password_by_position_last_only", kLast),
    kSetPasswordByPosition.Member("set_password_by_position_first_only", kFirst),
    kSetUsernameByPosition,
    kSetUsernameByPosition.Member("set_username_by_position_last_only", kLast),
    kSetUsernameByPosition.Member("set_username_by_position_first_only", kFirst),
};

constexpr FieldSpec kCombinedName[] = {
    {.name = "template",
     .inserted = Inserted::kCurrentName,
     .help = "How the name of the password box begins."},
    {.name = "other field",
     .kind = FieldKind::kElementName,
     .help = "The box whose value ends the name, where the position is not empty."},
    command_field::kPosition};

// Without a suffix, and yet for the first entry only: one login serves a whole job.
constexpr CommandRow kLogin[] = {
    {
        .name = "set_username",
        .use = PageUse::kFills,
        .condition = kFirst,
        .fields = command_field::kBoxPosition,
        .flow = SetUsername,
        .help = "Writes the router's user name into a text box.",
    },
    {
        .name = "set_password",
        .use = PageUse::kFills,
        .logs_in = true,
        .condition = kFirst,
        .fields = command_field::kBoxPosition,
        .flow = SetPassword,
        .help = "Writes the router's password into a text box.",
    },
    {
        .name = "set_password_combine_value_to_name",
        .use = PageUse::kFills,
        .logs_in = true,
        .condition = kFirst,
        .fields = kCombinedName,
        .flow = SetPasswordCombineValueToName,
        .help = "Writes the router's password into the box whose name ends with the value of "
                "another box.",
    },
};

}  // namespace

std::span<const CommandRow> TypingCommands() { return kTyping; }

std::span<const CommandRow> LoginCommands() { return kLogin; }

}  // namespace quayline
