// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/firewall_exceptions.h"

#include <algorithm>

#include "core/port_range.h"

namespace quayline {

namespace {

qint64 CountPorts(const QList<FirewallPorts>& ports, qsizetype rules) {
  qint64 count = 0;
  for (const FirewallPorts& each : ports.first(std::min(rules, ports.size()))) {
    count += each.Count();
  }
  return count;
}

}  // namespace

QList<FirewallPorts> FirewallPortsOf(const QList<ForwardedRange>& ranges) {
  QList<FirewallPorts> ports;
  for (const ForwardedRange& range : ranges) {
    const FirewallPorts wanted{.first = std::max(range.first, 1),
                               .last = std::min(range.last, kMaxPort),
                               .protocol = static_cast<int>(range.protocol)};
    if (wanted.first <= wanted.last && !ports.contains(wanted)) {
      ports.append(wanted);
    }
  }
  return ports;
}

QList<FirewallPorts> OwnPortsOf(const FirewallView& view) {
  QList<FirewallPorts> ports;
  for (const FirewallRule& rule : view.rules) {
    const FirewallPorts own{
        .first = rule.first_port, .last = rule.last_port, .protocol = rule.protocol};
    const bool has_ports = own.first >= 1 && !ProtocolWord(own.protocol).isEmpty();
    if (IsOwnRuleName(rule.name) && has_ports && !ports.contains(own)) {
      ports.append(own);
    }
  }
  return ports;
}

Firewall::Progress FirewallExceptions::Progress(const QList<FirewallPorts>& ports) {
  return [this, ports, all = CountPorts(ports, ports.size())](qsizetype rule) {
    if (rule >= 0 && rule < ports.size()) {
      Q_EMIT progressed(CountPorts(ports, rule) + 1, all, OwnRuleName(ports[rule]));
    }
  };
}

void FirewallExceptions::End(const FirewallChange& change, const QList<FirewallPorts>& ports) {
  Q_EMIT ended({.kind = change.kind,
                .ports = CountPorts(ports, change.done),
                .error = change.result ? std::nullopt : std::optional(change.result.error())});
}

Task<> FirewallExceptions::RunAdd(QList<FirewallPorts> ports) {
  const FirewallChange change = co_await firewall_.Add(ports, Progress(ports));
  End(change, ports);
}

Task<> FirewallExceptions::RunRemove() {
  const auto view = co_await firewall_.Look(Firewall::Asking::kAllowed);
  if (!view) {
    End({.kind = view.error().kind, .result = std::unexpected(view.error())}, {});
    co_return;
  }
  const QList<FirewallPorts> ports = OwnPortsOf(*view);
  if (ports.isEmpty()) {
    End({.kind = view->kind}, {});
    co_return;
  }
  const FirewallChange change = co_await firewall_.Remove(ports, Progress(ports));
  End(change, ports);
}

}  // namespace quayline
