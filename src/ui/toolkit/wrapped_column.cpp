// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/wrapped_column.h"

#include <QHeaderView>
#include <QTreeView>

#include "ui/toolkit/readable_cells.h"

namespace quayline {

namespace {

class WrappedCells final : public ReadableCells {
 public:
  explicit WrappedCells(QTreeView* view) : ReadableCells(view), view_(*view) {}

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    cell.rect = QRect(0, 0, view_.columnWidth(index.column()), QWIDGETSIZE_MAX);
    return ReadableCells::sizeHint(cell, index);
  }

 private:
  const QTreeView& view_;
};

}  // namespace

void WrapColumn(QTreeView& view, int column) {
  view.setWordWrap(true);
  view.setUniformRowHeights(false);
  view.setItemDelegateForColumn(column, new WrappedCells(&view));
  QObject::connect(view.header(), &QHeaderView::sectionResized, &view, &QTreeView::doItemsLayout,
                   Qt::QueuedConnection);
}

}  // namespace quayline
