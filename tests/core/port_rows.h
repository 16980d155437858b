// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>

#include "core/port_entry.h"

namespace quayline::testing {

// Rows of the port list as "name start..end protocol; ...", TCP where no protocol is given.
inline QList<PortEntry> PortRows(const char* text) {
  QList<PortEntry> entries;
  for (const QString& row : QString::fromUtf8(text).split(u';', Qt::SkipEmptyParts)) {
    const QStringList words = row.split(u' ', Qt::SkipEmptyParts);
    const QStringList ports = words.value(1).split(QStringLiteral(".."));
    entries.append({.app_name = words[0],
                    .forwarded_to = QStringLiteral("10.0.0.9()"),
                    .start_port = ports[0],
                    .end_port = ports.value(1),
                    .protocol = words.value(2, QStringLiteral("TCP")),
                    .description = QStringLiteral("note")});
  }
  return entries;
}

}  // namespace quayline::testing
