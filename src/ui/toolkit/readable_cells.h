// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace quayline {

// Shows the cells of a list. In a window that is laid out from right to left, addresses, names and
// ports keep their order; only texts in such a language are read in its direction.
class ReadableCells : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QString displayText(const QVariant& value, const QLocale& locale) const override;
};

}  // namespace quayline
