// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "core/router_session.h"

namespace quayline {

// What the fields of an entry take while they are typed, and what becomes of them when they are
// left.

// The ports that the selected router forwards.
struct PortLimits {
  int min_port = 1;
  int max_port = 65535;
  int max_range = 65535;  // largest end port minus start port
};

// A limit that is not a number is 0, as at an update. Without any router, every port may be typed.
PortLimits LimitsOf(const RouterSession& session);
// The limits of the port, "(1~65535)".
QString LimitsHint(const RouterSession& session);

// Whether one rule of the selected router can stand for TCP and UDP.
bool HasRuleForBoth(const RouterSession& session);

// Digits, "." and "-". Looser than a port number: the checks tell what is none.
bool MayBeTypedAsPort(const QString& text);
// What can still become a dotted address, or is one: digits and up to three ".", between them
// three digits at most, and 255 at most.
bool MayBeTypedAsAddress(const QString& text);
// Four numbers up to 255.
bool IsWholeAddress(const QString& text);

// The port as it stands when its field is left: moved into the limits. A text that is no whole
// number, however long, is left as it is.
QString ClampedPort(const QString& typed, const PortLimits& limits);

}  // namespace quayline
