// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_fields.h"
#include "script/command_table.h"
#include "script/lint_texts.h"
#include "script/page_operations.h"
#include "script/script_line.h"
#include "script/script_texts.h"

namespace quayline {

namespace {

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
  const QStringList& markers = call.run.fields;
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
  call.LogEntryExists();
  co_return RunEnd::kEntryExists;
}

// Asks again and again: nothing signals that a page shows a text.
FlowResult WaitUntilWords(CommandCall& call, bool wanted) {
  const QString words = call.run.argument;
  const WaitLimits& limits = call.env.pages.Limits();
  for (int rounds = 0;; ++rounds) {
    const QJsonValue found = co_await call.AskOnce(page_operation::PageContainsWords(words));
    if (!call.Stopped() && found.toBool() == wanted) {
      break;
    }
    if (const auto end = call.TakeInterruption(ErrorBlock::kWords)) {
      call.env.tell_wait({});
      co_return end;
    }
    if (rounds == limits.long_wait / limits.words_poll) {
      call.env.tell_wait(QLatin1Char('"') + words + QLatin1Char('"'));
    }
    co_await call.Wait(static_cast<int>(limits.words_poll.count()), std::nullopt);
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

// Returns the address that the browser opens. It holds no login: that is given to the browser's
// login question alone. The one that the log shows holds it, the password as the user's login field
// shows it.
QString MakeAddress(CommandCall& call) {
  ScriptRun& run = call.run;
  const QString path =
      run.given.router_host + QLatin1Char('/') + run.argument + call.env.flags.url_suffix;
  run.url = run.given.http_type;
  if (LoginFitsAddress(run)) {
    run.url += run.trimmed_username + QLatin1Char(':') + run.given.shown_password.trimmed() +
               QLatin1Char('@');
  }
  run.url += path;
  return run.given.http_type + path;
}

// Some routers take a rule as parts of an address.
void NoteSentValues(CommandCall& call, const QString& address) {
  if (address.contains(QLatin1Char('?'))) {
    call.env.note_action();
    call.run.inputs += address.contains(call.run.given.entry_start_port) ? 1 : 0;
  }
}

FlowResult Nav(CommandCall& call) {
  const QString address = MakeAddress(call);
  if (const auto end = co_await call.LeavePage()) {
    co_return end;
  }
  const quint64 mark = call.MarkPage();
  NoteSentValues(call, address);
  call.env.browser()->Navigate2(address, call.run.frame_name);
  if (const auto end = co_await call.AwaitPage(mark, ErrorBlock::kAddressWithPageError)) {
    co_return end;
  }
  call.LogSuccessWith(call.run.url);
  co_return std::nullopt;
}

// Most routers come back to the page of the rules after a save.
FlowResult NavUnlessThere(CommandCall& call) {
  const QString address = MakeAddress(call);
  const PageWait& pages = call.env.pages;
  const WaitEnd end = co_await call.env.pages.UntilIdle(
      {.limit = pages.Limits().before_leaving, .shown_as = call.run.given.router_host});
  if (end == WaitEnd::kStopped || end == WaitEnd::kFailed) {
    co_return call.TakeInterruption(ErrorBlock::kAddressWithPageError);
  }
  const bool is_there = end != WaitEnd::kPending && call.run.frame_name.isEmpty() &&
                        call.env.browser()->ShowsUnchanged(address);
  if (!is_there) {
    co_return co_await Nav(call);
  }
  call.run.page_has_pending_work = false;
  call.LogLine(call.Text(script_text::kSuccessfulWith) + QStringLiteral(" (") + call.run.url +
               QStringLiteral(") ") + call.Text(script_text::kAlreadyThere));
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
  NoteSentValues(call, call.run.url);
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

constexpr FieldSpec kFrameName[] = {
    {.name = "frame name", .help = "The frame's name; empty for the whole page."}};
constexpr FieldSpec kFrameNumber[] = {
    {.name = "frame number",
     .kind = FieldKind::kWholeNumber,
     .help = "The frame, counted from 0; 0 stands for the page itself, so the first frame cannot "
             "be chosen."}};
constexpr FieldSpec kMarkers[] = {{.name = "before", .help = "The markup in front of the text."},
                                  {.name = "after", .help = "The markup after the text."}};
constexpr FieldSpec kWords[] = {command_field::kWords};
constexpr FieldSpec kPath[] = {command_field::kPath};
constexpr FieldSpec kHref[] = {command_field::kHrefText, command_field::kPosition};
constexpr FieldSpec kHrefWithLetter[] = {{.name = "href text",
                                          .kind = FieldKind::kNeededText,
                                          .inserted = Inserted::kLetter,
                                          .help = command_field::kHrefText.help},
                                         command_field::kPosition};
constexpr FieldSpec kMilliseconds[] = {command_field::kMilliseconds};

constexpr CommandRow kAddToNav{
    .name = "add_to_nav",
    .use = PageUse::kReads,
    .fields = kMarkers,
    .flow = AddToNav,
    .help =
        "Takes a text from the page that every later nav adds to its address, in this job and "
        "the following ones; a text that is not there empties it.",
};
constexpr CommandRow kNav{
    .name = "nav",
    .use = PageUse::kOpens,
    .fields = kPath,
    .flow = Nav,
    .help = "Opens a page of the router and waits until it is loaded.",
};
constexpr CommandRow kNavLink{
    .name = "nav_link",
    .use = PageUse::kOpens,
    .fields = kHref,
    .flow = NavLink,
    .help = "Opens the address of the first link that holds the text, without a click.",
};

constexpr CommandRow kNavigation[] = {
    {
        .name = "set_frame_name",
        .fields = kFrameName,
        .flow = SetFrameName,
        .help = "Every later nav and nav_link loads its page into this frame.",
    },
    {
        .name = "set_frame_number",
        .fields = kFrameNumber,
        .flow = SetFrameNumber,
        .help = "Every later command looks for its elements in this frame.",
    },
    kAddToNav,
    kAddToNav.Member("add_to_nav_first_only", kFirst),
    kAddToNav.Member("add_to_nav_last_only", kLast),
    {
        .name = "give_names_to_nameless_boxes",
        .use = PageUse::kReads,
        .flow = GiveNamesToNamelessBoxes,
        .help = "Names the boxes of the page that have no name: QYL_Text1, QYL_Text2, ..., "
                "QYL_CheckBox1, ..., QYL_DropDownBox1, ...; password boxes are left out.",
    },
    {
        .name = "check_if_name_exists",
        .use = PageUse::kReads,
        .uses_entry = true,
        .flow = CheckIfNameExists,
        .help = "Skips the entry when its name appears anywhere on the page.",
    },
    {
        .name = "wait_until_words_not_found",
        .use = PageUse::kWaits,
        .fields = kWords,
        .flow = WaitUntilWordsNotFound,
        .help = "Waits, without a limit, until the page does not hold the words.",
    },
    {
        .name = "wait_until_words_found",
        .use = PageUse::kWaits,
        .fields = kWords,
        .flow = WaitUntilWordsFound,
        .help = "Waits, without a limit, until the page holds the words.",
    },
    {
        .name = "clear_cache",
        .flow = ClearCache,
        .help = "Empties the browser's cache.",
    },
    {
        .name = "page_refresh",
        .use = PageUse::kOpens,
        .flow = PageRefresh,
        .help = "Loads the page again and waits until it is loaded.",
    },
    kNav,
    kNav.Member("nav_first_only", kFirst),
    kNav.Member("nav_last_only", kLast),
    kNav.Member("nav_if_in_combo_false", kNotInCombo),
    kNav.Member("nav_if_in_combo_true", kInCombo),
    kNavLink,
    {
        .name = "nav_link_by_letter_order",
        .use = PageUse::kOpens,
        .fields = kHrefWithLetter,
        .flow = NavLink,
        .help = "Opens the address of the first link that holds the text with the entry's letter "
                "inserted: A for the first entry, B for the second.",
    },
    kNavLink.Member("nav_link_first_only", kFirst),
    kNavLink.Member("nav_link_last_only", kLast),
    kNavLink.Member("nav_link_if_in_combo_false", kNotInCombo),
    kNavLink.Member("nav_link_if_in_combo_true", kInCombo),
};

constexpr CommandRow kTimeoutCommand{
    .name = "timeout",
    .use = PageUse::kWaits,
    .fields = kMilliseconds,
    .flow = Timeout,
    .help = "Waits for a time.",
};

// Two of these do not do what their names say. Scripts in the field rely on it.
constexpr CommandRow kTimeout[] = {
    kTimeoutCommand,
    kTimeoutCommand.Member("timeout_first_only", kFirst),
    kTimeoutCommand.Member("timeout_last_only", kNotFirst, &lint_text::kWaitsAfterTheFirst),
    kTimeoutCommand.Member("timeout_if_in_combo_false", kNotInCombo),
    kTimeoutCommand.Member("timeout_if_in_combo_true", kNotInCombo,
                           &lint_text::kWaitsWhenNotInCombo),
};

constexpr CommandRow kNavigationExtensions[] = {
    {
        .name = "nav_unless_there",
        .use = PageUse::kOpens,
        .fields = kPath,
        .flow = NavUnlessThere,
        .help = "Opens a page of the router like nav, unless it is on show, was loaded by a GET "
                "after the last thing that was done to a page, and is idle; the log then says so.",
    },
};

}  // namespace

std::span<const CommandRow> NavigationCommands() { return kNavigation; }

std::span<const CommandRow> TimeoutCommands() { return kTimeout; }

std::span<const CommandRow> NavigationExtensions() { return kNavigationExtensions; }

}  // namespace quayline
