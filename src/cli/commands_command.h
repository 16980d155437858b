// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>

#include "cli/arguments.h"

namespace quayline {

// What `quayline-cli commands` prints: one command, all of them, or the reference page. An error is
// a sentence for the user.
std::expected<QString, QString> DescribeCommands(const CommandsArguments& arguments);

}  // namespace quayline
