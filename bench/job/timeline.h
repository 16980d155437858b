// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <expected>

namespace quayline::bench {

// A picture of what happens during the entry of a traced job that took the median time, out of the
// lines "<microseconds> <what>" of the trace. A sentence when they hold no whole entry.
std::expected<QByteArray, QString> TimelineSvg(const QStringList& events);

}  // namespace quayline::bench
