// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "core/table_data.h"

namespace quayline {

// A table that comes with the program, and the user's copy of it.
struct TableVersions {
  TableData base;     // as it came when the two were last merged; no rows: it is not known
  TableData shipped;  // as it comes now
  TableData users;
};

// The user's table, brought up to date. A row that the user never changed becomes the one that is
// shipped, or goes if none is shipped any more. A row that the user changed or added stays, and one
// that he removed stays away. A row that is new appears.
//
// Rows are the same when their texts in the column `name_column` are; the first of several counts.
// The IDs do not matter: rows that are shipped get the IDs that they are shipped with, but for
// those of routers that the user added, and others keep theirs, or get new ones where these are
// taken. The result has the columns of the user's table, followed by those that only the shipped
// one has; the user's rows get its texts there.
TableData MergeRows(const TableVersions& versions, const QString& name_column);

}  // namespace quayline
