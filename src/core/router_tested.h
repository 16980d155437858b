// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "i18n/translator.h"

namespace quayline {

// How a router's scripts were tried (a value of the column "routertested"), and for which firmware
// they were written ("routerversions", may be empty), in plain words for the user.
QString TestedText(const QString& tested, const QString& versions, const Translator& translator);

}  // namespace quayline
