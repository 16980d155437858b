// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

#include "async/flow.h"
#include "core/port_totals.h"
#include "platform/firewall.h"

namespace quayline {

// What the rows of the list need of the firewall: one rule for each row and protocol, no two for
// the same ports. Ports outside of 1 to 65535 are left out.
QList<FirewallPorts> FirewallPortsOf(const QList<ForwardedRange>& ranges);
// The ports of the rules that bear the program's names.
QList<FirewallPorts> OwnPortsOf(const FirewallView& view);

struct FirewallChangeEnd {
  FirewallKind kind = FirewallKind::kNone;
  qint64 ports = 0;  // that were added or removed
  std::optional<FirewallError> error;
};

// Adds the ports of the list to the firewall of this computer, or removes all that the program
// added, and counts them. Each port counts, also those of one range, which is one rule.
class FirewallExceptions final : public QObject {
  Q_OBJECT

 public:
  // `firewall` outlives it.
  explicit FirewallExceptions(Firewall& firewall) : firewall_(firewall) {}
  ~FirewallExceptions() override { flow_.Cancel(); }

  // Ends a change that still runs.
  void Add(const QList<FirewallPorts>& ports) { flow_.Start(RunAdd(ports)); }
  void RemoveOwn() { flow_.Start(RunRemove()); }
  // Changes no further rule; ended() does not follow.
  void Cancel() { flow_.Cancel(); }
  bool IsRunning() const { return flow_.IsRunning(); }

 Q_SIGNALS:
  // The rule with this name is next; its first port is number `port` of `ports`, from 1.
  void progressed(qint64 port, qint64 ports, const QString& rule_name);
  void ended(const quayline::FirewallChangeEnd& end);

 private:
  Task<> RunAdd(QList<FirewallPorts> ports);
  Task<> RunRemove();
  Firewall::Progress Progress(const QList<FirewallPorts>& ports);
  void End(const FirewallChange& change, const QList<FirewallPorts>& ports);

  Firewall& firewall_;
  Flow flow_;
};

}  // namespace quayline
