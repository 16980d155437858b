// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/copied_file.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include "core/save_file.h"

namespace quayline {

namespace {

constexpr qint64 kBlockBytes = 1 << 20;

bool CopyContent(QFile& from, QFile& to) {
  while (!from.atEnd()) {
    const QByteArray block = from.read(kBlockBytes);
    if (block.isEmpty() || to.write(block) != block.size()) {
      return false;
    }
  }
  return from.error() == QFileDevice::NoError && to.flush();
}

}  // namespace

// Not by SaveFile(), which would replace the file of somebody else.
bool CopyIfMissing(const QString& path, const QString& copy) {
  QFile source(path);
  QTemporaryFile made(copy + QStringLiteral(".XXXXXX"));
  if (!source.open(QIODevice::ReadOnly) || !made.open() || !CopyContent(source, made)) {
    return false;
  }
  made.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                      QFileDevice::ReadOther);
  made.close();
  if (!QFile::rename(made.fileName(), copy)) {
    return QFileInfo(copy).isFile();
  }
  made.setAutoRemove(false);
  return true;
}

bool IsCopyOf(const QString& copy, const QString& path) {
  const QFileInfo file(path);
  const QFileInfo other(copy);
  return other.isFile() && file.size() == other.size() &&
         file.lastModified() == other.lastModified();
}

bool CopyWithTime(const QString& path, const QString& copy) {
  QFile original(path);
  if (!original.open(QIODevice::ReadOnly) || !SaveFile(copy, original.readAll())) {
    return false;
  }
  QFile saved(copy);
  return saved.open(QIODevice::ReadWrite) &&
         saved.setFileTime(original.fileTime(QFileDevice::FileModificationTime),
                           QFileDevice::FileModificationTime);
}

}  // namespace quayline
