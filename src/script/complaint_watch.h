// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <optional>

namespace quayline {

// Decides which of the error texts that pages show belong to the entry that is being entered. Many
// pages have such a text from the beginning: a warning above a form, a note in the menu. It never
// looks at a page itself: it is given what the page shows, before each line and at the end.
//
// A text that appears on a page that is there already counts. A text with which a page arrives
// counts if something was entered before, because the page may be the answer to a save; it does not
// count any more when the script goes on to enter something on that page: then it is a form with a
// note.
class ComplaintWatch final {
 public:
  // `page` changes with every navigation; `inputs` counts the boxes that the script has set so far.
  void Take(const QStringList& shown, quint64 page, int inputs);
  // The texts that count, after the last Take().
  QStringList Found() const { return found_ + open_; }

 private:
  QStringList known_;
  QStringList open_;  // that the page arrived with
  QStringList found_;
  std::optional<quint64> page_;
  int inputs_ = 0;
};

}  // namespace quayline
