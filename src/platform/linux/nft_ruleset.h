// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

#include "platform/firewall_ports.h"

namespace quayline {

// A chain of nftables that sees packets for this computer.
struct NftChain {
  QString family;  // "ip" or "inet"
  QString table;
  QString name;
  bool drops_rest = false;  // its policy
  bool has_rules = false;

  bool operator==(const NftChain&) const = default;
};

// A rule of the program in a table that has such a chain.
struct NftOwnRule {
  NftChain chain;
  qint64 handle = 0;
  QString name;
  QList<FirewallPorts> ports;
};

// The ports that a "tcp dport", "udp dport" or "th dport" match names: single ones, ranges,
// comparisons, and sets. Empty for any other match.
QList<FirewallPorts> NftPortsOfMatch(const QJsonValue& match);
// Those that the matches of a rule ask for.
QList<FirewallPorts> NftPortsOf(const QJsonObject& rule);

// The rules of nftables as "nft -j list ruleset" prints them.
//
// An accepted packet still goes through the chains of other tables, which may drop it. So a rule of
// the program is in the program's own table, which is the list of its rules, and also at the top of
// each chain that filters.
class NftRuleset final {
 public:
  // Nothing if this is no ruleset.
  static std::optional<NftRuleset> Read(const QByteArray& json);

  // The chains that see packets for this computer, in the order of the ruleset.
  QList<NftChain> InputChains() const;
  // Those of others that filter.
  QList<NftChain> FilterChains() const;
  // Whether anything of this filters, or is the program's.
  bool IsInUse() const;
  QList<NftOwnRule> OwnRules() const;

  // One transaction, as nft reads it from a file. Empty where there is nothing to do.
  QByteArray ScriptToAdd(const QList<FirewallPorts>& ports) const;
  QByteArray ScriptToRemove(const QList<FirewallPorts>& ports) const;

  // For the analysis of what passes.
  const QJsonArray& Objects() const { return objects_; }

 private:
  explicit NftRuleset(QJsonArray objects) : objects_(std::move(objects)) {}

  QJsonArray objects_;
};

}  // namespace quayline
