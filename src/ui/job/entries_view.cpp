// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/entries_view.h"

#include <QHeaderView>
#include <QStyledItemDelegate>

#include "ui/job/entry_states.h"

namespace quayline {

namespace {

constexpr int kMostWrappedRows = 500;  // the height of each of more rows would take too long

// Cells as high as their text takes, wrapped at the width of their column.
class WrappedCells final : public QStyledItemDelegate {
 public:
  explicit WrappedCells(QTreeView* view) : QStyledItemDelegate(view), view_(*view) {}

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    cell.rect = QRect(0, 0, view_.columnWidth(index.column()), QWIDGETSIZE_MAX);
    return QStyledItemDelegate::sizeHint(cell, index);
  }

 private:
  const QTreeView& view_;
};

}  // namespace

EntriesView::EntriesView(QWidget* parent) : QTreeView(parent) {}

void EntriesView::Follow(EntryStates& states) {
  setItemDelegateForColumn(EntryStates::kReason, new WrappedCells(this));
  setModel(&states);
  const auto fit = [this, &states] { FitColumns(states); };
  connect(&states, &QAbstractItemModel::dataChanged, this, fit);
  connect(&states, &QAbstractItemModel::modelReset, this, fit);
  // Rows are as high as their wrapped texts.
  connect(header(), &QHeaderView::sectionResized, this, &QTreeView::doItemsLayout,
          Qt::QueuedConnection);
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
