// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/shipped_databases.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <array>

#include "core/copied_file.h"
#include "core/ini_file.h"
#include "core/merge_rows.h"
#include "core/own_routers.h"
#include "core/table_file.h"

namespace quayline {

namespace {

constexpr Message kCannotWrite{"The new databases cannot be written to \"%1\". Is the disk full?"};
constexpr Message kNoField{"The file \"%1\" has no field \"%2\"."};
constexpr Message kTooManyRows{"The file \"%1\" has too many rows."};
constexpr Message kHasOwnNumbers{
    "The file \"%1\" has numbers that are kept for routers that you add."};
constexpr Message kIsInUse{
    "Another Quayline is using the databases. Please close it, and try again."};
constexpr Message kIsEmpty{"The file \"%1\" is empty."};

using Why = QList<Sentence>;

struct Shipped {
  TableShape shape;
  QString name_column;
  bool is_merged;
  QStringList columns;  // that every file of the kind has
};

template <typename Record>
Shipped ShippedOf(const char* name_column, bool is_merged) {
  QStringList columns;
  for (const Column<Record>& column : kTableOf<Record>.columns) {
    if (!column.is_optional) {
      columns.append(QLatin1String(column.name));
    }
  }
  return {ShapeOf<Record>(), QLatin1String(name_column), is_merged, columns};
}

const std::array kShipped = {
    ShippedOf<RouterRecord>("routername", true),
    ShippedOf<AppPortRecord>("appname", true),
    ShippedOf<CustomPortRecord>("appname", false),
};

// As shipped when the user's file was last merged: what differs from it is the user's.
QString BaseOf(const QString& users_file) { return users_file + QStringLiteral(".shipped"); }

TableData ReadTable(const QString& path, const TableShape& shape) {
  if (!QFileInfo(path).isFile()) {
    return {.name = shape.table, .columns = {QStringLiteral("id")}, .rows = {}};
  }
  const auto file = TableFile::OpenFile(path, shape, SqlAccess::kReadOnly);
  return file ? (*file)->ReadAll() : TableData{.name = shape.table, .columns = {}, .rows = {}};
}

bool Merge(const QString& shipped_file, const QString& folder, const Shipped& database) {
  const QString users_file = folder + QLatin1Char('/') + database.shape.file_name;
  const auto shipped = TableFile::OpenFile(shipped_file, database.shape, SqlAccess::kReadOnly);
  const auto users = TableFile::Open(folder, database.shape);
  if (!shipped || !users) {
    return false;
  }
  const TableData base = ReadTable(BaseOf(users_file), database.shape);
  const TableData now = (*shipped)->ReadAll();
  // The copy that says what was merged is written last: merging the same rows twice changes
  // nothing.
  return (*users)->Rewrite([&](const TableData& rows) {
    return MergeRows({.base = base, .shipped = now, .users = rows}, database.name_column);
  }) && CopyWithTime(shipped_file, BaseOf(users_file));
}

// While the maker's server has sent later databases than the installed ones, this file of the
// user's folder says which state of these was known then.
const QString kNoteFile = QStringLiteral("databases.ini");
const QString kNoteSection = QStringLiteral("installed");

QString StateOf(const QString& path) {
  const QFileInfo file(path);
  return QStringLiteral("%1 %2").arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
}

bool IsNotedAsInstalled(const QString& shipped, const QString& folder) {
  return ReadIniValue(kNoteSection, QFileInfo(shipped).fileName(),
                      folder + QLatin1Char('/') + kNoteFile) == StateOf(shipped);
}

bool NoteInstalled(const QString& shipped_folder, const QString& set) {
  QList<IniValue> notes;
  for (const Shipped& database : kShipped) {
    const QString path = shipped_folder + QLatin1Char('/') + database.shape.file_name;
    if (database.is_merged && !shipped_folder.isEmpty() && QFileInfo::exists(path)) {
      notes.append({kNoteSection, database.shape.file_name, StateOf(path)});
    }
  }
  return notes.isEmpty() || WriteIniValues(notes, set + QLatin1Char('/') + kNoteFile);
}

QHash<QString, QStringList> RowsByName(const TableData& table, const QString& name_column) {
  const qsizetype name = table.columns.indexOf(name_column);
  const qsizetype id = table.columns.indexOf(QStringLiteral("id"));
  QHash<QString, QStringList> rows;
  for (const QStringList& row : table.rows) {
    QStringList texts = row;
    texts[id].clear();
    if (name >= 0 && !rows.contains(row.at(name))) {
      rows.insert(row.at(name), texts);
    }
  }
  return rows;
}

RowChanges Compare(const TableData& before, const TableData& after, const QString& name_column) {
  RowChanges changes{.table = after.name};
  const auto old_rows = RowsByName(before, name_column);
  const auto new_rows = RowsByName(after, name_column);
  for (const auto& [name, row] : new_rows.asKeyValueRange()) {
    const auto old = old_rows.find(name);
    if (old == old_rows.end()) {
      ++changes.came;
    } else {
      // A column that is new at the end makes no row another one while it is empty.
      const bool is_same = row.first(std::min(row.size(), old->size())) == *old &&
                           row.mid(old->size()).join(QString()).isEmpty();
      ++(is_same ? changes.stayed : changes.changed);
    }
  }
  changes.gone = old_rows.size() - (changes.changed + changes.stayed);
  return changes;
}

// Many more than there are routers and programs. The rows are merged in memory.
constexpr int kMostPackedRows = 100'000;

// Of a table that is not empty. Its rows are in the order of their IDs.
qlonglong HighestId(const TableData& table) {
  return table.rows.last().at(table.columns.indexOf(QStringLiteral("id"))).toLongLong();
}

// The rows of a database of a package. None where a database that may be missing is.
std::expected<TableData, Why> ReadPacked(const QString& package, const Shipped& database) {
  const QString name = database.shape.file_name;
  if (!QFileInfo::exists(package + QLatin1Char('/') + name) && !database.is_merged) {
    return TableData{};
  }
  const auto file = TableFile::Open(package, database.shape);
  if (!file) {
    return std::unexpected(file.error().description);
  }
  if ((*file)->Count() > kMostPackedRows) {
    return std::unexpected(Why{{kTooManyRows, {name}}});
  }
  TableData table = (*file)->ReadAll();
  const bool has_own = !table.rows.isEmpty() && HighestId(table) >= kFirstOwnRouterId;
  if (has_own && database.is_merged) {
    return std::unexpected(Why{{kHasOwnNumbers, {name}}});
  }
  for (const QString& column : database.columns) {
    if (!table.columns.contains(column)) {
      return std::unexpected(Why{{kNoField, {name, column}}});
    }
  }
  if (table.rows.isEmpty() && database.is_merged) {
    return std::unexpected(Why{{kIsEmpty, {name}}});
  }
  return table;
}

struct SetFiles {
  QString packed;  // the database of the package
  QString folder;  // the user's
  QString set;
};

// The user's own programs stay; where he has no file yet he gets the one of the package.
std::expected<RowChanges, Why> PrepareFirst(const SetFiles& files, const Shipped& database) {
  const QString name = QLatin1Char('/') + database.shape.file_name;
  if (!QFileInfo::exists(files.folder + name) && !CopyIfMissing(files.packed, files.set + name)) {
    return std::unexpected(CannotWrite(files.set));
  }
  return RowChanges{};
}

std::expected<RowChanges, Why> PrepareMerged(const SetFiles& files, const Shipped& database,
                                             const TableData& packed, HeldFiles& held) {
  const QString name = QLatin1Char('/') + database.shape.file_name;
  const QString made = files.set + name;
  auto users = TableFile::Open(files.folder, database.shape);
  if (!users && QFileInfo::exists(files.folder + name)) {
    // A file that only cannot be read now has rows that the good copy may lack.
    const DatabaseError error = users.error();
    if (error.is_damaged) {
      users = TableFile::OpenGoodCopy(files.folder, database.shape);
    }
    if (!users) {
      return std::unexpected(error.description);
    }
  }
  const TableData base = ReadTable(BaseOf(files.folder + name), database.shape);
  const int version = users ? (*users)->Version() : 0;
  if (!(users ? (*users)->CopyTo(made) : CopyIfMissing(files.packed, made)) ||
      !CopyWithTime(files.packed, BaseOf(made))) {
    return std::unexpected(CannotWrite(files.set));
  }
  if (users && !(*users)->HoldSince(version)) {
    return std::unexpected(Why{{kIsInUse}});
  }
  const auto file = TableFile::OpenFile(made, database.shape, SqlAccess::kReadWrite);
  if (!file) {
    return std::unexpected(file.error().description);
  }
  TableData before{.name = packed.name, .columns = packed.columns, .rows = {}};
  const bool is_merged = (*file)->Rewrite([&](const TableData& rows) {
    if (!users) {
      return rows;
    }
    before = rows;
    return MergeRows({.base = base, .shipped = packed, .users = rows}, database.name_column);
  });
  if (!is_merged) {
    return std::unexpected(CannotWrite(files.set));
  }
  if (users) {
    held.push_back(std::move(*users));
  }
  return Compare(before, (*file)->ReadAll(), database.name_column);
}

}  // namespace

QList<Sentence> CannotWrite(const QString& folder) {
  return {{kCannotWrite, {QDir::toNativeSeparators(folder)}}};
}

QString ShippedFolder(const QString& executable_folder) {
  const QString folder =
      QDir::cleanPath(executable_folder + QStringLiteral("/../share/quayline-data"));
  const bool has_any = std::ranges::any_of(kShipped, [&](const Shipped& database) {
    return QFileInfo(folder + QLatin1Char('/') + database.shape.file_name).isFile();
  });
  return has_any ? folder : QString();
}

void FollowShippedDatabases(const QString& shipped_folder, const QString& folder) {
  for (const Shipped& database : kShipped) {
    const QString shipped = shipped_folder + QLatin1Char('/') + database.shape.file_name;
    const QString users = folder + QLatin1Char('/') + database.shape.file_name;
    if (shipped_folder.isEmpty() || !QFileInfo::exists(shipped)) {
      continue;
    }
    if (!QFileInfo::exists(users)) {
      if (CopyIfMissing(shipped, users) && database.is_merged) {
        CopyWithTime(shipped, BaseOf(users));
      }
    } else if (database.is_merged && !IsCopyOf(BaseOf(users), shipped) &&
               !IsNotedAsInstalled(shipped, folder)) {
      Merge(shipped, folder, database);
    }
  }
}

std::expected<QList<RowChanges>, Why> PrepareSet(const QString& package, const QString& folder,
                                                 const QString& shipped_folder, const QString& set,
                                                 HeldFiles& held) {
  QList<RowChanges> changes;
  for (const Shipped& database : kShipped) {
    const auto packed = ReadPacked(package, database);
    if (!packed) {
      return std::unexpected(packed.error());
    }
    if (packed->rows.isEmpty() && !database.is_merged) {
      continue;
    }
    const SetFiles files = {.packed = package + QLatin1Char('/') + database.shape.file_name,
                            .folder = folder,
                            .set = set};
    const auto merged = database.is_merged ? PrepareMerged(files, database, *packed, held)
                                           : PrepareFirst(files, database);
    if (!merged) {
      return std::unexpected(merged.error());
    }
    if (database.is_merged) {
      changes.append(*merged);
    }
  }
  if (!NoteInstalled(shipped_folder, set)) {
    return std::unexpected(CannotWrite(set));
  }
  return changes;
}

std::optional<RouterRecord> FindShippedRouter(const QString& folder, const QString& name) {
  const TableShape shape = ShapeOf<RouterRecord>();
  const auto file = TableFile::OpenFile(BaseOf(folder + QLatin1Char('/') + shape.file_name), shape,
                                        SqlAccess::kReadOnly);
  std::optional<RouterRecord> found;
  if (file) {
    (*file)->Read(ColumnNames<RouterRecord>(), {}, -1, [&](int id, const QStringList& texts) {
      auto record = RecordOf<RouterRecord>(id, texts);
      if (!found && record.routername == name) {
        found = std::move(record);
      }
    });
  }
  return found;
}

}  // namespace quayline
