// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace quayline {

// What a page shows in one place of a row: words, the value of a box, the chosen text of a list, or
// the state of a check box.
struct PageCell {
  QString heading;  // of the column, or the box's caption or name; may be empty
  QString text;
  std::optional<bool> checked;  // of a check box, or of the chosen one of several radio buttons
};

// A row of a table or of a list, or the fields of a form that stand together.
struct PageRow {
  QList<PageCell> cells;
  QString title;         // the heading above the table
  bool is_form = false;  // boxes for entering a rule, which say nothing about the router

  // As it is shown to the user: the texts that are not empty, divided by " | ".
  QString Text() const;
};

// What was read of a page, of all its frames, and of the pages that followed. It comes from the
// router and is untrusted.
struct PageRows {
  QList<PageRow> rows;
  // Headings of tables, also of those without a row.
  QList<QStringList> headings;
  // Some of it could not be read: more rows may exist.
  bool is_partial = false;
};

}  // namespace quayline
