// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/short_list.h"

namespace quayline {

namespace {

constexpr qsizetype kMostTexts = 10;
constexpr qsizetype kMostCharacters = 60;

}  // namespace

QString ShortList(const QStringList& texts, const QString& separator) {
  const QString more = QStringLiteral("...");
  QStringList shown;
  for (const QString& text : texts.first(std::min(texts.size(), kMostTexts))) {
    shown.append(text.size() > kMostCharacters ? text.left(kMostCharacters) + more : text);
  }
  if (texts.size() > kMostTexts) {
    shown.append(more);
  }
  return shown.join(separator);
}

}  // namespace quayline
