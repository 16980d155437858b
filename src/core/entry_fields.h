// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "core/router_session.h"

namespace quayline {

// What may be typed into the fields of an entry, and how a value is corrected when its field loses
// the focus.

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

// Whether one rule of the selected router can cover TCP and UDP.
bool HasRuleForBoth(const RouterSession& session);

// Digits, "." and "-". Less strict than a port number: the checks of the entry report an invalid
// one.
bool MayBeTypedAsPort(const QString& text);
// What can still become a dotted address, or is one: digits and up to three ".", between them
// three digits at most, and 255 at most.
bool MayBeTypedAsAddress(const QString& text);
// Four numbers up to 255.
bool IsWholeAddress(const QString& text);

// The port when its field loses the focus: moved into the limits. A text that is no whole number
// stays as it is.
QString ClampedPort(const QString& typed, const PortLimits& limits);

}  // namespace quayline
