// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/version.h"

#include <QStringList>

#include <algorithm>

namespace quayline {

namespace {

constexpr qsizetype kMostDigits = 9;

// Parts compare as texts of five digits or more.
std::optional<QString> Part(const QStringList& version, qsizetype number) {
  const QString part = version.value(number).trimmed();
  const bool is_number =
      !part.isEmpty() && part.size() <= kMostDigits && std::ranges::all_of(part, [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
      });
  return is_number
             ? std::optional(QString::number(part.toLongLong()).rightJustified(5, QLatin1Char('0')))
             : std::nullopt;
}

}  // namespace

std::optional<bool> IsUpToDate(const QString& server, const QString& local) {
  const QStringList theirs = server.split(QLatin1Char('.'));
  const QStringList ours = local.split(QLatin1Char('.'));
  for (qsizetype number = 0; number < 3; ++number) {
    const auto there = Part(theirs, number);
    const auto here = Part(ours, number);
    if (!there || !here) {
      return std::nullopt;
    }
    if (*there > *here) {
      return false;
    }
    if (number == 1 && *there < *here) {
      return true;
    }
  }
  return true;
}

}  // namespace quayline
