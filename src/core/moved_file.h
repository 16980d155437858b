// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// Moves files within a file system, each in one step.

// `to` is replaced. False when nothing was moved.
bool MoveFile(const QString& from, const QString& to);

// `copy` becomes another name of the file `path`; a file system that has only one name for each
// file moves it. What `copy` was before is replaced. False when nothing has changed.
bool LinkOrMoveFile(const QString& path, const QString& copy);

// Moves what SQLite keeps beside a database, and would apply to another one of the same name. What
// is beside `to` already is removed.
void MoveSideFiles(const QString& from, const QString& to);

}  // namespace quayline
