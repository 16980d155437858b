// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/table_stand_in.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <chrono>
#include <optional>

#include "core/copied_file.h"
#include "core/file_lock.h"
#include "core/moved_file.h"
#include "core/table_data.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kLockWait = 500ms;
constexpr int kMaxDamaged = 20;  // files kept of one name

// The path of the shipped file; empty if there is none that can be used.
QString ShippedFile(const UnopenedTable& table) {
  const QString path = table.shipped_folder + QLatin1Char('/') + table.shape.file_name;
  return !table.shipped_folder.isEmpty() && TableFile::OpenStandIn(path, table.shape) ? path
                                                                                      : QString();
}

// A copy of the shipped file, or else an empty one.
bool MakeFile(const QString& path, const QString& shipped, const UnopenedTable& table) {
  if (shipped.isEmpty()) {
    const TableData empty = {.name = table.shape.table,
                             .columns = QStringList(QStringLiteral("ID")) + table.columns,
                             .rows = {}};
    return WriteTables({empty}, path).has_value();
  }
  return CopyIfMissing(shipped, path);
}

// Gives the damaged file a name of its own, which is returned. Nothing when that is not possible.
std::optional<QString> MoveAside(const QString& path) {
  for (int number = 1; number <= kMaxDamaged; ++number) {
    const QString aside =
        path + QStringLiteral(".damaged") + (number == 1 ? QString() : QString::number(number));
    if (QFileInfo::exists(aside)) {
      continue;
    }
    if (!MoveFile(path, aside)) {
      return std::nullopt;
    }
    MoveSideFiles(path, aside);
    return aside;
  }
  return std::nullopt;
}

TableFile::Opened OpenReplaced(const UnopenedTable& table, const QString& shipped,
                               QStringList& notices) {
  // Two copies of the program must not both replace it.
  const FileLock lock(table.folder, kLockWait);
  if (!lock.IsLocked()) {
    return std::unexpected(table.error);
  }
  if (auto replaced = TableFile::Open(table.folder, table.shape)) {
    return replaced;
  }
  const auto aside = ReplaceTable(table, shipped);
  if (!aside) {
    return std::unexpected(table.error);
  }
  notices.append(QStringLiteral("%1 It is kept as \"%2\". %3 takes its place.")
                     .arg(table.error.description, QFileInfo(*aside).fileName(),
                          shipped.isEmpty() ? QStringLiteral("An empty one")
                                            : QStringLiteral("The one that came with Quayline")));
  return TableFile::Open(table.folder, table.shape);
}

}  // namespace

// The new file is complete before the damaged one is moved.
std::optional<QString> ReplaceTable(const UnopenedTable& table, const QString& source) {
  const QString path = table.folder + QLatin1Char('/') + table.shape.file_name;
  const QTemporaryDir work(path + QStringLiteral(".XXXXXX"));
  const QString made = work.filePath(QStringLiteral("made"));
  if (!work.isValid() || !MakeFile(made, source, table)) {
    return std::nullopt;
  }
  auto aside = QFileInfo::exists(path) ? MoveAside(path) : std::optional(QString());
  if (aside && !MoveFile(made, path)) {
    MoveFile(*aside, path);
    MoveSideFiles(*aside, path);
    return std::nullopt;
  }
  return aside;
}

TableFile::Opened OpenStandIn(const UnopenedTable& table, QStringList& notices) {
  const QString description = table.error.description;
  const bool is_missing =
      !QFileInfo::exists(table.folder + QLatin1Char('/') + table.shape.file_name);
  if (auto copy = TableFile::OpenGoodCopy(table.folder, table.shape); copy && !is_missing) {
    notices.append(description + QStringLiteral(" Its last good copy is used for now."));
    return copy;
  }
  const QString shipped = ShippedFile(table);
  if (is_missing && shipped.isEmpty()) {
    return std::unexpected(table.error);
  }
  if (table.error.is_damaged) {
    if (auto replaced = OpenReplaced(table, shipped, notices)) {
      return replaced;
    }
  }
  if (shipped.isEmpty()) {
    notices.append(description +
                   QStringLiteral(" An empty one is used for now, and cannot be changed."));
    return TableFile::OpenEmpty(table.shape);
  }
  notices.append(description + QStringLiteral(" The one that came with Quayline is used for now."));
  return TableFile::OpenStandIn(shipped, table.shape);
}

}  // namespace quayline
