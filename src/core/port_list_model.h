// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QList>

#include "core/port_entry.h"

namespace quayline {

// The port list: the only owner of its rows, and the model of the list on the main window. Rows
// keep their order of entry; nothing is sorted. The model does no file work: see PortListFile.
class PortListModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kAppName, kForwardedTo, kStartPort, kEndPort, kProtocol, kDescription, kColumns };

  explicit PortListModel(QObject* parent = nullptr);

  const QList<PortEntry>& Entries() const { return entries_; }
  void Append(const QList<PortEntry>& entries);
  void Replace(int row, const PortEntry& entry);
  // Rows that do not exist are ignored.
  void Remove(QList<int> rows);
  // Replaces the whole list. Rows at its beginning and its end that stay the same are not touched,
  // so that a view keeps its place and its selection.
  void SetEntries(QList<PortEntry> entries);
  // Six texts in column order. Changes what headerData() answers.
  void SetHeaders(const QStringList& headers);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString Spoken(int row) const;

  QList<PortEntry> entries_;
  QStringList headers_;
};

}  // namespace quayline
