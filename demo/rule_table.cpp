// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/rule_table.h"

#include <algorithm>

namespace quayline::demo {

namespace {

constexpr int kMaxPort = 65535;
constexpr int kMaxNameLength = 32;

std::optional<int> ReadNumber(const QString& text, int most) {
  const bool is_digits = !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
  });
  bool fits = false;
  const int number = text.toInt(&fits);
  return is_digits && fits && number <= most ? std::optional(number) : std::nullopt;
}

bool IsComputerAddress(const QString& text) {
  const QStringList parts = text.split(QLatin1Char('.'));
  const bool is_address =
      parts.size() == 4 && std::all_of(parts.begin(), parts.end(), [](auto& part) {
        return part.size() <= 3 && ReadNumber(part, 255);
      });
  return is_address && parts.first().toInt() != 0 && parts.last().toInt() != 0 &&
         parts.last().toInt() != 255;
}

bool IsName(const QString& text) {
  return !text.trimmed().isEmpty() && text.size() <= kMaxNameLength &&
         std::all_of(text.begin(), text.end(), [](QChar c) { return c >= QLatin1Char(' '); });
}

std::optional<Protocol> ReadProtocol(const QString& text) {
  const QString lower = text.toLower();
  return lower == QLatin1String("tcp")    ? std::optional(Protocol::kTcp)
         : lower == QLatin1String("udp")  ? std::optional(Protocol::kUdp)
         : lower == QLatin1String("both") ? std::optional(Protocol::kBoth)
                                          : std::nullopt;
}

std::optional<RuleFault> Conflict(const Rule& one, const Rule& other) {
  if (one.name.compare(other.name, Qt::CaseInsensitive) == 0) {
    return RuleFault::kSameName;
  }
  const bool share_protocol = one.protocol == other.protocol || one.protocol == Protocol::kBoth ||
                              other.protocol == Protocol::kBoth;
  if (share_protocol && one.first <= other.last && other.first <= one.last) {
    return RuleFault::kSamePorts;
  }
  return std::nullopt;
}

}  // namespace

QString ProtocolText(Protocol protocol) {
  switch (protocol) {
    case Protocol::kTcp:
      return QStringLiteral("TCP");
    case Protocol::kUdp:
      return QStringLiteral("UDP");
    case Protocol::kBoth:
      return QStringLiteral("TCP/UDP");
  }
  return {};
}

std::optional<Protocol> ProtocolFromText(const QString& text) {
  for (const Protocol protocol : {Protocol::kTcp, Protocol::kUdp, Protocol::kBoth}) {
    if (text == ProtocolText(protocol)) {
      return protocol;
    }
  }
  return std::nullopt;
}

QString FaultText(RuleFault fault) {
  switch (fault) {
    case RuleFault::kName:
      return QStringLiteral("The rule needs a name of 1 to 32 characters.");
    case RuleFault::kPort:
      return QStringLiteral("A port must be a number from 1 to 65535.");
    case RuleFault::kPortOrder:
      return QStringLiteral("The end port is below the start port.");
    case RuleFault::kProtocol:
      return QStringLiteral("The protocol is not known.");
    case RuleFault::kAddress:
      return QStringLiteral("The server address is not a valid IP address.");
    case RuleFault::kSameName:
      return QStringLiteral("There is a rule of this name already.");
    case RuleFault::kSamePorts:
      return QStringLiteral("Another rule uses one of these ports.");
    case RuleFault::kTableFull:
      return QStringLiteral("The table is full. Delete a rule first.");
    case RuleFault::kNoRule:
      return QStringLiteral("There is no rule of this name.");
  }
  return {};
}

std::expected<Rule, RuleFault> ReadRule(const TypedRule& typed) {
  if (!IsName(typed.name)) {
    return std::unexpected(RuleFault::kName);
  }
  const QString last_text = typed.last.trimmed().isEmpty() ? typed.first : typed.last;
  const int first = ReadNumber(typed.first.trimmed(), kMaxPort).value_or(0);
  const int last = ReadNumber(last_text.trimmed(), kMaxPort).value_or(0);
  if (first == 0 || last == 0) {
    return std::unexpected(RuleFault::kPort);
  }
  if (last < first) {
    return std::unexpected(RuleFault::kPortOrder);
  }
  const auto protocol = ReadProtocol(typed.protocol);
  if (!protocol) {
    return std::unexpected(RuleFault::kProtocol);
  }
  const QString address = typed.address.trimmed();
  if (!IsComputerAddress(address)) {
    return std::unexpected(RuleFault::kAddress);
  }
  return Rule{.name = typed.name,
              .protocol = *protocol,
              .first = first,
              .last = last,
              .address = address,
              .enabled = typed.enabled};
}

RuleTable::RuleTable(int row_count) : rows_(row_count) {}

QList<Rule> RuleTable::Rules() const {
  QList<Rule> rules;
  for (const auto& row : rows_) {
    if (row) {
      rules.append(*row);
    }
  }
  return rules;
}

std::expected<void, RuleFault> RuleTable::Add(const Rule& rule) {
  const qsizetype free_row = rows_.indexOf(std::nullopt);
  if (free_row < 0) {
    return std::unexpected(RuleFault::kTableFull);
  }
  Rows rows = rows_;
  rows[free_row] = rule;
  if (const auto saved = Replace(rows); !saved) {
    return std::unexpected(saved.error().fault);
  }
  return {};
}

void RuleTable::Remove(int row) {
  if (row >= 0 && row < rows_.size() && rows_.at(row)) {
    rows_[row].reset();
    ++saves_;
  }
}

std::expected<void, RuleTable::RowFault> RuleTable::Replace(const Rows& rows) {
  for (int row = 0; row < rows.size(); ++row) {
    const std::optional<Rule>& rule = rows.at(row);
    for (const std::optional<Rule>& earlier : rows.first(row)) {
      const auto fault = rule && earlier ? Conflict(*earlier, *rule) : std::nullopt;
      if (fault) {
        return std::unexpected(RowFault{.row = row, .fault = *fault});
      }
    }
  }
  rows_ = rows;
  ++saves_;
  return {};
}

void RuleTable::Clear() {
  rows_ = Rows(rows_.size());
  saves_ = 0;
}

}  // namespace quayline::demo
