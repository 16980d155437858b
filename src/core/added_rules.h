// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QStringList>

#include <optional>

#include "core/page_rows.h"
#include "core/port_entry.h"
#include "core/rule_match.h"

namespace quayline {

// Texts by which rows are compared with those of an earlier look. A cell that may change by itself,
// such as the number of the row, is no part of it.
class RowTexts final {
 public:
  QString Of(const PageRow& row);

 private:
  QHash<QString, bool> is_ignored_;  // by heading
};

// The rules that jobs added to one router, and the rows that its page showed before them. What was
// there before, or may have been, is never counted as added. A rule counts when the page shows it:
// those of a job that was cut short at the next look, whoever takes it.
class AddedRules final {
 public:
  // What the page shows before and after a job.
  void NoteBefore(const PageRows& page);
  void NoteAfter(const PageRows& page);

  // A job works on the router's pages for this rule. `before` is the verdict on it before the job.
  void NoteEntering(const PortEntry& entry, const RuleVerdict& before);
  // The pass found that the router has the rule already.
  void NoteNotEntered(const PortEntry& entry);
  // Rules that may have been added since the last look.
  QList<PortEntry> Unseen() const;

  // Whether a job that was entering the rule added it. `before` and `after` are the verdicts on the
  // rule before and after the job, `now` is the page after it.
  bool IsNew(const RuleVerdict& before, const RuleVerdict& after, const PageRows& now) const;

  void Remove(const PortEntry& entry) { entries_.removeAll(entry); }
  // The oldest first.
  const QList<PortEntry>& Entries() const { return entries_; }

  // The rows of the rule that jobs added. A row that was there before them does not belong to
  // these, nor does one that came after them, as long as a row of theirs is there.
  QList<qsizetype> OwnRows(const RuleVerdict& verdict, const PageRows& page) const;
  // The other rows, as RowTexts has them: those before the jobs, and those of the rule that are not
  // the jobs' own.
  QStringList RowsToKeep(const RuleVerdict& verdict, const PageRows& page) const;
  // The verdict on a rule that was to be removed: missing if what the page still shows was there
  // before the jobs.
  RuleVerdict AfterRemoval(const RuleVerdict& verdict, const PageRows& page) const;

 private:
  struct UnseenRule {
    PortEntry entry;
    RuleVerdict before;
  };

  void TakeSeen(const PageRows& page);

  QList<PortEntry> entries_;
  QList<UnseenRule> unseen_;                // that jobs were entering
  std::optional<QStringList> rows_before_;  // nothing: no page has been read
  QStringList rows_after_;
};

}  // namespace quayline
