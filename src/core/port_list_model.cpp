// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_list_model.h"

#include <algorithm>

namespace quayline {

namespace {

const QString& Field(const PortEntry& entry, int column) {
  switch (column) {
    case PortListModel::kForwardedTo:
      return entry.forwarded_to;
    case PortListModel::kStartPort:
      return entry.start_port;
    case PortListModel::kEndPort:
      return entry.end_port;
    case PortListModel::kProtocol:
      return entry.protocol;
    case PortListModel::kDescription:
      return entry.description;
    default:
      return entry.app_name;
  }
}

}  // namespace

PortListModel::PortListModel(QObject* parent) : QAbstractTableModel(parent) {}

void PortListModel::Append(const QList<PortEntry>& entries) {
  if (entries.isEmpty()) {
    return;
  }
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(entries.size()) - 1);
  entries_.append(entries);
  endInsertRows();
}

void PortListModel::Replace(int row, const PortEntry& entry) {
  if (row < 0 || row >= rowCount()) {
    return;
  }
  entries_[row] = entry;
  Q_EMIT dataChanged(index(row, 0), index(row, kColumns - 1));
}

// From the end, so that the numbers of the rows before stay valid; consecutive rows are removed in
// one step.
void PortListModel::Remove(QList<int> rows) {
  rows.removeIf([this](int row) { return row < 0 || row >= rowCount(); });
  std::ranges::sort(rows);
  while (!rows.isEmpty()) {
    const int last = rows.takeLast();
    int first = last;
    while (!rows.isEmpty() && rows.last() >= first - 1) {
      first = rows.takeLast();
    }
    beginRemoveRows({}, first, last);
    entries_.remove(first, last - first + 1);
    endRemoveRows();
  }
}

void PortListModel::SetEntries(QList<PortEntry> entries) {
  beginResetModel();
  entries_ = std::move(entries);
  endResetModel();
}

void PortListModel::SetHeaders(const QStringList& headers) {
  headers_ = headers;
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, kColumns - 1);
}

int PortListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

int PortListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant PortListModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const QString& text = Field(entries_.at(index.row()), index.column());
  // The address of a computer whose name is not known: "192.168.1.20()".
  const bool is_nameless = index.column() == kForwardedTo && text.endsWith(QLatin1String("()"));
  return is_nameless ? text.chopped(2) : text;
}

QVariant PortListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
      section < headers_.size()) {
    return headers_.at(section);
  }
  return QAbstractTableModel::headerData(section, orientation, role);
}

}  // namespace quayline
