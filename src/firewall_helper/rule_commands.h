// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "platform/firewall_ports.h"
#include "platform/linux/firewall_helper_codes.h"

namespace quayline {

// Prints the rules as the program itself does.
HelperCode ListNft();
HelperCode ListUfw();

// Add or remove rules of Quayline, and no others. Each prints a line before each rule: its index.
// That of nft is one transaction. That of ufw takes part of a second a rule, and ends between two
// rules when standard input is closed.
HelperCode AddToNft(const QList<FirewallPorts>& ports);
HelperCode RemoveFromNft(const QList<FirewallPorts>& ports);
HelperCode AddToUfw(const QList<FirewallPorts>& ports);
HelperCode RemoveFromUfw(const QList<FirewallPorts>& ports);

}  // namespace quayline
