// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include <optional>

#include "core/port_entry.h"

namespace quayline {

// What the port list was before each of its last changes, so that they can be undone one by one.
class ListHistory final {
 public:
  static constexpr qsizetype kMaxSteps = 50;

  // The list as it was loaded: nothing before it can be restored.
  void Begin(QList<PortEntry> entries);
  // The list has changed. What was undone before cannot be redone any more. An equal list is no
  // change.
  void Note(const QList<PortEntry>& entries);

  bool CanUndo() const { return !past_.isEmpty(); }
  bool CanRedo() const { return !future_.isEmpty(); }
  // The list one step back, or one step on again; nothing when there is no such step.
  std::optional<QList<PortEntry>> Undo() { return Move(past_, future_); }
  std::optional<QList<PortEntry>> Redo() { return Move(future_, past_); }

 private:
  using States = QList<QList<PortEntry>>;

  std::optional<QList<PortEntry>> Move(States& from, States& to);

  States past_;  // the latest state last
  QList<PortEntry> present_;
  States future_;
};

}  // namespace quayline
