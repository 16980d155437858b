// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace quayline {

// The first ten of `texts`, each shortened to a line's length and joined by `separator`, with "..."
// for the rest: what a message can show of a list of any length.
QString ShortList(const QStringList& texts, const QString& separator);

}  // namespace quayline
