// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>

#include <memory>
#include <optional>

#include "core/added_rules.h"
#include "core/app_context.h"
#include "core/job_journal.h"
#include "core/page_rows.h"
#include "core/rule_match.h"
#include "script/job_outcome.h"

namespace quayline {

// What is known of a job while it runs: what the router showed of each entry before it, how each
// pass ended, what went wrong meanwhile. Makes the outcome of that, and writes the job's journal.
// Rows count from 1. A record lives on from job to job, all of them on one router.
class JobRecord final {
 public:
  explicit JobRecord(AppContext& context) : context_(context) {}

  // The rules that jobs of another record added, on the same router.
  void TakeOverRules(const JobRecord& former) { added_ = former.added_; }
  void Begin(JobKind kind, QList<PortEntry> rows);
  // The job is for the entries that the one before did not get in.
  void BeginAgain();
  void BeginJournal(const RouterSession& router);
  void EndJournal();

  const QList<PortEntry>& Rows() const { return rows_; }
  int RowCount() const { return static_cast<int>(rows_.size()); }
  const PortEntry& Row(int row) const { return rows_.at(row - 1); }
  JobOutcome& Outcome() { return outcome_; }
  const JobOutcome& Outcome() const { return outcome_; }
  const AddedRules& Added() const { return added_; }

  void NoteLog(const QString& text);
  void NotePass(int row);
  // The pass of the row whose turn it is works on the router's pages.
  void NoteAction();
  void NotePassEnd(int row, PassEnd end, const QStringList& doubts);
  // What the page shows of each row before the passes, and after them. No verdicts: the page was
  // not read.
  void NoteBefore(const QList<RuleVerdict>& verdicts, const PageRows& page);
  void NoteAfter(QList<RuleVerdict> verdicts, const PageRows& page);

  // Not where a job before this one may have entered it already: it would be there twice.
  bool IsToBeEntered(int row) const;
  // Whether no earlier, or no later, row is to be entered.
  bool IsFirst(int row) const;
  bool IsLast(int row) const;
  // The row's number for the script: in the job that entered the whole list, so that a slot of the
  // router that goes by the number stays the entry's own.
  int Number(int row) const;

 private:
  struct Turn {
    int number = 0;
    RuleVerdict before;
    QStringList doubts;
    bool has_acted = false;    // its pass worked on the router's pages
    bool was_entered = false;  // by any job before this one
  };

  QList<EntryResult> ResultsOf(const QList<RuleVerdict>& verdicts, const PageRows& page) const;
  void NoteListening();
  void NoteAdded(const PageRows& page);

  AppContext& context_;
  QList<PortEntry> rows_;
  QList<Turn> turns_;  // of each row
  JobOutcome outcome_;
  AddedRules added_;
  bool is_again_ = false;
  std::unique_ptr<JobJournal> journal_;  // of the job that runs; null if none can be written
};

}  // namespace quayline
