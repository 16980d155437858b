// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "platform/firewall_ports.h"

namespace quayline {

// A rule of ufw for packets to this computer over IPv4.
struct UfwRule {
  QString to;                  // as ufw prints it: "80,443/tcp on eth0"
  QList<FirewallPorts> ports;  // empty for a rule about all ports, or a whole protocol
  int protocol = 0;            // of a rule without ports: the IP protocol number, 0 for any
  bool allows = false;
  bool is_general = false;  // for packets from anywhere, to any address, over any interface
  QString comment;
};

// What "ufw status verbose" prints, in English.
struct UfwStatus {
  bool is_active = false;
  bool drops_rest = true;
  QList<UfwRule> rules;

  // The general rule for exactly these ports; null if it is missing.
  const UfwRule* Find(const FirewallPorts& ports) const;
};

UfwStatus ReadUfwStatus(const QByteArray& text);

}  // namespace quayline
