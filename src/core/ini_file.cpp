// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/ini_file.h"

#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <optional>

#include "core/file_lock.h"
#include "core/ini_text.h"
#include "core/save_file.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr qsizetype kMaxValueLength = 255;
constexpr qint64 kMaxFileBytes = 4 << 20;
// A write takes a few milliseconds: an instance that holds the lock for longer hangs, and the user
// does not wait for it.
constexpr std::chrono::milliseconds kLockWait = 500ms;

// Nothing if the file cannot be read, or is too large for an INI file.
std::optional<QByteArray> FileBytes(const QString& file_name) {
  QFile file(file_name);
  if (!QFileInfo(file_name).isFile() || file.size() > kMaxFileBytes ||
      !file.open(QIODevice::ReadOnly)) {
    return std::nullopt;
  }
  QByteArray bytes = file.readAll();
  return file.error() == QFileDevice::NoError ? std::optional(bytes) : std::nullopt;
}

}  // namespace

QString ReadIniValue(const QString& section, const QString& key, const QString& file_name) {
  const auto bytes = FileBytes(file_name);
  if (!bytes) {
    return {};
  }
  QString value = IniText(*bytes).Value(section, key).left(kMaxValueLength);
  if (!value.isEmpty() && value.back().isHighSurrogate()) {
    value.chop(1);
  }
  return value;
}

bool WriteIniValue(const QString& section, const QString& key, const QString& value,
                   const QString& file_name) {
  return WriteIniValues({{.section = section, .key = key, .value = value}}, file_name);
}

bool WriteIniValues(const QList<IniValue>& values, const QString& file_name) {
  const FileLock lock(QFileInfo(file_name).absolutePath(), kLockWait);
  if (!lock.IsLocked()) {
    return false;
  }
  QByteArray former;
  if (QFileInfo::exists(file_name)) {
    const auto bytes = FileBytes(file_name);
    if (!bytes) {
      return false;
    }
    former = *bytes;
  }
  IniText text(former);
  for (const IniValue& each : values) {
    text.SetValue(each.section, each.key, each.value);
  }
  const QByteArray bytes = text.Bytes();
  return bytes == former || SaveFile(file_name, bytes, kPrivateFile);
}

}  // namespace quayline
