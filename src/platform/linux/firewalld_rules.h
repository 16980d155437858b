// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

#include "platform/firewall.h"

namespace quayline {

// The program's rule for ports, in the language of firewalld. A port of a zone has no name; this
// rule has one: the prefix of messages in the kernel, for which usually no program listens.
QString OwnRichRule(const FirewallPorts& ports);
// The ports of a rule that OwnRichRule() made; nothing for any other rule.
std::optional<FirewallPorts> PortsOfOwnRichRule(const QString& rule);

// Of a name like "tcp", or of the number itself.
int ProtocolNumber(const QString& word);

// What a zone of firewalld lets in.
struct FirewalldZone {
  QString target;
  QStringList rich_rules;
  QList<FirewallRule> ports_and_services;
  QHash<QString, QList<FirewallRule>> services;  // that rich rules name, with their rules
};

// The services that rich rules name.
QStringList ServicesOfRichRules(const QStringList& rules);

FirewallView FirewalldView(const FirewalldZone& zone);

}  // namespace quayline
