// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/readable_text.h"

#include <QGuiApplication>

#include <algorithm>

#include "i18n/isolated.h"

namespace quayline {

namespace {

// Also one whose letters are all in values that are isolated.
bool HasTurnedLetters(const QString& text) {
  return std::ranges::any_of(
      text, [](QChar c) { return c.direction() == QChar::DirR || c.direction() == QChar::DirAL; });
}

// A computer may have a name in another direction than its address: "192.168.1.10(...)".
bool BeginsWithNumber(const QString& text) {
  return !text.isEmpty() && text.at(0).isDigit() && !text.contains(u' ');
}

}  // namespace

QString ReadableText(const QString& text) {
  const bool is_turned = QGuiApplication::layoutDirection() == Qt::RightToLeft;
  return is_turned && (!HasTurnedLetters(text) || BeginsWithNumber(text)) ? LeftToRight(text)
                                                                          : text;
}

}  // namespace quayline
