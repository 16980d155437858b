// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/save_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <chrono>
#include <cstdio>
#include <unistd.h>

#include "core/file_lock.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

// In the same folder, since only a rename within a file system replaces a file in one step. The
// suffix distinguishes such a file from a copy that the user made.
QString TemporaryName(const QString& path) {
  QString letters;
  for (int i = 0; i < 6; ++i) {
    letters += QLatin1Char(static_cast<char>('a' + QRandomGenerator::global()->bounded(26)));
  }
  return path + QLatin1Char('.') + letters + QStringLiteral(".unfinished");
}

// A new file has the rights that the user's umask gives it, unless the caller gives others. It
// never has more rights than it will have at the end.
bool Create(QFile& file, const QString& target,
            std::optional<QFileDevice::Permissions> permissions) {
  constexpr auto kMode = QIODevice::WriteOnly | QIODevice::NewOnly;
  if (const QFileInfo old(target); !permissions && old.exists()) {
    permissions = old.permissions();
  }
  return permissions ? file.open(kMode, kPrivateFile) && file.setPermissions(*permissions)
                     : file.open(kMode);
}

bool WriteAndReplace(QFile& file, const QByteArray& bytes, const QString& target) {
  return file.write(bytes) == bytes.size() && file.flush() && fsync(file.handle()) == 0 &&
         std::rename(QFile::encodeName(file.fileName()).constData(),
                     QFile::encodeName(target).constData()) == 0;
}

// The target of a link, so that the link stays.
QString WithoutLinks(const QString& path) {
  const QFileInfo file(path);
  const QString target = file.isSymLink() ? file.canonicalFilePath() : QString();
  return target.isEmpty() ? path : target;
}

// Earlier versions left names of six letters; letters of one case may be the user's own, as in
// "settings.ini.backup".
bool IsUnfinishedWrite(const QString& name) {
  static const QRegularExpression own(
      QStringLiteral("^((?:settings|certificates)\\.ini|list\\.qyl|[a-z]+\\.mdb\\.(?:good|"
                     "shipped))\\.([A-Za-z]"
                     "{6}(\\.unfinished)?)$"));
  const QRegularExpressionMatch match = own.match(name);
  const QString suffix = match.captured(2);
  return match.hasMatch() && (!match.captured(3).isEmpty() ||
                              (suffix != suffix.toLower() && suffix != suffix.toUpper()));
}

}  // namespace

bool SaveFile(const QString& path, const QByteArray& bytes,
              std::optional<QFileDevice::Permissions> permissions) {
  const QString target = WithoutLinks(path);
  if (const QFileInfo old(target); old.exists() && !(old.isFile() && old.isWritable())) {
    return false;
  }
  QFile file(TemporaryName(target));
  const bool is_written = Create(file, target, permissions) && WriteAndReplace(file, bytes, target);
  if (!is_written && file.isOpen()) {  // only what it created itself
    file.close();
    QFile::remove(file.fileName());  // the object's own remove() gives up after a failed write
  }
  return is_written;
}

void RemoveUnfinishedWrites(const QString& folder) {
  const FileLock lock(folder, 500ms);
  if (!lock.IsLocked()) {
    return;
  }
  const QFileInfoList files =
      QDir(folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
  for (const QFileInfo& file : files) {
    if (IsUnfinishedWrite(file.fileName()) && file.ownerId() == geteuid()) {
      QFile::remove(file.filePath());
    }
  }
}

}  // namespace quayline
