// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/copied_file.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include "core/save_file.h"

namespace quayline {

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
