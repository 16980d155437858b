// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace quayline::testing {

// The languages of data/languages that are complete: each has every text of the program, and its
// texts fit into every window.
inline const QStringList kCompleteLanguages{QStringLiteral("German")};

}  // namespace quayline::testing
