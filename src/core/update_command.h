// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "core/port_entry.h"
#include "core/router_session.h"
#include "i18n/translator.h"

namespace quayline {

// For a text that names no router; %1 is the text.
inline constexpr Message kNoSuchRouter{
    "There is no router \"%1\" in the list. Please choose your router from the list."};
// Also shown when the router's ports are viewed without an address.
inline constexpr Message kSetRouterIp{"Please Set Router IP."};

// A job cannot begin now.
inline constexpr Message kJobRuns{
    "A job is running, and your router serves only one at a time. Please wait until it ends, or "
    "stop it in its window. Then try again."};

// Where the main window sets the focus after a refusal.
enum class UpdateFocus { kNone, kRouter, kRouterIp, kPortList };

// The outcome of pressing "Update Router".
struct UpdateVerdict {
  bool accepted = false;
  QString message;  // why not, in the user's language; empty when accepted
  UpdateFocus focus = UpdateFocus::kNone;
  int row = -1;  // the row to select, or -1
};

// Moves each port of `entries` into the router's limits (RouterSession min_port and max_port); a
// limit that is not a number keeps its former value, 0 at first. Returns the rows that changed:
// none where no router is known.
QList<int> ClampPorts(QList<PortEntry>& entries, const RouterSession& session);

// The checks of a list against the selected router, in their fixed order; the first that fails
// decides. `entries` are already clamped. Takes well under a second for 65535 rows.
UpdateVerdict CheckUpdate(const QList<PortEntry>& entries, const RouterSession& session,
                          const Translator& translator);

}  // namespace quayline
