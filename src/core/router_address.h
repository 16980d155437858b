// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "core/router_session.h"

namespace quayline {

// What the user means with the text of the address field, which may be a whole web address.
struct RouterAddress {
  QString host;       // without blanks; IPv6 in its brackets
  QString http_type;  // "http://" or "https://"; empty where the text names none
  QString http_port;  // empty where the text names none

  bool IsWhole() const { return !http_type.isEmpty() && !host.isEmpty(); }
};

// Splits `typed`: schemes in any case, a login, the path and blanks around are left out. A port
// that is not a number from 1 to 65535 stays with the host, where the user sees it.
RouterAddress ParseRouterAddress(const QString& typed);

// Whether `typed` begins with "http://" or "https://", in any case.
bool HasScheme(const QString& typed);

// Puts what `typed` names into the session. A whole web address that names no port has that of its
// scheme.
void SetAddress(RouterSession& session, const QString& typed);

}  // namespace quayline
