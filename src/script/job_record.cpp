// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/job_record.h"

#include <utility>

namespace quayline {

void JobRecord::Begin(JobKind kind, QList<PortEntry> rows) {
  rows_ = std::move(rows);
  turns_ = QList<Turn>(rows_.size());
  for (int row = 1; row <= RowCount(); ++row) {
    turns_[row - 1].number = row;
  }
  outcome_ = {.kind = kind, .results = {}};
  is_again_ = false;
}

void JobRecord::BeginAgain() {
  const JobOutcome before = outcome_;
  const QList<Turn> turns_before = turns_;
  Begin(JobKind::kUpdate, before.ToTryAgain());
  is_again_ = true;
  const QList<qsizetype> places = before.PlacesToTryAgain();
  for (qsizetype row = 0; row < places.size(); ++row) {
    const qsizetype place = places.at(row);
    const Turn& turn_before = turns_before.at(place);
    turns_[row].number = turn_before.number;
    turns_[row].was_entered = turn_before.was_entered || place < before.entries;
  }
}

void JobRecord::BeginJournal(const RouterSession& router) {
  journal_ = context_.journals.Begin({.router = router.router_name,
                                      .address = RouterHost(router),
                                      .entries = rows_,
                                      .takes_back = outcome_.kind == JobKind::kTakeBack,
                                      .password = router.password});
}

void JobRecord::EndJournal() {
  if (journal_) {
    journal_->NoteEnd(outcome_.EndName());
    journal_.reset();
  }
}

void JobRecord::NoteLog(const QString& text) {
  if (journal_) {
    journal_->NoteLog(text);
  }
}

void JobRecord::NotePass(int row) {
  ++outcome_.entries;
  if (journal_) {
    journal_->NotePass(row, Row(row).app_name);
  }
}

void JobRecord::NoteAction() {
  if (outcome_.kind != JobKind::kUpdate || outcome_.entries == 0) {
    return;
  }
  Turn& turn = turns_[outcome_.entries - 1];
  if (!std::exchange(turn.has_acted, true)) {
    added_.NoteEntering(Row(outcome_.entries), turn.before);
  }
}

void JobRecord::NotePassEnd(int row, PassEnd end, const QStringList& doubts) {
  turns_[row - 1].doubts = doubts;
  if (end == PassEnd::kDone) {
    NoteAction();  // a script that only opens addresses may have sent the rule with one
  }
  if (end == PassEnd::kExisted && std::exchange(turns_[row - 1].has_acted, false)) {
    added_.NoteNotEntered(Row(row));
  }
  outcome_.entries_failed += end == PassEnd::kFailed ? 1 : 0;
  outcome_.stopped = outcome_.stopped || end == PassEnd::kStopped;
  if (journal_) {
    journal_->NotePassEnd(row, end, doubts);
  }
}

void JobRecord::NoteBefore(const QList<RuleVerdict>& verdicts, const PageRows& page) {
  for (qsizetype row = 0; row < verdicts.size(); ++row) {
    turns_[row].before = verdicts.at(row);
  }
  if (!verdicts.isEmpty()) {
    added_.NoteBefore(page);
  }
  if (journal_) {
    journal_->NoteBefore(ResultsOf(verdicts, page), page);
  }
}

void JobRecord::NoteAfter(QList<RuleVerdict> verdicts, const PageRows& page) {
  outcome_.has_looked = !verdicts.isEmpty() && !context_.job_flags.JobStopRequested();
  const QList<EntryResult> on_page = ResultsOf(verdicts, page);
  if (outcome_.kind == JobKind::kTakeBack) {
    for (RuleVerdict& verdict : verdicts) {
      verdict = added_.AfterRemoval(verdict, page);
    }
  }
  outcome_.results = ResultsOf(verdicts, page);
  for (qsizetype row = 0; row < on_page.size(); ++row) {
    if (on_page[row].state != outcome_.results[row].state) {
      outcome_.results[row].own_row = on_page[row].state;
    }
  }
  NoteListening();
  if (journal_) {
    journal_->NoteAfter(outcome_.results, verdicts.isEmpty() ? PageRows() : page);
  }
  NoteAdded(page);
}

QList<EntryResult> JobRecord::ResultsOf(const QList<RuleVerdict>& verdicts,
                                        const PageRows& page) const {
  QList<EntryResult> results;
  for (qsizetype row = 0; row < rows_.size(); ++row) {
    const Turn& turn = turns_.at(row);
    const RuleVerdict verdict = verdicts.value(row);
    const bool existed = turn.before.state == RuleState::kOnRouter;
    results.append(ResultOf(rows_.at(row), verdict, existed, turn.doubts));
    results.last().is_new = turn.has_acted && added_.IsNew(turn.before, verdict, page);
  }
  return results;
}

void JobRecord::NoteListening() {
  if (context_.listeners == nullptr) {
    return;
  }
  const auto listeners = context_.listeners->List();
  const QStringList own_addresses = ForwardableAddresses(context_.adapters.AddressTable());
  for (EntryResult& result : outcome_.results) {
    result.listening = ListeningOf(result.entry, own_addresses, listeners);
  }
}

void JobRecord::NoteAdded(const PageRows& page) {
  if (outcome_.kind == JobKind::kUpdate && outcome_.has_looked) {
    added_.NoteAfter(page);
  }
  for (const EntryResult& result : std::as_const(outcome_.results)) {
    if (outcome_.kind == JobKind::kTakeBack && result.state == EntryState::kMissing) {
      added_.Remove(result.entry);
    }
  }
}

int JobRecord::Number(int row) const { return turns_.at(row - 1).number; }

bool JobRecord::IsFirst(int row) const {
  for (int earlier = 1; earlier < row; ++earlier) {
    if (IsToBeEntered(earlier)) {
      return false;
    }
  }
  return true;
}

bool JobRecord::IsLast(int row) const {
  for (int later = row + 1; later <= RowCount(); ++later) {
    if (IsToBeEntered(later)) {
      return false;
    }
  }
  return true;
}

bool JobRecord::IsToBeEntered(int row) const {
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

}  // namespace quayline
