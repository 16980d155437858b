// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace quayline {

// One row of the port list: what is to be opened on the router. All fields stay text for the whole
// run, as the user typed them or the list file gave them; numbers are made where they are compared.
struct PortEntry {
  QString app_name;      // at most 10 characters when typed; unique in a list, ignoring case
  QString forwarded_to;  // address, "(", computer name or nothing, ")": "192.168.1.100(FrontDesk)"
  QString start_port;    // decimal
  QString end_port;      // decimal; equal to start_port for a single port
  QString protocol;      // "TCP", "UDP" or "TCP/UDP"
  QString description;   // free text

  bool operator==(const PortEntry&) const = default;
};

// The whole-number value of a text as the list compares it: surrounding blanks and a sign are
// allowed. Nothing for any other text, also for one beyond 32 bits.
std::optional<int> PortNumber(const QString& text);

}  // namespace quayline
