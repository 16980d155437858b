// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/job_runner.h"

#include <QScopeGuard>

#include <algorithm>

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
  OpenBrowsers([](const BrowserSet& browsers) { return browsers.Active(); });
  context_.job_flags.job_error_grace = 1;
  context_.job_flags.in_combo = false;
  log_.Append(LineBreak() + Text(job_text::kRouter) + QLatin1Char(' ') +
              OnOneLine(context_.session.router_name));
  log_.Append(LineBreak() + Text(job_text::kLoadingCommands));
  Q_EMIT errorsCleared();
  Q_EMIT busyChanged(true);
}

void JobRunner::Run() {
  TakeRows(context_.port_list.Entries());
  StartRun(RunRows());
}

void JobRunner::RunAgain() {
  TakeRows(outcome_.ToTryAgain());
  StartRun(RunRows());
}

void JobRunner::Check() {
  TakeRows(context_.port_list.Entries());
  StartRun(CheckRows());
}

void JobRunner::TakeRows(QList<PortEntry> rows) {
  rows_ = std::move(rows);
  outcome_ = {};
  before_.clear();
  doubts_ = QList<QStringList>(rows_.size());
}

Task<> JobRunner::CheckRows() {
  const QList<RuleVerdict> verdicts = co_await Look();
  outcome_.stopped = context_.job_flags.JobStopRequested();
  outcome_.has_looked = !outcome_.stopped;
  outcome_.entries_failed = verdicts.isEmpty() ? static_cast<int>(rows_.size()) : 0;
  NoteResults(verdicts);
}

Task<> JobRunner::RunRows() {
  BeginJournal(false);
  co_await EnterRows();
  EndJournal();
}

void JobRunner::BeginJournal(bool takes_back) {
  journal_ = context_.journals.Begin({.router = context_.session.router_name,
                                      .address = RouterHost(context_.session),
                                      .entries = rows_,
                                      .takes_back = takes_back,
                                      .password = context_.session.password});
}

void JobRunner::EndJournal() {
  if (journal_) {
    journal_->NoteEnd(outcome_.EndName());
    journal_.reset();
  }
}

QStringList JobRunner::RemoveScript() const {
  const auto router = context_.databases.FindRouter(context_.session.router_id);
  return router ? ScriptLines(router->routerremove) : QStringList();
}

void JobRunner::TakeBack() {
  TakeRows(QList<PortEntry>(brought_.crbegin(), brought_.crend()));
  outcome_.took_back = true;
  StartRun(TakeBackRows());
}

Task<> JobRunner::TakeBackRows() {
  BeginJournal(true);
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
    outcome_.has_looked = !context_.job_flags.JobStopRequested();
  }
  NoteResults(verdicts);
  if (journal_) {
    journal_->NoteAfter(outcome_.results, page_);
  }
  brought_.removeIf([this](const PortEntry& entry) {
    return std::ranges::any_of(outcome_.results, [&](const EntryResult& result) {
      return result.entry == entry && result.state == EntryState::kMissing;
    });
  });
  EndJournal();
}

// A rule for both protocols may be two rows of the router, of which the script removes one.
Task<> JobRunner::TakeBackRow(int row) {
  constexpr int kMostParts = 2;
  const QString& name = rows_[row - 1].app_name;
  if (journal_) {
    journal_->NotePass(row, name);
  }
  log_.Append(LineBreak() + OnOneLine(Text(job_text::kRemoving) + QLatin1Char(' ') + name) +
              LineBreak());
  Q_EMIT entryStarted(row, static_cast<int>(rows_.size()), name);
  ++outcome_.entries;
  PassEnd pass = PassEnd::kFailed;  // its row was not found
  for (int part = 0; part < kMostParts; ++part) {
    const QList<RuleVerdict> verdicts = co_await Look();
    const RuleVerdict verdict = verdicts.value(row - 1);
    const bool has_row = std::ranges::any_of(verdict.rows, [this](qsizetype index) {
      return !rows_before_.contains(page_.rows.at(index).Text());
    });
    if (!has_row || (part == 0 && verdict.state != RuleState::kOnRouter)) {
      break;
    }
    GiveLogin();
    RunArguments arguments = ArgumentsOf(row, {});
    arguments.commands = RemoveScript();
    arguments.rows_to_keep = rows_before_;
    const RunEnd end = co_await RunRouterCommands(Environment(), std::move(arguments));
    pass = PassEndOf(end);
    if (end != RunEnd::kAllLinesDone) {
      break;
    }
  }
  outcome_.entries_failed += pass == PassEnd::kFailed ? 1 : 0;
  outcome_.stopped = outcome_.stopped || pass == PassEnd::kStopped;
  if (journal_) {
    journal_->NotePassEnd(row, pass, {});
  }
}

Task<> JobRunner::EnterRows() {
  const auto rows = static_cast<int>(rows_.size());
  Q_EMIT errorsCleared();
  log_.Append(LineBreak() + Text(job_text::kNumberOfForwards) + QStringLiteral(" (%1)").arg(rows));
  log_.Append(LineBreak() + Text(job_text::kRunningCommands) + LineBreak());
  if (context_.job_options.verify_after_update) {
    before_ = co_await Look();
    if (rows_before_.isEmpty() && brought_.isEmpty()) {
      for (const PageRow& row : std::as_const(page_.rows)) {
        rows_before_.append(row.Text());
      }
    }
    if (journal_) {
      journal_->NoteBefore(ResultsOf(before_), page_);
    }
  }
  QString computer_name;
  for (int row = 1; row <= rows; ++row) {
    if (context_.job_flags.JobStopRequested()) {
      outcome_.stopped = true;
      NoteResults({});
      co_return;
    }
    co_await RunRow(row, computer_name);
  }
  if (!outcome_.stopped) {
    // A save that its command did not wait for would end with the browser.
    co_await Pages().UntilIdle({.limit = Pages().Limits().end_of_job,
                                .shown_as = RouterHost(context_.session),
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
  doubts_[row - 1] = DoubtsSince(faults);
  log_.Append(LineBreak() + Text(job_text::kFinishedAdding) + QLatin1Char(' ') +
              OnOneLine(rows_[row - 1].app_name) + LineBreak());
  if (journal_) {
    journal_->NotePassEnd(row, PassEndOf(end), doubts_[row - 1]);
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
    outcome_.has_looked = !context_.job_flags.JobStopRequested();
  }
  NoteResults(verdicts);
  if (journal_) {
    journal_->NoteAfter(outcome_.results, page_);
  }
  for (const EntryResult& result : std::as_const(outcome_.results)) {
    if (result.is_new) {
      brought_.append(result.entry);
    }
  }
}

Task<QList<RuleVerdict>> JobRunner::Look() {
  RunArguments arguments = RouterArguments();
  arguments.commands = LinesToRules(context_.session);
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
    const bool existed = before_.value(row).state == RuleState::kOnRouter;
    results.append(ResultOf(rows_[row], verdicts.value(row), existed, doubts_[row]));
    results.last().is_new = verdicts.value(row).state == RuleState::kOnRouter &&
                            before_.value(row).state == RuleState::kMissing;
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

QString JobOutcome::EndName() const {
  if (stopped) {
    return QStringLiteral("stopped");
  }
  return entries_failed > 0 ? QStringLiteral("error") : QStringLiteral("done");
}

bool JobOutcome::HasDoubts() const { return std::ranges::any_of(results, &EntryResult::IsUnclear); }

// Others may be on the router, and would be there twice.
QList<PortEntry> JobOutcome::ToTryAgain() const {
  QList<PortEntry> rows;
  for (qsizetype row = 0; row < results.size() && !took_back; ++row) {
    if (results[row].state == EntryState::kMissing || row >= entries) {
      rows.append(results[row].entry);
    }
  }
  return rows;
}

QStringList JobOutcome::ToCheck() const {
  QStringList names;
  for (const EntryResult& result : results) {
    if (result.state == EntryState::kToCheck) {
      names.append(result.entry.app_name);
    }
  }
  return names;
}

bool JobOutcome::HasWrong() const { return std::ranges::any_of(results, &EntryResult::IsWrong); }

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
  const PortEntry& entry = rows_[row - 1];
  const qsizetype parenthesis = entry.forwarded_to.indexOf(QLatin1Char('('));
  QString computer_name = former_computer_name;
  if (parenthesis >= 0) {
    computer_name = entry.forwarded_to.mid(parenthesis + 1);
    computer_name.chop(1);
  }
  RunArguments arguments = RouterArguments();
  arguments.commands = context_.session.update_script;
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
