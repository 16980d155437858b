// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/update_command.h"

#include <algorithm>
#include <optional>

#include "core/entry_fields.h"
#include "core/port_conflicts.h"
#include "core/port_range.h"
#include "i18n/message.h"

namespace quayline {

namespace {

constexpr Message kRouterHolds{"Your router can hold"};
constexpr Message kEntries{"entries."};
constexpr Message kListHolds{"Your list has"};
constexpr Message kRemoveSome{"Please remove some entries from the list."};
constexpr Message kChooseRouter{"Please Choose A Router."};
constexpr Message kListEmpty{"You must have at least 1 port to forward."};
constexpr Message kMaxRange{"On this router the End Port of an entry can be at most"};
constexpr Message kAboveStart{"higher than its Start Port."};
constexpr Message kRangeIs{"It is"};
constexpr Message kRangeOf{"higher in the entry"};
constexpr Message kTheName{"The App Name"};
constexpr Message kNameTaken{
    "is used by more than one entry. Please give each entry a name of its own."};
constexpr Message kConflictsWith{"Conflicts With"};
constexpr Message kSameStart{"Same start port in its range."};
constexpr Message kSameEnd{"Same end port in its range."};
constexpr Message kForwardOnce{"You can not have a port forwarded more than once."};

constexpr Message kNoScript{
    "There is no script for this router, so that nothing can be sent to it. Please choose another "
    "router, or write a script for this one."};

UpdateVerdict Refusal(const QString& message, UpdateFocus focus = UpdateFocus::kNone,
                      int row = -1) {
  return {.accepted = false, .message = message, .focus = focus, .row = row};
}

// The checks that look at the session and at the length of the list, but at no row.
std::optional<UpdateVerdict> CheckSession(qsizetype rows, const RouterSession& session,
                                          const Translator& translator) {
  const auto text = [&](const Message& message) { return translator.Text(message); };
  const int max_entries = PortNumber(session.max_entries).value_or(0);
  if (!session.max_entries.isEmpty() && rows > max_entries) {
    return Refusal(QStringLiteral("%1 %2 %3\n%4 %5 %3\n%6")
                       .arg(text(kRouterHolds), session.max_entries, text(kEntries),
                            text(kListHolds), QString::number(rows), text(kRemoveSome)));
  }
  if (session.router_name.isEmpty()) {
    return Refusal(text(kChooseRouter), UpdateFocus::kRouter);
  }
  if (session.is_name_unknown) {
    return Refusal(text(kNoSuchRouter).arg(session.router_name), UpdateFocus::kRouter);
  }
  if (session.router_ip.startsWith(QLatin1Char('0'))) {
    return Refusal(text(kSetRouterIp), UpdateFocus::kRouterIp);
  }
  if (rows == 0) {
    return Refusal(text(kListEmpty));
  }
  return std::nullopt;
}

UpdateVerdict RangeRefusal(int max_range, qint64 length, const QString& app_name,
                           const Translator& translator) {
  return Refusal(QStringLiteral("%1 %2 %3\n\n%4 %5 %6 %7")
                     .arg(translator.Text(kMaxRange), QString::number(max_range),
                          translator.Text(kAboveStart), translator.Text(kRangeIs),
                          QString::number(length), translator.Text(kRangeOf), app_name));
}

QString ConflictMessage(const PortConflict& conflict, const QList<PortEntry>& entries,
                        const Translator& translator) {
  const QString& name = entries.at(conflict.row).app_name;
  if (conflict.kind == PortConflict::kSameName) {
    return QStringLiteral("%1 '%2' %3")
        .arg(translator.Text(kTheName), name, translator.Text(kNameTaken));
  }
  const Message& reason = conflict.kind == PortConflict::kSameStart ? kSameStart : kSameEnd;
  return QStringLiteral("'%1' %2 '%3\n' %4\n%5")
      .arg(name, translator.Text(kConflictsWith), entries.at(conflict.other).app_name,
           translator.Text(reason), translator.Text(kForwardOnce));
}

}  // namespace

QList<int> ClampPorts(QList<PortEntry>& entries, const RouterSession& session) {
  if (session.is_name_unknown) {
    return {};
  }
  const PortLimits limits = LimitsOf(session);
  // A router's row may have its limits swapped: the upper one is applied last.
  const auto clamp = [&limits](QString& text, int& port) {
    const int clamped = std::min(std::max(port, limits.min_port), limits.max_port);
    const bool is_changed = clamped != port;
    if (is_changed) {
      port = clamped;
      text = QString::number(port);
    }
    return is_changed;
  };
  QList<int> changed;
  PortRange ports;
  for (int row = 0; row < entries.size(); ++row) {
    // Reading must not detach the whole list from its model where nothing changes.
    PortEntry entry = entries.at(row);
    ports = RangeOf(entry, ports);
    const bool is_start_changed = clamp(entry.start_port, ports.start);
    const bool is_end_changed = clamp(entry.end_port, ports.end);
    if (is_start_changed || is_end_changed) {
      entries[row] = entry;
      changed.append(row);
    }
  }
  return changed;
}

UpdateVerdict CheckUpdate(const QList<PortEntry>& entries, const RouterSession& session,
                          const Translator& translator) {
  if (const auto refusal = CheckSession(entries.size(), session, translator)) {
    return *refusal;
  }
  const int max_range = LimitsOf(session).max_range;
  const PortConflicts conflicts(entries);
  for (int row = 0; row < entries.size(); ++row) {
    if (const qint64 length = conflicts.Length(row); length > max_range) {
      return RangeRefusal(max_range, length, entries.at(row).app_name, translator);
    }
    if (const auto conflict = conflicts.FirstOf(row)) {
      return Refusal(ConflictMessage(*conflict, entries, translator), UpdateFocus::kPortList, row);
    }
  }
  if (std::ranges::all_of(session.update_script,
                          [](const QString& line) { return line.trimmed().isEmpty(); })) {
    return Refusal(translator.Text(kNoScript), UpdateFocus::kRouter);
  }
  UpdateVerdict verdict;
  verdict.accepted = true;
  return verdict;
}

}  // namespace quayline
