// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/port_totals.h"

#include "core/row_ports.h"

namespace quayline {

PortTotals ComputeTotals(const QList<PortEntry>& entries) {
  PortTotals totals;
  totals.rows = static_cast<int>(entries.size());
  RowPorts ports;
  const auto count = [&](qint64& of_protocol, IpProtocol protocol) {
    of_protocol += ports.Length() + 1;
    totals.total += ports.Length() + 1;
    if (ports.start <= ports.end) {
      totals.forwarded.append({ports.start, ports.end, protocol});
    }
  };
  for (const PortEntry& entry : entries) {
    ports.Take(entry);
    const QString protocol = entry.protocol.toLower();
    const bool both = protocol == QLatin1String("tcp/udp");
    if (both || protocol == QLatin1String("tcp")) {
      count(totals.tcp, IpProtocol::kTcp);
    }
    if (both || protocol == QLatin1String("udp")) {
      count(totals.udp, IpProtocol::kUdp);
    }
  }
  return totals;
}

}  // namespace quayline
