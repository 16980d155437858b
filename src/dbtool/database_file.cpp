// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "dbtool/database_file.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "core/sql_connection.h"
#include "core/table_data.h"

namespace quayline::dbtool {

namespace {

// The bytes of a database with the one table, written to the file `scratch`. They do not depend on
// how the files of the routers are called: rows are in the order of their IDs.
template <typename Source>
std::expected<QByteArray, QString> DatabaseBytes(QList<Source> sources, const QString& scratch) {
  using Record = decltype(Source::record);
  std::ranges::sort(sources, {}, [](const Source& source) { return source.record.id; });
  TableData table{.name = QLatin1String(kTableOf<Record>.name),
                  .columns = QStringList{QStringLiteral("ID")} + ColumnNames<Record>(),
                  .rows = {}};
  for (const Source& source : sources) {
    table.rows.append(QStringList{QString::number(source.record.id)} + TextsOf(source.record));
  }
  if (const auto written = WriteTables({table}, scratch); !written) {
    return std::unexpected(
        QStringLiteral("The table %1 cannot be made: %2.").arg(table.name, written.error()));
  }
  QFile file(scratch);
  if (!file.open(QIODevice::ReadOnly)) {
    return std::unexpected(
        QStringLiteral("%1 cannot be read: %2.").arg(scratch, file.errorString()));
  }
  return file.readAll();
}

template <typename Record>
std::expected<QList<Record>, QString> ReadRecords(const QSqlDatabase& database) {
  QSqlQuery query(database);
  query.setForwardOnly(true);
  if (!query.exec(QStringLiteral("SELECT * FROM %1 ORDER BY ID")
                      .arg(QLatin1String(kTableOf<Record>.name)))) {
    return std::unexpected(query.lastError().text());
  }
  const QSqlRecord row = query.record();
  QList<Record> records;
  while (query.next()) {
    Record record;
    record.id = query.value(row.indexOf(QStringLiteral("ID"))).toInt();
    for (const Column<Record>& column : kTableOf<Record>.columns) {
      const int index = row.indexOf(QLatin1String(column.name));
      record.*(column.member) = index < 0 ? QString() : query.value(index).toString();
    }
    records.append(record);
  }
  if (query.lastError().isValid()) {
    return std::unexpected(query.lastError().text());
  }
  return records;
}

// Nothing when the file has no table of this kind.
template <typename Record>
std::optional<std::expected<QString, QString>> DumpTable(const QSqlDatabase& database,
                                                         QString (*format)(const QList<Record>&)) {
  const QString name = QLatin1String(kTableOf<Record>.name);
  if (!database.tables(QSql::Tables).contains(name, Qt::CaseInsensitive)) {
    return std::nullopt;
  }
  const auto records = ReadRecords<Record>(database);
  if (!records) {
    return std::unexpected(
        QStringLiteral("The table %1 cannot be read: %2.").arg(name, records.error()));
  }
  return format(*records);
}

// Whether the file has rows that would be lost, as far as that can be known.
bool HasOtherPrograms(const QString& path, const QList<CustomSource>& sources) {
  if (!QFileInfo(path).isFile() || QFileInfo(path).size() == 0) {
    return false;
  }
  const SqlConnection connection(path, SqlAccess::kReadOnly);
  const auto records = ReadRecords<CustomPortRecord>(connection.Handle());
  return !records || std::ranges::any_of(*records, [&](const CustomPortRecord& record) {
    return std::ranges::none_of(sources, [&](const CustomSource& source) {
      return TextsOf(source.record) == TextsOf(record);
    });
  });
}

}  // namespace

std::expected<void, QString> WriteDatabases(const ProgramData& data, const QString& folder,
                                            OwnPrograms own_programs) {
  const QString custom_file =
      QDir(folder).filePath(QLatin1String(kTableOf<CustomPortRecord>.file_name));
  if (own_programs == OwnPrograms::kKeep && HasOtherPrograms(custom_file, data.custom)) {
    return std::unexpected(
        QStringLiteral("%1 holds programs that somebody entered. Nothing was written. To replace "
                       "them, give --replace-custom.")
            .arg(custom_file));
  }
  const QTemporaryDir scratch;
  if (!scratch.isValid() || !QDir().mkpath(folder)) {
    return std::unexpected(QStringLiteral("The folder %1 cannot be made.").arg(folder));
  }
  const auto scratch_file = [&](const char* name) { return scratch.filePath(QLatin1String(name)); };
  const std::array contents = {
      std::pair(kTableOf<RouterRecord>.file_name,
                DatabaseBytes(data.routers, scratch_file("routers"))),
      std::pair(kTableOf<AppPortRecord>.file_name,
                DatabaseBytes(data.ports, scratch_file("ports"))),
      std::pair(kTableOf<CustomPortRecord>.file_name,
                DatabaseBytes(data.custom, scratch_file("custom"))),
  };
  std::vector<std::unique_ptr<QSaveFile>> files;
  for (const auto& [name, bytes] : contents) {
    if (!bytes) {
      return std::unexpected(bytes.error());
    }
    const QString path = QDir(folder).filePath(QLatin1String(name));
    files.push_back(std::make_unique<QSaveFile>(path));
    // Flushed explicitly: commit() does not report a full disk.
    if (!files.back()->open(QIODevice::WriteOnly) || files.back()->write(*bytes) != bytes->size() ||
        !files.back()->flush()) {
      return std::unexpected(
          QStringLiteral("%1 cannot be written: %2.").arg(path, files.back()->errorString()));
    }
  }
  for (const auto& file : files) {
    if (!file->commit()) {
      return std::unexpected(
          QStringLiteral("%1 cannot be written: %2.").arg(file->fileName(), file->errorString()));
    }
  }
  return {};
}

std::expected<QString, QString> DumpDatabase(const QString& file) {
  if (!QFileInfo(file).isFile()) {
    return std::unexpected(QStringLiteral("There is no file %1.").arg(file));
  }
  const SqlConnection connection(file, SqlAccess::kReadOnly);
  const QSqlDatabase database = connection.Handle();
  if (auto text = DumpTable<RouterRecord>(database, FormatRouters)) {
    return *text;
  }
  if (auto text = DumpTable<AppPortRecord>(database, FormatPorts)) {
    return *text;
  }
  if (auto text = DumpTable<CustomPortRecord>(database, FormatCustom)) {
    return *text;
  }
  return std::unexpected(
      QStringLiteral("%1 is no SQLite database with a table routers, ports or custom.").arg(file));
}

}  // namespace quayline::dbtool
