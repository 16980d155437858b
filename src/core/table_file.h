// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSqlQuery>
#include <QStringList>

#include <expected>
#include <functional>
#include <memory>
#include <optional>

#include "core/database_error.h"
#include "core/records.h"
#include "core/sql_connection.h"
#include "core/table_data.h"

namespace quayline {

// Which table a file holds.
struct TableShape {
  QString file_name;
  QString table;
};

template <typename Record>
TableShape ShapeOf() {
  return {QLatin1String(kTableOf<Record>.file_name), QLatin1String(kTableOf<Record>.name)};
}

// The table of one database file, open as long as the object lives. Rows whose ID is not a whole
// number of 32 bits are not seen. Nothing is written to a file that another program has replaced. A
// row is given as its ID and the texts of the requested fields, in their order; a null, and a field
// that the file lacks, is an empty text.
class TableFile final {
 public:
  using ReadRow = std::function<void(int id, const QStringList& texts)>;

  using Opened = std::expected<std::unique_ptr<TableFile>, DatabaseError>;

  // The file is untrusted. It is searched for damage unless the good copy was made of it, and
  // whatever SQLite would have to compute, such as a view, is refused: it could be without end.
  static Opened Open(const QString& folder, const TableShape& shape);
  // The copy that KeepGoodCopy() has made, to be read only.
  static Opened OpenGoodCopy(const QString& folder, const TableShape& shape);
  // A file under another name, for example of the shipped databases.
  static Opened OpenFile(const QString& path, const TableShape& shape, SqlAccess access);
  // A file that stands in for another, and an empty table in memory. Both are only read.
  static Opened OpenStandIn(const QString& path, const TableShape& shape);
  static Opened OpenEmpty(const TableShape& shape);
  // Reads all of the file, also if the good copy was made of it: a disk may have lost a part.
  std::optional<DatabaseError> CheckWhole() const;
  // Copies the file, which is known to be good, unless the copy is of the same state already. Does
  // nothing for a file that stands in for another.
  void KeepGoodCopy() const;
  // Writes a copy of the file, and keeps other programs from writing to it meanwhile. False when
  // that fails.
  bool CopyTo(const QString& copy) const;
  // Changes when another program has written to the file.
  int Version() const;
  // No other program writes to the file any more as long as this object lives. False when one has
  // since `version`, or is writing now.
  bool HoldSince(int version) const;

  int Count() const;
  // The rows with an ID above `after_id`, or all, in the order of their IDs, up to `limit` (-1:
  // all).
  void Read(const QStringList& fields, std::optional<int> after_id, int limit,
            const ReadRow& read_row) const;
  void ReadOne(const QStringList& fields, int id, const ReadRow& read_row) const;
  // Texts of fields that the file lacks are lost. False when there is no such row or the file
  // cannot be written.
  bool Update(int id, const QStringList& fields, const QStringList& texts);
  // Under `id`, or else the ID above the highest. False when the ID is taken. Texts of fields that
  // the file lacks are lost.
  bool Insert(const QStringList& fields, const QStringList& texts, std::optional<int> id = {});
  // All that `change` does to the file, or nothing of it if that returns false. No other program
  // writes meanwhile. False when nothing was changed.
  bool Transact(const std::function<bool()>& change);

  // All rows that are seen, with all columns of the file.
  TableData ReadAll() const;
  // Replaces the rows that are seen by what `change` makes of them, all or none; columns that are
  // new are added to the file. No other program writes meanwhile. False when nothing was changed.
  bool Rewrite(const std::function<TableData(const TableData&)>& change);

 private:
  TableFile(const QString& path, const TableShape& shape, SqlAccess access);

  std::optional<DatabaseError> Verify();
  bool ReadColumns(QSqlQuery& query, QString& id_type);
  QString SelectClause(const QStringList& fields) const;
  void Fetch(QSqlQuery& query, qsizetype fields, const ReadRow& read_row) const;
  bool Execute(QSqlQuery& query) const;
  bool IsInPlace() const;
  bool ReplaceRows(const TableData& rows);

  TableShape shape_;
  QString path_;
  SqlConnection connection_;
  std::pair<quint64, quint64> file_id_;  // device and number
  bool is_writable_ = false;
  bool is_stand_in_ = false;
  QStringList columns_;  // of the file, in lower case
  QString key_;          // the ID as an expression that is a number in every row that is seen
  QString is_seen_;
};

}  // namespace quayline
