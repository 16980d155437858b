// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "core/port_entry.h"

namespace quayline {

// The ports of rows as numbers, taken from the first row to the last: a text that is not a number
// stands for the value left from the row before it, 0 at first.
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
};

}  // namespace quayline
