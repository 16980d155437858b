// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <functional>

#include "async/flow.h"
#include "async/task.h"

namespace quayline::testing {

// Runs the event loop until `condition` holds or the time is over. Returns whether it holds.
bool RunUntil(const std::function<bool()>& condition,
              std::chrono::milliseconds limit = std::chrono::seconds(30));

// Runs `task` to its end. False when it has not ended within the limit.
bool RunTask(Task<> task, std::chrono::milliseconds limit = std::chrono::seconds(60));

}  // namespace quayline::testing
