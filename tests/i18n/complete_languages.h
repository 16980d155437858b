// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace quayline::testing {

// The languages of data/languages that have every text of the program, and no other.
inline const QStringList kCompleteLanguages{};

// Those whose texts fit into every window.
inline const QStringList kFittingLanguages{QStringLiteral("German")};

}  // namespace quayline::testing
