// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace quayline {

// What the headings of a table call a column.
enum class ColumnRole {
  kNone,
  kPort,
  kStartPort,
  kEndPort,
  kInnerPort,  // of the computer
  kAddress,    // of the computer
  kOutside,    // an address outside: who may connect, or the router's own
  kProtocol,
  kName,
  kEnabled,
  kIgnored,  // numbers of rows, sizes, times, other switches
};

ColumnRole RoleOf(const QString& heading);

// Whether the headings are those of a table of rules.
bool AreHeadingsOfRules(const QStringList& headings);
// Whether a heading is about a port that opens others while it is used.
bool IsOfTriggers(const QString& heading);

}  // namespace quayline
