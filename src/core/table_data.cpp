// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/table_data.h"

#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "core/sql_connection.h"

namespace quayline {

namespace {

QString Identifier(QString name) {
  name.replace(QLatin1Char('"'), QStringLiteral("\"\""));
  return QLatin1Char('"') + name + QLatin1Char('"');
}

bool IsKey(const TableData& table, qsizetype column) {
  if (table.columns.at(column).compare(QLatin1String("ID"), Qt::CaseInsensitive) != 0) {
    return false;
  }
  QSet<qlonglong> seen;
  for (const QStringList& row : table.rows) {
    bool is_number = false;
    const qlonglong id = row.at(column).toLongLong(&is_number);
    if (!is_number || seen.contains(id)) {
      return false;
    }
    seen.insert(id);
  }
  return true;
}

QString CreateStatement(const TableData& table) {
  QStringList columns;
  for (qsizetype column = 0; column < table.columns.size(); ++column) {
    columns.append(
        Identifier(table.columns.at(column)) +
        (IsKey(table, column) ? QLatin1String(" INTEGER PRIMARY KEY") : QLatin1String(" TEXT")));
  }
  return QStringLiteral("CREATE TABLE %1 (%2)")
      .arg(Identifier(table.name), columns.join(QLatin1Char(',')));
}

bool InsertRows(QSqlQuery& query, const TableData& table) {
  const QStringList marks(table.columns.size(), QStringLiteral("?"));
  if (!query.prepare(QStringLiteral("INSERT INTO %1 VALUES (%2)")
                         .arg(Identifier(table.name), marks.join(QLatin1Char(','))))) {
    return false;
  }
  for (const QStringList& row : table.rows) {
    for (qsizetype column = 0; column < row.size(); ++column) {
      query.bindValue(static_cast<int>(column), row.at(column));
    }
    if (!query.exec()) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::expected<void, QString> WriteTables(const QList<TableData>& tables, const QString& path) {
  const SqlConnection connection(path, SqlAccess::kReadWrite);
  QSqlDatabase handle = connection.Handle();
  if (!handle.isOpen() || !handle.transaction()) {
    return std::unexpected(handle.lastError().databaseText());
  }
  for (const TableData& table : tables) {
    QSqlQuery query(handle);
    if (!query.exec(CreateStatement(table)) || !InsertRows(query, table)) {
      return std::unexpected(query.lastError().databaseText());
    }
  }
  if (!handle.commit()) {
    return std::unexpected(handle.lastError().databaseText());
  }
  return {};
}

}  // namespace quayline
