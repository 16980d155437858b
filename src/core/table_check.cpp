// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/table_check.h"

#include <QDir>
#include <QFileInfo>
#include <QVariant>

#include "core/jet_file.h"

namespace quayline {

namespace {

// SQLite's numbers for these errors.
constexpr int kSqlError = 1;
constexpr int kBusy = 5;
constexpr int kCorrupt = 11;
constexpr int kCannotOpen = 14;
constexpr int kNotADatabase = 26;
constexpr int kPrimaryPart = 0xff;  // the rest of a number only refines it

constexpr qint64 kMaxBytes = qint64{512} << 20;

constexpr Message kMissing{"The file \"%1\" is missing."};
constexpr Message kNoFile{"\"%1\" is not a file."};
constexpr Message kCannotRead{"The file \"%1\" cannot be read."};
constexpr Message kTooLarge{"The file \"%1\" is too large."};
constexpr Message kCannotUse{"The file \"%1\" cannot be used."};
constexpr Message kNoDatabase{"The file \"%1\" is not a database."};
constexpr Message kIsInUse{
    "The file \"%1\" is in use by another program. Please close that one, and start again."};
constexpr Message kUnreadable{"The file \"%1\" cannot be read as a database (%2)."};
constexpr Message kNoTable{"The file \"%1\" has no table \"%2\" with a column \"ID\"."};
constexpr Message kNotPlain{"The file \"%1\" contains more than plain tables."};
constexpr Message kEndMissing{"The end of the file \"%1\" is missing."};
constexpr Message kDamaged{"The file \"%1\" is damaged."};

QString NativePath(const QString& path) { return QDir::toNativeSeparators(path); }

}  // namespace

std::optional<DatabaseError> CheckFile(const QString& path, const QString& table) {
  const QFileInfo file(path);
  const QString name = NativePath(path);
  if (!file.exists()) {
    return DatabaseError{kCannotOpen, {{kMissing, {name}}}};
  }
  if (!file.isFile()) {
    return DatabaseError{kCannotOpen, {{kNoFile, {name}}}, true};
  }
  if (!file.isReadable()) {
    return DatabaseError{kCannotOpen, {{kCannotRead, {name}}}};
  }
  if (file.size() > kMaxBytes) {
    return DatabaseError{kCannotOpen, {{kTooLarge, {name}}}};
  }
  if (const auto converted = ConvertJetFile(path, table); !converted) {
    return DatabaseError{kCannotOpen,
                         {{kCannotUse, {name}}, converted.error().reason},
                         converted.error().is_damaged};
  }
  return std::nullopt;
}

DatabaseError SqlFailure(const QSqlError& error, const QString& file) {
  const QString path = NativePath(file);
  const int number = error.nativeErrorCode().toInt();
  const int primary = number & kPrimaryPart;
  if (primary == kNotADatabase) {
    return {number, {{kNoDatabase, {path}}}, true};
  }
  if (primary == kBusy) {
    return {number, {{kIsInUse, {path}}}};
  }
  return {number == 0 ? kCannotOpen : number,
          {{kUnreadable, {path, error.databaseText()}}},
          primary == kSqlError || primary == kCorrupt};
}

DatabaseError NoTable(const QString& path, const QString& table) {
  return {kSqlError, {{kNoTable, {NativePath(path), table}}}, true};
}

// Plain tables and indices are all that the program's own files have. Views, triggers, virtual
// tables and expressions are code of an unknown author.
std::optional<DatabaseError> CheckSchema(QSqlQuery& query, const QString& path,
                                         const QString& table) {
  if (!query.exec(QStringLiteral("PRAGMA ignore_check_constraints = ON")) ||
      !query.exec(QStringLiteral("SELECT type, sql FROM sqlite_master WHERE tbl_name = '%1' "
                                 "COLLATE NOCASE OR type NOT IN ('table', 'index')")
                      .arg(table))) {
    return SqlFailure(query.lastError(), path);
  }
  bool is_plain = true;
  while (query.next()) {
    const QString type = query.value(0).toString();
    const QString sql = query.value(1).toString();
    is_plain = is_plain && (type == QLatin1String("index") ||
                            (type == QLatin1String("table") &&
                             sql.startsWith(QLatin1String("CREATE TABLE"), Qt::CaseInsensitive)));
  }
  if (!query.exec(QStringLiteral("SELECT (SELECT count(*) FROM pragma_table_xinfo('%1') WHERE "
                                 "hidden <> 0) + (SELECT count(*) FROM pragma_index_list('%1') AS "
                                 "list, pragma_index_xinfo(list.name) AS part WHERE part.cid < -1)")
                      .arg(table)) ||
      !query.next()) {
    return SqlFailure(query.lastError(), path);
  }
  if (!is_plain || query.value(0).toInt() > 0) {
    return DatabaseError{kSqlError, {{kNotPlain, {NativePath(path)}}}, true};
  }
  return std::nullopt;
}

std::optional<DatabaseError> CheckEnd(QSqlQuery& query, const QString& path) {
  if (!query.exec(QStringLiteral("PRAGMA page_size")) || !query.next()) {
    return SqlFailure(query.lastError(), path);
  }
  // SQLite itself notices that whole pages are missing, but reads the missing part of the last one
  // as zeros.
  if (QFileInfo(path).size() % query.value(0).toLongLong() != 0) {
    return DatabaseError{kCorrupt, {{kEndMissing, {NativePath(path)}}}, true};
  }
  return std::nullopt;
}

std::optional<DatabaseError> CheckContent(QSqlQuery& query, ContentCheck check,
                                          const QString& path) {
  const QString pragma = check == ContentCheck::kWhole ? QStringLiteral("PRAGMA integrity_check(1)")
                                                       : QStringLiteral("PRAGMA quick_check(1)");
  if (!query.exec(pragma) || !query.next()) {
    return SqlFailure(query.lastError(), path);
  }
  if (query.value(0).toString() != QLatin1String("ok")) {
    return DatabaseError{kCorrupt, {{kDamaged, {NativePath(path)}}}, true};
  }
  return std::nullopt;
}

}  // namespace quayline
