// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "cli/arguments.h"
#include "cli/prepare_update.h"

namespace quayline {

// The routers whose names contain the text, one a line, as the help describes them.
std::expected<QString, CliError> ListRouters(const RoutersArguments& arguments);

}  // namespace quayline
