// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "platform/firewall_ports.h"

namespace quayline {

// A rule of ufw for packets to this computer.
struct UfwRule {
  QString to;                  // as ufw prints it: "80,443/tcp on eth0"
  QList<FirewallPorts> ports;  // empty for a rule about all ports, or a whole protocol
  int protocol = 0;  // of a rule without ports: the IP protocol number, 0 for any, -1 unknown
  bool allows = false;
  bool is_ipv6 = false;
  bool is_general = false;  // for packets from anywhere, to any address
  QString interface;        // over which they come; empty: any
  QString comment;

  // Whether it is the program's, and lets these ports in.
  bool IsOwnFor(const FirewallPorts& wanted) const;
};

// What "ufw status verbose" prints, in English. Rules for IPv6 are left out.
struct UfwStatus {
  bool is_active = false;
  bool drops_rest = true;
  QList<UfwRule> rules;

  // The general rule for exactly these ports; null if it is missing.
  const UfwRule* Find(const FirewallPorts& ports) const;
  // A rule of the program that lets these ports in; null without such a rule.
  const UfwRule* FindOwn(const FirewallPorts& ports) const;
  // What is let in: the first rule that fits counts. The network is at `interface`, if that is
  // known.
  PortSet OpenPorts(int protocol, const QString& interface = {}) const;
};

UfwStatus ReadUfwStatus(const QByteArray& text);

// The numbers of the program's rules that let these ports in, the highest first, in what "ufw
// status numbered" prints. Also those for IPv6.
QList<int> OwnUfwRules(const QByteArray& numbered, const FirewallPorts& wanted);

}  // namespace quayline
