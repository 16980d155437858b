// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/records.h"

namespace quayline {

QStringList ScriptLines(const QString& script) {
  QStringList lines = script.split(QLatin1Char('\n'));
  for (QString& line : lines) {
    if (line.endsWith(QLatin1Char('\r'))) {
      line.chop(1);
    }
  }
  lines.removeIf([](const QString& line) { return QStringView(line).trimmed().isEmpty(); });
  return lines;
}

}  // namespace quayline
