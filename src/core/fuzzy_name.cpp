// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/fuzzy_name.h"

#include <algorithm>

namespace quayline {

namespace {

QString KeyOf(const QString& name) {
  QString key = name.toLower();
  key.removeIf([](QChar c) { return QStringView(u" -.+()").contains(c); });
  return key;
}

bool KeyFits(const QString& key, const QString& pattern, bool anywhere) {
  const int place = WildcardMatch(key, pattern, 1, Qt::CaseSensitive);
  return anywhere ? place > 0 : place == 1;
}

}  // namespace

int WildcardMatch(QStringView text, QStringView pattern, int start,
                  Qt::CaseSensitivity case_sensitivity) {
  qsizetype from = std::max(start, 1) - 1;
  int first = 0;
  for (const QStringView piece : pattern.tokenize(u'*')) {
    const qsizetype found = from > text.size() ? -1 : text.indexOf(piece, from, case_sensitivity);
    if (found < 0) {
      return 0;
    }
    first = first == 0 ? static_cast<int>(found) + 1 : first;
    from = found + piece.size();
  }
  return first;
}

void FuzzyNames::Append(const QString& name) { keys_.append(KeyOf(name)); }

int FuzzyNames::FindByFuzzyName(const QString& text, bool anywhere, int from) const {
  const QString pattern = KeyOf(text);
  for (int index = std::max(from, 0); index < Count(); ++index) {
    if (KeyFits(keys_.at(index), pattern, anywhere)) {
      return index;
    }
  }
  return -1;
}

int FuzzyNames::FindNext(const QString& text, bool anywhere, int& position) const {
  position = position >= Count() - 1 ? 0 : position + 1;
  const int found = FindByFuzzyName(text, anywhere, position);
  position = found >= 0 ? found : Count() - 1;
  return found;
}

bool FuzzyNames::Fits(int index, const QString& text, bool anywhere) const {
  return index >= 0 && index < Count() && KeyFits(keys_.at(index), KeyOf(text), anywhere);
}

}  // namespace quayline
