// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>
#include <optional>

#include "cli/arguments.h"
#include "core/app_context.h"

namespace quayline {

// The exit statuses of the program.
enum class CliExit { kDone = 0, kRefused = 1, kUsage = 2, kFailed = 3, kNotAsWanted = 4 };

// One sentence for standard error, and the status that goes with it.
struct CliError {
  CliExit exit;
  QString message;
};

// Reads the password from the source that the arguments name; nothing if they name none. Not a part
// of PrepareUpdate(), since the user may have to type it.
std::expected<std::optional<QString>, CliError> ReadPassword(const UpdateArguments& arguments);

// Fills the context for a job from the arguments, the folder's settings and the router's row, loads
// the list and checks it as the main window would.
std::expected<void, CliError> PrepareUpdate(const UpdateArguments& arguments,
                                            const std::optional<QString>& password,
                                            AppContext& context);

}  // namespace quayline
