// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

#include "demo/rule_table.h"

namespace quayline::demo {

// One row of a list file as the router should hold it.
struct ListEntry {
  QString name;
  QString first;  // the ports, the protocol and the address as the file has them
  QString last;
  QString protocol;
  QString address;
};

// The rows of a list file: "|" between the fields, CR LF after each row. This is a second reader of
// that format, on purpose: a fault of the program's own would otherwise judge itself.
QList<ListEntry> ReadList(const QByteArray& bytes);

enum class EntryMark {
  kMatches,  // the rule is there as listed, and enabled
  kOff,      // it is there as listed, but disabled
  kDiffers,  // a rule of that name is there, with other ports, protocol or address
  kMissing,  // there is no rule of that name
  kExtra     // a rule that the list does not have
};

struct ComparedRow {
  EntryMark mark = EntryMark::kMissing;
  std::optional<ListEntry> entry;  // nothing: kExtra
  std::optional<Rule> rule;        // nothing: kMissing
};

// The list's entries in their order, then the rules that the list does not have. A rule answers for
// one entry only: two equal entries need two rules.
QList<ComparedRow> CompareList(const QList<ListEntry>& entries, const QList<Rule>& rules);

// Whether there is an entry, and every entry has its rule. False for an empty list, which proves
// nothing.
bool HasEveryEntry(const QList<ComparedRow>& rows);

// The rows as a table, list to the left and router to the right, with a summary line.
QString FormatComparison(const QList<ComparedRow>& rows);

}  // namespace quayline::demo
