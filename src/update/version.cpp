// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/version.h"

#include <QStringList>

#include <algorithm>

namespace quayline {

namespace {

constexpr qsizetype kMostDigits = 9;
constexpr qsizetype kMostLetters = 40;

// It comes from a server, and becomes a part of a file's name.
bool IsVersion(const QString& text) {
  return text.size() <= kMostLetters && std::ranges::all_of(text, [](QChar c) {
           return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('.');
         });
}

// Parts compare as texts of five digits or more.
std::optional<QString> Part(const QStringList& version, qsizetype number) {
  const QString part = version.value(number);
  return !part.isEmpty() && part.size() <= kMostDigits
             ? std::optional(QString::number(part.toLongLong()).rightJustified(5, QLatin1Char('0')))
             : std::nullopt;
}

}  // namespace

std::optional<bool> IsUpToDate(const QString& server, const QString& local) {
  if (!IsVersion(server)) {
    return std::nullopt;
  }
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
