// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QString>

namespace quayline {

// The mark of how a router's scripts were tried (a value of the column "routertested"). The marks
// differ by their shape, not only by a colour.
QIcon TestedIcon(const QString& tested);

}  // namespace quayline
