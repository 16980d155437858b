// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/readable_cells.h"

#include <QGuiApplication>

#include "i18n/isolated.h"

namespace quayline {

namespace {

// A computer may have a name in another direction than its address: "192.168.1.10(...)".
bool BeginsWithNumber(const QString& text) {
  return !text.isEmpty() && text.at(0).isDigit() && !text.contains(u' ');
}

}  // namespace

QString ReadableCells::displayText(const QVariant& value, const QLocale& locale) const {
  const QString text = QStyledItemDelegate::displayText(value, locale);
  const bool is_turned = QGuiApplication::layoutDirection() == Qt::RightToLeft;
  return is_turned && (!text.isRightToLeft() || BeginsWithNumber(text)) ? LeftToRight(text) : text;
}

}  // namespace quayline
