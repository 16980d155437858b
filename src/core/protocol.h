// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace quayline {

// What a rule of the router forwards.
enum class Protocol { kTcp, kUdp, kBoth };

// "TCP", "UDP" or "TCP/UDP", as the list and the scripts have it.
QString ProtocolText(Protocol protocol);
// Ignores case. Nothing for any other text.
std::optional<Protocol> ProtocolOf(const QString& text);

}  // namespace quayline
