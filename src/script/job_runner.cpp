// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/job_runner.h"

#include <QScopeGuard>

#include "core/text_bytes.h"
#include "script/command_call.h"
#include "script/interpreter.h"
#include "script/job_texts.h"
#include "script/rule_reader.h"

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
                   context.job_flags.active_browser_index, parent) {
  connect(&log_, &JobLog::appended, this, [this](const QString& text) {
    if (journal_) {
      journal_->NoteLog(text);
    }
  });
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
  is_again_ = false;
  TakeRows(JobKind::kUpdate, context_.port_list.Entries());
  StartRun(RunRows());
}

void JobRunner::RunAgain() {
  is_again_ = true;
  const JobOutcome before = outcome_;
  TakeRows(JobKind::kUpdate, before.ToTryAgain());
  for (qsizetype row = 0; row < rows_.size(); ++row) {
    turns_[row].was_entered = before.HasBegun(rows_.at(row));
  }
  StartRun(RunRows());
}

void JobRunner::Check() {
  TakeRows(JobKind::kCheck, context_.port_list.Entries());
  StartRun(CheckRows());
}

void JobRunner::TakeBack() {
  TakeRows(JobKind::kTakeBack, QList<PortEntry>(Added().crbegin(), Added().crend()));
  StartRun(TakeBackRows());
}

void JobRunner::TakeRows(JobKind kind, QList<PortEntry> rows) {
  rows_ = std::move(rows);
  outcome_ = {.kind = kind, .results = {}};
  turns_ = QList<Turn>(rows_.size());
  Q_EMIT begun();
}

Task<> JobRunner::CheckRows() {
  const QList<RuleVerdict> verdicts = co_await Look();
  outcome_.stopped = context_.job_flags.JobStopRequested();
  outcome_.has_looked = !verdicts.isEmpty() && !outcome_.stopped;
  outcome_.entries_failed = verdicts.isEmpty() ? static_cast<int>(rows_.size()) : 0;
  NoteResults(verdicts);
}

Task<> JobRunner::RunRows() {
  BeginJournal();
  co_await EnterRows();
  EndJournal();
}

void JobRunner::BeginJournal() {
  journal_ = context_.journals.Begin({.router = Router().router_name,
                                      .address = RouterHost(Router()),
                                      .entries = rows_,
                                      .takes_back = outcome_.kind == JobKind::kTakeBack,
                                      .password = Router().password});
}

void JobRunner::EndJournal() {
  if (journal_) {
    journal_->NoteEnd(outcome_.EndName());
    journal_.reset();
  }
}

Task<> JobRunner::TakeBackRows() {
  BeginJournal();
  for (int row = 1; row <= rows_.size(); ++row) {
    if (context_.job_flags.JobStopRequested()) {
      outcome_.stopped = true;
      break;
    }
    co_await TakeBackRow(row);
  }
  QList<RuleVerdict> verdicts;
  if (!outcome_.stopped) {
    verdicts = co_await Look();
    for (RuleVerdict& verdict : verdicts) {
      verdict = added_.AfterRemoval(verdict, page_);
    }
    outcome_.has_looked = !verdicts.isEmpty() && !context_.job_flags.JobStopRequested();
  }
  NoteResults(verdicts);
  if (journal_) {
    journal_->NoteAfter(outcome_.results, page_);
  }
  for (const EntryResult& result : std::as_const(outcome_.results)) {
    if (result.state == EntryState::kMissing) {
      added_.Remove(result.entry);
    }
  }
  EndJournal();
}

Task<> JobRunner::TakeBackRow(int row) {
  const QString& name = rows_[row - 1].app_name;
  if (journal_) {
    journal_->NotePass(row, name);
  }
  log_.Append(LineBreak() + OnOneLine(Text(job_text::kRemoving) + QLatin1Char(' ') + name) +
              LineBreak());
  ++outcome_.entries;
  const PassEnd end = co_await RemoveRule(row);
  outcome_.entries_failed += end == PassEnd::kFailed ? 1 : 0;
  outcome_.stopped = outcome_.stopped || end == PassEnd::kStopped;
  if (journal_) {
    journal_->NotePassEnd(row, end, {});
  }
}

// A rule for both protocols may be two rows of the router, of which the script removes one. Then
// the other one is left, and nothing but the rule has gone.
Task<PassEnd> JobRunner::RemoveRule(int row) {
  const int most_parts = ArgumentsOf(row, {}).UsesBoth() ? 2 : 1;
  PassEnd end = PassEnd::kFailed;  // its row was not found
  qsizetype rows_left = 0;
  for (int part = 0; part < most_parts; ++part) {
    const QList<RuleVerdict> verdicts = co_await Look();
    const RuleVerdict verdict = verdicts.value(row - 1);
    const qsizetype own_rows = added_.OwnRows(verdict, page_).size();
    const bool is_removable =
        part == 0 ? verdict.state == RuleState::kOnRouter : own_rows == rows_left;
    if (own_rows == 0 || !is_removable) {
      break;
    }
    rows_left = own_rows - 1;
    Q_EMIT entryStarted(row, static_cast<int>(rows_.size()), rows_[row - 1].app_name);
    GiveLogin();
    RunArguments arguments = ArgumentsOf(row, {});
    arguments.commands = Router().remove_script;
    arguments.rows_to_keep = added_.RowsToKeep(verdict, page_);
    const RunEnd run_end = co_await RunRouterCommands(Environment(), std::move(arguments));
    end = PassEndOf(run_end);
    if (run_end != RunEnd::kAllLinesDone) {
      break;
    }
  }
  co_return end;
}

Task<> JobRunner::LookBefore() {
  const QList<RuleVerdict> before = co_await Look();
  for (qsizetype row = 0; row < before.size(); ++row) {
    turns_[row].before = before.at(row);
  }
  if (!before.isEmpty()) {
    added_.NoteBefore(page_);
  }
  if (journal_) {
    journal_->NoteBefore(ResultsOf(before), page_);
  }
}

// Entered once more, a rule that is there, or may be there, would be there twice.
bool JobRunner::IsToBeEntered(int row) const {
  const Turn& turn = turns_.at(row - 1);
  if (!is_again_ || !context_.job_options.verify_after_update) {
    return true;
  }
  switch (turn.before.state) {
    case RuleState::kMissing:
      return true;
    case RuleState::kOnRouter:
      return false;
    case RuleState::kDifferent:
      return !turn.was_entered;
    case RuleState::kUnknown:
      break;
  }
  return !turn.was_entered && turn.before.seen.isEmpty();
}

void JobRunner::SkipRow(int row) {
  ++outcome_.entries;
  turns_[row - 1].end = PassEnd::kExisted;
  log_.Append(LineBreak() + OnOneLine(Text(job_text::kNotEnteredAgain) + QLatin1Char(' ') +
                                      rows_[row - 1].app_name) +
              LineBreak());
  if (journal_) {
    journal_->NotePass(row, rows_[row - 1].app_name);
    journal_->NotePassEnd(row, PassEnd::kExisted, {});
  }
}

Task<> JobRunner::EnterRows() {
  const auto rows = static_cast<int>(rows_.size());
  Q_EMIT errorsCleared();
  log_.Append(LineBreak() + Text(job_text::kNumberOfForwards) + QStringLiteral(" (%1)").arg(rows));
  log_.Append(LineBreak() + Text(job_text::kRunningCommands) + LineBreak());
  if (context_.job_options.verify_after_update) {
    co_await LookBefore();
  }
  QString computer_name;
  for (int row = 1; row <= rows; ++row) {
    if (context_.job_flags.JobStopRequested()) {
      outcome_.stopped = true;
      NoteResults({});
      co_return;
    }
    if (IsToBeEntered(row)) {
      co_await RunRow(row, computer_name);
    } else {
      SkipRow(row);
    }
  }
  if (!outcome_.stopped) {
    // A save that its command did not wait for would end with the browser.
    co_await Pages().UntilIdle({.limit = Pages().Limits().end_of_job,
                                .shown_as = RouterHost(Router()),
                                .heeds_errors = false});
  }
  const QString rule(19, QLatin1Char('-'));
  log_.Append(LineBreak());
  log_.Append(LineBreak() + rule + Text(job_text::kDone) + rule);
  co_await ReadBack();
}

Task<> JobRunner::RunRow(int row, QString& computer_name) {
  if (journal_) {
    journal_->NotePass(row, rows_[row - 1].app_name);
  }
  LogRowHead(row);
  FollowRouter();
  GiveLogin();
  RunArguments arguments = ArgumentsOf(row, computer_name);
  computer_name = arguments.entry_computer_name;
  ++outcome_.entries;
  const int faults = PageFaults();
  Environment().steps_not_found = 0;
  Environment().complaints.clear();
  ForgetPageWords();
  const RunEnd end = co_await RunRouterCommands(Environment(), std::move(arguments));
  outcome_.entries_failed += end == RunEnd::kPageError ? 1 : 0;
  outcome_.stopped = outcome_.stopped || end == RunEnd::kStopped;
  Turn& turn = turns_[row - 1];
  turn.end = PassEndOf(end);
  turn.doubts = DoubtsSince(faults);
  log_.Append(LineBreak() + Text(job_text::kFinishedAdding) + QLatin1Char(' ') +
              OnOneLine(rows_[row - 1].app_name) + LineBreak());
  if (journal_) {
    journal_->NotePassEnd(row, *turn.end, turn.doubts);
  }
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

Task<> JobRunner::ReadBack() {
  QList<RuleVerdict> verdicts;
  if (context_.job_options.verify_after_update && !outcome_.stopped) {
    verdicts = co_await Look();
    outcome_.has_looked = !verdicts.isEmpty() && !context_.job_flags.JobStopRequested();
  }
  NoteResults(verdicts);
  if (journal_) {
    journal_->NoteAfter(outcome_.results, page_);
  }
  if (outcome_.has_looked) {
    added_.NoteAfter(page_);
  }
  for (const EntryResult& result : std::as_const(outcome_.results)) {
    if (result.is_new) {
      added_.Add(result.entry);
    }
  }
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
  co_return MatchRules(rows_, page_);
}

QList<EntryResult> JobRunner::ResultsOf(const QList<RuleVerdict>& verdicts) const {
  QList<EntryResult> results;
  for (qsizetype row = 0; row < rows_.size(); ++row) {
    const Turn& turn = turns_.at(row);
    const RuleVerdict verdict = verdicts.value(row);
    const bool existed = turn.before.state == RuleState::kOnRouter;
    results.append(ResultOf(rows_[row], verdict, existed, turn.doubts));
    results.last().is_new =
        turn.end == PassEnd::kDone && added_.IsNew(turn.before, verdict, page_);
  }
  return results;
}

void JobRunner::NoteResults(const QList<RuleVerdict>& verdicts) {
  outcome_.results = ResultsOf(verdicts);
  if (context_.listeners == nullptr) {
    return;
  }
  const auto listeners = context_.listeners->List();
  const QStringList own_addresses = ForwardableAddresses(context_.adapters.AddressTable());
  for (EntryResult& result : outcome_.results) {
    result.listening = ListeningOf(result.entry, own_addresses, listeners);
  }
}

void JobRunner::LogRowHead(int row) {
  const PortEntry& entry = rows_[row - 1];
  const QChar blank = QLatin1Char(' ');
  log_.Append(LineBreak() + QLatin1Char('(') + Text(job_text::kCurrent) +
              QStringLiteral(" -  %1/%2)").arg(row).arg(rows_.size()));
  log_.Append(LineBreak() +
              OnOneLine(Text(job_text::kAdding) + blank + entry.app_name + QStringLiteral(" (") +
                        entry.protocol + QStringLiteral(") ") + Text(job_text::kForPorts) + blank +
                        entry.start_port + QLatin1Char('-') + entry.end_port + blank +
                        Text(job_text::kTo) + blank + entry.forwarded_to) +
              LineBreak());
  Q_EMIT entryStarted(row, static_cast<int>(rows_.size()), entry.app_name);
}

RunArguments JobRunner::ArgumentsOf(int row, const QString& former_computer_name) const {
  const PortEntry& entry = rows_.at(row - 1);
  const qsizetype parenthesis = entry.forwarded_to.indexOf(QLatin1Char('('));
  QString computer_name = former_computer_name;
  if (parenthesis >= 0) {
    computer_name = entry.forwarded_to.mid(parenthesis + 1);
    computer_name.chop(1);
  }
  RunArguments arguments = RouterArguments();
  arguments.commands = Router().update_script;
  arguments.entry_index = row;
  arguments.is_first_entry = row == 1;
  arguments.is_last_entry = row == rows_.size();
  arguments.entry_name = entry.app_name;
  arguments.entry_protocol = entry.protocol;
  arguments.entry_start_port = entry.start_port;
  arguments.entry_end_port = entry.end_port;
  arguments.entry_ip = entry.forwarded_to.left(parenthesis);
  arguments.entry_computer_name = computer_name;
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
