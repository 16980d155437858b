// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/merge_rows.h"

#include <QHash>
#include <QSet>

#include <algorithm>

#include "core/own_routers.h"

namespace quayline {

namespace {

constexpr QLatin1String kIdColumn("id");

qsizetype IndexOf(const QStringList& columns, const QString& name) {
  const auto found = std::ranges::find_if(columns, [&](const QString& column) {
    return column.compare(name, Qt::CaseInsensitive) == 0;
  });
  return found == columns.end() ? -1 : found - columns.begin();
}

// The rows of `table` with the columns `wanted`; texts that it lacks are empty.
QList<QStringList> RowsWith(const QStringList& wanted, const TableData& table) {
  QList<qsizetype> places;
  for (const QString& column : wanted) {
    places.append(IndexOf(table.columns, column));
  }
  QList<QStringList> rows;
  for (const QStringList& row : table.rows) {
    QStringList texts;
    for (const qsizetype place : places) {
      // A null and an empty text are the same.
      texts.append(place < 0 || row.at(place).isNull() ? QStringLiteral("") : row.at(place));
    }
    rows.append(texts);
  }
  return rows;
}

class Merge final {
 public:
  Merge(const TableVersions& versions, const QString& name_column)
      : columns_(versions.users.columns) {
    for (const QString& column : versions.shipped.columns) {
      if (IndexOf(columns_, column) < 0) {
        new_columns_.append(columns_.size());
        columns_.append(column);
      }
    }
    id_ = IndexOf(columns_, kIdColumn);
    name_ = IndexOf(columns_, name_column);
    if (!HasKeys()) {
      return;
    }
    base_ = ByName(RowsWith(columns_, versions.base));
    shipped_ = RowsWith(columns_, versions.shipped);
    users_ = RowsWith(columns_, versions.users);
  }

  // A foreign file may have any columns.
  bool HasKeys() const { return id_ >= 0 && name_ >= 0; }

  TableData Result(const QString& table_name) {
    const QHash<QString, QStringList> users = ByName(users_);
    QSet<QString> shipped_names;
    for (const QStringList& row : shipped_) {
      const QString& name = row.at(name_);
      if (shipped_names.contains(name)) {
        continue;
      }
      shipped_names.insert(name);
      const auto users_row = users.find(name);
      if (users_row != users.end()) {
        Take(IsUnchanged(*users_row) ? row : UsersRow(*users_row, row));
      } else if (!base_.contains(name)) {
        Take(row);
      }
    }
    TakeRowsOfTheUser(shipped_names);
    return {.name = table_name, .columns = columns_, .rows = rows_};
  }

 private:
  QHash<QString, QStringList> ByName(const QList<QStringList>& rows) const {
    QHash<QString, QStringList> by_name;
    for (const QStringList& row : rows) {
      if (!by_name.contains(row.at(name_))) {
        by_name.insert(row.at(name_), row);
      }
    }
    return by_name;
  }

  QStringList WithId(QStringList row, const QString& id) const {
    row[id_] = id;
    return row;
  }

  // The user cannot have changed what his file did not have. A router that he added or imported
  // keeps its ID: who wrote its scripts is known by it.
  QStringList UsersRow(QStringList users_row, const QStringList& shipped_row) const {
    for (const qsizetype column : new_columns_) {
      users_row[column] = shipped_row.at(column);
    }
    const bool is_own = users_row.at(id_).toLongLong() >= kFirstOwnRouterId;
    return is_own ? users_row : WithId(users_row, shipped_row.at(id_));
  }

  bool IsUnchanged(const QStringList& users_row) const {
    const auto base = base_.find(users_row.at(name_));
    return base != base_.end() && WithId(users_row, base->at(id_)) == *base;
  }

  void Take(const QStringList& row) {
    rows_.append(row);
    ids_.insert(row.at(id_).toLongLong());
    highest_id_ = std::max(highest_id_, row.at(id_).toLongLong());
  }

  void TakeRowsOfTheUser(const QSet<QString>& shipped_names) {
    QList<QStringList> left;
    QSet<QString> seen;
    for (const QStringList& row : users_) {
      const bool is_first = !seen.contains(row.at(name_));
      seen.insert(row.at(name_));
      if (!is_first || (!shipped_names.contains(row.at(name_)) && !IsUnchanged(row))) {
        left.append(row);
        highest_id_ = std::max(highest_id_, row.at(id_).toLongLong());
      }
    }
    for (const QStringList& row : left) {
      const bool is_taken = ids_.contains(row.at(id_).toLongLong());
      Take(is_taken ? WithId(row, QString::number(highest_id_ + 1)) : row);
    }
  }

  QStringList columns_;
  QList<qsizetype> new_columns_;  // that the user's file lacks
  qsizetype id_ = 0;
  qsizetype name_ = 0;
  QHash<QString, QStringList> base_;
  QList<QStringList> shipped_;
  QList<QStringList> users_;
  QList<QStringList> rows_;
  QSet<qlonglong> ids_;
  qlonglong highest_id_ = 0;
};

}  // namespace

TableData MergeRows(const TableVersions& versions, const QString& name_column) {
  Merge merge(versions, name_column);
  return merge.HasKeys() ? merge.Result(versions.users.name) : versions.users;
}

}  // namespace quayline
