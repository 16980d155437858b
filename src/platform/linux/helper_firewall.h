// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/firewall.h"
#include "platform/linux/firewall_helper_run.h"

namespace quayline {

// A firewall whose rules are read and changed by quayline-firewall-helper: nftables or ufw.
class HelperFirewall final {
 public:
  // `interface` is that of the network; empty if it is not known.
  HelperFirewall(FirewallKind kind, HelperLaunch launch, QString interface)
      : kind_(kind), launch_(std::move(launch)), interface_(std::move(interface)) {}

  // Whether the user would be asked for a password.
  bool NeedsPassword() const { return !launch_.is_root; }

  Task<std::expected<FirewallView, FirewallError>> Look() const;
  Task<FirewallChange> Change(QString verb, QList<FirewallPorts> ports,
                              Firewall::Progress progress) const;

 private:
  QString Word() const;
  std::optional<FirewallView> Read(const QByteArray& output) const;

  FirewallKind kind_;
  HelperLaunch launch_;
  QString interface_;
};

// What ufw lets in from the network at `interface`, if that is known.
FirewallView UfwView(const QByteArray& status, const QString& interface = {});

}  // namespace quayline
