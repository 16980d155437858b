// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/firewalld_rules.h"

#include <QRegularExpression>

namespace quayline {

namespace {

// A rule for all senders: 'rule port port="80-90" protocol="tcp" ... accept'.
struct RichRule {
  QString name;
  FirewallPorts ports;
  bool accepts = false;
  bool is_general = false;
};

std::optional<RichRule> ReadRichRule(const QString& text) {
  static const QRegularExpression port(
      QStringLiteral("\\bport port=\"(\\d+)(?:-(\\d+))?\" protocol=\"(tcp|udp)\""));
  static const QRegularExpression prefix(QStringLiteral("\\bprefix=\"([^\"]*)\""));
  static const QRegularExpression special(
      QStringLiteral("\\b(source|destination) |\\bfamily=\"ipv6\"|\\bforward-port "));
  static const QRegularExpression action(QStringLiteral("\\b(accept|drop|reject)\\b"));
  const QRegularExpressionMatch match = port.match(text);
  // Quoted words are no actions.
  const QRegularExpressionMatch does =
      action.match(QString(text).remove(QRegularExpression(QStringLiteral("\"[^\"]*\""))));
  if (!match.hasMatch() || !does.hasMatch()) {
    return std::nullopt;
  }
  const int first = match.captured(1).toInt();
  const QString name = prefix.match(text).captured(1);
  return RichRule{
      .name = name.isEmpty() ? text : name,
      .ports = {.first = first,
                .last = match.captured(2).isEmpty() ? first : match.captured(2).toInt(),
                .protocol = match.captured(3) == QLatin1String("tcp") ? kTcpNumber : kUdpNumber},
      .accepts = does.captured(1) == QLatin1String("accept"),
      .is_general = !special.match(text).hasMatch()};
}

}  // namespace

QString OwnRichRule(const FirewallPorts& ports) {
  return QStringLiteral("rule port port=\"%1\" protocol=\"%2\" nflog prefix=\"%3\" accept")
      .arg(PortsText(ports.first, ports.last), ProtocolWord(ports.protocol).toLower(),
           OwnRuleName(ports));
}

std::optional<FirewallPorts> PortsOfOwnRichRule(const QString& rule) {
  const std::optional<RichRule> read = ReadRichRule(rule);
  return read && read->accepts && IsOwnRuleName(read->name) ? std::optional(read->ports)
                                                            : std::nullopt;
}

// firewalld looks at the rules that deny before those that let in.
FirewallView FirewalldView(const FirewalldZone& zone) {
  FirewallView view{.kind = FirewallKind::kFirewalld, .rules = zone.ports_and_services};
  PortSet open[2];  // TCP, UDP
  PortSet shut[2];
  for (const FirewallRule& rule : zone.ports_and_services) {
    if (rule.first_port > 0) {
      open[rule.protocol == kUdpNumber].Fill(rule.first_port, rule.last_port);
    } else if (rule.protocol == kTcpNumber || rule.protocol == kUdpNumber) {
      open[rule.protocol == kUdpNumber] = PortSet::All();
    }
  }
  for (const QString& text : zone.rich_rules) {
    const std::optional<RichRule> rule = ReadRichRule(text);
    if (!rule) {
      continue;
    }
    if (rule->accepts) {
      view.rules.append({.name = rule->name,
                         .first_port = rule->ports.first,
                         .last_port = rule->ports.last,
                         .protocol = rule->ports.protocol});
    }
    if (rule->is_general) {
      (rule->accepts ? open : shut)[rule->ports.protocol == kUdpNumber].Fill(rule->ports.first,
                                                                             rule->ports.last);
    }
  }
  const bool accepts_rest = zone.target == QLatin1String("ACCEPT");
  view.open_tcp = (accepts_rest ? PortSet::All() : open[0]) - shut[0];
  view.open_udp = (accepts_rest ? PortSet::All() : open[1]) - shut[1];
  return view;
}

}  // namespace quayline
