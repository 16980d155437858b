// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/table_file.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QSqlError>
#include <QVariant>

#include <chrono>
#include <sys/stat.h>

#include "core/copied_file.h"
#include "core/file_lock.h"
#include "core/table_check.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_core, "quayline.core")

constexpr QLatin1String kIdColumn("id");

QString Quoted(const QString& column) { return QLatin1Char('[') + column + QLatin1Char(']'); }

// A null text would be stored as a null.
QVariant Stored(const QString& text) { return text.isNull() ? QStringLiteral("") : text; }

QString GoodCopyOf(const QString& path) { return path + QStringLiteral(".good"); }

SqlAccess AccessTo(const QString& path) {
  const QFileInfo file(path);
  return file.isWritable() && QFileInfo(file.absolutePath()).isWritable() ? SqlAccess::kReadWrite
                                                                          : SqlAccess::kReadOnly;
}

std::pair<quint64, quint64> FileId(const QString& path) {
  struct stat found{};
  return stat(QFile::encodeName(path).constData(), &found) == 0
             ? std::pair<quint64, quint64>(found.st_dev, found.st_ino)
             : std::pair<quint64, quint64>();
}

}  // namespace

TableFile::Opened TableFile::Open(const QString& folder, const TableShape& shape) {
  const QString path = folder + QLatin1Char('/') + shape.file_name;
  if (const auto error = CheckFile(path, shape.table)) {
    return std::unexpected(*error);
  }
  return OpenFile(path, shape, AccessTo(path));
}

TableFile::Opened TableFile::OpenGoodCopy(const QString& folder, const TableShape& shape) {
  return OpenStandIn(GoodCopyOf(folder + QLatin1Char('/') + shape.file_name), shape);
}

TableFile::Opened TableFile::OpenStandIn(const QString& path, const TableShape& shape) {
  auto file = OpenFile(path, shape, SqlAccess::kReadOnly);
  if (file) {
    (*file)->is_stand_in_ = true;
  }
  return file;
}

TableFile::Opened TableFile::OpenEmpty(const TableShape& shape) {
  const QString memory = QStringLiteral(":memory:");
  std::unique_ptr<TableFile> file(new TableFile(memory, shape, SqlAccess::kReadWrite));
  file->is_stand_in_ = true;
  QSqlQuery query(file->connection_.Handle());
  if (!query.exec(QStringLiteral("CREATE TABLE [%1] (ID INTEGER PRIMARY KEY)").arg(shape.table)) ||
      !query.exec(QStringLiteral("PRAGMA query_only = ON"))) {
    return std::unexpected(SqlFailure(query.lastError(), memory));
  }
  if (const auto error = file->Verify()) {
    return std::unexpected(*error);
  }
  return file;
}

TableFile::Opened TableFile::OpenFile(const QString& path, const TableShape& shape,
                                      SqlAccess access) {
  std::unique_ptr<TableFile> file(new TableFile(path, shape, access));
  if (const auto error = file->Verify()) {
    return std::unexpected(*error);
  }
  return file;
}

TableFile::TableFile(const QString& path, const TableShape& shape, SqlAccess access)
    : shape_(shape),
      path_(path),
      connection_(path, access),
      file_id_(FileId(path)),
      is_writable_(access == SqlAccess::kReadWrite) {}

std::optional<DatabaseError> TableFile::Verify() {
  const QSqlDatabase handle = connection_.Handle();
  if (!handle.isOpen()) {
    return SqlFailure(handle.lastError(), path_);
  }
  QSqlQuery query(handle);
  if (const auto error = CheckSchema(query, path_, shape_.table)) {
    return error;
  }
  QString id_type;
  if (!ReadColumns(query, id_type)) {
    return SqlFailure(query.lastError(), path_);
  }
  if (!columns_.contains(kIdColumn)) {
    return NoTable(path_, shape_.table);
  }
  // Only the plain column can be looked up in an index; a column of text has to be made a number,
  // or "10" would come before "9".
  key_ = id_type.contains(QLatin1String("INT"), Qt::CaseInsensitive)
             ? QStringLiteral("[ID]")
             : QStringLiteral("CAST([ID] AS INTEGER)");
  is_seen_ = QStringLiteral(
      "[ID] = CAST([ID] AS INTEGER) AND CAST([ID] AS INTEGER) BETWEEN -2147483648 AND 2147483647");
  if (const auto error = CheckEnd(query, path_)) {
    return error;
  }
  // The search reads the whole file, but a file with pages that refer to each other in a circle can
  // only be read after it.
  return IsCopyOf(GoodCopyOf(path_), path_) ? std::nullopt
                                            : CheckContent(query, ContentCheck::kQuick, path_);
}

std::optional<DatabaseError> TableFile::CheckWhole() const {
  QSqlQuery query(connection_.Handle());
  return CheckContent(query, ContentCheck::kWhole, path_);
}

void TableFile::KeepGoodCopy() const {
  const QString copy = GoodCopyOf(path_);
  if (is_stand_in_ || IsCopyOf(copy, path_)) {
    return;
  }
  const FileLock lock(QFileInfo(path_).absolutePath(), std::chrono::milliseconds(500));
  if (lock.IsLocked()) {
    CopyTo(copy);
  }
}

bool TableFile::CopyTo(const QString& copy) const {
  QSqlDatabase handle = connection_.Handle();
  handle.transaction();
  QSqlQuery query(handle);
  // A transaction that has read something keeps writers out while the file is copied.
  const bool is_copied = query.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")) &&
                         query.next() && CopyWithTime(path_, copy);
  query.finish();
  handle.rollback();
  return is_copied;
}

int TableFile::Version() const {
  QSqlQuery query(connection_.Handle());
  return query.exec(QStringLiteral("PRAGMA data_version")) && query.next() ? query.value(0).toInt()
                                                                           : -1;
}

// Not before the file is copied: where any handle of a file is closed, the system drops all locks
// that the process has on it.
bool TableFile::HoldSince(int version) const {
  QSqlQuery query(connection_.Handle());
  return !is_writable_ || (query.exec(QStringLiteral("BEGIN IMMEDIATE")) && Version() == version);
}

bool TableFile::ReadColumns(QSqlQuery& query, QString& id_type) {
  if (!query.exec(QStringLiteral("PRAGMA table_info([%1])").arg(shape_.table))) {
    return false;
  }
  while (query.next()) {
    columns_.append(query.value(QStringLiteral("name")).toString().toLower());
    if (columns_.last() == kIdColumn) {
      id_type = query.value(QStringLiteral("type")).toString();
    }
  }
  return true;
}

int TableFile::Count() const {
  QSqlQuery query(connection_.Handle());
  query.prepare(QStringLiteral("SELECT count(*) FROM [%1] WHERE %2").arg(shape_.table, is_seen_));
  return Execute(query) && query.next() ? query.value(0).toInt() : 0;
}

void TableFile::Read(const QStringList& fields, std::optional<int> after_id, int limit,
                     const ReadRow& read_row) const {
  QSqlQuery query(connection_.Handle());
  const QString above = after_id ? QStringLiteral("%1 > ? AND ").arg(key_) : QString();
  query.prepare(SelectClause(fields) + above + is_seen_ +
                QStringLiteral(" ORDER BY %1 LIMIT ?").arg(key_));
  if (after_id) {
    query.addBindValue(*after_id);
  }
  query.addBindValue(limit);
  Fetch(query, fields.size(), read_row);
}

void TableFile::ReadOne(const QStringList& fields, int id, const ReadRow& read_row) const {
  QSqlQuery query(connection_.Handle());
  query.prepare(SelectClause(fields) + is_seen_ + QStringLiteral(" AND %1 = ? LIMIT 1").arg(key_));
  query.addBindValue(id);
  Fetch(query, fields.size(), read_row);
}

bool TableFile::Update(int id, const QStringList& fields, const QStringList& texts) {
  QStringList settings;
  QStringList kept;
  for (qsizetype i = 0; i < fields.size(); ++i) {
    if (columns_.contains(fields.at(i).toLower())) {
      settings.append(Quoted(fields.at(i)) + QStringLiteral(" = ?"));
      kept.append(texts.at(i));
    }
  }
  QSqlQuery query(connection_.Handle());
  query.prepare(QStringLiteral("UPDATE [%1] SET %2 WHERE %3 AND %4 = ?")
                    .arg(shape_.table, settings.join(QLatin1Char(',')), is_seen_, key_));
  for (const QString& text : std::as_const(kept)) {
    query.addBindValue(Stored(text));
  }
  query.addBindValue(id);
  return IsInPlace() && Execute(query) && query.numRowsAffected() > 0;
}

// One statement, so that two copies of the program cannot take the same ID.
bool TableFile::Insert(const QStringList& fields, const QStringList& texts, std::optional<int> id) {
  QStringList columns = {QStringLiteral("[ID]")};
  QStringList values = {QStringLiteral("next")};
  QStringList kept;
  for (qsizetype i = 0; i < fields.size(); ++i) {
    if (columns_.contains(fields.at(i).toLower())) {
      columns.append(Quoted(fields.at(i)));
      values.append(QStringLiteral("?"));
      kept.append(texts.at(i));
    }
  }
  const QString next =
      id ? QStringLiteral("SELECT %1 AS next WHERE NOT EXISTS (SELECT 1 FROM [%2] WHERE %3 = %1)")
               .arg(QString::number(*id), shape_.table, key_)
         : QStringLiteral("SELECT coalesce(max(%1), 0) + 1 AS next FROM [%2] WHERE %3")
               .arg(key_, shape_.table, is_seen_);
  QSqlQuery query(connection_.Handle());
  query.prepare(
      QStringLiteral("INSERT INTO [%1] (%2) SELECT %3 FROM (%4) WHERE next <= 2147483647")
          .arg(shape_.table, columns.join(QLatin1Char(',')), values.join(QLatin1Char(',')), next));
  for (const QString& text : std::as_const(kept)) {
    query.addBindValue(Stored(text));
  }
  return IsInPlace() && Execute(query) && query.numRowsAffected() == 1;
}

TableData TableFile::ReadAll() const {
  TableData data{.name = shape_.table, .columns = columns_, .rows = {}};
  Read(columns_, {}, -1, [&](int, const QStringList& texts) { data.rows.append(texts); });
  return data;
}

bool TableFile::Rewrite(const std::function<TableData(const TableData&)>& change) {
  return Transact([&] { return ReplaceRows(change(ReadAll())); });
}

bool TableFile::Transact(const std::function<bool()>& change) {
  QSqlQuery query(connection_.Handle());
  // Takes the right to write before anything is read.
  if (!query.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
    return false;
  }
  if (IsInPlace() && change() && query.exec(QStringLiteral("COMMIT"))) {
    return true;
  }
  query.exec(QStringLiteral("ROLLBACK"));
  return false;
}

bool TableFile::ReplaceRows(const TableData& rows) {
  QSqlQuery query(connection_.Handle());
  QStringList columns;
  for (const QString& column : rows.columns) {
    if (!columns_.contains(column.toLower())) {
      query.prepare(
          QStringLiteral("ALTER TABLE [%1] ADD COLUMN %2 TEXT").arg(shape_.table, Quoted(column)));
      if (!Execute(query)) {
        return false;
      }
      columns_.append(column.toLower());
    }
    columns.append(Quoted(column));
  }
  query.prepare(QStringLiteral("DELETE FROM [%1] WHERE %2").arg(shape_.table, is_seen_));
  if (!Execute(query)) {
    return false;
  }
  const QStringList marks(columns.size(), QStringLiteral("?"));
  query.prepare(
      QStringLiteral("INSERT INTO [%1] (%2) VALUES (%3)")
          .arg(shape_.table, columns.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
  for (const QStringList& row : rows.rows) {
    for (const QString& text : row) {
      query.addBindValue(Stored(text));
    }
    if (!Execute(query)) {
      return false;
    }
  }
  return true;
}

QString TableFile::SelectClause(const QStringList& fields) const {
  QStringList columns = {key_};
  for (const QString& field : fields) {
    columns.append(columns_.contains(field) ? Quoted(field) : QStringLiteral("''"));
  }
  return QStringLiteral("SELECT %1 FROM [%2] WHERE ")
      .arg(columns.join(QLatin1Char(',')), shape_.table);
}

void TableFile::Fetch(QSqlQuery& query, qsizetype fields, const ReadRow& read_row) const {
  query.setForwardOnly(true);
  if (!Execute(query)) {
    return;
  }
  while (query.next()) {
    QStringList texts;
    for (qsizetype field = 0; field < fields; ++field) {
      texts.append(query.value(static_cast<int>(field) + 1).toString());
    }
    read_row(query.value(0).toInt(), texts);
  }
}

// What is written to a file that has lost its name is lost.
bool TableFile::IsInPlace() const { return FileId(path_) == file_id_; }

bool TableFile::Execute(QSqlQuery& query) const {
  if (query.exec()) {
    return true;
  }
  qCWarning(log_core).noquote() << shape_.file_name << query.lastError().text();
  return false;
}

}  // namespace quayline
