// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <ostream>

#include "async/flow.h"
#include "async/task.h"

// How GoogleTest shows a text: without these, as a list of numbers.
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QByteArray& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(QLatin1String text, std::ostream* out) { PrintTo(QString(text), out); }

namespace quayline::testing {

// Runs the event loop until `condition` holds or the time is over. Returns whether it holds.
bool RunUntil(const std::function<bool()>& condition,
              std::chrono::milliseconds limit = std::chrono::seconds(30));

// Runs `task` to its end. False when it has not ended within the limit.
bool RunTask(Task<> task, std::chrono::milliseconds limit = std::chrono::seconds(60));

}  // namespace quayline::testing
