// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/ini_store.h"

namespace quayline {

IniStore::IniStore(QString file_name) : file_name_(std::move(file_name)) {}

QString IniStore::Value(const QString& section, const QString& key) const {
  const auto pending = pending_.find({section, key});
  return pending != pending_.end() ? *pending : ReadIniValue(section, key, file_name_);
}

bool IniStore::SetValues(const QList<IniValue>& values) {
  for (const IniValue& each : values) {
    pending_.insert({each.section, each.key}, each.value);
  }
  return StorePending();
}

bool IniStore::StorePending() {
  QList<IniValue> values;
  for (auto each = pending_.begin(); each != pending_.end(); ++each) {
    values.append({.section = each.key().first, .key = each.key().second, .value = each.value()});
  }
  if (!values.isEmpty() && !WriteIniValues(values, file_name_)) {
    return false;
  }
  pending_.clear();
  return true;
}

}  // namespace quayline
