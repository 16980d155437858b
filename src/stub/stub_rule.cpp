// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/stub_rule.h"

#include <QHostAddress>

#include "core/port_range.h"
#include "core/protocol.h"

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

QString StoredPort(const QString& value) {
  const std::optional<int> port = PortNumber(value);
  return port && *port > 0 && *port <= kMaxPort ? QString::number(*port) : QString();
}

QString StoredSwitch(const QString& value) {
  static const QStringList kOn{u"yes"_s, u"on"_s, u"1"_s, u"true"_s, u"enabled"_s, u"enable"_s};
  return kOn.contains(value.trimmed().toLower()) ? u"yes"_s : u"no"_s;
}

QString StoredAddress(const QString& value) {
  const QString text = value.trimmed();
  const bool is_address =
      QHostAddress(text).protocol() == QAbstractSocket::IPv4Protocol && text.count(u'.') == 3;
  return is_address ? text : QString();
}

// What a rule forwards, without its name, one text for each protocol: one rule for both equals two.
QStringList Essences(const QString& protocols, const QString& rest) {
  QStringList essences;
  for (const QString& protocol : protocols.split(u'/')) {
    essences.append(protocol + u' ' + rest);
  }
  return essences;
}

QStringList EssencesOf(const PortEntry& entry) {
  return Essences(entry.protocol, u"%1-%2 to %3"_s.arg(entry.start_port, entry.end_port,
                                                       entry.forwarded_to.section(u'(', 0, 0)));
}

QStringList EssencesOf(const StubRule& rule) {
  const QString start = rule.value(u"start"_s);
  return Essences(
      rule.value(u"protocol"_s),
      u"%1-%2 to %3"_s.arg(start, rule.value(u"end"_s, start), rule.value(u"address"_s)) +
          (rule.value(u"enabled"_s) == "no"_L1 ? u", disabled"_s : QString()));
}

}  // namespace

QString StoredMember(const QString& member, const QString& value) {
  if (member == "start"_L1 || member == "end"_L1) {
    return StoredPort(value);
  }
  if (member == "enabled"_L1) {
    return StoredSwitch(value);
  }
  if (member == "address"_L1) {
    return StoredAddress(value);
  }
  if (member == "protocol"_L1) {
    const auto protocol = ProtocolOf(value.trimmed());
    return protocol ? ProtocolText(*protocol) : QString();
  }
  return value;
}

QString PortsOf(const StubRule& rule) {
  const QString start = rule.value(u"start"_s);
  const QString end = rule.value(u"end"_s, start);
  return start == end ? start : start + u'-' + end;
}

QString RuleText(const StubRule& rule) {
  const auto part = [&](const char* member) {
    const QString value = rule.value(QLatin1String(member));
    return value.isEmpty() ? u"(no %1)"_s.arg(QLatin1String(member)) : value;
  };
  const QString ports = PortsOf(rule).isEmpty() ? u"(no ports)"_s : PortsOf(rule);
  const QString state = rule.value(u"enabled"_s) == "no"_L1 ? u", disabled"_s : QString();
  return u"%1 %2 %3 to %4"_s.arg(part("name"), part("protocol"), ports, part("address")) + state;
}

QStringList DifferencesFrom(const QList<PortEntry>& entries, const QList<StubRule>& before,
                            const QList<StubRule>& rules) {
  QMap<QString, int> wanted;
  for (const PortEntry& entry : entries) {
    for (const QString& essence : EssencesOf(entry)) {
      ++wanted[essence];
    }
  }
  for (const StubRule& rule : before) {
    for (const QString& essence : EssencesOf(rule)) {
      ++wanted[essence];
    }
  }
  QStringList differences;
  for (const StubRule& rule : rules) {
    for (const QString& essence : EssencesOf(rule)) {
      if (--wanted[essence] < 0) {
        differences.append(u"The router has a rule that was not asked for: %1."_s.arg(essence));
      }
    }
  }
  for (const auto& [essence, count] : wanted.asKeyValueRange()) {
    if (count > 0) {
      differences.append(u"The router does not have this rule: %1."_s.arg(essence));
    }
  }
  return differences;
}

}  // namespace quayline
