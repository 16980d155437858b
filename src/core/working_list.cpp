// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/working_list.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include <chrono>

#include "core/file_lock.h"
#include "core/save_file.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

// An instance of the program that hangs during a write must not prevent this one from writing:
// after this time the file is written without the lock.
constexpr std::chrono::milliseconds kLockWait = 500ms;

QByteArray HashOf(const QByteArray& bytes) {
  return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

}  // namespace

std::expected<QList<PortEntry>, ListFileError> WorkingList::Load() {
  const auto bytes = ReadListBytes(path_);
  known_ = bytes ? HashOf(*bytes) : QByteArray();
  return bytes ? CheckedPortList(*bytes) : std::unexpected(bytes.error());
}

std::expected<void, ListFileError> WorkingList::Save(const QList<PortEntry>& entries) {
  const FileLock lock(QFileInfo(path_).absolutePath(), kLockWait);
  if (IsChangedElsewhere(entries)) {
    return std::unexpected(ListFileError::kChangedElsewhere);
  }
  const QByteArray bytes = FormatPortList(entries);
  if (!SaveFile(path_, bytes)) {
    return std::unexpected(ListFileError::kCannotWrite);
  }
  known_ = HashOf(bytes);
  return {};
}

bool WorkingList::IsChangedElsewhere(const QList<PortEntry>& entries) const {
  if (!QFileInfo::exists(path_)) {
    return false;
  }
  const auto bytes = ReadListBytes(path_);
  return !bytes || (HashOf(*bytes) != known_ && CheckedPortList(*bytes) != entries);
}

bool WorkingList::KeepCopy(const QString& copy) {
  const FileLock lock(QFileInfo(path_).absolutePath(), kLockWait);
  const auto bytes = ReadListBytes(path_);
  if (!bytes) {  // a folder, for example, or something far too large
    return !QFileInfo::exists(path_) || QFile::rename(path_, copy);
  }
  if (!SaveFile(copy, *bytes)) {
    return false;
  }
  known_ = HashOf(*bytes);
  return true;
}

}  // namespace quayline
