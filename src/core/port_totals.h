// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "core/port_entry.h"

namespace quayline {

enum class IpProtocol { kTcp = 6, kUdp = 17 };  // the IP protocol numbers

// Consecutive ports of one row and one protocol, as the firewall takes them.
struct ForwardedRange {
  int first = 0;
  int last = 0;  // never below first
  IpProtocol protocol = IpProtocol::kTcp;
};

// The figures below the port list.
struct PortTotals {
  int rows = 0;
  qint64 total = 0;  // ports to be opened; a "TCP/UDP" row counts twice
  qint64 tcp = 0;
  qint64 udp = 0;
  QList<ForwardedRange> forwarded;
};

// Linear in the rows, whatever the size of their ranges. A row whose port is not a number counts
// with the value left from the row before it (0 at first). A row that ends before it starts adds
// its length as it is (end - start + 1, so it may lower the figures) and no range.
PortTotals ComputeTotals(const QList<PortEntry>& entries);

}  // namespace quayline
