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
  HelperFirewall(FirewallKind kind, HelperLaunch launch)
      : kind_(kind), launch_(std::move(launch)) {}

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
};

// What ufw lets in: of its rules the first one that fits counts.
FirewallView UfwView(const QByteArray& status);

}  // namespace quayline
