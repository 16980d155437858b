// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/settings.h"

#include <chrono>
#include <cmath>
#include <optional>

namespace quayline {

namespace {

using namespace std::chrono_literals;

const QString kSection = QStringLiteral("main");
constexpr QLatin1String kTrue("True");
constexpr QLatin1String kFalse("False");

std::optional<bool> BooleanOf(const QString& value) {
  if (value.compare(kTrue, Qt::CaseInsensitive) == 0) {
    return true;
  }
  if (value.compare(kFalse, Qt::CaseInsensitive) == 0) {
    return false;
  }
  bool is_number = false;
  const double number = value.toDouble(&is_number);
  return is_number && std::isfinite(number) ? std::optional(number != 0) : std::nullopt;
}

}  // namespace

IniValue ValueOf(const Setting& setting, const QString& value) {
  return {.section = kSection, .key = QString::fromLatin1(setting.key), .value = value};
}

Settings::Settings(QString file_name) : store_(std::move(file_name)) {
  retry_timer_.setInterval(2s);
  connect(&retry_timer_, &QTimer::timeout, this, &Settings::StorePending);
}

QString Settings::Value(const Setting& setting) const {
  const QString value = Value(kSection, QString::fromLatin1(setting.key));
  return value.isEmpty() ? setting.Standard() : value;
}

bool Settings::IsSet(const Setting& setting) const {
  return !Value(kSection, QString::fromLatin1(setting.key)).isEmpty();
}

QString Settings::Value(const QString& section, const QString& key) const {
  return store_.Value(section, key);
}

bool Settings::SetValue(const Setting& setting, const QString& value) {
  return SetValues({ValueOf(setting, value)});
}

bool Settings::SetValues(const QList<IniValue>& values) {
  return NoteStored(store_.SetValues(values));
}

bool Settings::StorePending() { return NoteStored(store_.StorePending()); }

bool Settings::NoteStored(bool is_stored) {
  if (is_stored) {
    retry_timer_.stop();
  } else if (!retry_timer_.isActive()) {
    retry_timer_.start();
    Q_EMIT writeFailed();
  }
  return is_stored;
}

bool Settings::Boolean(const Setting& setting) const {
  return BooleanOf(Value(setting)).value_or(BooleanOf(setting.Standard()).value_or(false));
}

bool Settings::SetBoolean(const Setting& setting, bool value) {
  return SetValue(setting, value ? kTrue : kFalse);
}

}  // namespace quayline
