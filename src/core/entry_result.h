// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

#include "core/listening.h"
#include "core/port_entry.h"
#include "core/rule_match.h"

namespace quayline {

// What is known of an entry when a job has ended.
enum class EntryState {
  kOnRouter,   // seen there, as it is wanted
  kDifferent,  // seen there with other values
  kMissing,    // the router shows its rules, and this is not one of them
  kUnknown,    // the router's page does not say
  kToCheck,    // the page does not say, and something went wrong while the entry was entered
};

struct EntryResult {
  PortEntry entry;
  EntryState state = EntryState::kUnknown;
  QList<RuleField> differs;  // of kDifferent only
  QString seen;              // the row of the router's page on which this rests
  bool existed = false;      // the rule was on the router before the job, as it is wanted
  // The job brought it: the router showed its rules before, and this one was not among them.
  bool is_new = false;
  // Of a removal: what the page shows of the user's own row of the rule, which stays.
  std::optional<EntryState> own_row;
  QStringList doubts;  // what went wrong meanwhile, in sentences
  // Whether a program waits for what the router forwards; nothing where it leads to another
  // computer, or the router was not looked at.
  std::optional<Listening> listening;

  bool IsUnclear() const { return state == EntryState::kUnknown || state == EntryState::kToCheck; }
  bool IsWrong() const { return state == EntryState::kDifferent || state == EntryState::kMissing; }
};

// The result of an entry: what the page shows counts for more than what went wrong meanwhile.
EntryResult ResultOf(const PortEntry& entry, const RuleVerdict& verdict, bool existed,
                     const QStringList& doubts);

// The names by which other programs know them: "on-router", "different", "missing", "unknown",
// "to-check"; "port", "address", "protocol", "disabled".
QString StateName(EntryState state);
QString FieldName(RuleField field);

}  // namespace quayline
