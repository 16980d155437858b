// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/database_swap.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <chrono>

#include "core/file_lock.h"
#include "core/moved_file.h"

namespace quayline {

namespace {

constexpr Message kIsInUse{
    "Another Quayline is using the databases. Please close it, and try again."};
constexpr Message kCannotWrite{"The folder \"%1\" cannot be written."};
constexpr Message kCannotReplace{"The files in \"%1\" cannot be replaced."};

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kLockWait = 2s;
constexpr qint64 kAbandonedSeconds = 3600;
const QString kPreparing = QStringLiteral("databases.preparing-");

QString PathIn(const QString& folder, const QString& name) {
  return folder + QLatin1Char('/') + name;
}
QString CompleteSet(const QString& folder) {
  return PathIn(folder, QStringLiteral("databases.complete"));
}
QString Previous(const QString& path) { return path + QStringLiteral(".previous"); }

QStringList FilesOf(const QString& set) {
  return QDir(set).entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDir::Name);
}

struct MovedFile {
  QString path;
  bool has_previous;
};

// Old files come back; a new one goes only where there was no old one.
void MoveBack(const QList<MovedFile>& moved) {
  for (const MovedFile& file : moved) {
    if (!file.has_previous) {
      QFile::remove(file.path);
    } else if (MoveFile(Previous(file.path), file.path)) {
      QFile::remove(Previous(file.path));  // is still there if the new file never came
      MoveSideFiles(Previous(file.path), file.path);
    }
  }
}

// Moves what is left in `set`, and notes what was begun. A program that starts meanwhile always
// finds a file under each name: the old one keeps its name until the new one takes it.
bool MoveFiles(const QString& set, const QString& folder, QList<MovedFile>& moved) {
  for (const QString& name : FilesOf(set)) {
    const QString path = PathIn(folder, name);
    const bool has_old = QFileInfo::exists(path);
    if (has_old && !LinkOrMoveFile(path, Previous(path))) {
      return false;
    }
    moved.append({path, has_old});
    if (has_old) {
      MoveSideFiles(path, Previous(path));
    }
    if (!MoveFile(PathIn(set, name), path)) {
      return false;
    }
  }
  return true;
}

}  // namespace

QString NewSetTemplate(const QString& folder) {
  return PathIn(folder, kPreparing + QStringLiteral("XXXXXX"));
}

std::expected<void, Sentence> PutInPlace(const QString& set, const QString& folder) {
  const FileLock lock(folder, kLockWait);
  const QString complete = CompleteSet(folder);
  if (!lock.IsLocked()) {
    return std::unexpected(Sentence{kIsInUse});
  }
  // From here on a crash leads to the new set.
  if (!MoveFile(set, complete)) {
    return std::unexpected(Sentence{kCannotWrite, {QDir::toNativeSeparators(folder)}});
  }
  QList<MovedFile> moved;
  if (!MoveFiles(complete, folder, moved)) {
    MoveBack(moved);
    QDir(complete).removeRecursively();
    return std::unexpected(Sentence{kCannotReplace, {QDir::toNativeSeparators(folder)}});
  }
  QDir(complete).removeRecursively();
  return {};
}

void CompleteSwap(const QString& folder) {
  const QString complete = CompleteSet(folder);
  const QFileInfoList prepared = QDir(folder).entryInfoList(
      {kPreparing + QLatin1Char('*')}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
  if (prepared.isEmpty() && !QFileInfo(complete).isDir()) {
    return;  // as nearly always: then no start waits for a lock
  }
  const FileLock lock(folder, kLockWait);
  if (!lock.IsLocked()) {
    return;
  }
  QList<MovedFile> moved;
  if (QFileInfo(complete).isDir() && MoveFiles(complete, folder, moved)) {
    QDir(complete).removeRecursively();
  }
  const QDateTime now = QDateTime::currentDateTime();
  for (const QFileInfo& set : prepared) {
    if (set.lastModified().secsTo(now) > kAbandonedSeconds) {
      QDir(set.filePath()).removeRecursively();
    }
  }
}

}  // namespace quayline
