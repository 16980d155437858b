// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/database_repair.h"

#include <QFileInfo>

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
constexpr Message kUnreadable{"It cannot be read now. Another program may be using it."};
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

enum class FileState { kInOrder, kDamaged, kMissing, kUnreadable };

// A file that cannot be read at the moment, for example because another program writes to it, may
// be in order. Where this program may write, SQLite first takes back what a crash has left half
// done.
FileState StateOf(const QString& path, const TableShape& shape, SqlAccess access) {
  if (!QFileInfo::exists(path)) {
    return FileState::kMissing;
  }
  if (!QFileInfo(path).isFile()) {
    return FileState::kDamaged;
  }
  const auto opened = TableFile::OpenFile(path, shape, access);
  const std::optional<DatabaseError> error =
      opened ? (*opened)->CheckWhole() : std::optional(opened.error());
  if (!error) {
    return FileState::kInOrder;
  }
  return error->is_damaged ? FileState::kDamaged : FileState::kUnreadable;
}

bool IsInOrder(const QString& path, const TableShape& shape) {
  return StateOf(path, shape, SqlAccess::kReadOnly) == FileState::kInOrder;
}

}  // namespace

QStringList DatabaseFiles() {
  return {ShapeOf<RouterRecord>().file_name, ShapeOf<AppPortRecord>().file_name,
          ShapeOf<CustomPortRecord>().file_name};
}

DatabaseState CheckDatabase(const QString& folder, const QString& file_name) {
  const QString path = folder + QLatin1Char('/') + file_name;
  switch (StateOf(path, TableOf(folder, file_name).shape, SqlAccess::kReadWrite)) {
    case FileState::kInOrder:
      return {.is_good = true, .words = kInOrder};
    case FileState::kDamaged:
      return {.can_be_rebuilt = true, .words = kDamaged};
    case FileState::kMissing:
      return {.can_be_rebuilt = true, .words = kMissing};
    case FileState::kUnreadable:
      break;
  }
  return {.words = kUnreadable};
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
  const FileState state = StateOf(path, table.shape, SqlAccess::kReadWrite);
  if (state == FileState::kInOrder) {
    return {.is_good = true, .words = kNothingToDo};
  }
  if (state == FileState::kUnreadable) {
    return {.words = kUnreadable};
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
