// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/entries_view.h"

#include "ui/job/entry_states.h"
#include "ui/toolkit/wrapped_column.h"

namespace quayline {

namespace {

constexpr int kMostWrappedRows = 500;  // the height of each of more rows would take too long

}  // namespace

EntriesView::EntriesView(QWidget* parent) : QTreeView(parent) {}

void EntriesView::Follow(EntryStates& states) {
  WrapColumn(*this, EntryStates::kReason);
  setModel(&states);
  const auto fit = [this, &states] { FitColumns(states); };
  connect(&states, &QAbstractItemModel::dataChanged, this, fit);
  connect(&states, &QAbstractItemModel::modelReset, this, fit);
  fit();
}

void EntriesView::FitColumns(const EntryStates& states) {
  setUniformRowHeights(states.rowCount() > kMostWrappedRows);
  for (const auto column : {EntryStates::kListening, EntryStates::kOutside}) {
    setColumnHidden(column, !states.IsFilled(column));
  }
  for (int column = 0; column < EntryStates::kReason; ++column) {
    resizeColumnToContents(column);
  }
}

}  // namespace quayline
