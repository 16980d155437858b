// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <expected>

#include "i18n/sentence.h"

namespace quayline {

// Puts a new set of databases in the place of the old one, by renames only. A set is in place when
// its last file is; a start after a crash completes what was begun.

// Where the next set is prepared: a name for a new folder in `folder`, to which "XXXXXX" is added
// that QTemporaryDir replaces.
QString NewSetTemplate(const QString& folder);

// Moves the files of `set`, a folder in `folder`, into `folder`. A file that is replaced is kept
// with ".previous" added to its name. On failure the old files are back in place. The
// databases are closed meanwhile.
std::expected<void, Sentence> PutInPlace(const QString& set, const QString& folder);

// Completes what PutInPlace() had begun when the program was ended, and removes what an interrupted
// preparation left an hour ago or earlier. To be called before the databases are opened.
void CompleteSwap(const QString& folder);

}  // namespace quayline
