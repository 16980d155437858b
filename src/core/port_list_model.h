// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QList>

#include <functional>

#include "core/entry_look.h"
#include "core/port_entry.h"

namespace quayline {

// The port list: the only owner of its rows, and the model of the list on the main window. Rows
// keep their order of entry; nothing is sorted. The model does no file work: see PortListFile.
//
// Beside each row it keeps what was last seen of the entry. A row that is changed loses that.
class PortListModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column {
    kAppName,
    kForwardedTo,
    kStartPort,
    kEndPort,
    kProtocol,
    kOnRouter,
    kDescription,
    kColumns
  };

  explicit PortListModel(QObject* parent = nullptr);

  const QList<PortEntry>& Entries() const { return entries_; }
  void Append(const QList<PortEntry>& entries);
  void Replace(int row, const PortEntry& entry);
  // Rows that do not exist are ignored.
  void Remove(QList<int> rows);
  // Replaces the whole list. Rows at its beginning and its end that stay the same are not touched,
  // so that a view keeps its place and its selection.
  void SetEntries(QList<PortEntry> entries);
  // A text for each column. Changes what headerData() answers.
  void SetHeaders(const QStringList& headers);

  // What was last seen of each of `entries`; an empty look for those that the list does not have.
  // Fast where they are in the order of the list.
  QList<EntryLook> LooksOf(const QList<PortEntry>& entries) const;
  // The entries with what LooksOf() knows of them.
  QList<SeenEntry> SeenOf(const QList<PortEntry>& entries) const;
  // For the rows that still have these entries; others are ignored.
  void NoteLooks(const QList<SeenEntry>& seen);
  // What was seen belongs to another router.
  void ForgetLooks();
  // How a look is shown.
  struct LookTexts {
    std::function<QString(const EntryLook&)> cell;
    std::function<QString(const EntryLook&)> tool_tip;
  };
  void SetLookTexts(LookTexts texts) { look_texts_ = std::move(texts); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  qsizetype NextRowOf(const PortEntry& entry, qsizetype former) const;
  QString CellText(int row, int column) const;
  QString Spoken(int row) const;

  QList<PortEntry> entries_;
  QList<EntryLook> looks_;  // of each row
  QStringList headers_;
  LookTexts look_texts_;
};

}  // namespace quayline
