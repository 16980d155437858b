// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

#include "core/table_file.h"

namespace quayline {

// A table whose file in `folder` could not be opened because of `error`.
struct UnopenedTable {
  QString folder;          // of the program
  QString shipped_folder;  // of the databases that came with the program; may be empty
  TableShape shape;
  QStringList columns;  // of a new file, without the key "ID"
  DatabaseError error;
};

// Opens what takes the place of the table's file, so that the program starts whatever is in its
// folder. In this order:
//   1. The good copy, which is only read.
//   2. If the content is at fault: the shipped file, or an empty one. It gets the name of the
//      damaged file, which is kept with ".damaged" added to its name.
//   3. The shipped file, or an empty table. Both are only read.
// Adds what happened to `notices`. Fails only for a file that is missing in both folders:
// it has been taken away, and is not replaced unasked.
TableFile::Opened OpenStandIn(const UnopenedTable& table, QList<Notice>& notices);

// Puts a copy of `source`, or, where that is empty, a table without rows in the place of the
// table's file. The answer is the path under which that is kept, or an empty text if there was
// none; nothing if it could not be done.
std::optional<QString> ReplaceTable(const UnopenedTable& table, const QString& source);

}  // namespace quayline
