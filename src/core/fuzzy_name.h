// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace quayline {

// The position, from 1, of the first piece of `pattern` in `text`, searched from position `start`
// on; 0 if `text` does not match. The pattern is split at each "*"; the pieces have to follow each
// other in the text, with anything between them. An empty piece is found at once.
int WildcardMatch(QStringView text, QStringView pattern, int start = 1,
                  Qt::CaseSensitivity case_sensitivity = Qt::CaseInsensitive);

// A list of names for a tolerant search: case, blanks, hyphens, dots, plus signs and round brackets
// do not matter, and a "*" matches anything. The names are prepared once, so that a search through
// ten thousand of them fits between two key strokes.
class FuzzyNames final {
 public:
  void Append(const QString& name);
  void Clear() { keys_.clear(); }
  int Count() const { return static_cast<int>(keys_.size()); }

  // The first name from index `from` on that matches `text`, or -1. The beginning of the name has
  // to match; with `anywhere`, any part of it.
  int FindByFuzzyName(const QString& text, bool anywhere, int from) const;

  // The next name after `position` that matches, or -1. The position is set to the name that was
  // found, else to the last one. If it is at the last name or after it, the search begins at the
  // first name; otherwise it ends at the last one.
  int FindNext(const QString& text, bool anywhere, int& position) const;

  // Whether the name at `index` matches.
  bool Fits(int index, const QString& text, bool anywhere) const;

 private:
  QStringList keys_;
};

}  // namespace quayline
