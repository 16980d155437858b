// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/program_entries.h"

#include "core/entry_fields.h"
#include "core/port_range.h"
#include "core/protocol.h"

namespace quayline {

namespace {

constexpr QLatin1Char kBar('|');

// The elements of a port list that are not blank.
QStringList Elements(const QString& port_list) {
  QStringList elements;
  for (const QString& element : port_list.split(kBar)) {
    if (!element.trimmed().isEmpty()) {
      elements.append(element.trimmed());
    }
  }
  return elements;
}

// A single port is one number, however it is written: "(80)".
QString ShownElements(const QString& port_list) {
  QString shown;
  for (const QString& element : Elements(port_list)) {
    const QString start = element.section(QLatin1Char('-'), 0, 0).trimmed();
    const QString end = element.section(QLatin1Char('-'), 1).trimmed();
    shown += QLatin1Char('(') + (start == end ? start : element) + QLatin1Char(')');
  }
  return shown;
}

QString OrDash(const QString& shown) { return shown.isEmpty() ? QStringLiteral("-") : shown; }

// A name from a database is not to split the row in the list file.
QString WithoutBars(QString text) { return text.replace(kBar, QLatin1Char(' ')); }

}  // namespace

ProgramSummary SummarizeProgram(const AppPortRecord& program, const RouterSession& session) {
  const QString both = ShownElements(program.tcpudpports);
  const qsizetype entries =
      Elements(program.tcpportsonly).size() + Elements(program.udpportsonly).size() +
      Elements(program.tcpudpports).size() * (HasRuleForBoth(session) ? 1 : 2);
  return {.tcp = OrDash(ShownElements(program.tcpportsonly) + both),
          .udp = OrDash(ShownElements(program.udpportsonly) + both),
          .entries = static_cast<int>(entries)};
}

ProgramEntries MakeProgramEntries(const AppPortRecord& program, const QString& forwarded_to,
                                  const RouterSession& session) {
  ProgramEntries made;
  const QString stem = WithoutBars(program.nameforrouter).remove(QLatin1Char(' '));
  const QString description = WithoutBars(program.appname);
  const auto add = [&](const QString& port_list, const QList<Protocol>& protocols) {
    for (const QString& element : Elements(port_list)) {
      const auto range = ParsePortRange(element);
      if (!range) {
        made.unreadable.append(element);
        continue;
      }
      for (const Protocol protocol : protocols) {
        const auto number = static_cast<int>(made.entries.size()) + 1;
        made.entries.append({.app_name = NumberedName(stem, number),
                             .forwarded_to = forwarded_to,
                             .start_port = QString::number(range->start),
                             .end_port = QString::number(range->end),
                             .protocol = ProtocolText(protocol),
                             .description = description});
      }
    }
  };
  add(program.tcpportsonly, {Protocol::kTcp});
  add(program.udpportsonly, {Protocol::kUdp});
  add(program.tcpudpports,
      HasRuleForBoth(session) ? QList{Protocol::kBoth} : QList{Protocol::kTcp, Protocol::kUdp});
  return made;
}

QString NumberedName(const QString& stem, int number) {
  return stem + QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

QString ForwardedTo(const QString& address, const QString& computer_name) {
  return QStringLiteral("%1(%2)").arg(address, computer_name);
}

QString AddressOf(const QString& forwarded_to) {
  return forwarded_to.section(QLatin1Char('('), 0, 0);
}

}  // namespace quayline
