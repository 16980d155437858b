// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "i18n/isolated.h"

#include "i18n/language_locale.h"

namespace quayline {

QString LeftToRight(const QString& data) {
  return data.isEmpty() ? data : QChar(0x2066) + data + QChar(0x2069);
}

QString Isolated(const QString& value, const Translator& translator) {
  const bool is_turned = LocaleOfLanguage(translator.Language()).textDirection() == Qt::RightToLeft;
  return is_turned ? LeftToRight(value) : value;
}

}  // namespace quayline
