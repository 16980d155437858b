// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_firewall.h"

#include "core/port_range.h"
#include "core/port_totals.h"
#include "core/program_entries.h"

namespace quayline {

namespace {

constexpr Message kFirewallBlocks{"the firewall (%1) blocks it", "%1 is the name of a program"};
constexpr Message kFirewallMayBlock{"the firewall (%1) may block it",
                                    "%1 is the name of a program"};
constexpr Message kFirewallLetsIn{"the firewall lets it in"};

}  // namespace

std::optional<EntryFirewall> FirewallOf(const PortEntry& entry, const QStringList& own_addresses,
                                        const FirewallAnswer& answer) {
  const QList<ForwardedRange> ranges = ComputeTotals({entry}).forwarded;
  const bool is_hidden = !answer && answer.error().fault == FirewallFault::kRefused;
  if (!own_addresses.contains(AddressOf(entry.forwarded_to)) || ranges.isEmpty() ||
      (!answer && !is_hidden)) {
    return std::nullopt;
  }
  EntryFirewall firewall{.kind = answer ? answer->kind : answer.error().kind};
  for (const ForwardedRange& range : ranges) {
    const FirewallPorts ports{
        .first = range.first, .last = range.last, .protocol = static_cast<int>(range.protocol)};
    if (ports.first >= 1 && ports.last <= kMaxPort && (is_hidden || !answer->LetsIn(ports))) {
      firewall.blocked.append(ports);
    }
  }
  if (!is_hidden) {
    firewall.lets_in = firewall.blocked.isEmpty();
  }
  return firewall;
}

ReachVerdict FirewallVerdict(const EntryFirewall& firewall) {
  if (firewall.kind == FirewallKind::kNone) {
    return {.works = true};
  }
  if (firewall.lets_in == true) {
    return {.works = true, .words = {kFirewallLetsIn}};
  }
  return {.works = firewall.lets_in,
          .words = {firewall.lets_in ? kFirewallBlocks : kFirewallMayBlock,
                    {FirewallName(firewall.kind)}}};
}

FirewallLooks FirewallLooksOf(const QList<SeenEntry>& entries, const QStringList& own_addresses,
                              const FirewallAnswer& answer) {
  FirewallLooks looks;
  for (SeenEntry seen : entries) {
    const auto firewall = FirewallOf(seen.entry, own_addresses, answer);
    if (!firewall) {
      continue;
    }
    seen.look.firewall = FirewallVerdict(*firewall);
    looks.seen.append(seen);
    for (const FirewallPorts& ports : firewall->blocked) {
      if (!looks.blocked.contains(ports)) {
        looks.blocked.append(ports);
      }
    }
  }
  return looks;
}

QString FirewallName(FirewallKind kind) {
  switch (kind) {
    case FirewallKind::kFirewalld:
      return QStringLiteral("firewalld");
    case FirewallKind::kUfw:
      return QStringLiteral("ufw");
    case FirewallKind::kNftables:
      return QStringLiteral("nftables");
    case FirewallKind::kNone:
      break;
  }
  return {};
}

}  // namespace quayline
