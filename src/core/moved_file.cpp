// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/moved_file.h"

#include <QFile>

#include <filesystem>

namespace quayline {

namespace {

constexpr const char* kSideFiles[] = {"-journal", "-wal", "-shm"};

}  // namespace

bool MoveFile(const QString& from, const QString& to) {
  std::error_code error;
  std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), error);
  return !error;
}

bool LinkOrMoveFile(const QString& path, const QString& copy) {
  const QString link = copy + QStringLiteral(".link");
  QFile::remove(link);
  std::error_code error;
  std::filesystem::create_hard_link(path.toStdU16String(), link.toStdU16String(), error);
  const bool is_done = MoveFile(error ? path : link, copy);
  QFile::remove(link);  // is still there if the two were one file already
  return is_done;
}

void MoveSideFiles(const QString& from, const QString& to) {
  for (const char* side : kSideFiles) {
    QFile::remove(to + QLatin1String(side));
    MoveFile(from + QLatin1String(side), to + QLatin1String(side));
  }
}

}  // namespace quayline
