// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/settings.h"

#include <cmath>

#include "core/ini_file.h"

namespace quayline {

namespace {

const QString kSection = QStringLiteral("main");
constexpr QLatin1String kTrue("True");
constexpr QLatin1String kFalse("False");

}  // namespace

Settings::Settings(QString file_name) : file_name_(std::move(file_name)) {}

QString Settings::Value(const char* key) const {
  const auto pending = pending_.find(key);
  return pending != pending_.end() ? *pending
                                   : ReadIniValue(kSection, QString::fromLatin1(key), file_name_);
}

bool Settings::SetValue(const char* key, const QString& value) {
  pending_.insert(key, value);
  return StorePending();
}

// Ends at the first failure: each may have waited for another instance's lock.
bool Settings::StorePending() {
  for (auto each = pending_.begin(); each != pending_.end(); each = pending_.erase(each)) {
    if (!WriteIniValue(kSection, QString::fromLatin1(each.key()), each.value(), file_name_)) {
      return false;
    }
  }
  return true;
}

bool Settings::Boolean(const char* key, bool otherwise) const {
  const QString value = Value(key);
  if (value.compare(kTrue, Qt::CaseInsensitive) == 0) {
    return true;
  }
  if (value.compare(kFalse, Qt::CaseInsensitive) == 0) {
    return false;
  }
  bool is_number = false;
  const double number = value.toDouble(&is_number);
  return is_number && std::isfinite(number) ? number != 0 : otherwise;
}

bool Settings::SetBoolean(const char* key, bool value) {
  return SetValue(key, value ? kTrue : kFalse);
}

}  // namespace quayline
