// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/save_file.h"

#include <QSaveFile>

namespace quayline {

bool SaveFile(const QString& path, const QByteArray& bytes,
              std::optional<QFileDevice::Permissions> permissions) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly) || (permissions && !file.setPermissions(*permissions))) {
    return false;
  }
  // Qt 6.4 commits an empty file where the disk is full: a failure to empty its buffer is not seen
  // by commit().
  return file.write(bytes) == bytes.size() && file.flush() && file.commit();
}

}  // namespace quayline
