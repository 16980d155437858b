// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>
#include <optional>

namespace quayline::demo {

enum class Protocol { kTcp, kUdp, kBoth };

// "TCP", "UDP" or "TCP/UDP".
QString ProtocolText(Protocol protocol);
std::optional<Protocol> ProtocolFromText(const QString& text);

struct Rule {
  QString name;
  Protocol protocol = Protocol::kTcp;
  int first = 0;
  int last = 0;  // never below first
  QString address;
  bool enabled = true;

  bool operator==(const Rule&) const = default;
};

// A rule as a page posts it: everything is still what was typed.
struct TypedRule {
  QString name;
  QString first;
  QString last;  // blank: the same as first
  QString protocol;
  QString address;
  bool enabled = true;
};

enum class RuleFault {
  kName,       // blank, too long or with control characters
  kPort,       // not a number from 1 to 65535
  kPortOrder,  // ends before it starts
  kProtocol,
  kAddress,   // no dotted IPv4 address of a computer
  kSameName,  // ignoring case
  kSamePorts,
  kTableFull,
  kNoRule  // to be changed, and not there
};

// The router's message for a fault, one sentence.
QString FaultText(RuleFault fault);

// The rule that was typed, by itself: without regard to any table. The protocol is "TCP", "UDP" or
// "Both" in any case.
std::expected<Rule, RuleFault> ReadRule(const TypedRule& typed);

// The router's memory: a fixed number of rows, each free or holding one rule.
class RuleTable final {
 public:
  using Rows = QList<std::optional<Rule>>;

  struct RowFault {
    int row = 0;  // counted from 0
    RuleFault fault = RuleFault::kName;
  };

  explicit RuleTable(int row_count);

  const Rows& AllRows() const { return rows_; }
  // The rules in the order of their rows.
  QList<Rule> Rules() const;
  // How often the table was changed since it was made or cleared.
  int Saves() const { return saves_; }

  // Puts the rule in the first free row.
  std::expected<void, RuleFault> Add(const Rule& rule);
  // Does nothing for a row that is free or not there.
  void Remove(int row);
  // Replaces all rows or, on a fault, none. `rows` has as many rows as the table.
  std::expected<void, RowFault> Replace(const Rows& rows);
  // Frees every row and counts from 0 again.
  void Clear();

 private:
  Rows rows_;
  int saves_ = 0;
};

}  // namespace quayline::demo
