// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// Copies of files that have the time of their original, so that it can be seen without reading
// whether the original has changed since.

// Whether `copy` was made of `path` as it is now.
bool IsCopyOf(const QString& copy, const QString& path);

// Makes a file of the user's own, to which he may write, of one that is installed. The new file has
// the whole content or does not exist. A file that somebody else has made in the meantime stays:
// that is no failure.
bool CopyIfMissing(const QString& path, const QString& copy);

// Replaces `copy`. False when it could not be written.
bool CopyWithTime(const QString& path, const QString& copy);

}  // namespace quayline
