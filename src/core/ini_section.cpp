// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/ini_section.h"

#include "core/ini_file.h"

namespace quayline {

IniSection::IniSection(QString section, QString file_name)
    : section_(std::move(section)), file_name_(std::move(file_name)) {}

QString IniSection::Value(const QString& key) const {
  const auto pending = pending_.find(key);
  return pending != pending_.end() ? *pending : ReadIniValue(section_, key, file_name_);
}

bool IniSection::SetValue(const QString& key, const QString& value) {
  pending_.insert(key, value);
  return StorePending();
}

// Ends at the first failure: each may have waited for another instance's lock.
bool IniSection::StorePending() {
  for (auto each = pending_.begin(); each != pending_.end(); each = pending_.erase(each)) {
    if (!WriteIniValue(section_, each.key(), each.value(), file_name_)) {
      return false;
    }
  }
  return true;
}

}  // namespace quayline
