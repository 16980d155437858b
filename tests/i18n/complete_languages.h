// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace quayline::testing {

// The languages of data/languages that have every text of the program, and no other.
inline const QStringList kCompleteLanguages{
    QStringLiteral("Arabic"),  QStringLiteral("Chinese"),    QStringLiteral("French"),
    QStringLiteral("German"),  QStringLiteral("Italian"),    QStringLiteral("Japanese"),
    QStringLiteral("Polish"),  QStringLiteral("Portuguese"), QStringLiteral("Russian"),
    QStringLiteral("Spanish"), QStringLiteral("Turkish")};

// Those whose texts fit into every window.
inline const QStringList& kFittingLanguages = kCompleteLanguages;

}  // namespace quayline::testing
