// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "core/port_entry.h"
#include "core/records.h"
#include "core/router_session.h"

namespace quayline {

// How the ports of a known program become rows of the port list. Where the program's ports come
// from makes no difference: a row of the database, or the program's own settings.

// What the user sees of a program before adding it.
struct ProgramSummary {
  QString tcp;  // each element in parentheses, a single port as one number; "-" if there are none
  QString udp;
  int entries = 0;  // as many as the selected router needs
};

ProgramSummary SummarizeProgram(const AppPortRecord& program, const RouterSession& session);

struct ProgramEntries {
  QList<PortEntry> entries;
  QStringList unreadable;  // elements that are no ports, and were left out
};

// One row for each element of the TCP list, then of the UDP list, then of the list for both: these
// become two rows, TCP and UDP, if the router has no rule for both. The names are the program's
// short name without blanks and a number from "01" on. Nothing is compared with existing rows.
ProgramEntries MakeProgramEntries(const AppPortRecord& program, const QString& forwarded_to,
                                  const RouterSession& session);

// "Game01": the name of one of several rows with the same stem.
QString NumberedName(const QString& stem, int number);

// How a row names its computer: "192.168.1.100(FrontDesk)".
QString ForwardedTo(const QString& address, const QString& computer_name);
// The address of such a text.
QString AddressOf(const QString& forwarded_to);

}  // namespace quayline
