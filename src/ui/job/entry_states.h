// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QList>

#include "core/entry_look.h"
#include "i18n/translator.h"
#include "script/job_outcome.h"

namespace quayline {

// The entries of a job and what is known of each, as the list of the job window shows them. It
// begins with all entries waiting, follows the job, and ends with the results.
class EntryStates final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kEntry, kState, kListening, kOutside, kReason, kColumns };

  explicit EntryStates(const Translator& translator, QObject* parent = nullptr);

  void Begin(JobKind kind, const QList<PortEntry>& entries);
  // It is the turn of row `row` (from 0); those before it have had theirs.
  void SetRunning(int row);
  // The row has had its turn.
  void SetRowDone();
  // The job is over. `entered`: the turn of how many rows has come. No results: it never began.
  void SetResults(const QList<EntryResult>& results, int entered);

  QList<PortEntry> Entries() const;
  // What else is known of each row.
  void SetLooks(QList<EntryLook> looks);
  // Whether a column says anything of any row.
  bool IsFilled(Column column) const;

  // The first entry that did not become as it is wanted: on the router or, for a removal, not
  // there.
  QModelIndex FirstToLookAt() const;
  // One sentence on all of them, for the headline.
  QString Summary() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  bool IsAsWanted(const EntryResult& result) const;
  QString StateText(int row) const;
  QString ReasonText(int row) const;
  QString ReachText(int row, Column column) const;
  QString CellText(int row, int column) const;
  QString Text(const Message& message) const { return translator_.Text(message); }

  const Translator& translator_;
  JobKind kind_ = JobKind::kUpdate;
  QList<EntryResult> results_;
  QList<EntryLook> looks_;  // of each row, or fewer
  int running_ = -1;
  int entered_ = 0;
  bool is_over_ = false;
};

}  // namespace quayline
