// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_conflicts.h"

#include <QHash>

#include <algorithm>

#include "core/protocol.h"

namespace quayline {

namespace {

// Numbers texts in the order of their first appearance, ignoring case.
class Numbering final {
 public:
  int Of(const QString& text) {
    const QString folded = text.toCaseFolded();
    const auto known = numbers_.constFind(folded);
    return known != numbers_.cend() ? *known : *numbers_.insert(folded, Count());
  }
  int Count() const { return static_cast<int>(numbers_.size()); }

 private:
  QHash<QString, int> numbers_;
};

qint64 CountWithin(const std::vector<int>& sorted, int low, int high) {
  return low > high
             ? 0
             : std::ranges::upper_bound(sorted, high) - std::ranges::lower_bound(sorted, low);
}

}  // namespace

PortConflicts::PortConflicts(const QList<PortEntry>& entries) {
  Numbering names;
  Numbering protocols;
  both_protocols_ = protocols.Of(ProtocolText(Protocol::kBoth));
  PortRange ports;
  for (const PortEntry& entry : entries) {
    ports = RangeOf(entry, ports);
    rows_.push_back({names.Of(entry.app_name), protocols.Of(entry.protocol), ports});
  }
  rows_of_name_.resize(names.Count());
  rows_of_protocol_.resize(protocols.Count());
  for (const Row& row : rows_) {
    ++rows_of_name_[row.name];
    rows_of_protocol_[row.protocol].Add(row.ports);
    all_rows_.Add(row.ports);
  }
  std::ranges::for_each(rows_of_protocol_, &Index::Sort);
  all_rows_.Sort();
}

std::optional<PortConflict> PortConflicts::FirstOf(int row) const {
  const Row& checked = rows_[row];
  if (!ClashesWithAny(checked)) {
    return std::nullopt;
  }
  for (int other = 0; other < static_cast<int>(rows_.size()); ++other) {
    const Row& against = rows_[other];
    if (other == row) {
      continue;
    }
    if (checked.name == against.name) {
      return PortConflict{PortConflict::kSameName, row, other};
    }
    if (!DoProtocolsMeet(checked, against)) {
      continue;
    }
    if (ClashesAtStart(checked.ports, against.ports)) {
      return PortConflict{PortConflict::kSameStart, row, other};
    }
    if (ClashesAtEnd(checked.ports, against.ports)) {
      return PortConflict{PortConflict::kSameEnd, row, other};
    }
  }
  return std::nullopt;
}

qint64 PortConflicts::Length(int row) const { return rows_[row].ports.Length(); }

void PortConflicts::Index::Add(const PortRange& row) {
  starts.push_back(row.start);
  ends.push_back(row.end);
  if (row.start <= row.end) {
    proper_starts.push_back(row.start);
    proper_ends.push_back(row.end);
  }
}

void PortConflicts::Index::Sort() {
  for (auto* ports : {&starts, &ends, &proper_starts, &proper_ends}) {
    std::ranges::sort(*ports);
  }
}

qint64 PortConflicts::Index::CountClashes(const PortRange& row) const {
  // Ranges that contain a port: those that start at it or before, less those that end before it.
  const auto count_around = [this](int port) {
    const auto begun = std::ranges::upper_bound(proper_starts, port) - proper_starts.begin();
    const auto ended = std::ranges::lower_bound(proper_ends, port) - proper_ends.begin();
    return begun - ended;
  };
  return count_around(row.start) + count_around(row.end) + CountWithin(starts, row.start, row.end) +
         CountWithin(ends, row.end, row.start);
}

bool PortConflicts::ClashesWithAny(const Row& row) const {
  if (rows_of_name_[row.name] > 1) {
    return true;
  }
  qint64 clashes = 0;
  if (row.protocol == both_protocols_) {
    clashes = all_rows_.CountClashes(row.ports);
  } else {
    clashes = rows_of_protocol_[row.protocol].CountClashes(row.ports) +
              rows_of_protocol_[both_protocols_].CountClashes(row.ports);
  }
  Index itself;
  itself.Add(row.ports);
  return clashes > itself.CountClashes(row.ports);
}

bool PortConflicts::DoProtocolsMeet(const Row& row, const Row& other) const {
  return row.protocol == other.protocol || row.protocol == both_protocols_ ||
         other.protocol == both_protocols_;
}

}  // namespace quayline
