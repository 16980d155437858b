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
  looks_.resize(entries_.size());
  endInsertRows();
}

void PortListModel::Replace(int row, const PortEntry& entry) {
  if (row < 0 || row >= rowCount()) {
    return;
  }
  if (entries_.at(row) != entry) {
    looks_[row] = {};
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
    looks_.remove(first, last - first + 1);
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
    looks_.insert(old_end, new_end - old_end, EntryLook());
    endInsertRows();
  } else if (new_end < old_end) {
    beginRemoveRows({}, new_end, old_end - 1);
    entries_.remove(new_end, old_end - new_end);
    looks_.remove(new_end, old_end - new_end);
    endRemoveRows();
  }
  for (int row = first; row < std::min(old_end, new_end); ++row) {
    if (entries_.at(row) != entries.at(row)) {
      looks_[row] = {};
    }
  }
  entries_ = std::move(entries);
  if (const int changed_end = std::min(old_end, new_end); first < changed_end) {
    Q_EMIT dataChanged(index(first, 0), index(changed_end - 1, kColumns - 1));
  }
}

// The first row with `entry` after `former`, or else from the beginning; -1 if it is not found.
qsizetype PortListModel::NextRowOf(const PortEntry& entry, qsizetype former) const {
  const qsizetype row = entries_.indexOf(entry, former + 1);
  return row >= 0 ? row : entries_.indexOf(entry);
}

QList<EntryLook> PortListModel::LooksOf(const QList<PortEntry>& entries) const {
  QList<EntryLook> looks;
  qsizetype row = -1;
  for (const PortEntry& entry : entries) {
    row = NextRowOf(entry, row);
    looks.append(looks_.value(row));
  }
  return looks;
}

QList<SeenEntry> PortListModel::SeenOf(const QList<PortEntry>& entries) const {
  const QList<EntryLook> looks = LooksOf(entries);
  QList<SeenEntry> seen;
  for (qsizetype i = 0; i < entries.size(); ++i) {
    seen.append({entries[i], looks[i]});
  }
  return seen;
}

void PortListModel::NoteLooks(const QList<SeenEntry>& seen) {
  qsizetype row = -1;
  for (const SeenEntry& one : seen) {
    row = NextRowOf(one.entry, row);
    if (row >= 0) {
      looks_[row] = one.look;
    }
  }
  if (rowCount() > 0) {
    Q_EMIT dataChanged(index(0, kOnRouter), index(rowCount() - 1, kOnRouter));
  }
}

void PortListModel::ForgetLooks() {
  looks_.fill({});
  NoteLooks({});
}

QString PortListModel::CellText(int row, int column) const {
  if (column == kOnRouter) {
    return look_texts_.cell ? look_texts_.cell(looks_.at(row)) : QString();
  }
  return Field(entries_.at(row), column);
}

// A screen reader reads the cell that has the focus, which is the first one of its row.
QString PortListModel::Spoken(int row) const {
  QStringList fields;
  for (int column = 0; column < kColumns; ++column) {
    const QString field = CellText(row, column);
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
  if (role == Qt::ToolTipRole && index.column() == kOnRouter && look_texts_.tool_tip) {
    return look_texts_.tool_tip(looks_.at(index.row()));
  }
  if (role != Qt::DisplayRole) {
    return {};
  }
  const QString text = CellText(index.row(), index.column());
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
