// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/settings.h"

#include <cmath>

namespace quayline {

namespace {

constexpr QLatin1String kTrue("True");
constexpr QLatin1String kFalse("False");

}  // namespace

Settings::Settings(QString file_name) : section_(QStringLiteral("main"), std::move(file_name)) {}

QString Settings::Value(const char* key) const { return section_.Value(QString::fromLatin1(key)); }

bool Settings::SetValue(const char* key, const QString& value) {
  return section_.SetValue(QString::fromLatin1(key), value);
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
