// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <vector>

#include "core/port_entry.h"
#include "core/port_range.h"

namespace quayline {

// What the first refused row of a list clashes with.
struct PortConflict {
  enum Kind { kSameName, kSameStart, kSameEnd };

  Kind kind = kSameName;
  int row = -1;    // the row that is checked
  int other = -1;  // the row that it was checked against

  bool operator==(const PortConflict&) const = default;
};

// Compares the rows of a list with one another as a loop over all pairs would, without its cost:
// 1. Whether a row clashes with any other is found by counting. Names are counted in a hash. The
//    ports of each protocol are in an index of sorted starts and ends, in which each of the four
//    tests is one or two binary searches.
// 2. Only for a row that clashes, the others are compared in their order.
class PortConflicts final {
 public:
  explicit PortConflicts(const QList<PortEntry>& entries);

  // The clash of `row` with the first other row of the list that it clashes with. A pair is tested
  // for its names, then, where the protocols meet, for the start port and for the end port.
  std::optional<PortConflict> FirstOf(int row) const;

  // End port minus start port of `row`.
  qint64 Length(int row) const;

 private:
  struct Row {
    int name = 0;      // equal for names that differ in case only
    int protocol = 0;  // likewise
    PortRange ports;
  };

  struct Index {
    void Add(const PortRange& row);
    void Sort();
    // How many of the rows would clash with `row`.
    qint64 CountClashes(const PortRange& row) const;

    std::vector<int> starts;
    std::vector<int> ends;
    // Of the rows that do not end before they start.
    std::vector<int> proper_starts;
    std::vector<int> proper_ends;
  };

  bool ClashesWithAny(const Row& row) const;
  bool DoProtocolsMeet(const Row& row, const Row& other) const;

  std::vector<Row> rows_;
  std::vector<int> rows_of_name_;
  std::vector<Index> rows_of_protocol_;
  Index all_rows_;
  int both_protocols_ = 0;
};

}  // namespace quayline
