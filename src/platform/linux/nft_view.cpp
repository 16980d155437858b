// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/nft_view.h"

#include <QHash>
#include <QJsonObject>

#include <algorithm>

namespace quayline {

namespace {

constexpr int kMaxDepth = 16;  // of jumps from chain to chain

enum class Verdict { kNone, kAccept, kDrop, kJump, kGoto, kReturn };

struct Step {
  PortSet ports = PortSet::All();  // that meet the matches
  Verdict verdict = Verdict::kNone;
  QString target;  // of a jump
};

// Whether a word is the value of a match, or one of its values.
bool Has(const QJsonValue& values, const QString& word) {
  const QJsonValue list = values.isObject() ? values[QStringLiteral("set")] : values;
  if (list.isArray()) {
    const QJsonArray all = list.toArray();
    return std::ranges::any_of(all, [&](const QJsonValue& value) { return value == word; });
  }
  return list == word;
}

// Whether a value names this interface: "eth0", "eth*".
bool NamesInterface(const QJsonValue& values, const QString& interface) {
  const QJsonValue list = values.isObject() ? values[QStringLiteral("set")] : values;
  const QJsonArray all = list.isArray() ? list.toArray() : QJsonArray{list};
  return std::ranges::any_of(all, [&](const QJsonValue& value) {
    const QString name = value.toString();
    return name.endsWith(QLatin1Char('*')) ? interface.startsWith(name.chopped(1))
                                           : name == interface;
  });
}

// Follows packets of one protocol through the chains of a base chain.
class Walk final {
 public:
  Walk(const NftRuleset& ruleset, int protocol, QString interface)
      : protocol_(protocol), interface_(std::move(interface)) {
    for (const QJsonValue object : ruleset.Objects()) {
      const QJsonObject rule = object[QStringLiteral("rule")].toObject();
      if (!rule.isEmpty()) {
        rules_[Key(rule[QStringLiteral("family")].toString(),
                   rule[QStringLiteral("table")].toString(),
                   rule[QStringLiteral("chain")].toString())]
            .append(rule);
      }
    }
  }

  // The ports that pass this base chain.
  PortSet Passing(const NftChain& base) {
    accepted_ = {};
    const PortSet rest = Run(base.family, base.table, base.name, PortSet::All(), 0);
    return base.drops_rest ? accepted_ : accepted_ | rest;
  }

 private:
  static QString Key(const QString& family, const QString& table, const QString& chain) {
    return family + QLatin1Char(' ') + table + QLatin1Char(' ') + chain;
  }

  // What leaves the chain without a verdict.
  PortSet Run(const QString& family, const QString& table, const QString& chain, PortSet ports,
              int depth) {
    PortSet returned;
    for (const QJsonObject& rule : rules_.value(Key(family, table, chain))) {
      const Step step = StepOf(rule);
      const PortSet concerned = ports & step.ports;
      if (concerned.IsEmpty() || step.verdict == Verdict::kNone) {
        continue;
      }
      ports = ports - concerned;
      if (step.verdict == Verdict::kAccept) {
        accepted_ = accepted_ | concerned;
      } else if (step.verdict == Verdict::kReturn) {
        returned = returned | concerned;
      } else if (step.verdict != Verdict::kDrop && depth < kMaxDepth) {
        const PortSet rest = Run(family, table, step.target, concerned, depth + 1);
        PortSet& left = step.verdict == Verdict::kJump ? ports : returned;
        left = left | rest;
      }
    }
    return ports | returned;
  }

  Step StepOf(const QJsonObject& rule) const {
    Step step;
    bool is_limited = false;
    for (const QJsonValue part : rule[QStringLiteral("expr")].toArray()) {
      const QJsonObject statement = part.toObject();
      const QString kind = statement.isEmpty() ? QString() : statement.begin().key();
      const QJsonValue value = statement.isEmpty() ? QJsonValue() : *statement.begin();
      if (kind == QLatin1String("match")) {
        if (!Meets(value, step)) {
          return {};
        }
      } else if (kind == QLatin1String("xt")) {
        // A match of iptables, which nft does not explain.
        if (value[QStringLiteral("name")] != QLatin1String("comment")) {
          return {};
        }
      } else if (kind == QLatin1String("limit")) {
        is_limited = true;
      } else {
        TakeVerdict(kind, value, step);
      }
    }
    return is_limited && step.verdict == Verdict::kDrop ? Step() : step;
  }

  static void TakeVerdict(const QString& kind, const QJsonValue& value, Step& step) {
    if (kind == QLatin1String("accept")) {
      step.verdict = Verdict::kAccept;
    } else if (kind == QLatin1String("drop") || kind == QLatin1String("reject")) {
      step.verdict = Verdict::kDrop;
    } else if (kind == QLatin1String("return")) {
      step.verdict = Verdict::kReturn;
    } else if (kind == QLatin1String("jump") || kind == QLatin1String("goto")) {
      step.verdict = kind == QLatin1String("jump") ? Verdict::kJump : Verdict::kGoto;
      step.target = value[QStringLiteral("target")].toString();
    }
  }

  // Whether such packets meet the match; takes the ports that it names.
  bool Meets(const QJsonValue& match, Step& step) const {
    const QJsonValue left = match[QStringLiteral("left")];
    const QJsonValue right = match[QStringLiteral("right")];
    const bool is_equal = match[QStringLiteral("op")] != QLatin1String("!=");
    const QString word = ProtocolWord(protocol_).toLower();
    const QJsonValue payload = left[QStringLiteral("payload")];
    if (payload.isObject()) {
      return MeetsPayload(match, is_equal, step);
    }
    const QString meta = left[QStringLiteral("meta")][QStringLiteral("key")].toString();
    if (meta == QLatin1String("iifname") || meta == QLatin1String("iif")) {
      return MeetsInterface(right) == is_equal;
    }
    if (meta == QLatin1String("l4proto")) {
      return (Has(right, word) || right == protocol_) == is_equal;
    }
    if (meta == QLatin1String("nfproto")) {
      return Has(right, QStringLiteral("ipv4")) == is_equal;
    }
    if (left[QStringLiteral("ct")][QStringLiteral("key")] == QLatin1String("state")) {
      return Has(right, QStringLiteral("new")) == is_equal;
    }
    return false;
  }

  // Without a network, any interface but the computer's own may be that of the sender.
  bool MeetsInterface(const QJsonValue& names) const {
    return interface_.isEmpty() ? !NamesInterface(names, QStringLiteral("lo"))
                                : NamesInterface(names, interface_);
  }

  bool MeetsPayload(const QJsonValue& match, bool is_equal, Step& step) const {
    const QJsonValue payload = match[QStringLiteral("left")][QStringLiteral("payload")];
    const QJsonValue right = match[QStringLiteral("right")];
    const QString word = ProtocolWord(protocol_).toLower();
    const QString of = payload[QStringLiteral("protocol")].toString();
    const QString field = payload[QStringLiteral("field")].toString();
    if (field == QLatin1String("dport") && (of == word || of == QLatin1String("th"))) {
      PortSet named;
      for (const FirewallPorts& ports : NftPortsOfMatch(match)) {
        named.Fill(ports.first, ports.last);
      }
      step.ports = is_equal ? step.ports & named : step.ports - named;
      return true;
    }
    if (of == QLatin1String("ip") && field == QLatin1String("protocol")) {
      return (Has(right, word) || right == protocol_) == is_equal;
    }
    // A rule for a local address is one for this computer; who sends is not known.
    return of == QLatin1String("ip") && field == QLatin1String("daddr") && is_equal;
  }

  int protocol_;
  QString interface_;
  QHash<QString, QList<QJsonObject>> rules_;
  PortSet accepted_;
};

bool Accepts(const QJsonObject& rule) {
  const QJsonArray parts = rule[QStringLiteral("expr")].toArray();
  return std::ranges::any_of(parts, [](const QJsonValue& part) {
    return part.toObject().contains(QStringLiteral("accept"));
  });
}

// Of a rule about a whole protocol: "meta l4proto 47", "ip protocol gre" give its number.
int ProtocolOf(const QJsonObject& rule) {
  static const QHash<QString, int> names{
      {QStringLiteral("icmp"), 1}, {QStringLiteral("igmp"), 2},  {QStringLiteral("tcp"), 6},
      {QStringLiteral("udp"), 17}, {QStringLiteral("gre"), 47},  {QStringLiteral("esp"), 50},
      {QStringLiteral("ah"), 51},  {QStringLiteral("sctp"), 132}};
  for (const QJsonValue part : rule[QStringLiteral("expr")].toArray()) {
    const QJsonValue match = part[QStringLiteral("match")];
    const QJsonValue left = match[QStringLiteral("left")];
    const QJsonValue right = match[QStringLiteral("right")];
    if (left[QStringLiteral("meta")][QStringLiteral("key")] == QLatin1String("l4proto") ||
        left[QStringLiteral("payload")][QStringLiteral("field")] == QLatin1String("protocol")) {
      return right.isString() ? names.value(right.toString()) : right.toInt();
    }
  }
  return 0;
}

void AddRows(const QJsonObject& rule, QList<FirewallRule>& rows) {
  const QString comment = rule[QStringLiteral("comment")].toString();
  const QString name = comment.isEmpty()
                           ? rule[QStringLiteral("table")].toString() + QLatin1Char(' ') +
                                 rule[QStringLiteral("chain")].toString()
                           : comment;
  QList<FirewallRule> of_rule;
  for (const FirewallPorts& ports : NftPortsOf(rule)) {
    of_rule.append({.name = name,
                    .first_port = ports.first,
                    .last_port = ports.last,
                    .protocol = ports.protocol});
  }
  if (const int protocol = ProtocolOf(rule); of_rule.isEmpty() && protocol != 0) {
    of_rule.append({.name = name, .protocol = protocol});
  }
  for (const FirewallRule& row : of_rule) {
    // The program's rules are in several chains.
    if (!IsOwnRuleName(name) || !rows.contains(row)) {
      rows.append(row);
    }
  }
}

}  // namespace

FirewallView NftView(const NftRuleset& ruleset, const QString& interface) {
  FirewallView view{.kind = FirewallKind::kNftables};
  const QList<NftChain> chains = ruleset.InputChains();
  Walk tcp(ruleset, kTcpNumber, interface);
  Walk udp(ruleset, kUdpNumber, interface);
  for (const NftChain& chain : chains) {
    view.open_tcp = view.open_tcp & tcp.Passing(chain);
    view.open_udp = view.open_udp & udp.Passing(chain);
  }
  QStringList tables;
  for (const NftChain& chain : chains) {
    tables.append(chain.family + QLatin1Char(' ') + chain.table);
  }
  for (const QJsonValue object : ruleset.Objects()) {
    const QJsonObject rule = object[QStringLiteral("rule")].toObject();
    const QString table = rule[QStringLiteral("family")].toString() + QLatin1Char(' ') +
                          rule[QStringLiteral("table")].toString();
    if (tables.contains(table) && Accepts(rule)) {
      AddRows(rule, view.rules);
    }
  }
  return view;
}

}  // namespace quayline
