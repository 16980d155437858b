// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>
#include <optional>
#include <span>

#include "cli/update_arguments.h"

namespace quayline {

// An option of `update` and `check`. The parser and the help are both made from these rows.
struct UpdateOption {
  const char* name;
  const char* value;  // its name in the help; nullptr: the option takes none
  const char* help;   // lines of the help
  // Stores a value. A fault is a sentence for the user.
  std::optional<QString> (*set)(UpdateArguments& update, const QString& value);

  QString Name() const { return QLatin1String(name); }
};

std::span<const UpdateOption> UpdateOptions();

// The value of --timeout, in seconds. An error is a sentence for the user.
std::expected<int, QString> ParseTimeout(const QString& value);

}  // namespace quayline
