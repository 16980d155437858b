// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/database_repair.h"

#include <QFileInfo>
#include <QSqlQuery>

#include <chrono>

#include "core/file_lock.h"
#include "core/records.h"
#include "core/table_stand_in.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kLockWait = 500ms;

constexpr Message kInOrder{"It is in order."};
constexpr Message kDamaged{"It is damaged."};
constexpr Message kMissing{"It is missing.", "a file"};
constexpr Message kNothingToDo{"Nothing to do."};
constexpr Message kInUse{"Another Quayline is using it. Please close that first."};
constexpr Message kNotReplaced{"It could not be replaced. Is the disk full?"};
constexpr Message kFromGoodCopy{"Rebuilt from its last good copy."};
constexpr Message kFromShipped{"Replaced by the one that came with Quayline."};
constexpr Message kIsEmptyNow{"There was no good copy: it is empty now."};

template <typename Record>
UnopenedTable TableOf() {
  return {.shape = ShapeOf<Record>(), .columns = ColumnNames<Record>()};
}

UnopenedTable TableOf(const QString& folder, const QString& file_name) {
  for (UnopenedTable table :
       {TableOf<RouterRecord>(), TableOf<AppPortRecord>(), TableOf<CustomPortRecord>()}) {
    if (table.shape.file_name == file_name) {
      table.folder = folder;
      return table;
    }
  }
  Q_UNREACHABLE();
}

// Opening refuses what is no plain table; then it is safe to let SQLite read all of it.
bool IsInOrder(const QString& path, const TableShape& shape) {
  if (!QFileInfo::exists(path) || !TableFile::OpenStandIn(path, shape)) {
    return false;
  }
  const SqlConnection connection(path, SqlAccess::kReadOnly);
  QSqlQuery query(connection.Handle());
  return query.exec(QStringLiteral("PRAGMA integrity_check(1)")) && query.next() &&
         query.value(0).toString() == QLatin1String("ok");
}

}  // namespace

QStringList DatabaseFiles() {
  return {ShapeOf<RouterRecord>().file_name, ShapeOf<AppPortRecord>().file_name,
          ShapeOf<CustomPortRecord>().file_name};
}

DatabaseState CheckDatabase(const QString& folder, const QString& file_name) {
  const UnopenedTable table = TableOf(folder, file_name);
  const QString path = folder + QLatin1Char('/') + file_name;
  if (IsInOrder(path, table.shape)) {
    return {.is_good = true, .words = kInOrder};
  }
  return {.words = QFileInfo::exists(path) ? kDamaged : kMissing};
}

DatabaseState RebuildDatabase(const QString& folder, const QString& shipped_folder,
                              const QString& file_name) {
  const UnopenedTable table = TableOf(folder, file_name);
  const QString path = folder + QLatin1Char('/') + file_name;
  // Two copies of the program must not both replace it.
  const FileLock lock(folder, kLockWait);
  if (!lock.IsLocked()) {
    return {.words = kInUse};
  }
  if (IsInOrder(path, table.shape)) {
    return {.is_good = true, .words = kNothingToDo};
  }
  const QString good = path + QStringLiteral(".good");
  const QString shipped = shipped_folder + QLatin1Char('/') + file_name;
  const bool has_good = IsInOrder(good, table.shape);
  const bool has_shipped = !shipped_folder.isEmpty() && IsInOrder(shipped, table.shape);
  const auto aside = ReplaceTable(table, has_good ? good : has_shipped ? shipped : QString());
  if (!aside) {
    return {.words = kNotReplaced};
  }
  return {.is_good = true,
          .words = has_good      ? kFromGoodCopy
                   : has_shipped ? kFromShipped
                                 : kIsEmptyNow,
          .kept_as = QFileInfo(*aside).fileName()};
}

}  // namespace quayline
