// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_totals.h"

#include "core/port_range.h"
#include "core/protocol.h"

namespace quayline {

PortTotals ComputeTotals(const QList<PortEntry>& entries) {
  PortTotals totals;
  totals.rows = static_cast<int>(entries.size());
  PortRange ports;
  const auto count = [&](qint64& of_protocol, IpProtocol protocol) {
    of_protocol += ports.Length() + 1;
    totals.total += ports.Length() + 1;
    if (ports.start <= ports.end) {
      totals.forwarded.append({ports.start, ports.end, protocol});
    }
  };
  for (const PortEntry& entry : entries) {
    ports = RangeOf(entry, ports);
    const auto protocol = ProtocolOf(entry.protocol);
    if (protocol == Protocol::kTcp || protocol == Protocol::kBoth) {
      count(totals.tcp, IpProtocol::kTcp);
    }
    if (protocol == Protocol::kUdp || protocol == Protocol::kBoth) {
      count(totals.udp, IpProtocol::kUdp);
    }
  }
  return totals;
}

}  // namespace quayline
