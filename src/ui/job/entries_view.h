// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTreeView>

namespace quayline {

class EntryStates;

// The list of a job's entries. Long texts are wrapped, and columns that say nothing are hidden.
class EntriesView final : public QTreeView {
  Q_OBJECT

 public:
  explicit EntriesView(QWidget* parent = nullptr);

  // `states` outlives the view.
  void Follow(EntryStates& states);

 private:
  void FitColumns(const EntryStates& states);
};

}  // namespace quayline
