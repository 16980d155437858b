// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>
#include <optional>

#include "async/task.h"

namespace quayline {

// Runs a command line, of which quotes hold parts together, without a shell. Waits for it up to
// `limit`, and leaves it running after that. Its output and its exit code count for nothing. The
// answer is the number of the error for which it could not be started.
Task<std::optional<int>> RunCommand(QString line,
                                    std::chrono::milliseconds limit = std::chrono::seconds(3));

}  // namespace quayline
