// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/rule_match.h"

#include <algorithm>
#include <optional>
#include <ranges>

#include "core/row_evidence.h"

namespace quayline {

namespace {

// Shorter beginnings of a name are found in names of other rules. Between the two, a row may be the
// rule.
constexpr qsizetype kShortestCutName = 6;
constexpr qsizetype kShortestPossibleName = 3;

struct Rule {
  QString name;      // folded
  QString computer;  // folded
  QString address;
  int last_part = 0;
  int start = 0;
  int end = 0;
  bool tcp = false;
  bool udp = false;
};

Rule RuleOf(const PortEntry& entry) {
  Rule rule;
  rule.name = FoldName(entry.app_name);
  rule.address = entry.forwarded_to.section(QLatin1Char('('), 0, 0).trimmed();
  rule.computer = FoldName(entry.forwarded_to.section(QLatin1Char('('), 1));
  rule.last_part = rule.address.section(QLatin1Char('.'), -1).toInt();
  rule.start = PortNumber(entry.start_port).value_or(0);
  rule.end = PortNumber(entry.end_port).value_or(0);
  rule.tcp = entry.protocol.contains(QLatin1String("TCP"), Qt::CaseInsensitive);
  rule.udp = entry.protocol.contains(QLatin1String("UDP"), Qt::CaseInsensitive);
  return rule;
}

enum class NameMatch { kNone, kPossible, kCut, kWhole };

// How one row fits one rule.
struct Fit {
  bool has_ports = false;
  bool ports_are_sure = false;
  bool has_address = false;  // and it is the rule's
  bool has_other_address = false;
  bool has_unknown_host = false;      // the name of a computer, which may be the rule's
  bool is_ambiguous = false;          // numbers of which any may be the port
  bool has_other_inner_port = false;  // it leads to another port of the computer
  NameMatch name = NameMatch::kNone;

  bool has_protocol = false;  // any

  // The row is this rule, whatever else it says: its ports are there with its address or name.
  // Where a number may be something else than a port, two things more have to be there.
  bool Is() const {
    if (!has_ports || has_other_address || has_unknown_host || is_ambiguous) {
      return false;
    }
    const int others = (has_address ? 1 : 0) + (name == NameMatch::kWhole ? 1 : 0);
    return ports_are_sure ? others > 0 || name == NameMatch::kCut
                          : others > 0 && others + (has_protocol ? 1 : 0) > 1;
  }

  // The row may be this rule, but something in it cannot be read.
  bool MayBe() const {
    if (!has_ports || has_other_address) {
      return false;
    }
    const bool is_named = has_address || name == NameMatch::kWhole || name == NameMatch::kCut;
    return has_unknown_host || (!ports_are_sure && is_named) ||
           (ports_are_sure && name == NameMatch::kPossible);
  }
};

bool HasPorts(const Rule& rule, const RowEvidence& row, bool sure_only) {
  const auto holds = [&](int start, int end) {
    return std::ranges::any_of(row.ports, [&](const SeenPorts& seen) {
      return seen.start == start && seen.end == end && (seen.is_sure || !sure_only);
    });
  };
  // Start and end may be two cells without a heading. Two equal ones are a single port.
  return holds(rule.start, rule.end) ||
         (!sure_only && rule.start != rule.end && holds(rule.start, rule.start) &&
          holds(rule.end, rule.end));
}

// A rule leads to the same ports of the computer. Of a range some pages only show the first one.
bool HasOtherInnerPort(const Rule& rule, const RowEvidence& row) {
  return !row.inner_ports.isEmpty() &&
         std::ranges::none_of(row.inner_ports, [&](const SeenPorts& seen) {
           return seen.start == rule.start && (seen.end == rule.end || seen.end == seen.start);
         });
}

// Numbers that are not sure to be ports say little: a single port must not be read out of a row
// whose ports are known to be others, nor be the end of an address.
bool HasPortsAtAll(const Rule& rule, const RowEvidence& row) {
  return row.HasSurePorts() ? HasPorts(rule, row, true) : HasPorts(rule, row, false);
}

NameMatch MatchName(const Rule& rule, const RowEvidence& row) {
  NameMatch best = NameMatch::kNone;
  if (rule.name.isEmpty()) {
    return best;
  }
  for (const QString& name : row.names) {
    if (name == rule.name) {
      return NameMatch::kWhole;
    }
    if (name.size() >= kShortestPossibleName && rule.name.startsWith(name)) {
      best =
          std::max(best, name.size() >= kShortestCutName ? NameMatch::kCut : NameMatch::kPossible);
    }
  }
  return best;
}

Fit FitOf(const Rule& rule, const RowEvidence& row) {
  Fit fit;
  fit.has_ports = HasPortsAtAll(rule, row);
  fit.ports_are_sure = row.HasSurePorts();
  const bool has_host = !rule.computer.isEmpty() && row.hosts.contains(rule.computer);
  fit.has_address = row.addresses.contains(rule.address) ||
                    (row.addresses.isEmpty() && row.last_parts.contains(rule.last_part)) ||
                    (!row.HasAddress() && has_host);
  fit.has_unknown_host = !row.HasAddress() && !row.hosts.isEmpty() && !has_host;
  fit.is_ambiguous = row.HasOtherNumbers(rule.start, rule.end);
  fit.has_other_address = row.HasAddress() && !fit.has_address;
  fit.has_other_inner_port = HasOtherInnerPort(rule, row);
  fit.has_protocol = row.HasProtocol();
  fit.name = MatchName(rule, row);
  return fit;
}

bool HasOtherProtocol(const Rule& rule, const SeenProtocols& seen) {
  return seen.HasAny() && (seen.tcp != rule.tcp || seen.udp != rule.udp);
}

class Matcher final {
 public:
  explicit Matcher(const PageRows& page) : page_(page) {
    RowReader reader;
    bool has_other_table = false;
    for (const PageRow& row : page.rows) {
      rows_.append(reader.Read(row));
      // What is no rule is not looked at again.
      if (rows_.last().is_other) {
        has_other_table = has_other_table || !row.is_form;
        rows_.last() = {.is_other = true};
      }
    }
    shows_rules_ = std::ranges::any_of(rows_, &RowEvidence::IsRule) ||
                   (!has_other_table && std::ranges::any_of(page.headings, AreHeadingsOfRules));
  }

  QList<RuleVerdict> Match(const QList<PortEntry>& entries) {
    QList<RuleVerdict> verdicts;
    for (const PortEntry& entry : entries) {
      verdicts.append(Exact(RuleOf(entry)));
    }
    // A row that is one entry exactly is no faulty form of another.
    for (qsizetype i = 0; i < entries.size(); ++i) {
      if (verdicts.at(i).state != RuleState::kOnRouter) {
        const QList<qsizetype> rows = verdicts.at(i).rows;
        verdicts[i] = Inexact(RuleOf(entries.at(i)));
        verdicts[i].rows = rows;
      }
    }
    return verdicts;
  }

 private:
  // Rows that are this rule are taken together: many routers make two rows of a rule for both
  // protocols.
  RuleVerdict Exact(const Rule& rule) {
    QList<qsizetype> found;
    bool is_named = false;
    for (qsizetype i = 0; i < rows_.size(); ++i) {
      const RowEvidence& row = rows_.at(i);
      const bool goes_beyond = (row.protocols.tcp && !rule.tcp) || (row.protocols.udp && !rule.udp);
      const Fit fit = FitOf(rule, row);
      if (fit.Is() && !fit.has_other_inner_port && !row.is_disabled && !goes_beyond) {
        found.append(i);
        is_named = is_named || fit.name == NameMatch::kWhole;
      }
    }
    // Beside a row that has the rule's name and is the whole rule, one with another name is another
    // rule.
    QList<qsizetype> named = found;
    named.removeIf([&](qsizetype i) {
      const RowEvidence& row = rows_.at(i);
      return !row.names.isEmpty() && MatchName(rule, row) != NameMatch::kWhole;
    });
    if (is_named && !HasOtherProtocol(rule, ProtocolsOf(named))) {
      found = named;
    }
    const SeenProtocols protocols = ProtocolsOf(found);
    if (found.isEmpty() || HasOtherProtocol(rule, protocols)) {
      return {.state = RuleState::kUnknown, .differs = {}, .seen = {}, .rows = found};
    }
    taken_.append(found);
    return {.state = RuleState::kOnRouter, .differs = {}, .seen = Seen(found), .rows = found};
  }

  SeenProtocols ProtocolsOf(const QList<qsizetype>& rows) const {
    SeenProtocols protocols;
    for (const qsizetype row : rows) {
      protocols.Add(rows_.at(row).protocols);
    }
    return protocols;
  }

  RuleVerdict Inexact(const Rule& rule) const {
    RuleVerdict best;
    int best_rank = 0;
    for (qsizetype i = 0; i < rows_.size(); ++i) {
      if (taken_.contains(i)) {
        continue;
      }
      const Fit fit = FitOf(rule, rows_.at(i));
      const int rank = Rank(fit, rows_.at(i));
      if (rank > best_rank) {
        best_rank = rank;
        best = {.state = RuleState::kDifferent,
                .differs = Differences(rule, fit, rows_.at(i)),
                .seen = Seen({i}),
                .rows = {}};
      }
    }
    if (best_rank > 0 && !best.differs.isEmpty()) {
      return best;
    }
    if (const auto possible = RowThatMayBe(rule)) {
      return {.state = RuleState::kUnknown, .differs = {}, .seen = Seen({*possible}), .rows = {}};
    }
    const bool can_tell = shows_rules_ && !page_.is_partial && best_rank == 0;
    return {.state = can_tell ? RuleState::kMissing : RuleState::kUnknown,
            .differs = {},
            .seen = can_tell ? RowWithPortsOf(rule) : QString(),
            .rows = {}};
  }

  // A row that the rule may be, though not all of it can be read.
  std::optional<qsizetype> RowThatMayBe(const Rule& rule) const {
    for (qsizetype i = 0; i < rows_.size(); ++i) {
      const RowEvidence& row = rows_.at(i);
      const Fit fit = FitOf(rule, row);
      const bool shows_none = row.ports.isEmpty() && fit.name == NameMatch::kWhole;
      const bool is_unread =
          (row.has_unread_ports && !fit.has_other_address) || (shows_none && fit.has_address);
      if (!taken_.contains(i) && (fit.MayBe() || is_unread)) {
        return i;
      }
    }
    return std::nullopt;
  }

  // How surely the row is the rule, with a fault. 0: it is another rule. Where rows have names, the
  // name says which rule a row is.
  static int Rank(const Fit& fit, const RowEvidence& row) {
    if (fit.has_ports && (fit.has_unknown_host || fit.is_ambiguous)) {
      return 0;
    }
    if (fit.name == NameMatch::kWhole && (row.IsRule() || fit.has_ports)) {
      return 4;
    }
    if (fit.Is()) {
      return fit.name > NameMatch::kPossible || row.names.isEmpty() ? 3 : 0;
    }
    if (fit.name == NameMatch::kCut && fit.has_ports) {
      return 2;
    }
    return fit.has_ports && fit.ports_are_sure && row.names.isEmpty() && row.IsRule() ? 1 : 0;
  }

  static QList<RuleField> Differences(const Rule& rule, const Fit& fit, const RowEvidence& row) {
    QList<RuleField> differs;
    if (!fit.has_ports || fit.has_other_inner_port) {
      differs.append(RuleField::kPort);
    }
    if (fit.has_other_address) {
      differs.append(RuleField::kAddress);
    }
    if (HasOtherProtocol(rule, row.protocols)) {
      differs.append(RuleField::kProtocol);
    }
    if (row.is_disabled) {
      differs.append(RuleField::kDisabled);
    }
    return differs;
  }

  QString RowWithPortsOf(const Rule& rule) const {
    for (qsizetype i = 0; i < rows_.size(); ++i) {
      if (rows_.at(i).HasSurePorts() && HasPorts(rule, rows_.at(i), true)) {
        return Seen({i});
      }
    }
    return {};
  }

  QString Seen(const QList<qsizetype>& rows) const {
    QStringList texts;
    for (const qsizetype row : rows) {
      texts.append(page_.rows.at(row).Text());
    }
    return texts.join(QStringLiteral("; "));
  }

  const PageRows& page_;
  QList<RowEvidence> rows_;
  QList<qsizetype> taken_;
  bool shows_rules_ = false;
};

}  // namespace

QString PageRow::Text() const {
  QStringList texts;
  for (const PageCell& cell : cells) {
    const QString text = cell.checked && *cell.checked ? cell.heading : cell.text.simplified();
    if (!text.isEmpty()) {
      texts.append(text);
    }
  }
  return texts.join(QStringLiteral(" | "));
}

QList<RuleVerdict> MatchRules(const QList<PortEntry>& entries, const PageRows& page) {
  return Matcher(page).Match(entries);
}

}  // namespace quayline
