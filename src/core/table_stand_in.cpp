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

// Of a file that was named before.
constexpr Message kKeptAs{"It is kept as \"%1\".", "a damaged file"};
constexpr Message kReplacedByEmpty{"An empty one takes its place."};
constexpr Message kReplacedByShipped{"The one that came with Quayline takes its place."};
constexpr Message kGoodCopyUsed{"Its last good copy is used for now."};
constexpr Message kEmptyUsed{"An empty one is used for now, and cannot be changed."};
constexpr Message kShippedUsed{"The one that came with Quayline is used for now."};

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
                               QList<Notice>& notices) {
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
  notices.append(table.error.description +
                 Notice{{kKeptAs, {QFileInfo(*aside).fileName()}},
                        {shipped.isEmpty() ? kReplacedByEmpty : kReplacedByShipped}});
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

TableFile::Opened OpenStandIn(const UnopenedTable& table, QList<Notice>& notices) {
  const Notice& why = table.error.description;
  const bool is_missing =
      !QFileInfo::exists(table.folder + QLatin1Char('/') + table.shape.file_name);
  if (auto copy = TableFile::OpenGoodCopy(table.folder, table.shape); copy && !is_missing) {
    notices.append(why + Notice{{kGoodCopyUsed}});
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
    notices.append(why + Notice{{kEmptyUsed}});
    return TableFile::OpenEmpty(table.shape);
  }
  notices.append(why + Notice{{kShippedUsed}});
  return TableFile::OpenStandIn(shipped, table.shape);
}

}  // namespace quayline
