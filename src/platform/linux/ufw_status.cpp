// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/ufw_status.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace quayline {

namespace {

constexpr int kLastPort = 65535;

// "80,443/tcp", "6881:6889/udp", "53" (both protocols).
void ReadPorts(const QString& text, UfwRule& rule) {
  static const QHash<QString, int> numbers{
      {QStringLiteral("tcp"), kTcpNumber}, {QStringLiteral("udp"), kUdpNumber},
      {QStringLiteral("gre"), 47},         {QStringLiteral("esp"), 50},
      {QStringLiteral("ah"), 51},          {QStringLiteral("igmp"), 2},
      {QStringLiteral("ipv6"), 41},        {QStringLiteral("vrrp"), 112}};
  constexpr int kUnknown = -1;
  const QString protocol = text.section(QLatin1Char('/'), 1);
  const QString ports = text.section(QLatin1Char('/'), 0, 0);
  rule.protocol = numbers.value(protocol, protocol.isEmpty() ? 0 : kUnknown);
  if (ports == QLatin1String("Anywhere")) {
    return;
  }
  for (const QString& part : ports.split(QLatin1Char(','))) {
    const int first = part.section(QLatin1Char(':'), 0, 0).toInt();
    const int last = part.section(QLatin1Char(':'), -1).toInt();
    for (const int number : {kTcpNumber, kUdpNumber}) {
      const bool is_meant = protocol.isEmpty() || rule.protocol == number;
      if (is_meant && first >= 1 && first <= last && last <= kLastPort) {
        rule.ports.append({.first = first, .last = last, .protocol = number});
      }
    }
  }
}

// The columns are parted by two blanks at least, or, where a column is full, by one.
std::optional<UfwRule> ReadRule(const QString& line) {
  static const QRegularExpression form(
      QStringLiteral("\\A(\\S.*?) +(ALLOW|LIMIT|DENY|REJECT)(?: (IN|OUT|FWD))? +(\\S.*?)"
                     "(?: +\\((?:log|log-all)\\))?\\s*\\z"));
  const QString ipv6 = QStringLiteral(" (v6)");
  const QString before_comment = line.section(QStringLiteral(" # "), 0, 0);
  const QRegularExpressionMatch match = form.match(QString(before_comment).remove(ipv6));
  const QString direction = match.captured(3);
  if (!match.hasMatch() || direction == QLatin1String("OUT") || direction == QLatin1String("FWD")) {
    return std::nullopt;
  }
  const QString action = match.captured(2);
  const QString from = match.captured(4).trimmed();
  const QString to = match.captured(1).trimmed();
  // "192.168.1.5 99/tcp", "80/tcp on eth0", "22/tcp (OpenSSH)"
  QString target = to.section(QStringLiteral(" on "), 0, 0).section(QStringLiteral(" ("), 0, 0);
  const bool has_address = target.contains(QLatin1Char(' '));
  target = target.section(QLatin1Char(' '), -1);
  const bool is_address = target.contains(QLatin1Char('.'));
  UfwRule rule{.to = to,
               .allows = action == QLatin1String("ALLOW") || action == QLatin1String("LIMIT"),
               .is_ipv6 = before_comment.contains(ipv6),
               .is_general = from.section(QLatin1Char('/'), 0, 0) == QLatin1String("Anywhere") &&
                             !has_address && !is_address,
               .interface = to.section(QStringLiteral(" on "), 1),
               .comment = line.section(QStringLiteral(" # "), 1).trimmed()};
  if (!is_address) {
    ReadPorts(target, rule);
  }
  return rule;
}

}  // namespace

bool UfwRule::IsOwnFor(const FirewallPorts& wanted) const {
  return allows && IsOwnRuleName(comment) && ports.contains(wanted);
}

const UfwRule* UfwStatus::Find(const FirewallPorts& ports) const {
  const auto found = std::ranges::find_if(rules, [&](const UfwRule& rule) {
    return rule.is_general && rule.interface.isEmpty() && rule.ports == QList<FirewallPorts>{ports};
  });
  return found == rules.end() ? nullptr : &*found;
}

const UfwRule* UfwStatus::FindOwn(const FirewallPorts& ports) const {
  const auto found =
      std::ranges::find_if(rules, [&](const UfwRule& rule) { return rule.IsOwnFor(ports); });
  return found == rules.end() ? nullptr : &*found;
}

PortSet UfwStatus::OpenPorts(int protocol, const QString& interface) const {
  PortSet undecided = PortSet::All();
  PortSet open;
  for (const UfwRule& rule : rules) {
    PortSet concerned;
    for (const FirewallPorts& ports : rule.ports) {
      if (ports.protocol == protocol) {
        concerned.Fill(ports.first, ports.last);
      }
    }
    if (rule.ports.isEmpty() && (rule.protocol == 0 || rule.protocol == protocol)) {
      concerned = PortSet::All();
    }
    // Who sends a packet is not known: a rule for some senders decides nothing.
    if (rule.is_general && (rule.interface.isEmpty() || rule.interface == interface)) {
      open = rule.allows ? open | (concerned & undecided) : open;
      undecided = undecided - concerned;
    }
  }
  return drops_rest ? open : open | undecided;
}

UfwStatus ReadUfwStatus(const QByteArray& text) {
  UfwStatus status;
  bool in_rules = false;
  for (const QString& line : QString::fromUtf8(text).split(QLatin1Char('\n'))) {
    if (line.startsWith(QLatin1String("--"))) {
      in_rules = true;
    } else if (!in_rules) {
      status.is_active = status.is_active || line.trimmed() == QLatin1String("Status: active");
      if (line.startsWith(QLatin1String("Default: "))) {
        status.drops_rest = !line.startsWith(QLatin1String("Default: allow (incoming)"));
      }
    } else if (const std::optional<UfwRule> rule = ReadRule(line); rule && !rule->is_ipv6) {
      status.rules.append(*rule);
    }
  }
  return status;
}

QList<int> OwnUfwRules(const QByteArray& numbered, const FirewallPorts& wanted) {
  static const QRegularExpression form(QStringLiteral("\\A\\[ *(\\d+)\\] (.*)\\z"));
  QList<int> numbers;
  for (const QString& line : QString::fromUtf8(numbered).split(QLatin1Char('\n'))) {
    const QRegularExpressionMatch match = form.match(line);
    const std::optional<UfwRule> rule = ReadRule(match.captured(2));
    if (rule && rule->IsOwnFor(wanted)) {
      numbers.prepend(match.captured(1).toInt());
    }
  }
  return numbers;
}

}  // namespace quayline
