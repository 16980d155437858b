// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_call.h"

#include <QPointer>

#include "script/page_operations.h"
#include "script/script_texts.h"

namespace quayline {

namespace {

using std::chrono::milliseconds;

// A page that leaves for another as soon as it is there is followed that often; then the script
// goes on with what it finds.
constexpr int kMaxHops = 10;

// A wait that is longer than this is told to the user.
constexpr milliseconds kLongWait(1500);

// How long a navigation waits for one that is still under way. Longer than any save takes, and the
// pages that never report their end are few.
constexpr milliseconds kSaveGrace(5000);
constexpr milliseconds kLastSaveGrace(30000);  // nobody is in a hurry behind a job

bool IsMissing(const QJsonValue& result) {
  return result == QLatin1String(page_result::kFailed) ||
         result == QLatin1String(page_result::kFailedLink);
}

}  // namespace

void CommandCall::LogResult(const QJsonValue& result) const {
  const QString text = result.toString();
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
  call.frame = run.frame_number;
  const QJsonValue answer = co_await AskOnce(call);
  const quint64 starts = env.browsers.Navigation().starts;
  if (!IsMissing(answer) || !run.page_is_working || run.missed_at == starts || Stopped()) {
    co_return answer;
  }
  // Once a page: it may have a clock that never rests.
  run.missed_at = starts;
  co_await LetWorkEnd();
  if (Stopped()) {
    co_return answer;
  }
  co_return co_await AskOnce(call);
}

Task<QJsonValue> CommandCall::AskOnce(const PageCall& call) const {
  PageHost* const host = env.browser();
  OneShot<PageAnswer> answer;
  host->Call(call, answer.Callback());
  GiveUpWithRun(answer, host);
  const std::optional<PageAnswer> got = co_await answer;
  run.markup_state = got ? got->markup_state : QString();
  run.page_is_working = got ? got->is_working : run.page_is_working;
  co_return got && got->answered ? got->value : call.if_gone;
}

Task<> CommandCall::RunInPage(QString code) const {
  PageHost* const host = env.browser();
  OneShot<bool> ran;
  host->RunInPage(code, [done = ran.Callback()] { done(true); });
  GiveUpWithRun(ran, host);
  co_await ran;
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
  BrowserSet& browsers = env.browsers;
  JobFlags& flags = env.flags;
  const auto interrupted = [&flags] {
    return flags.PageErrorPending() || flags.JobStopRequested();
  };
  run.page_is_working = false;
  run.missed_at.reset();
  for (int hop = 0; hop < kMaxHops; ++hop) {
    const auto begun = [&browsers, mark] {
      return browsers.Navigation().busy || browsers.Navigation().starts != mark;
    };
    bool quiet = false;
    if (!begun() && !interrupted()) {
      PageHost* const host = env.browser();
      OneShot<bool> proof;
      host->ProveQuiet([done = proof.Callback()] { done(true); });
      proof.GiveUpWhen(&browsers, &BrowserSet::navigationChanged, begun);
      proof.GiveUpWhen(&browsers, &BrowserSet::activeChanged,
                       [this, host] { return env.browser() != host; });
      proof.GiveUpWhen(&flags, &JobFlags::changed, interrupted);
      const std::optional<bool> proven = co_await proof;
      quiet = proven.has_value();
    }
    if (const auto end = TakeInterruption(block)) {
      co_return end;
    }
    if (!begun()) {
      if (quiet) {
        co_return std::nullopt;
      }
      continue;  // the browser that was asked is gone: ask the one on show
    }
    run.markup_state.clear();
    // The user's "proceed" says that the page is loaded while the browser still denies it.
    const auto arrived = [&browsers, &flags] {
      return !browsers.Navigation().busy || flags.PageLoaded();
    };
    const auto over = [arrived, interrupted] { return arrived() || interrupted(); };
    const bool soon = co_await Until(over)
                          .WokenBy(&browsers, &BrowserSet::navigationChanged)
                          .WokenBy(&flags, &JobFlags::changed)
                          .AtMost(kLongWait);
    if (!soon) {
      env.tell_wait(run.given.router_host);  // the last address may show the password
      co_await Until(over)
          .WokenBy(&browsers, &BrowserSet::navigationChanged)
          .WokenBy(&flags, &JobFlags::changed);
      env.tell_wait({});
    }
    if (const auto end = TakeInterruption(block)) {
      co_return end;
    }
    if (browsers.Navigation().busy) {
      co_return std::nullopt;  // released by the user
    }
    mark = browsers.Navigation().starts;
  }
  co_return std::nullopt;
}

Task<> CommandCall::LetWorkEnd() const {
  BrowserSet& browsers = env.browsers;
  JobFlags& flags = env.flags;
  const auto interrupted = [&flags] {
    return flags.JobStopRequested() || flags.PageErrorPending();
  };
  if (std::exchange(run.page_is_working, false)) {
    OneShot<bool> proof;
    env.browser()->ProveQuiet([done = proof.Callback()] { done(true); });
    proof.GiveUpWhen(&browsers, &BrowserSet::navigationChanged,
                     [&browsers] { return browsers.Navigation().busy; });
    proof.GiveUpWhen(&flags, &JobFlags::changed, interrupted);
    proof.GiveUpAfter(kSaveGrace);
    co_await proof;
  }
  co_await Until([&] { return !browsers.Navigation().busy || interrupted(); })
      .WokenBy(&browsers, &BrowserSet::navigationChanged)
      .WokenBy(&flags, &JobFlags::changed)
      .AtMost(kSaveGrace);
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

void CommandCall::TakeFields(int count) {
  const QStringList fields = run.argument.split(QLatin1Char(','));
  run.argument = fields.first();
  if (count > 1 && fields.size() > 1) {
    run.position = fields[1];
  }
  if (count > 2 && fields.size() > 2) {
    run.extra_field = fields[2];
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

Task<> LetPagesComeToRest(RunEnvironment& environment) {
  BrowserSet& browsers = environment.browsers;
  JobFlags& flags = environment.flags;
  const auto over = [&browsers, &flags] {
    return !browsers.Navigation().busy || flags.JobStopRequested();
  };
  co_await Until(over)
      .WokenBy(&browsers, &BrowserSet::navigationChanged)
      .WokenBy(&flags, &JobFlags::changed)
      .AtMost(kLastSaveGrace);
  if (flags.JobStopRequested()) {
    co_return;
  }
  OneShot<bool> proof;
  environment.browser()->ProveQuiet([done = proof.Callback()] { done(true); });
  proof.GiveUpWhen(&flags, &JobFlags::changed, [&flags] { return flags.JobStopRequested(); });
  proof.GiveUpAfter(kLastSaveGrace);
  co_await proof;
  co_await Until(over)
      .WokenBy(&browsers, &BrowserSet::navigationChanged)
      .WokenBy(&flags, &JobFlags::changed)
      .AtMost(kLastSaveGrace);
}

}  // namespace quayline
