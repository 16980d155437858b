// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/nft_ruleset.h"

#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <ranges>
#include <utility>

namespace quayline {

namespace {

constexpr int kLastPort = 65535;

using PortNumbers = std::pair<int, int>;

const QLatin1String kOwnTable("quayline");

bool IsOwnTable(const NftChain& chain) {
  return chain.family == QLatin1String("inet") && chain.table == kOwnTable;
}

// Names that need no quotes.
bool HasPlainNames(const NftChain& chain) {
  static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z_][A-Za-z0-9_.-]*\\z"));
  return plain.match(chain.table).hasMatch() && plain.match(chain.name).hasMatch();
}

bool IsOfTable(const QJsonObject& rule, const NftChain& chain) {
  return rule[QStringLiteral("family")] == chain.family &&
         rule[QStringLiteral("table")] == chain.table;
}

bool IsIn(const QJsonObject& rule, const NftChain& chain) {
  return IsOfTable(rule, chain) && rule[QStringLiteral("chain")] == chain.name;
}

QString Place(const NftChain& chain) {
  return QStringLiteral("%1 %2 %3").arg(chain.family, chain.table, chain.name);
}

QString RuleText(const FirewallPorts& ports) {
  return QStringLiteral("%1 dport %2 accept comment \"%3\"\n")
      .arg(ProtocolWord(ports.protocol).toLower(), PortsText(ports.first, ports.last),
           OwnRuleName(ports));
}

// The parts of a value: {"set": [22, {"range": [80, 90]}]}, or one of these alone.
QList<PortNumbers> NumbersOf(const QJsonValue& value) {
  if (value[QStringLiteral("set")].isArray()) {
    QList<PortNumbers> all;
    for (const QJsonValue element : value[QStringLiteral("set")].toArray()) {
      all += NumbersOf(element);
    }
    return all;
  }
  const QJsonArray range = value[QStringLiteral("range")].toArray();
  if (range.size() == 2) {
    return {{range.first().toInt(), range.last().toInt()}};
  }
  return value.isDouble() ? QList<PortNumbers>{{value.toInt(), value.toInt()}}
                          : QList<PortNumbers>();
}

// Those that a match compares with, for example of "dport >= 1024". A range that is compared by
// order has no meaning.
QList<PortNumbers> NumbersOfMatch(const QJsonValue& match) {
  const QString op = match[QStringLiteral("op")].toString();
  const QJsonValue right = match[QStringLiteral("right")];
  if (!op.startsWith(QLatin1Char('<')) && !op.startsWith(QLatin1Char('>'))) {
    return NumbersOf(right);
  }
  if (!right.isDouble()) {
    return {};
  }
  const int excluded = op.endsWith(QLatin1Char('=')) ? 0 : 1;
  return {op.startsWith(QLatin1Char('<')) ? PortNumbers(0, right.toInt() - excluded)
                                          : PortNumbers(right.toInt() + excluded, kLastPort)};
}

}  // namespace

QList<FirewallPorts> NftPortsOfMatch(const QJsonValue& match) {
  const QJsonValue payload = match[QStringLiteral("left")][QStringLiteral("payload")];
  if (payload[QStringLiteral("field")] != QLatin1String("dport")) {
    return {};
  }
  QList<FirewallPorts> ports;
  const QString protocol = payload[QStringLiteral("protocol")].toString();
  for (const auto& [first, last] : NumbersOfMatch(match)) {
    for (const int number : {kTcpNumber, kUdpNumber}) {
      const bool is_meant =
          protocol == QLatin1String("th") || protocol == ProtocolWord(number).toLower();
      if (is_meant && first <= last && last >= 1) {
        ports.append({.first = std::max(first, 1), .last = last, .protocol = number});
      }
    }
  }
  return ports;
}

QList<FirewallPorts> NftPortsOf(const QJsonObject& rule) {
  QList<FirewallPorts> ports;
  for (const QJsonValue part : rule[QStringLiteral("expr")].toArray()) {
    const QJsonValue match = part[QStringLiteral("match")];
    if (match[QStringLiteral("op")] != QLatin1String("!=")) {
      ports += NftPortsOfMatch(match);
    }
  }
  return ports;
}

std::optional<NftRuleset> NftRuleset::Read(const QByteArray& json) {
  const QJsonValue objects = QJsonDocument::fromJson(json)[QStringLiteral("nftables")];
  return objects.isArray() ? std::optional(NftRuleset(objects.toArray())) : std::nullopt;
}

QList<NftChain> NftRuleset::InputChains() const {
  QList<NftChain> chains;
  for (const QJsonValue object : objects_) {
    const QJsonObject chain = object[QStringLiteral("chain")].toObject();
    const QString family = chain[QStringLiteral("family")].toString();
    const bool sees_ipv4 = family == QLatin1String("ip") || family == QLatin1String("inet");
    if (sees_ipv4 && chain[QStringLiteral("hook")] == QLatin1String("input") &&
        chain[QStringLiteral("type")] == QLatin1String("filter")) {
      chains.append({.family = family,
                     .table = chain[QStringLiteral("table")].toString(),
                     .name = chain[QStringLiteral("name")].toString(),
                     .drops_rest = chain[QStringLiteral("policy")] == QLatin1String("drop")});
    }
  }
  for (const QJsonValue object : objects_) {
    const QJsonObject rule = object[QStringLiteral("rule")].toObject();
    for (NftChain& chain : chains) {
      chain.has_rules = chain.has_rules || IsIn(rule, chain);
    }
  }
  return chains;
}

QList<NftChain> NftRuleset::FilterChains() const {
  QList<NftChain> chains = InputChains();
  chains.removeIf([](const NftChain& chain) {
    return IsOwnTable(chain) || !HasPlainNames(chain) || !(chain.drops_rest || chain.has_rules);
  });
  return chains;
}

bool NftRuleset::IsInUse() const {
  return !FilterChains().isEmpty() || std::ranges::any_of(InputChains(), IsOwnTable);
}

QList<NftOwnRule> NftRuleset::OwnRules() const {
  QList<NftOwnRule> rules;
  const QList<NftChain> chains = InputChains();
  for (const QJsonValue object : objects_) {
    const QJsonObject rule = object[QStringLiteral("rule")].toObject();
    const QString name = rule[QStringLiteral("comment")].toString();
    // Also rules of the chains to which those that see the packets jump.
    const auto base = std::ranges::find_if(
        chains, [&](const NftChain& candidate) { return IsOfTable(rule, candidate); });
    if (!IsOwnRuleName(name) || base == chains.end()) {
      continue;
    }
    const NftChain chain{.family = base->family,
                         .table = base->table,
                         .name = rule[QStringLiteral("chain")].toString()};
    if (HasPlainNames(chain)) {
      rules.append({.chain = chain,
                    .handle = rule[QStringLiteral("handle")].toInteger(),
                    .name = name,
                    .ports = NftPortsOf(rule)});
    }
  }
  return rules;
}

QByteArray NftRuleset::ScriptToAdd(const QList<FirewallPorts>& ports) const {
  const NftChain own{
      .family = QStringLiteral("inet"), .table = kOwnTable, .name = QStringLiteral("input")};
  const QList<NftOwnRule> existing = OwnRules();
  QString script;
  for (const NftChain& chain : QList<NftChain>{own} + FilterChains()) {
    // Each goes to the top, so the last one first.
    for (const FirewallPorts& wanted : ports | std::views::reverse) {
      const bool exists = std::ranges::any_of(existing, [&](const NftOwnRule& rule) {
        return Place(rule.chain) == Place(chain) && rule.ports == QList<FirewallPorts>{wanted};
      });
      if (!exists) {
        script += QStringLiteral("insert rule %1 ").arg(Place(chain)) + RuleText(wanted);
      }
    }
  }
  if (script.isEmpty()) {
    return {};
  }
  return "add table inet quayline\n"
         "add chain inet quayline input { type filter hook input priority -10; policy accept; }\n" +
         script.toLatin1();
}

QByteArray NftRuleset::ScriptToRemove(const QList<FirewallPorts>& ports) const {
  const QList<NftOwnRule> own = OwnRules();
  QByteArray script;
  bool leaves_own = false;
  for (const NftOwnRule& rule : own) {
    const bool is_wanted = std::ranges::any_of(
        rule.ports, [&](const FirewallPorts& of_rule) { return ports.contains(of_rule); });
    if (is_wanted) {
      script += QStringLiteral("delete rule %1 handle %2\n")
                    .arg(Place(rule.chain))
                    .arg(rule.handle)
                    .toLatin1();
    } else {
      leaves_own = leaves_own || IsOwnTable(rule.chain);
    }
  }
  const bool has_table = std::ranges::any_of(InputChains(), IsOwnTable);
  return !script.isEmpty() && has_table && !leaves_own ? script + "delete table inet quayline\n"
                                                       : script;
}

}  // namespace quayline
