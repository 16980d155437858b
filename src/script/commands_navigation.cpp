// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_table.h"
#include "script/page_operations.h"
#include "script/script_line.h"
#include "script/script_texts.h"

namespace quayline {

namespace {

constexpr int kWordsPollMs = 10;

using FlowResult = Task<std::optional<RunEnd>>;

FlowResult SetFrameName(CommandCall& call) {
  call.run.frame_name = call.run.argument;
  co_return std::nullopt;
}

FlowResult SetFrameNumber(CommandCall& call) {
  call.run.frame_number = WholeNumber(call.run.argument).value_or(call.run.frame_number);
  co_return std::nullopt;
}

FlowResult AddToNav(CommandCall& call) {
  const QStringList markers = call.run.argument.split(QLatin1Char(','));
  const QJsonValue found =
      co_await call.Ask(page_operation::ExtractBetweenMarkers(markers[0], markers.value(1)));
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.env.flags.url_suffix = found.toString();
  co_return std::nullopt;
}

FlowResult GiveNamesToNamelessBoxes(CommandCall& call) {
  co_await call.Ask(page_operation::NameNamelessBoxes());
  co_return std::nullopt;
}

FlowResult CheckIfNameExists(CommandCall& call) {
  const QString& name = call.run.given.entry_name;
  const QJsonValue exists = co_await call.Ask(page_operation::PageContainsWords(name));
  if (!exists.toBool()) {
    co_return std::nullopt;
  }
  call.env.log.Append(LineBreak());
  call.LogLine(call.Text(script_text::kThisEntry) + QStringLiteral(" (") + name +
               QStringLiteral(") ") + call.Text(script_text::kAlreadyExists));
  call.LogLine(LogSeparator());
  call.env.log.Append(LineBreak());
  co_return RunEnd::kEntryExists;
}

// Asks again and again: nothing signals that a page shows a text.
FlowResult WaitUntilWords(CommandCall& call, bool wanted) {
  const QString words = call.run.argument;
  for (int rounds = 0;; ++rounds) {
    const QJsonValue found = co_await call.AskOnce(page_operation::PageContainsWords(words));
    if (!call.Stopped() && found.toBool() == wanted) {
      break;
    }
    if (const auto end = call.TakeInterruption(ErrorBlock::kWords)) {
      call.env.tell_wait({});
      co_return end;
    }
    constexpr int kTellAfterRounds = 150;
    if (rounds == kTellAfterRounds) {
      call.env.tell_wait(QLatin1Char('"') + words + QLatin1Char('"'));
    }
    co_await call.Wait(kWordsPollMs, std::nullopt);
  }
  call.env.tell_wait({});
  call.LogLine(call.Text(script_text::kWordsSuccessful) + QLatin1Char(' ') + words +
               QLatin1Char(' ') +
               call.Text(wanted ? script_text::kFoundOnPage : script_text::kNotFoundOnPage));
  co_return std::nullopt;
}

FlowResult WaitUntilWordsFound(CommandCall& call) { return WaitUntilWords(call, true); }

FlowResult WaitUntilWordsNotFound(CommandCall& call) { return WaitUntilWords(call, false); }

FlowResult ClearCache(CommandCall& call) {
  call.LogLine(call.Text(script_text::kClearingCache));
  const bool cleared = co_await call.ClearCache();
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.LogLine(call.Text(cleared ? script_text::kCacheCleared : script_text::kClearingFailed));
  co_return std::nullopt;
}

FlowResult PageRefresh(CommandCall& call) {
  if (const auto end = co_await call.LeavePage()) {
    co_return end;
  }
  const quint64 mark = call.MarkPage();
  call.env.browser()->Refresh2();
  if (const auto end = co_await call.AwaitPage(mark, ErrorBlock::kAddressWithPageError)) {
    co_return end;
  }
  call.LogLine(call.Text(script_text::kPageRefreshed));
  co_return std::nullopt;
}

// Whether an address may carry the login: its parts must not be mistaken for the separators.
bool LoginFitsAddress(const ScriptRun& run) {
  const auto HoldsSeparator = [](const QString& text) {
    return text.contains(QLatin1Char(':')) || text.contains(QLatin1Char('@'));
  };
  return !(run.trimmed_username.isEmpty() && run.trimmed_password.isEmpty()) &&
         !HoldsSeparator(run.trimmed_username) && !HoldsSeparator(run.given.password);
}

// The address that the browser opens holds no login: that is given to the browser's login question
// alone. The one that the log shows holds it, the password as the user's login field shows it.
FlowResult Nav(CommandCall& call) {
  ScriptRun& run = call.run;
  const QString path =
      run.given.router_host + QLatin1Char('/') + run.argument + call.env.flags.url_suffix;
  run.url = run.given.http_type;
  if (LoginFitsAddress(run)) {
    run.url += run.trimmed_username + QLatin1Char(':') + run.given.shown_password.trimmed() +
               QLatin1Char('@');
  }
  run.url += path;
  if (const auto end = co_await call.LeavePage()) {
    co_return end;
  }
  const quint64 mark = call.MarkPage();
  call.env.browser()->Navigate2(run.given.http_type + path, run.frame_name);
  if (const auto end = co_await call.AwaitPage(mark, ErrorBlock::kAddressWithPageError)) {
    co_return end;
  }
  call.LogSuccessWith(run.url);
  co_return std::nullopt;
}

FlowResult NavLink(CommandCall& call) {
  const QJsonValue href = co_await call.Ask(page_operation::FindLinkByHref(call.run.argument));
  if (call.Stopped()) {
    co_return RunEnd::kStopped;
  }
  call.run.url = href.toString();
  if (call.run.url.isEmpty()) {
    call.LogLine(call.Text(script_text::kLinkNotFound));
    co_return std::nullopt;
  }
  if (const auto end = co_await call.LeavePage()) {
    co_return end;
  }
  const quint64 mark = call.MarkPage();
  call.env.browser()->Navigate2(call.run.url, call.run.frame_name);
  if (const auto end = co_await call.AwaitPage(mark, ErrorBlock::kAddressWithPageError)) {
    co_return end;
  }
  call.LogSuccessWith(call.run.url);
  co_return std::nullopt;
}

FlowResult Timeout(CommandCall& call) {
  call.SetTimer(call.run.argument);
  if (const auto end = co_await call.Wait(call.env.flags.script_timer_ms, std::nullopt)) {
    co_return end;
  }
  call.LogLine(call.Text(script_text::kSuccessful));
  co_return std::nullopt;
}

using enum Condition;
using enum Shape;

constexpr CommandRow kNavigation[] = {
    {.name = "set_frame_name",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "frame name",
     .flow = SetFrameName},
    {.name = "set_frame_number",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "frame number",
     .flow = SetFrameNumber},
    {.name = "add_to_nav",
     .condition = kAlways,
     .shape = kOwn,
     .usage = "before,after",
     .flow = AddToNav},
    {.name = "add_to_nav_first_only",
     .condition = kFirst,
     .shape = kOwn,
     .usage = "before,after",
     .flow = AddToNav},
    {.name = "add_to_nav_last_only",
     .condition = kLast,
     .shape = kOwn,
     .usage = "before,after",
     .flow = AddToNav},
    {.name = "give_names_to_nameless_boxes",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "",
     .flow = GiveNamesToNamelessBoxes},
    {.name = "check_if_name_exists",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "",
     .flow = CheckIfNameExists},
    {.name = "wait_until_words_not_found",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "words",
     .flow = WaitUntilWordsNotFound},
    {.name = "wait_until_words_found",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "words",
     .flow = WaitUntilWordsFound},
    {.name = "clear_cache", .condition = kAlways, .shape = kWhole, .usage = "", .flow = ClearCache},
    {.name = "page_refresh",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "",
     .flow = PageRefresh},
    {.name = "nav", .condition = kAlways, .shape = kWhole, .usage = "path", .flow = Nav},
    {.name = "nav_first_only", .condition = kFirst, .shape = kWhole, .usage = "path", .flow = Nav},
    {.name = "nav_last_only", .condition = kLast, .shape = kWhole, .usage = "path", .flow = Nav},
    {.name = "nav_if_in_combo_false",
     .condition = kNotInCombo,
     .shape = kWhole,
     .usage = "path",
     .flow = Nav},
    {.name = "nav_if_in_combo_true",
     .condition = kInCombo,
     .shape = kWhole,
     .usage = "path",
     .flow = Nav},
    {.name = "nav_link",
     .condition = kAlways,
     .shape = kPosition,
     .usage = "href text,position",
     .flow = NavLink},
    {.name = "nav_link_by_letter_order",
     .condition = kAlways,
     .shape = kPositionByLetter,
     .usage = "href text,position",
     .flow = NavLink},
    {.name = "nav_link_first_only",
     .condition = kFirst,
     .shape = kPosition,
     .usage = "href text,position",
     .flow = NavLink},
    {.name = "nav_link_last_only",
     .condition = kLast,
     .shape = kPosition,
     .usage = "href text,position",
     .flow = NavLink},
    {.name = "nav_link_if_in_combo_false",
     .condition = kNotInCombo,
     .shape = kPosition,
     .usage = "href text,position",
     .flow = NavLink},
    {.name = "nav_link_if_in_combo_true",
     .condition = kInCombo,
     .shape = kPosition,
     .usage = "href text,position",
     .flow = NavLink},
};

// Two of these do not do what their names say. Scripts in the field rely on it.
constexpr CommandRow kTimeout[] = {
    {.name = "timeout",
     .condition = kAlways,
     .shape = kWhole,
     .usage = "milliseconds",
     .flow = Timeout},
    {.name = "timeout_first_only",
     .condition = kFirst,
     .shape = kWhole,
     .usage = "milliseconds",
     .flow = Timeout},
    {.name = "timeout_last_only",
     .condition = kNotFirst,
     .shape = kWhole,
     .usage = "milliseconds",
     .flow = Timeout},
    {.name = "timeout_if_in_combo_false",
     .condition = kNotInCombo,
     .shape = kWhole,
     .usage = "milliseconds",
     .flow = Timeout},
    {.name = "timeout_if_in_combo_true",
     .condition = kNotInCombo,
     .shape = kWhole,
     .usage = "milliseconds",
     .flow = Timeout},
};

}  // namespace

std::span<const CommandRow> NavigationCommands() { return kNavigation; }

std::span<const CommandRow> TimeoutCommands() { return kTimeout; }

}  // namespace quayline
