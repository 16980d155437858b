// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "platform/firewall.h"
#include "platform/linux/firewalld.h"
#include "platform/linux/helper_firewall.h"

namespace quayline {

// Where a program of the system may be.
QStringList InSystemFolders(const QString& program);

// Where a Linux system shows which firewall it uses.
struct FirewallPlaces {
  QString ufw_settings = QStringLiteral("/etc/ufw/ufw.conf");
  QStringList ufw_programs = InSystemFolders(QStringLiteral("ufw"));
  QStringList nft_programs = InSystemFolders(QStringLiteral("nft"));
  // That the system loads rules of nftables when it starts.
  QStringList nft_services{
      QStringLiteral("/etc/systemd/system/sysinit.target.wants/nftables.service"),
      QStringLiteral("/etc/systemd/system/multi-user.target.wants/nftables.service")};
  QString bus;  // the address of the message bus; empty: the system's
  QString routes = QStringLiteral("/proc/net/route");
};

// The firewall that rules on a Linux system: firewalld if it runs, else ufw if it is installed and
// enabled, else nftables if it filters.
class LinuxFirewall final : public Firewall {
 public:
  explicit LinuxFirewall(HelperLaunch launch = HelperLaunch::OfSystem(),
                         FirewallPlaces places = {});

  Task<std::expected<FirewallView, FirewallError>> Look(Asking asking) override;
  Task<FirewallChange> Add(QList<FirewallPorts> ports, Progress progress) override;
  Task<FirewallChange> Remove(QList<FirewallPorts> ports, Progress progress) override;
  bool OpenSettings() override;

 private:
  Task<FirewallKind> Ruling();

  HelperLaunch launch_;
  FirewallPlaces places_;
  Firewalld firewalld_;
};

}  // namespace quayline
