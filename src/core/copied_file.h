// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// Copies of files that have the time of their original, so that it can be seen without reading
// whether the original has changed since.

// Whether `copy` was made of `path` as it is now.
bool IsCopyOf(const QString& copy, const QString& path);

// Replaces `copy`. False when it could not be written.
bool CopyWithTime(const QString& path, const QString& copy);

}  // namespace quayline
