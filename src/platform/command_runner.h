// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

#include "async/task.h"

namespace quayline {

// Runs a command line, of which quotes hold parts together, without a shell. Waits for it up to
// `limit`, and leaves it running after that. Its output and its exit code count for nothing. The
// answer is why it could not be started, or an empty text.
Task<QString> RunCommand(QString line, std::chrono::milliseconds limit = std::chrono::seconds(3));

}  // namespace quayline
