// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_entry.h"

namespace quayline {

std::optional<int> PortNumber(const QString& text) {
  bool is_number = false;
  const int value = text.toInt(&is_number);
  return is_number ? std::optional(value) : std::nullopt;
}

}  // namespace quayline
