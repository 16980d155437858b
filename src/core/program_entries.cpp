// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/program_entries.h"

#include <algorithm>

#include "core/entry_fields.h"

namespace quayline {

namespace {

constexpr int kMaxPort = 65535;
constexpr QLatin1Char kBar('|');

const QString kTcp = QStringLiteral("TCP");
const QString kUdp = QStringLiteral("UDP");
const QString kBoth = QStringLiteral("TCP/UDP");

// An element of a port list, taken apart at its first "-". Without one it is a single port.
struct Element {
  explicit Element(const QString& element) : text(element.trimmed()) {
    const qsizetype dash = text.indexOf(QLatin1Char('-'));
    start = text.left(dash).trimmed();
    end = dash < 0 ? start : text.mid(dash + 1).trimmed();
  }

  QString Shown() const {
    return QLatin1Char('(') + (start == end ? start : text) + QLatin1Char(')');
  }

  bool IsReadable() const {
    const auto number = [](const QString& port) {
      const bool has_digits_only = std::ranges::all_of(
          port, [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
      return has_digits_only ? PortNumber(port).value_or(-1) : -1;
    };
    return number(start) >= 0 && number(start) <= number(end) && number(end) <= kMaxPort;
  }

  QString text;
  QString start;
  QString end;
};

QList<Element> Elements(const QString& port_list) {
  QList<Element> elements;
  for (const QString& text : port_list.split(kBar)) {
    if (const Element element(text); !element.text.isEmpty()) {
      elements.append(element);
    }
  }
  return elements;
}

QString ShownElements(const QString& port_list) {
  QString shown;
  for (const Element& element : Elements(port_list)) {
    shown += element.Shown();
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
  const auto add = [&](const QString& port_list, const QStringList& protocols) {
    for (const Element& element : Elements(port_list)) {
      if (!element.IsReadable()) {
        made.unreadable.append(element.text);
        continue;
      }
      for (const QString& protocol : protocols) {
        const auto number = static_cast<int>(made.entries.size()) + 1;
        made.entries.append(
            {.app_name = stem + QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')),
             .forwarded_to = forwarded_to,
             .start_port = element.start,
             .end_port = element.end,
             .protocol = protocol,
             .description = description});
      }
    }
  };
  add(program.tcpportsonly, {kTcp});
  add(program.udpportsonly, {kUdp});
  add(program.tcpudpports, HasRuleForBoth(session) ? QStringList{kBoth} : QStringList{kTcp, kUdp});
  return made;
}

QString ForwardedTo(const QString& address, const QString& computer_name) {
  return QStringLiteral("%1(%2)").arg(address, computer_name);
}

QString AddressOf(const QString& forwarded_to) {
  return forwarded_to.section(QLatin1Char('('), 0, 0);
}

}  // namespace quayline
