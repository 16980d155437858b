// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "core/page_rows.h"
#include "core/port_entry.h"

namespace quayline {

enum class RuleState {
  kOnRouter,   // a row shows the rule as it is wanted
  kDifferent,  // a row is this rule, and something in it is not as wanted
  kMissing,    // the page shows rules, and this is not one of them
  kUnknown,    // the page shows no rules, or a row that may be this one and cannot be read
};

enum class RuleField { kPort, kAddress, kProtocol, kDisabled };

struct RuleVerdict {
  RuleState state = RuleState::kUnknown;
  QList<RuleField> differs;  // of kDifferent only
  // The row on which the verdict rests; of kMissing, a row that has the ports for another rule.
  QString seen;
  // The rows of the page that are the rule, or a part of it: routers make two rows of a rule for
  // both protocols.
  QList<qsizetype> rows;

  bool operator==(const RuleVerdict&) const = default;
};

// Looks each entry up in what a page shows, in the order of the list.
//
// Pages write rules in many ways: "80", "80-80", "80:80", "80~80", or start and end in two cells;
// the address in whole or its last part; the protocol as a word, a number or two check boxes, or a
// rule for both as two rows; names cut short or without blanks; a check box or a word for
// "enabled". An entry is found only where the ports are with its address or its name: a port alone
// may be something else.
QList<RuleVerdict> MatchRules(const QList<PortEntry>& entries, const PageRows& page);

}  // namespace quayline
