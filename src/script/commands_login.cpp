// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_table.h"
#include "script/page_operations.h"
#include "script/script_line.h"

// Logins written into a page's own boxes, and values typed into boxes that have no usable name.
namespace quayline {

namespace {

using FlowResult = Task<std::optional<RunEnd>>;

// Moves the caret behind what was written: some pages look at a box only when a key arrives.
constexpr char kRightKey[] = "{RIGHT}";

FlowResult SetLoginBox(CommandCall& call, QString value) {
  const QJsonValue result =
      co_await call.Ask(page_operation::SetElementValue(call.run.argument, value));
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.LogResult(result);
  call.env.browser()->SendKeys(QString::fromLatin1(kRightKey));
  co_return std::nullopt;
}

FlowResult SetUsername(CommandCall& call) { return SetLoginBox(call, call.run.given.username); }

FlowResult SetPassword(CommandCall& call) { return SetLoginBox(call, call.run.given.password); }

// The box's name ends with what another box of the page holds.
FlowResult SetPasswordCombineValueToName(CommandCall& call) {
  ScriptRun& run = call.run;
  const QStringList fields = run.argument.split(QLatin1Char(','));
  run.argument = fields[0];
  if (fields.size() > 2) {
    run.position = fields[2];
  }
  QJsonValue end_of_name = QString();
  if (!run.position.isEmpty()) {
    end_of_name = co_await call.Ask(page_operation::GetElementValue(fields.value(1)));
    if (call.Stopped()) {
      co_return RunEnd::kStopped;
    }
    run.argument = InsertAt(run.argument, run.position, run.current_name) + end_of_name.toString();
  }
  co_return co_await SetLoginBox(call, run.given.password);
}

// Types into the box with the given number. Nobody waits for the keys, and they are sent whether
// the box was there or not.
FlowResult TypeByPosition(CommandCall& call, QString position, QString keys) {
  const QJsonValue result =
      co_await call.Ask(page_operation::FocusElementByPosition(WholeNumber(position).value_or(0)));
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.LogResult(result);
  call.env.browser()->SendKeys(keys);
  co_return std::nullopt;
}

FlowResult SetValueByPosition(CommandCall& call) {
  call.TakeFields(2);
  return TypeByPosition(call, call.run.position, call.run.argument);
}

FlowResult SetUsernameByPosition(CommandCall& call) {
  return TypeByPosition(call, call.run.argument, call.run.given.username);
}

FlowResult SetPasswordByPosition(CommandCall& call) {
  return TypeByPosition(call, call.run.argument, call.run.given.password);
}

using enum Condition;
using enum Shape;

constexpr CommandRow kTyping[] = {
    {.name = "set_value_by_position",
     .condition = kAlways,
     .shape = kOwn,
     .usage = "value,position",
     .flow = SetValueByPosition},
    {.name = "set_value_by_position_last_only",
     .condition = kLast,
     .shape = kOwn,
     .usage = "value,position",
     .flow = SetValueByPosition},
    {.name = "set_value_by_position_first_only",
     .condition = kFirst,
     .shape = kOwn,
     .usage = "value,position",
     .flow = SetValueByPosition},
    {.name = "set_password_by_position",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "position",
     .flow = SetPasswordByPosition},
    {.name = "set_password_by_position_last_only",
     .condition = kLast,
     .shape = kWhole,
     .usage = "position",
     .flow = SetPasswordByPosition},
    {.name = "set_password_by_position_first_only",
     .condition = kFirst,
     .shape = kWhole,
     .usage = "position",
     .flow = SetPasswordByPosition},
    {.name = "set_username_by_position",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "position",
     .flow = SetUsernameByPosition},
    {.name = "set_username_by_position_last_only",
     .condition = kLast,
     .shape = kWhole,
     .usage = "position",
     .flow = SetUsernameByPosition},
    {.name = "set_username_by_position_first_only",
     .condition = kFirst,
     .shape = kWhole,
     .usage = "position",
     .flow = SetUsernameByPosition},
};

// Without a suffix, and yet for the first entry only: one login serves a whole job.
constexpr CommandRow kLogin[] = {
    {.name = "set_username",
     .condition = kFirst,
     .shape = kPosition,
     .usage = "field,position",
     .flow = SetUsername},
    {.name = "set_password",
     .condition = kFirst,
     .shape = kPosition,
     .usage = "field,position",
     .flow = SetPassword},
    {.name = "set_password_combine_value_to_name",
     .condition = kFirst,
     .shape = kOwn,
     .usage = "template,other field,position",
     .flow = SetPasswordCombineValueToName},
};

}  // namespace

std::span<const CommandRow> TypingCommands() { return kTyping; }

std::span<const CommandRow> LoginCommands() { return kLogin; }

}  // namespace quayline
