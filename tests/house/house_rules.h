// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace quayline::testing {

// Why `file` must not include `included`, or an empty text where it may. Both are paths below src/;
// `included` may also be a system header in its angle brackets.
//
// The floors, from the ground up: async; platform, transport, i18n; core; script, net; ui; app,
// cli, dbtool. A file includes its own folder and lower floors, never a neighbour on its floor.
// Inside ui/ the other folders stand on ui/toolkit and know nothing of each other. Qt WebEngine is
// known to script/web alone.
QString WrongArrow(const QString& file, const QString& included);

// What the #include lines of a source text name: "core/settings.h", "<QObject>".
QStringList Includes(const QString& source);

// Why a file with this text must not be in the repository, or an empty text: it lacks its two
// licence lines at the head (those of kinds that carry them), or refers to papers that are not kept
// here.
QString WrongText(const QString& file, const QString& text);

}  // namespace quayline::testing
