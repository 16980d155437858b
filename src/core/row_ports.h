// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "core/port_entry.h"

namespace quayline {

// The ports of rows as numbers, taken from the first row to the last: a text that is not a number
// counts as the value of the row before it, 0 at first.
struct RowPorts {
  int start = 0;
  int end = 0;

  // Moves on to the next row.
  void Take(const PortEntry& entry) {
    start = PortNumber(entry.start_port).value_or(start);
    end = PortNumber(entry.end_port).value_or(end);
  }

  // End minus start; below zero for a row that ends before it starts.
  qint64 Length() const { return qint64{end} - start; }

  // False for every port of a row that ends before it starts.
  bool Holds(int port) const { return start <= port && port <= end; }
};

// Whether the ports of `row` conflict with those of `other`, at its start or at its end.
inline bool ClashesAtStart(const RowPorts& row, const RowPorts& other) {
  return other.Holds(row.start) || row.Holds(other.start);
}

// The second half does not mirror the first: it applies only to a row that does not reach beyond
// its own start port.
inline bool ClashesAtEnd(const RowPorts& row, const RowPorts& other) {
  return other.Holds(row.end) || (row.end <= other.end && other.end <= row.start);
}

}  // namespace quayline
