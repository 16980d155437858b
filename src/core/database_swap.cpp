// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/database_swap.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <chrono>
#include <filesystem>

#include "core/file_lock.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kLockWait = 2s;
constexpr qint64 kAbandonedSeconds = 3600;
const QString kPreparing = QStringLiteral("databases.preparing-");

// What SQLite keeps beside a file, and would apply to a new one of the same name.
constexpr const char* kSideFiles[] = {"-journal", "-wal", "-shm"};

QString PathIn(const QString& folder, const QString& name) {
  return folder + QLatin1Char('/') + name;
}
QString CompleteSet(const QString& folder) {
  return PathIn(folder, QStringLiteral("databases.complete"));
}
QString Previous(const QString& path) { return path + QStringLiteral(".previous"); }

bool Move(const QString& from, const QString& to) {
  std::error_code error;
  std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), error);
  return !error;
}

QStringList FilesOf(const QString& set) {
  return QDir(set).entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDir::Name);
}

// `path` is free afterwards; what was there has its name with ".previous".
bool KeepPrevious(const QString& path) {
  if (!QFileInfo::exists(path)) {
    return true;  // a first file, or a swap that is completed
  }
  for (const char* side : kSideFiles) {
    QFile::remove(Previous(path) + QLatin1String(side));
    Move(path + QLatin1String(side), Previous(path) + QLatin1String(side));
  }
  return Move(path, Previous(path));
}

struct MovedFile {
  QString path;
  bool has_previous;
};

void MoveBack(const QList<MovedFile>& moved) {
  for (const MovedFile& file : moved) {
    if (!file.has_previous || !Move(Previous(file.path), file.path)) {
      QFile::remove(file.path);
    }
  }
}

// Moves what is left in `set`, and notes what was moved.
bool MoveFiles(const QString& set, const QString& folder, QList<MovedFile>& moved) {
  for (const QString& name : FilesOf(set)) {
    const QString path = PathIn(folder, name);
    const bool has_old = QFileInfo::exists(path);
    if (!KeepPrevious(path)) {
      return false;
    }
    if (!Move(PathIn(set, name), path)) {
      if (has_old) {
        Move(Previous(path), path);
      }
      return false;
    }
    moved.append({path, has_old});
  }
  return true;
}

}  // namespace

QString NewSetTemplate(const QString& folder) {
  return PathIn(folder, kPreparing + QStringLiteral("XXXXXX"));
}

std::expected<void, QString> PutInPlace(const QString& set, const QString& folder) {
  const FileLock lock(folder, kLockWait);
  const QString complete = CompleteSet(folder);
  if (!lock.IsLocked()) {
    return std::unexpected(
        QStringLiteral("Another Quayline is using the databases. Please close it, and try again."));
  }
  // From here on a crash leads to the new set.
  if (!Move(set, complete)) {
    return std::unexpected(QStringLiteral("The folder \"%1\" cannot be written.")
                               .arg(QDir::toNativeSeparators(folder)));
  }
  QList<MovedFile> moved;
  if (!MoveFiles(complete, folder, moved)) {
    MoveBack(moved);
    QDir(complete).removeRecursively();
    return std::unexpected(QStringLiteral("The files in \"%1\" cannot be replaced.")
                               .arg(QDir::toNativeSeparators(folder)));
  }
  QDir(complete).removeRecursively();
  return {};
}

void CompleteSwap(const QString& folder) {
  const FileLock lock(folder, kLockWait);
  if (!lock.IsLocked()) {
    return;
  }
  const QString complete = CompleteSet(folder);
  QList<MovedFile> moved;
  if (QFileInfo(complete).isDir() && MoveFiles(complete, folder, moved)) {
    QDir(complete).removeRecursively();
  }
  const QDateTime now = QDateTime::currentDateTime();
  const QFileInfoList abandoned = QDir(folder).entryInfoList(
      {kPreparing + QLatin1Char('*')}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
  for (const QFileInfo& set : abandoned) {
    if (set.lastModified().secsTo(now) > kAbandonedSeconds) {
      QDir(set.filePath()).removeRecursively();
    }
  }
}

}  // namespace quayline
