// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include <optional>

#include "core/port_entry.h"

namespace quayline {

inline constexpr int kMaxPort = 65535;

// Consecutive ports. A range that ends before it starts contains no port.
struct PortRange {
  int start = 0;
  int end = 0;

  // End minus start; below zero for a range that ends before it starts.
  qint64 Length() const { return qint64{end} - start; }
  bool Contains(int port) const { return start <= port && port <= end; }

  bool operator==(const PortRange&) const = default;
};

// "80" or "6000-6010", with blanks around each number, up to 65535. Nothing for any other text.
std::optional<PortRange> ParsePortRange(const QString& text);
// Ranges with a comma between them: "80, 443, 6000-6010". Nothing if one of them is invalid, or if
// there are none.
std::optional<QList<PortRange>> ParsePortRanges(const QString& text);

// The ports of a row of the list. A text that is not a number counts as the value in the row before
// it, which is `before`; in the first row as 0.
PortRange RangeOf(const PortEntry& row, const PortRange& before);

// Whether the ports of `range` are refused beside those of `other`, for either of its two ends.
inline bool ClashesAtStart(const PortRange& range, const PortRange& other) {
  return other.Contains(range.start) || range.Contains(other.start);
}

// The second half does not mirror the first: it is only about a range that ends at or before its
// own start.
inline bool ClashesAtEnd(const PortRange& range, const PortRange& other) {
  return other.Contains(range.end) || (range.end <= other.end && other.end <= range.start);
}

}  // namespace quayline
