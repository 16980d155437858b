// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/shipped_databases.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>

#include "core/copied_file.h"
#include "core/merge_rows.h"
#include "core/table_file.h"

namespace quayline {

namespace {

struct Shipped {
  TableShape shape;
  QString name_column;
  bool is_merged;
};

const std::array kShipped = {
    Shipped{ShapeOf<RouterRecord>(), QStringLiteral("routername"), true},
    Shipped{ShapeOf<AppPortRecord>(), QStringLiteral("appname"), true},
    Shipped{ShapeOf<CustomPortRecord>(), QStringLiteral("appname"), false},
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

}  // namespace

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
    } else if (database.is_merged && !IsCopyOf(BaseOf(users), shipped)) {
      Merge(shipped, folder, database);
    }
  }
}

bool MergeDatabase(const QString& shipped_file, const QString& folder, const char* file_name) {
  const auto database = std::ranges::find_if(kShipped, [&](const Shipped& each) {
    return each.is_merged && each.shape.file_name == QLatin1String(file_name);
  });
  return database != kShipped.end() && Merge(shipped_file, folder, *database);
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
