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
  const int shorter = static_cast<int>(std::min(entries_.size(), entries.size()));
  const int first =
      static_cast<int>(std::ranges::mismatch(entries_, entries).in1 - entries_.begin());
  int same_at_end = 0;
  while (same_at_end < shorter - first && entries_.at(entries_.size() - 1 - same_at_end) ==
                                              entries.at(entries.size() - 1 - same_at_end)) {
    ++same_at_end;
  }
  const int old_end = rowCount() - same_at_end;
  const int new_end = static_cast<int>(entries.size()) - same_at_end;
  if (new_end > old_end) {
    beginInsertRows({}, old_end, new_end - 1);
    entries_ =
        entries_.first(old_end) + entries.mid(old_end, new_end - old_end) + entries_.mid(old_end);
    endInsertRows();
  } else if (new_end < old_end) {
    beginRemoveRows({}, new_end, old_end - 1);
    entries_.remove(new_end, old_end - new_end);
    endRemoveRows();
  }
  entries_ = std::move(entries);
  if (const int changed_end = std::min(old_end, new_end); first < changed_end) {
    Q_EMIT dataChanged(index(first, 0), index(changed_end - 1, kColumns - 1));
  }
}

// A screen reader reads the cell that has the focus, which is the first one of its row.
QString PortListModel::Spoken(int row) const {
  QStringList fields;
  for (int column = 0; column < kColumns; ++column) {
    const QString& field = Field(entries_.at(row), column);
    if (!field.isEmpty()) {
      fields.append(headers_.value(column) + QLatin1Char(' ') + field);
    }
  }
  return fields.join(QStringLiteral(", "));
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
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  if (role == Qt::AccessibleTextRole && index.column() == kAppName) {
    return Spoken(index.row());
  }
  if (role != Qt::DisplayRole) {
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
