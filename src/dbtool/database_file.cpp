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
#include <utility>

namespace quayline::dbtool {

namespace {

constexpr char kConnection[] = "quayline-dbtool";

// An SQLite file that is open while this lives.
class OpenDatabase final {
 public:
  explicit OpenDatabase(const QString& file, const char* options = "")
      : database_(
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QLatin1String(kConnection))) {
    database_.setDatabaseName(file);
    database_.setConnectOptions(QLatin1String(options));
    is_open_ = database_.open();
  }
  ~OpenDatabase() {
    database_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(QLatin1String(kConnection));
  }
  OpenDatabase(const OpenDatabase&) = delete;
  OpenDatabase& operator=(const OpenDatabase&) = delete;

  bool IsOpen() const { return is_open_; }
  QSqlDatabase& Get() { return database_; }

 private:
  QSqlDatabase database_;
  bool is_open_ = false;
};

template <typename Record>
using TextFields = QList<std::pair<QString, QString Record::*>>;

// How a kind of record lies in its table.
template <typename Record>
struct Table {
  QString name;
  TextFields<Record> fields;
};

Table<RouterRecord> RoutersTable() {
  Table<RouterRecord> table{.name = QStringLiteral("routers"), .fields = {}};
  for (const RouterField& field : RouterFields()) {
    table.fields.emplaceBack(QLatin1String(field.name), field.member);
  }
  for (const RouterScript& script : RouterScripts()) {
    table.fields.emplaceBack(QLatin1String(script.name), script.member);
  }
  return table;
}

Table<AppPortRecord> PortsTable() {
  return {.name = QStringLiteral("ports"),
          .fields = {{QStringLiteral("appname"), &AppPortRecord::appname},
                     {QStringLiteral("nameforrouter"), &AppPortRecord::nameforrouter},
                     {QStringLiteral("tcpportsonly"), &AppPortRecord::tcpportsonly},
                     {QStringLiteral("udpportsonly"), &AppPortRecord::udpportsonly},
                     {QStringLiteral("tcpudpports"), &AppPortRecord::tcpudpports}}};
}

Table<CustomPortRecord> CustomTable() {
  return {.name = QStringLiteral("custom"),
          .fields = {{QStringLiteral("appname"), &CustomPortRecord::appname},
                     {QStringLiteral("portype"), &CustomPortRecord::portype},
                     {QStringLiteral("startport"), &CustomPortRecord::startport},
                     {QStringLiteral("endport"), &CustomPortRecord::endport}}};
}

template <typename Record>
QString CreateStatement(const Table<Record>& table) {
  QString columns = QStringLiteral("ID INTEGER PRIMARY KEY");
  for (const auto& [name, member] : table.fields) {
    columns += QStringLiteral(", %1 TEXT").arg(name);
  }
  return QStringLiteral("CREATE TABLE %1 (%2)").arg(table.name, columns);
}

template <typename Source, typename Record>
bool Insert(QSqlQuery& query, const Table<Record>& table, const QList<Source>& sources) {
  query.prepare(QStringLiteral("INSERT INTO %1 VALUES (?%2)")
                    .arg(table.name, QStringLiteral(", ?").repeated(table.fields.size())));
  for (const Source& source : sources) {
    query.addBindValue(source.record.id);
    for (const auto& [name, member] : table.fields) {
      const QString& text = source.record.*member;
      query.addBindValue(text.isNull() ? QStringLiteral("") : text);
    }
    if (!query.exec()) {
      return false;
    }
  }
  return true;
}

// The bytes of a database with the one table, made in the file `scratch`. They do not depend on how
// the files of the routers are called: rows are written in the order of their IDs.
template <typename Source, typename Record>
std::expected<QByteArray, QString> DatabaseBytes(const Table<Record>& table, QList<Source> sources,
                                                 const QString& scratch) {
  std::ranges::sort(sources, {}, [](const Source& source) { return source.record.id; });
  {
    OpenDatabase database(scratch);
    QSqlQuery query(database.Get());
    const bool is_made = database.IsOpen() && database.Get().transaction() &&
                         query.exec(CreateStatement(table)) && Insert(query, table, sources);
    const QSqlError error = query.lastError();
    query.finish();
    if (!is_made || !database.Get().commit()) {
      return std::unexpected(
          QStringLiteral("The table %1 cannot be made: %2.").arg(table.name, error.text()));
    }
  }
  QFile file(scratch);
  if (!file.open(QIODevice::ReadOnly)) {
    return std::unexpected(
        QStringLiteral("%1 cannot be read: %2.").arg(scratch, file.errorString()));
  }
  return file.readAll();
}

template <typename Record>
std::expected<QList<Record>, QString> ReadRecords(QSqlDatabase& database,
                                                  const Table<Record>& table) {
  QSqlQuery query(database);
  query.setForwardOnly(true);
  if (!query.exec(QStringLiteral("SELECT * FROM %1 ORDER BY ID").arg(table.name))) {
    return std::unexpected(query.lastError().text());
  }
  const QSqlRecord columns = query.record();
  QList<Record> records;
  while (query.next()) {
    Record record;
    record.id = query.value(columns.indexOf(QStringLiteral("ID"))).toInt();
    for (const auto& [name, member] : table.fields) {
      const int column = columns.indexOf(name);
      record.*member = column < 0 ? QString() : query.value(column).toString();
    }
    records.append(record);
  }
  if (query.lastError().isValid()) {
    return std::unexpected(query.lastError().text());
  }
  return records;
}

template <typename Record>
std::expected<QString, QString> DumpTable(QSqlDatabase& database, const Table<Record>& table,
                                          QString (*format)(const QList<Record>&)) {
  const auto records = ReadRecords(database, table);
  if (!records) {
    return std::unexpected(
        QStringLiteral("The table %1 cannot be read: %2.").arg(table.name, records.error()));
  }
  return format(*records);
}

}  // namespace

std::expected<void, QString> WriteDatabases(const ProgramData& data, const QString& folder) {
  const QTemporaryDir scratch;
  if (!scratch.isValid() || !QDir().mkpath(folder)) {
    return std::unexpected(QStringLiteral("The folder %1 cannot be made.").arg(folder));
  }
  const std::array contents = {
      std::pair("routers.mdb", DatabaseBytes(RoutersTable(), data.routers,
                                             scratch.filePath(QStringLiteral("routers")))),
      std::pair("ports.mdb",
                DatabaseBytes(PortsTable(), data.ports, scratch.filePath(QStringLiteral("ports")))),
      std::pair("custom.mdb", DatabaseBytes(CustomTable(), data.custom,
                                            scratch.filePath(QStringLiteral("custom")))),
  };
  std::vector<std::unique_ptr<QSaveFile>> files;
  for (const auto& [name, bytes] : contents) {
    if (!bytes) {
      return std::unexpected(bytes.error());
    }
    const QString path = QDir(folder).filePath(QLatin1String(name));
    files.push_back(std::make_unique<QSaveFile>(path));
    // Flushed by hand: a full disk is not told of by commit().
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
  OpenDatabase database(file, "QSQLITE_OPEN_READONLY");
  const QStringList tables =
      database.IsOpen() ? database.Get().tables(QSql::Tables) : QStringList();
  const auto has = [&](const char* name) {
    return tables.contains(QLatin1String(name), Qt::CaseInsensitive);
  };
  if (has("routers")) {
    return DumpTable(database.Get(), RoutersTable(), FormatRouters);
  }
  if (has("ports")) {
    return DumpTable(database.Get(), PortsTable(), FormatPorts);
  }
  if (has("custom")) {
    return DumpTable(database.Get(), CustomTable(), FormatCustom);
  }
  return std::unexpected(
      QStringLiteral("%1 is no SQLite database with a table routers, ports or custom.").arg(file));
}

}  // namespace quayline::dbtool
