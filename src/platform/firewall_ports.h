// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <bitset>
#include <optional>

namespace quayline {

inline constexpr int kTcpNumber = 6;  // the IP protocol numbers
inline constexpr int kUdpNumber = 17;

// Consecutive ports of one protocol, which one rule of a firewall opens.
struct FirewallPorts {
  int first = 0;
  int last = 0;  // never below first
  int protocol = kTcpNumber;

  int Count() const { return last - first + 1; }
  bool operator==(const FirewallPorts&) const = default;
};

// "8080" or "6881-6889".
QString PortsText(int first, int last);
// "TCP" or "UDP"; empty for any other number.
QString ProtocolWord(int protocol);

// The name of the program's rule: "QYL Port 8080 TCP", "QYL Port 6881-6889 UDP".
QString OwnRuleName(const FirewallPorts& ports);
// Whether a rule of this name was made by the program, in any case of its letters.
bool IsOwnRuleName(const QString& name);

// Ports as the firewall helper takes them: "tcp:8080", "udp:6881-6889". Nothing for any other text,
// and for ports outside of 1 to 65535.
QString PortsArgument(const FirewallPorts& ports);
std::optional<FirewallPorts> ParsePortsArgument(const QString& argument);

// Ports of one protocol, in any combination.
class PortSet final {
 public:
  static PortSet All() { return PortSet().Fill(0, kLast); }

  // Ports beyond the last one are ignored.
  PortSet& Fill(int first, int last);
  bool HasAll(int first, int last) const;
  bool IsEmpty() const { return ports_.none(); }

  PortSet operator&(const PortSet& other) const { return PortSet(ports_ & other.ports_); }
  PortSet operator|(const PortSet& other) const { return PortSet(ports_ | other.ports_); }
  PortSet operator-(const PortSet& other) const { return PortSet(ports_ & ~other.ports_); }

 private:
  static constexpr int kLast = 65535;

  PortSet(const std::bitset<kLast + 1>& ports) : ports_(ports) {}

  std::bitset<kLast + 1> ports_;

 public:
  PortSet() = default;
};

}  // namespace quayline
