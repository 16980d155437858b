// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <expected>
#include <functional>

#include "platform/firewall.h"
#include "platform/linux/firewalld_bus.h"
#include "platform/linux/firewalld_rules.h"

namespace quayline {

// The firewall service firewalld, over the message bus. It asks the user for a password by itself.
// The program's rules are in the zone of the network, both in what rules now and in what is kept
// over a restart.
class Firewalld final {
 public:
  // An empty address is the system's bus. `interface` names that of the network, or nothing.
  Firewalld(QString bus_address, std::function<QString()> interface);

  // Whether the service runs, and so rules.
  Task<bool> IsRunning() { return bus_.IsRunning(); }
  Task<std::expected<FirewallView, FirewallError>> Look(Firewall::Asking asking);
  // All of the rules, or none. A change that cannot be kept over a restart is taken back.
  Task<FirewallChange> Add(QList<FirewallPorts> ports, Firewall::Progress progress);
  Task<FirewallChange> Remove(QList<FirewallPorts> ports, Firewall::Progress progress);

 private:
  using Done = std::expected<void, QDBusError>;

  Task<std::expected<QString, QDBusError>> Zone();
  Task<std::expected<FirewalldZone, QDBusError>> Settings(QString zone);
  Task<QList<FirewallRule>> RulesOfService(QString service);
  Task<QStringList> OwnRulesElsewhere(QString but_not_of);
  Task<std::expected<QStringList, QDBusError>> RichRules(QString zone);
  // Replaces the rich rules of a zone, now and for ever; on an error they are as before.
  Task<Done> SetRichRules(QString zone, QStringList before, QStringList after);
  Task<Done> SetKept(QString zone, QStringList before, QStringList after);

  FirewalldBus bus_;
  std::function<QString()> interface_;
};

}  // namespace quayline
