// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/tested_icon.h"

#include <algorithm>

#include "core/records.h"
#include "ui/toolkit/theme.h"

namespace quayline {

QIcon TestedIcon(const QString& tested) {
  const bool is_known = std::ranges::any_of(
      kWaysOfTesting, [&](const char* way) { return tested == QLatin1String(way); });
  return ThemeIcon(is_known ? QStringLiteral("tested_") + tested : QStringLiteral("help"),
                   QPalette::Text);
}

}  // namespace quayline
