// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace quayline {

// The place, from 1, at which the first piece of `pattern` stands in `text`, looked for from place
// `start` on; 0 when `text` does not fit. The pattern is cut at each "*"; the pieces have to follow
// each other in the text, with anything between them. An empty piece stands wherever it is looked
// for.
int WildcardMatch(QStringView text, QStringView pattern, int start = 1,
                  Qt::CaseSensitivity case_sensitivity = Qt::CaseInsensitive);

// A list of names for a search that forgives: case does not matter, nor do blanks, hyphens, dots,
// plus signs and round brackets, and a "*" stands for anything. The names are made ready once, so
// that a search through ten thousand of them is done between two key strokes.
class FuzzyNames final {
 public:
  void Append(const QString& name);
  void Clear() { keys_.clear(); }
  int Count() const { return static_cast<int>(keys_.size()); }

  // The first name from index `from` on that fits `text`, or -1. It fits where its beginning does;
  // with `anywhere`, where any part of it does.
  int FindByFuzzyName(const QString& text, bool anywhere, int from) const;

  // The next name behind `position` that fits, or -1. The position moves along: to the name that
  // was found, else to the last one. From there, or from behind it, a search begins at the first
  // name; it never runs over the end by itself.
  int FindNext(const QString& text, bool anywhere, int& position) const;

  // Whether the name at `index` fits.
  bool Fits(int index, const QString& text, bool anywhere) const;

 private:
  QStringList keys_;
};

}  // namespace quayline
