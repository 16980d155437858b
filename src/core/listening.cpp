// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/listening.h"

#include <algorithm>
#include <vector>

namespace quayline {

namespace {

// A long list of ports without a program says no more than its beginning.
constexpr qsizetype kMostShown = 3;

constexpr Message kNobody{"nothing listens on %1", "%1 are ports"};
constexpr Message kElsewhere{"listens on %1 only", "%1 is an address of this computer"};
constexpr Message kNotKnown{"unknown", "whether a program listens"};

// On one or both of two protocols, and on all or some of the ports.
constexpr Message kNamedListens[2][2] = {
    {{"%1 listens", "%1 is a program"}, {"%1 listens, not on %2", "a program; ports"}},
    {{"%1 listens (%2 only)", "a program; TCP or UDP"},
     {"%1 listens (%2 only), not on %3", "a program; TCP or UDP; ports"}}};
constexpr Message kSomeListens[2][2] = {
    {{"a program listens"}, {"a program listens, not on %1", "%1 are ports"}},
    {{"a program listens (%1 only)", "%1 is TCP or UDP"},
     {"a program listens (%1 only), not on %2", "TCP or UDP; ports"}}};

// Whether the router reaches the listener at `address`.
bool IsReachable(const Listener& listener, const QString& address) {
  return listener.address == address || listener.address == QLatin1String("0.0.0.0") ||
         listener.takes_ipv4;
}

struct Found {
  std::vector<bool> has_listener;  // of each port of the range
  QString program;
  QString other_address;
  bool tcp = false;
  bool udp = false;
};

Found Find(const PortRange& range, bool tcp, bool udp, const QString& address,
           const QList<Listener>& listeners) {
  Found found{.has_listener = std::vector<bool>(static_cast<size_t>(range.Length()) + 1),
              .program = {},
              .other_address = {}};
  for (const Listener& listener : listeners) {
    if (!range.Contains(listener.port) || !(listener.is_udp ? udp : tcp)) {
      continue;
    }
    if (!IsReachable(listener, address)) {
      // Of several, the one that a user knows: 127.0.0.1 is named before ::1.
      if (found.other_address.isEmpty() || listener.address.startsWith(QLatin1String("127."))) {
        found.other_address = listener.address;
      }
      continue;
    }
    found.has_listener[static_cast<size_t>(listener.port - range.start)] = true;
    (listener.is_udp ? found.udp : found.tcp) = true;
    found.program = found.program.isEmpty() ? listener.program : found.program;
  }
  return found;
}

QList<PortRange> PortsWithout(const std::vector<bool>& has_listener, int first_port) {
  QList<PortRange> ranges;
  for (size_t i = 0; i < has_listener.size(); ++i) {
    const int port = first_port + static_cast<int>(i);
    if (has_listener[i]) {
      continue;
    }
    if (!ranges.isEmpty() && ranges.last().end == port - 1) {
      ranges.last().end = port;
    } else {
      ranges.append({.start = port, .end = port});
    }
  }
  return ranges;
}

QString RangesText(const QList<PortRange>& ranges) {
  QStringList texts;
  for (const PortRange& range : ranges.first(std::min(ranges.size(), kMostShown))) {
    texts.append(range.start == range.end
                     ? QString::number(range.start)
                     : QStringLiteral("%1-%2").arg(range.start).arg(range.end));
  }
  if (ranges.size() > kMostShown) {
    texts.append(QStringLiteral("..."));
  }
  return texts.join(QStringLiteral(", "));
}

}  // namespace

std::optional<Listening> ListeningOf(const PortEntry& entry, const QStringList& own_addresses,
                                     const std::optional<QList<Listener>>& listeners) {
  const QString address = entry.forwarded_to.section(QLatin1Char('('), 0, 0).trimmed();
  const int start = PortNumber(entry.start_port).value_or(0);
  const PortRange range{.start = start, .end = PortNumber(entry.end_port).value_or(start)};
  const bool is_range = range.start > 0 && range.Length() >= 0 && range.end <= kMaxPort;
  if (!own_addresses.contains(address) || !is_range) {
    return std::nullopt;
  }
  Listening listening{.ports = {range}};
  if (!listeners) {
    return listening;
  }
  const bool tcp = entry.protocol.contains(QLatin1String("TCP"), Qt::CaseInsensitive);
  const bool udp = entry.protocol.contains(QLatin1String("UDP"), Qt::CaseInsensitive);
  const Found found = Find(range, tcp, udp, address, *listeners);
  if (found.tcp || found.udp) {
    listening.state = ListenState::kListens;
    listening.program = found.program;
    listening.lacking = PortsWithout(found.has_listener, range.start);
    if (tcp && udp && found.tcp != found.udp) {
      listening.only_protocol = found.tcp ? QStringLiteral("TCP") : QStringLiteral("UDP");
    }
  } else if (!found.other_address.isEmpty()) {
    listening.state = ListenState::kElsewhere;
    listening.address = found.other_address;
  } else {
    listening.state = ListenState::kNobody;
  }
  return listening;
}

Sentence ListeningText(const Listening& listening) {
  switch (listening.state) {
    case ListenState::kNobody:
      return {kNobody, {RangesText(listening.ports)}};
    case ListenState::kElsewhere:
      return {kElsewhere, {listening.address}};
    case ListenState::kListens: {
      const bool is_named = !listening.program.isEmpty();
      const bool is_half = !listening.only_protocol.isEmpty();
      const bool is_whole = listening.lacking.isEmpty();
      QStringList values{listening.program, listening.only_protocol, RangesText(listening.lacking)};
      values.removeAll(QString());
      const auto& texts = is_named ? kNamedListens : kSomeListens;
      return {texts[is_half ? 1 : 0][is_whole ? 0 : 1], values};
    }
    case ListenState::kUnknown:
      break;
  }
  return {kNotKnown};
}

}  // namespace quayline
