// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/list_history.h"

namespace quayline {

void ListHistory::Begin(QList<PortEntry> entries) {
  past_.clear();
  future_.clear();
  present_ = std::move(entries);
}

void ListHistory::Note(const QList<PortEntry>& entries) {
  if (entries == present_) {
    return;
  }
  if (past_.size() == kMaxSteps) {
    past_.removeFirst();
  }
  past_.append(present_);
  future_.clear();
  present_ = entries;
}

std::optional<QList<PortEntry>> ListHistory::Move(States& from, States& to) {
  if (from.isEmpty()) {
    return std::nullopt;
  }
  to.append(present_);
  present_ = from.takeLast();
  return present_;
}

}  // namespace quayline
