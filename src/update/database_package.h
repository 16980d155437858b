// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>

#include "async/task.h"
#include "core/shipped_databases.h"

namespace quayline {

struct DatabaseFolders {
  QString users;    // of the program
  QString shipped;  // of an installation; may be empty
};

// Puts the databases of a package that the maker's server sent in place of those in the user's
// folder, merged with them row by row: what the user changed or added stays. The package is
// untrusted: it is unpacked by quayline-reader, and nothing in it is run. The databases are closed
// meanwhile. On failure nothing has changed.
Task<std::expected<QList<RowChanges>, QList<Sentence>>> InstallPackage(QString package,
                                                                       DatabaseFolders folders);

}  // namespace quayline
