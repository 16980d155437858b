// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "bench/job/timeline.h"
namespace quayline::bench {
std::expected<QByteArray, QString> TimelineSvg(const QStringList& events) {
  return events.join(QLatin1Char('\n')).toUtf8();
}
}  // namespace quayline::bench
