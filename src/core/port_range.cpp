// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_range.h"

#include <algorithm>

namespace quayline {

namespace {

std::optional<int> ParsePort(const QString& text) {
  const bool has_digits_only = std::ranges::all_of(
      text, [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
  const std::optional<int> port = has_digits_only ? PortNumber(text) : std::nullopt;
  return port && *port <= kMaxPort ? port : std::nullopt;
}

}  // namespace

std::optional<PortRange> ParsePortRange(const QString& text) {
  const qsizetype dash = text.indexOf(QLatin1Char('-'));
  const auto start = ParsePort(text.left(dash).trimmed());
  const auto end = dash < 0 ? start : ParsePort(text.mid(dash + 1).trimmed());
  return start && end && *start <= *end ? std::optional(PortRange{*start, *end}) : std::nullopt;
}

std::optional<QList<PortRange>> ParsePortRanges(const QString& text) {
  QList<PortRange> ranges;
  for (const QString& part : text.split(QLatin1Char(','))) {
    const auto range = ParsePortRange(part.trimmed());
    if (!range) {
      return std::nullopt;
    }
    ranges.append(*range);
  }
  return ranges;
}

PortRange RangeOf(const PortEntry& row, const PortRange& before) {
  return {.start = PortNumber(row.start_port).value_or(before.start),
          .end = PortNumber(row.end_port).value_or(before.end)};
}

}  // namespace quayline
