// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_call.h"

#include <QDeadlineTimer>
#include <QPointer>

#include <utility>

#include "script/page_operations.h"
#include "script/script_texts.h"

namespace quayline {

namespace {

using std::chrono::milliseconds;

// What a script of the page may know of the entry: never the login.
QJsonObject EntryOfScript(const RunArguments& entry) {
  return {{QStringLiteral("name"), entry.entry_name},
          {QStringLiteral("ip"), entry.entry_ip},
          {QStringLiteral("startPort"), entry.entry_start_port},
          {QStringLiteral("endPort"), entry.entry_end_port},
          {QStringLiteral("protocol"), entry.entry_protocol},
          {QStringLiteral("computerName"), entry.entry_computer_name}};
}

bool IsMissing(const QJsonValue& result) {
  return result == QLatin1String(page_result::kFailed) ||
         result == QLatin1String(page_result::kFailedLink);
}

bool IsNegative(const QJsonValue& result) {
  return IsMissing(result) || result == QJsonValue(false) || result == QJsonValue(QString());
}

}  // namespace

void CommandCall::LogEntryExists() const {
  env.log.Append(LineBreak());
  LogLine(Text(script_text::kThisEntry) + QStringLiteral(" (") + run.given.entry_name +
          QStringLiteral(") ") + Text(script_text::kAlreadyExists));
  LogLine(LogSeparator());
  env.log.Append(LineBreak());
}

void CommandCall::LogEntrySkipped(const QString& why) const {
  env.log.Append(LineBreak());
  LogLine(why);
  LogLine(Text(script_text::kEntrySkipped));
  LogLine(LogSeparator());
  env.log.Append(LineBreak());
}

void CommandCall::LogResult(const QJsonValue& result) const {
  const QString text = result.toString();
  run.was_found = result != QLatin1String(page_result::kFailed);
  env.steps_not_found += IsMissing(result) ? 1 : 0;
  if (text == QLatin1String(page_result::kSuccessful)) {
    LogLine(Text(script_text::kSuccessful));
  } else if (text == QLatin1String(page_result::kFailed)) {
    LogLine(Text(script_text::kObjectNotFound));
  } else if (text == QLatin1String(page_result::kFailedLink)) {
    LogLine(Text(script_text::kLinkNotFound));
  } else {
    LogLine(text);
  }
}

void CommandCall::LogSuccessWith(const QString& value) const {
  LogLine(Text(script_text::kSuccessfulWith) + QStringLiteral(" (") + value + QLatin1Char(')'));
}

template <typename T>
void CommandCall::GiveUpWithRun(OneShot<T>& answer, PageHost* host) const {
  answer.GiveUpWhen(&env.flags, &JobFlags::changed,
                    [flags = &env.flags] { return flags->JobStopRequested(); });
  answer.GiveUpWhen(host, &QObject::destroyed,
                    [alive = QPointer<PageHost>(host)] { return alive.isNull(); });
}

Task<QJsonValue> CommandCall::Ask(PageCall call) const {
  QJsonValue answer = co_await AskOnce(call);
  const QDeadlineTimer limit(env.pages.Limits().missing);
  while (IsNegative(answer) && run.page_has_pending_work && run.missed_at != MarkPage() &&
         !Stopped()) {
    const WaitLimits::Time left(limit.remainingTime());
    const WaitEnd end = co_await env.pages.UntilIdle({.limit = left});
    if (end == WaitEnd::kStopped || end == WaitEnd::kFailed) {
      break;
    }
    const bool is_missing = IsMissing(answer);
    answer = co_await AskOnce(call);
    if (limit.hasExpired() || !is_missing) {
      // Once a page: it may have work that never ends.
      run.missed_at = MarkPage();
    }
  }
  co_return answer;
}

Task<QJsonValue> CommandCall::AskOnce(PageCall call) const {
  call.frame = run.frame_number;
  run.inputs += call.kind == PageCallKind::kInput || call.kind == PageCallKind::kChoice ? 1 : 0;
  const bool was_settled = std::exchange(run.is_settled, false);
  if (call.IsUserAction()) {
    env.note_action();
  }
  PageHost* const host = env.browser();
  OneShot<PageAnswer> answer;
  host->Call(call, answer.Callback());
  GiveUpWithRun(answer, host);
  const std::optional<PageAnswer> got = co_await answer;
  const QString before = std::exchange(run.markup_state, got ? got->markup_state : QString());
  run.is_settled = was_settled && !call.IsUserAction() && run.markup_state == before;
  if (got) {
    NoteComplaints(got->markup_state, got->complaints);
  }
  run.page_has_pending_work = got ? got->is_working : run.page_has_pending_work;
  co_return got && got->answered ? got->value : call.if_gone;
}

void CommandCall::NoteComplaints(const QString& state,
                                 const std::optional<QStringList>& texts) const {
  if (texts && !state.isEmpty()) {
    run.complaints = {.page = MarkPage(), .markup_state = state, .texts = *texts};
  }
}

void CommandCall::SendKeys(const QString& keys) const {
  run.is_settled = false;
  env.note_action();
  env.browser()->SendKeys(keys);
}

Task<QString> CommandCall::RunInPage(QString code) const {
  run.is_settled = false;
  env.note_action();
  PageHost* const host = env.browser();
  OneShot<QString> ran;
  host->RunInPage({.code = code, .entry = EntryOfScript(run.given)}, ran.Callback());
  GiveUpWithRun(ran, host);
  const std::optional<QString> error = co_await ran;
  co_return error.value_or(QString());
}

Task<> CommandCall::ShowNearestNames(QString name) const {
  const QJsonValue answer = co_await AskOnce(page_operation::NearestNames(name));
  QStringList names;
  for (const QVariant& each : answer.toArray().toVariantList()) {
    names.append(each.toString().simplified());
  }
  // The element may be there and lack what was to be chosen in it.
  if (!names.isEmpty() && !names.contains(name, Qt::CaseInsensitive)) {
    env.show_status(Text(script_text::kNearestNames).arg(name, names.join(QStringLiteral(", "))));
  }
}

Task<bool> CommandCall::ClearCache() const {
  PageHost* const host = env.browser();
  OneShot<bool> cleared;
  host->ClearCache(cleared.Callback());
  GiveUpWithRun(cleared, host);
  const std::optional<bool> done = co_await cleared;
  co_return done.value_or(false);
}

Task<std::optional<RunEnd>> CommandCall::AwaitPage(quint64 mark, ErrorBlock block) {
  run.page_has_pending_work = false;
  run.missed_at.reset();
  // The last address may show the password: the wait is shown as the router's.
  const WaitEnd end =
      co_await env.pages.UntilIdle({.since = mark, .shown_as = run.given.router_host});
  if (end != WaitEnd::kIdle) {
    run.markup_state.clear();
  }
  const QString& state = env.pages.SettledState();
  run.is_settled = run.frame_number == 0 && !state.isEmpty();
  if (run.is_settled) {
    run.markup_state = state;
    NoteComplaints(state, env.pages.Complaints());
  }
  co_return EndOf(end, block);
}

Task<std::optional<RunEnd>> CommandCall::LeavePage() const {
  WaitEnd end = WaitEnd::kIdle;
  const bool is_pending = std::exchange(run.page_has_pending_work, false);
  if (is_pending || env.browsers.Navigation().busy || env.pages.LaterTimers() > 0) {
    end = co_await env.pages.UntilIdle(
        {.limit = env.pages.Limits().before_leaving, .shown_as = run.given.router_host});
  }
  if (end == WaitEnd::kPending || env.pages.LaterTimers() > 0) {
    LogLine(Text(script_text::kPendingWorkLost));
  }
  co_return end == WaitEnd::kStopped ? std::optional(RunEnd::kStopped) : std::nullopt;
}

std::optional<RunEnd> CommandCall::EndOf(WaitEnd end, ErrorBlock block) {
  return end == WaitEnd::kFailed || end == WaitEnd::kStopped ? TakeInterruption(block)
                                                             : std::nullopt;
}

std::optional<RunEnd> CommandCall::TakeInterruption(ErrorBlock block) {
  if (env.flags.PageErrorPending()) {
    LogErrorBlock(block);
    env.flags.SetPageErrorPending(false);
    return RunEnd::kPageError;
  }
  if (env.flags.JobStopRequested()) {
    return RunEnd::kStopped;
  }
  return std::nullopt;
}

Task<std::optional<RunEnd>> CommandCall::Wait(int time_ms, std::optional<ErrorBlock> block) {
  run.is_settled = false;
  JobFlags& flags = env.flags;
  const auto interrupted = [&flags, heeds_errors = block.has_value()] {
    return flags.JobStopRequested() || (heeds_errors && flags.PageErrorPending());
  };
  Until wait = Until(interrupted).WokenBy(&flags, &JobFlags::changed);
  if (time_ms > 0) {
    wait = std::move(wait).AtMost(milliseconds(time_ms));
  }
  co_await wait;
  if (block) {
    co_return TakeInterruption(*block);
  }
  co_return flags.JobStopRequested() ? std::optional(RunEnd::kStopped) : std::nullopt;
}

void CommandCall::SetTimer(const QString& time_ms) const {
  if (const std::optional<int> time = WholeNumber(time_ms); time && *time >= 0) {
    env.flags.script_timer_ms = *time;
  }
}

void CommandCall::LogErrorBlock(ErrorBlock block) const {
  const auto Line = [](const QString& text) { return LineBreak() + text; };
  QString what;
  switch (block) {
    case ErrorBlock::kAddress:
    case ErrorBlock::kAddressWithPageError:
      what = Text(script_text::kErrorNavigating) + QLatin1Char(' ') + run.given.http_type +
             run.given.router_host + QLatin1Char('/') + run.argument + QLatin1Char(')');
      break;
    case ErrorBlock::kWords:
      what = Text(script_text::kErrorOnWords);
      break;
    case ErrorBlock::kJavaScript:
      what = Text(script_text::kErrorInJavaScript);
      break;
  }
  env.log.Append(LineBreak());
  env.log.Append(Line(what) + Line(Text(script_text::kEntrySkipped)) +
                 Line(Text(script_text::kCheckRouterInfo)));
  env.log.Append(Line(LogSeparator()));
  if (block == ErrorBlock::kAddressWithPageError) {
    env.log.Append(Line(env.flags.last_page_error));
    env.log.Append(Line(LogSeparator()));
  }
  env.log.Append(LineBreak());
}

}  // namespace quayline
