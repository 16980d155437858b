// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>

#include <expected>
#include <optional>

#include "core/entry_look.h"
#include "core/port_entry.h"
#include "i18n/translator.h"
#include "platform/firewall.h"

namespace quayline {

// Whether the firewall of this computer lets in what the router forwards.
struct EntryFirewall {
  std::optional<bool> lets_in;  // nothing: it shows its rules to administrators only
  FirewallKind kind = FirewallKind::kNone;
  QList<FirewallPorts> blocked;  // ports of the entry that are not, or may not be, let in
};

using FirewallAnswer = std::expected<FirewallView, FirewallError>;

// Nothing for an entry that leads to another computer: `own_addresses` are those of this one.
// Nothing also if the firewall could not be read for another reason than a missing password.
std::optional<EntryFirewall> FirewallOf(const PortEntry& entry, const QStringList& own_addresses,
                                        const FirewallAnswer& answer);

// "ufw blocks it", "ufw may block it", "ufw lets it in"; without a firewall nothing is said.
ReachVerdict FirewallVerdict(const EntryFirewall& firewall);

// What is to be noted of entries, and the ports to open for those that lead to this computer.
struct FirewallLooks {
  QList<SeenEntry> seen;
  QList<FirewallPorts> blocked;  // each once
};
FirewallLooks FirewallLooksOf(const QList<SeenEntry>& entries, const QStringList& own_addresses,
                              const FirewallAnswer& answer);

// "firewalld", "ufw", "nftables"; empty for none.
QString FirewallName(FirewallKind kind);

}  // namespace quayline
