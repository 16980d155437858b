// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/wrapped_column.h"

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTreeView>

namespace quayline {

namespace {

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

void WrapColumn(QTreeView& view, int column) {
  view.setWordWrap(true);
  view.setUniformRowHeights(false);
  view.setItemDelegateForColumn(column, new WrappedCells(&view));
  QObject::connect(view.header(), &QHeaderView::sectionResized, &view, &QTreeView::doItemsLayout,
                   Qt::QueuedConnection);
}

}  // namespace quayline
