// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>
#include <functional>

#include "async/task.h"
#include "platform/firewall_ports.h"

namespace quayline {

enum class FirewallKind { kNone, kFirewalld, kUfw, kNftables };

// A rule of the computer's firewall that lets something in.
struct FirewallRule {
  QString name;
  int first_port = 0;  // 0 for a rule about a whole protocol
  int last_port = 0;
  int protocol = kTcpNumber;  // the IP protocol number
  bool is_enabled = true;

  bool operator==(const FirewallRule&) const = default;
};

// What the firewall lets in. Without a firewall: everything.
struct FirewallView {
  FirewallKind kind = FirewallKind::kNone;
  QList<FirewallRule> rules;  // all of them, in the order of the firewall
  PortSet open_tcp = PortSet::All();
  PortSet open_udp = PortSet::All();

  // Whether every one of these ports can be reached from the network.
  bool LetsIn(const FirewallPorts& ports) const {
    return (ports.protocol == kTcpNumber ? open_tcp : open_udp).HasAll(ports.first, ports.last);
  }
};

enum class FirewallFault {
  kRefused,  // the user did not give the right to do it, or has not been asked for it
  kMissing,  // there is no firewall, or a program that is needed is not installed
  kFailed,
};

struct FirewallError {
  FirewallFault fault = FirewallFault::kFailed;
  FirewallKind kind = FirewallKind::kNone;  // the firewall that was asked
  QString text;  // kMissing: the program, empty without a firewall; kFailed: the firewall's words
};

// What a change has done. An error after the first rules leaves these; `done` counts them.
struct FirewallChange {
  FirewallKind kind = FirewallKind::kNone;
  qsizetype done = 0;
  std::expected<void, FirewallError> result;
};

// The firewall of this computer: its rules by port and protocol, added and removed under the
// program's names. Every call finds out again which firewall rules. Destroying a task ends it: no
// further rule is changed then.
class Firewall {
 public:
  // Whether the system may ask the user for an administrator's password.
  enum class Asking { kAllowed, kNever };
  // Called before each rule, with its index.
  using Progress = std::function<void(qsizetype rule)>;

  virtual ~Firewall() = default;

  // With Asking::kNever, a firewall that shows its rules to administrators only is kRefused.
  virtual Task<std::expected<FirewallView, FirewallError>> Look(Asking asking) = 0;
  // Opens ports, each under its OwnRuleName(). What is there already is not added again.
  virtual Task<FirewallChange> Add(QList<FirewallPorts> ports, Progress progress) = 0;
  // Removes rules of the program with these ports and protocols, and no others.
  virtual Task<FirewallChange> Remove(QList<FirewallPorts> ports, Progress progress) = 0;
  // Starts the system's own program for its firewall. False if the system has no such program.
  virtual bool OpenSettings() = 0;
};

}  // namespace quayline
