// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/job_runner.h"

#include <QScopeGuard>

#include "core/text_bytes.h"
#include "i18n/isolated.h"
#include "script/command_call.h"
#include "script/entry_arguments.h"
#include "script/interpreter.h"
#include "script/job_texts.h"
#include "script/rule_reader.h"
#include "script/rule_removal.h"

namespace quayline {

namespace {

PassEnd PassEndOf(RunEnd end) {
  switch (end) {
    case RunEnd::kAllLinesDone:
      return PassEnd::kDone;
    case RunEnd::kEntryExists:
      return PassEnd::kExisted;
    case RunEnd::kPageError:
      return PassEnd::kFailed;
    case RunEnd::kStopped:
      return PassEnd::kStopped;
  }
  return PassEnd::kStopped;
}

}  // namespace

JobRunner::JobRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
                     QObject* parent)
    : ScriptRunner(context, std::move(make_host), questions, kRunnerTexts,
                   context.job_flags.active_browser_index, parent),
      record_(context) {
  connect(&log_, &JobLog::appended, this, [this](const QString& text) { record_.NoteLog(text); });
}

JobRunner::~JobRunner() { CancelRun(); }

void JobRunner::Open() {
  if (!router_) {
    router_ = context_.session;
  }
  OpenBrowsers([](const BrowserSet& browsers) { return browsers.Active(); });
  context_.job_flags.job_error_grace = 1;
  context_.job_flags.in_combo = false;
  log_.Append(LineBreak() + Text(job_text::kRouter) + QLatin1Char(' ') +
              OnOneLine(Router().router_name));
  log_.Append(LineBreak() + Text(job_text::kLoadingCommands));
  Q_EMIT errorsCleared();
  Q_EMIT busyChanged(true);
}

void JobRunner::TakeOverRules(const JobRunner& former) {
  if (former.router_ && former.IsRouterChosen() && IsRouterChosen()) {
    record_.TakeOverRules(former.record_);
  }
}

bool JobRunner::IsRouterChosen() const {
  return !router_ || (router_->chosen_router == context_.session.chosen_router &&
                      RouterKey(*router_) == RouterKey(context_.session));
}

const RouterSession& JobRunner::Router() const {
  return IsRouterChosen() ? context_.session : *router_;
}

void JobRunner::FollowRouter() {
  if (IsRouterChosen()) {
    router_ = context_.session;
  }
}

void JobRunner::Run() {
  record_.Begin(JobKind::kUpdate, context_.port_list.Entries());
  Q_EMIT begun();
  StartRun(RunRows());
}

void JobRunner::RunAgain() {
  record_.BeginAgain();
  Q_EMIT begun();
  StartRun(RunRows());
}

void JobRunner::Check() {
  record_.Begin(JobKind::kCheck, context_.port_list.Entries());
  Q_EMIT begun();
  StartRun(CheckRows());
}

void JobRunner::LookForAdded() { StartRun(LookAtUnseen()); }

void JobRunner::TakeBack() {
  record_.Begin(JobKind::kTakeBack, QList<PortEntry>(Added().crbegin(), Added().crend()));
  Q_EMIT begun();
  StartRun(TakeBackRows());
}

Task<> JobRunner::CheckRows() {
  const QList<RuleVerdict> verdicts = co_await Look();
  JobOutcome& outcome = record_.Outcome();
  outcome.stopped = context_.job_flags.JobStopRequested();
  outcome.entries_failed = verdicts.isEmpty() ? record_.RowCount() : 0;
  record_.NoteAfter(verdicts, page_);
}

Task<> JobRunner::LookAtUnseen() {
  const QList<RuleVerdict> verdicts = co_await Look();
  if (!verdicts.isEmpty()) {
    record_.NoteAfter(verdicts, page_);
  }
}

Task<> JobRunner::RunRows() {
  record_.BeginJournal(Router());
  co_await EnterRows();
  record_.EndJournal();
}

Task<> JobRunner::TakeBackRows() {
  record_.BeginJournal(Router());
  JobOutcome& outcome = record_.Outcome();
  for (int row = 1; row <= record_.RowCount() && !outcome.stopped; ++row) {
    if (context_.job_flags.JobStopRequested()) {
      outcome.stopped = true;
    } else {
      co_await TakeBackRow(row);
    }
  }
  QList<RuleVerdict> verdicts;
  if (!outcome.stopped) {
    verdicts = co_await Look();
  }
  EndWith(verdicts);
  record_.EndJournal();
}

Task<> JobRunner::TakeBackRow(int row) {
  record_.NotePass(row);
  log_.Append(LineBreak() +
              OnOneLine(Text(job_text::kRemoving) + QLatin1Char(' ') + record_.Row(row).app_name) +
              LineBreak());
  RuleRemoval removal(record_.Added(), page_,
                      {.look = [this, row] { return LookAtRow(row); },
                       .remove_row =
                           [this, row](QStringList rows_to_keep) {
                             return RemoveRow(row, std::move(rows_to_keep));
                           }});
  const PassEnd end = co_await removal.Remove(ArgumentsOf(row, {}).UsesBoth());
  record_.NotePassEnd(row, end, {});
}

Task<RuleVerdict> JobRunner::LookAtRow(int row) {
  const QList<RuleVerdict> verdicts = co_await Look();
  co_return verdicts.value(row - 1);
}

Task<PassEnd> JobRunner::RemoveRow(int row, QStringList rows_to_keep) {
  Q_EMIT entryStarted(row, record_.RowCount(), record_.Row(row).app_name);
  GiveLogin();
  RunArguments arguments = ArgumentsOf(row, {});
  arguments.commands = Router().remove_script;
  arguments.rows_to_keep = std::move(rows_to_keep);
  const RunEnd end = co_await RunRouterCommands(Environment(), std::move(arguments));
  co_return PassEndOf(end);
}

void JobRunner::SkipRow(int row) {
  record_.NotePass(row);
  log_.Append(
      LineBreak() +
      OnOneLine(Text(job_text::kNotEnteredAgain) + QLatin1Char(' ') + record_.Row(row).app_name) +
      LineBreak());
  record_.NotePassEnd(row, PassEnd::kExisted, {});
}

Task<> JobRunner::EnterRows() {
  const int rows = record_.RowCount();
  JobOutcome& outcome = record_.Outcome();
  Q_EMIT errorsCleared();
  log_.Append(LineBreak() + Text(job_text::kNumberOfForwards) + QStringLiteral(" (%1)").arg(rows));
  log_.Append(LineBreak() + Text(job_text::kRunningCommands) + LineBreak());
  if (context_.job_options.verify_after_update) {
    const QList<RuleVerdict> verdicts = co_await Look();
    record_.NoteBefore(verdicts, page_);
  }
  QString computer_name;
  for (int row = 1; row <= rows; ++row) {
    if (context_.job_flags.JobStopRequested()) {
      outcome.stopped = true;
      record_.NoteAfter({}, {});
      co_return;
    }
    if (record_.IsToBeEntered(row)) {
      co_await RunRow(row, computer_name);
    } else {
      SkipRow(row);
    }
  }
  if (!outcome.stopped) {
    // A save that its command did not wait for would end with the browser.
    co_await Pages().UntilIdle({.limit = Pages().Limits().end_of_job,
                                .shown_as = RouterHost(Router()),
                                .heeds_errors = false});
  }
  const QString rule(19, QLatin1Char('-'));
  log_.Append(LineBreak());
  log_.Append(LineBreak() + rule + Text(job_text::kDone) + rule);
  QList<RuleVerdict> verdicts;
  if (context_.job_options.verify_after_update && !outcome.stopped) {
    verdicts = co_await Look();
  }
  EndWith(verdicts);
}

// The user may also have stopped the job after its last row.
void JobRunner::EndWith(const QList<RuleVerdict>& verdicts) {
  JobOutcome& outcome = record_.Outcome();
  outcome.stopped = outcome.stopped || StoppedByUser();
  record_.NoteAfter(verdicts, page_);
}

Task<> JobRunner::RunRow(int row, QString& computer_name) {
  record_.NotePass(row);
  LogRowHead(row);
  FollowRouter();
  GiveLogin();
  RunArguments arguments = ArgumentsOf(row, computer_name);
  computer_name = arguments.entry_computer_name;
  const int faults = PageFaults();
  Environment().steps_not_found = 0;
  Environment().complaints.clear();
  ForgetPageWords();
  const RunEnd end = co_await RunRouterCommands(Environment(), std::move(arguments));
  log_.Append(LineBreak() + Text(job_text::kFinishedAdding) + QLatin1Char(' ') +
              OnOneLine(record_.Row(row).app_name) + LineBreak());
  record_.NotePassEnd(row, PassEndOf(end), DoubtsSince(faults));
}

QStringList JobRunner::DoubtsSince(int faults) {
  QStringList doubts;
  if (PageFaults() > faults) {
    doubts.append(Text(job_text::kPageFailed));
  }
  if (const int steps = Environment().steps_not_found; steps > 0) {
    doubts.append(Text(job_text::kStepsNotFound).arg(steps));
  }
  for (const QString& words : PageWords()) {
    doubts.append(Text(job_text::kPageSaid).arg(words));
  }
  for (const QString& words : std::as_const(Environment().complaints)) {
    doubts.append(Text(job_text::kPageShowed).arg(words));
  }
  return doubts;
}

Task<QList<RuleVerdict>> JobRunner::Look() {
  FollowRouter();
  RunArguments arguments = RouterArguments();
  arguments.commands = LinesToRules(Router());
  GiveLogin();
  is_looking_ = true;
  const auto done = qScopeGuard([this] { is_looking_ = false; });
  Q_EMIT lookStarted();
  page_ = {};
  const std::optional<PageRows> page = co_await ReadRules(Environment(), std::move(arguments));
  if (!page) {
    co_return QList<RuleVerdict>();
  }
  page_ = *page;
  co_return MatchRules(record_.Rows(), page_);
}

void JobRunner::LogRowHead(int row) {
  const PortEntry& entry = record_.Row(row);
  const QChar blank = QLatin1Char(' ');
  log_.Append(LineBreak() + QLatin1Char('(') + Text(job_text::kCurrent) +
              QStringLiteral(" -  %1/%2)").arg(row).arg(record_.RowCount()));
  log_.Append(LineBreak() +
              OnOneLine(Text(job_text::kAdding) + blank + entry.app_name + QStringLiteral(" (") +
                        entry.protocol + QStringLiteral(") ") + Text(job_text::kForPorts) + blank +
                        entry.start_port + QLatin1Char('-') + entry.end_port + blank +
                        Text(job_text::kTo) + blank +
                        Isolated(entry.forwarded_to, context_.translator)) +
              LineBreak());
  Q_EMIT entryStarted(row, record_.RowCount(), entry.app_name);
}

RunArguments JobRunner::ArgumentsOf(int row, const QString& former_computer_name) const {
  RunArguments arguments = RouterArguments();
  arguments.commands = Router().update_script;
  arguments.entry_index = record_.Number(row);
  arguments.is_first_entry = record_.IsFirst(row);
  arguments.is_last_entry = record_.IsLast(row);
  arguments.entry_computer_name = former_computer_name;
  GiveEntry(arguments, record_.Row(row));
  return arguments;
}

// One error costs the entry, the next one the job.
void JobRunner::CountError() {
  if (is_looking_) {
    return;
  }
  JobFlags& flags = context_.job_flags;
  if (flags.job_error_grace != 1) {
    flags.SetJobStopRequested(true);
    return;
  }
  flags.job_error_grace = 0;
  if (!StoppedByUser()) {
    flags.SetJobStopRequested(false);
  }
}

}  // namespace quayline
