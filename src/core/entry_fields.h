// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "core/router_session.h"

namespace quayline {

// What the fields of an entry accept while the user types, and what they become when he leaves
// them.

// The ports that the selected router forwards.
struct PortLimits {
  int min_port = 1;
  int max_port = 65535;
  int max_range = 65535;  // largest end port minus start port
};

// A limit that is not a number is 0, as at an update. Without a selected router, every port is
// allowed.
PortLimits LimitsOf(const RouterSession& session);
// The limits of the port, "(1~65535)".
QString LimitsHint(const RouterSession& session);

// Whether the selected router can forward TCP and UDP by one rule.
bool HasRuleForBoth(const RouterSession& session);

// Digits, "." and "-". Looser than a port number: the checks find what is not one.
bool MayBeTypedAsPort(const QString& text);
// The same, with ", " between several ports and ranges.
bool MayBeTypedAsPorts(const QString& text);
// Whether the text is meant as more than one port: "80, 443", "6000-6010".
bool IsPortList(const QString& text);
// What is, or can still become, a dotted address: digits and up to three ".", between them three
// digits at most, and 255 at most.
bool MayBeTypedAsAddress(const QString& text);
// Four numbers up to 255.
bool IsWholeAddress(const QString& text);

// A port when its field is left: without leading zeros, and moved into the limits. Any text that is
// not a whole number stays as it is.
QString SettledPort(const QString& typed, const PortLimits& limits);

}  // namespace quayline
