// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/firewalld_rules.h"

#include <QRegularExpression>

#include <netdb.h>

namespace quayline {

namespace {

// 'rule port port="80-90" protocol="tcp" ... accept', or one of a service or of a whole protocol.
struct RichRule {
  QString name;
  std::optional<FirewallPorts> ports;
  QString service;
  QString protocol;
  bool accepts = false;
  bool is_general = false;  // for all senders
};

QString Captured(const QRegularExpression& form, const QString& text) {
  return form.match(text).captured(1);
}

std::optional<RichRule> ReadRichRule(const QString& text) {
  // Ports of the sender and of a forwarding are other elements.
  static const QRegularExpression port(
      QStringLiteral("(?<!-)\\bport port=\"(\\d+)(?:-(\\d+))?\" protocol=\"(tcp|udp)\""));
  static const QRegularExpression service(QStringLiteral("\\bservice name=\"([^\"]+)\""));
  static const QRegularExpression protocol(QStringLiteral("\\bprotocol value=\"([^\"]+)\""));
  static const QRegularExpression prefix(QStringLiteral("\\bprefix=\"([^\"]*)\""));
  static const QRegularExpression special(
      QStringLiteral("\\b(source|destination) |\\bfamily=\"ipv6\"|\\bforward-port "));
  static const QRegularExpression action(QStringLiteral("\\b(accept|drop|reject)\\b"));
  // Quoted words are no actions.
  const QString does =
      Captured(action, QString(text).remove(QRegularExpression(QStringLiteral("\"[^\"]*\""))));
  if (does.isEmpty()) {
    return std::nullopt;
  }
  const QString name = Captured(prefix, text);
  RichRule rule{.name = name.isEmpty() ? text : name,
                .service = Captured(service, text),
                .protocol = Captured(protocol, text),
                .accepts = does == QLatin1String("accept"),
                .is_general = !special.match(text).hasMatch()};
  if (const QRegularExpressionMatch match = port.match(text); match.hasMatch()) {
    const int first = match.captured(1).toInt();
    rule.ports = {.first = first,
                  .last = match.captured(2).isEmpty() ? first : match.captured(2).toInt(),
                  .protocol = match.captured(3) == QLatin1String("tcp") ? kTcpNumber : kUdpNumber};
  }
  return rule;
}

// The rows of a list of rules that it is.
QList<FirewallRule> RowsOf(const RichRule& rule, const FirewalldZone& zone) {
  if (rule.ports) {
    return {{.name = rule.name,
             .first_port = rule.ports->first,
             .last_port = rule.ports->last,
             .protocol = rule.ports->protocol}};
  }
  if (!rule.protocol.isEmpty()) {
    return {{.name = rule.name, .protocol = ProtocolNumber(rule.protocol)}};
  }
  return zone.services.value(rule.service);
}

struct OpenPorts {
  PortSet tcp;
  PortSet udp;

  void Fill(const QList<FirewallRule>& rules) {
    for (const FirewallRule& rule : rules) {
      PortSet* const set = rule.protocol == kTcpNumber   ? &tcp
                           : rule.protocol == kUdpNumber ? &udp
                                                         : nullptr;
      if (set != nullptr && rule.first_port > 0) {
        set->Fill(rule.first_port, rule.last_port);
      } else if (set != nullptr) {
        *set = PortSet::All();
      }
    }
  }
};

}  // namespace

int ProtocolNumber(const QString& word) {
  const protoent* found = getprotobyname(word.toLatin1().constData());
  return found == nullptr ? word.toInt() : found->p_proto;
}

QString OwnRichRule(const FirewallPorts& ports) {
  return QStringLiteral("rule port port=\"%1\" protocol=\"%2\" nflog prefix=\"%3\" accept")
      .arg(PortsText(ports.first, ports.last), ProtocolWord(ports.protocol).toLower(),
           OwnRuleName(ports));
}

std::optional<FirewallPorts> PortsOfOwnRichRule(const QString& rule) {
  const std::optional<RichRule> read = ReadRichRule(rule);
  return read && read->accepts && IsOwnRuleName(read->name) ? read->ports : std::nullopt;
}

QStringList ServicesOfRichRules(const QStringList& rules) {
  QStringList services;
  for (const QString& text : rules) {
    const std::optional<RichRule> rule = ReadRichRule(text);
    if (rule && !rule->service.isEmpty() && !services.contains(rule->service)) {
      services.append(rule->service);
    }
  }
  return services;
}

// firewalld looks at the rules that deny before those that let in.
FirewallView FirewalldView(const FirewalldZone& zone) {
  FirewallView view{.kind = FirewallKind::kFirewalld, .rules = zone.ports_and_services};
  OpenPorts open;
  OpenPorts shut;
  open.Fill(zone.ports_and_services);
  for (const QString& text : zone.rich_rules) {
    const std::optional<RichRule> rule = ReadRichRule(text);
    if (!rule) {
      continue;
    }
    const QList<FirewallRule> rows = RowsOf(*rule, zone);
    if (rule->accepts) {
      view.rules += rows;
    }
    if (rule->is_general) {
      (rule->accepts ? open : shut).Fill(rows);
    }
  }
  const bool accepts_rest = zone.target == QLatin1String("ACCEPT");
  view.open_tcp = (accepts_rest ? PortSet::All() : open.tcp) - shut.tcp;
  view.open_udp = (accepts_rest ? PortSet::All() : open.udp) - shut.udp;
  return view;
}

}  // namespace quayline
