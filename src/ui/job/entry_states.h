// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QList>

#include "core/entry_look.h"
#include "i18n/translator.h"

namespace quayline {

// The entries of a job and what is known of each, as the list of the job window shows them. It
// begins with all entries waiting, follows the job, and ends with the results.
class EntryStates final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kEntry, kState, kListening, kOutside, kReason, kColumns };

  explicit EntryStates(const Translator& translator, QObject* parent = nullptr);

  void Begin(const QList<PortEntry>& entries);
  // Row `row` (from 0) is being entered; those before it have been.
  void SetRunning(int row);
  // The job is over. `entered`: how many rows were begun. No results: it never began.
  void SetResults(const QList<EntryResult>& results, int entered);

  QList<PortEntry> Entries() const;
  // What else is known of each row.
  void SetLooks(QList<EntryLook> looks);
  // Whether a column says anything of any row.
  bool IsFilled(Column column) const;

  // The first entry that was not seen on the router.
  QModelIndex FirstToLookAt() const;
  // One sentence on all of them, for the headline.
  QString Summary() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString StateText(int row) const;
  QString ReasonText(int row) const;
  QString ReachText(int row, Column column) const;
  QString CellText(int row, int column) const;
  QString Text(const Message& message) const { return translator_.Text(message); }

  const Translator& translator_;
  QList<EntryResult> results_;
  QList<EntryLook> looks_;  // of each row, or fewer
  int running_ = -1;
  int entered_ = 0;
  bool is_over_ = false;
};

}  // namespace quayline
