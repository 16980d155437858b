// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "i18n/translator.h"

namespace quayline {

// `data` between marks that keep its order, U+2066 and U+2069: for an address or a name within a
// text that is read from right to left, where "192.168.1.10(Desk)" would be turned round.
QString LeftToRight(const QString& data);

// `value` as it is added to a text of the translator. (What replaces a %1 is isolated already.)
QString Isolated(const QString& value, const Translator& translator);

}  // namespace quayline
