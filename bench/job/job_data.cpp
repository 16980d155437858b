// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "bench/job/job_data.h"

#include <algorithm>

#include "dbtool/database_file.h"
#include "dbtool/program_data.h"

namespace quayline::bench {

QList<PortEntry> JobEntries(int count) {
  constexpr int kFirstPort = 3000;
  constexpr int kPortsApart = 20;
  const QStringList protocols{QStringLiteral("TCP"), QStringLiteral("UDP"),
                              QStringLiteral("TCP/UDP")};
  QList<PortEntry> entries;
  for (int i = 0; i < count; ++i) {
    const int first = kFirstPort + i * kPortsApart;
    entries.append({.app_name = QStringLiteral("Entry%1").arg(i + 1, 2, 10, QLatin1Char('0')),
                    .forwarded_to = QStringLiteral("192.168.1.%1(FrontDesk)").arg(10 + i % 5),
                    .start_port = QString::number(first),
                    .end_port = QString::number(first + i % 3),
                    .protocol = protocols[i % protocols.size()],
                    .description = QStringLiteral("A port to open")});
  }
  return entries;
}

FieldValues FieldsOf(const PortEntry& entry) {
  const bool is_both = entry.protocol == QLatin1String("TCP/UDP");
  return {.name = entry.app_name,
          .start = entry.start_port,
          .end = entry.end_port,
          .protocol = is_both ? QStringLiteral("Both") : entry.protocol,
          .address = entry.forwarded_to.section(QLatin1Char('('), 0, 0)};
}

QString WhatIsMissing(const QList<PortEntry>& entries, const demo::RouterState& state) {
  if (state.rules.size() != entries.size()) {
    return QStringLiteral("%1 rules stand in the router, not %2")
        .arg(state.rules.size())
        .arg(entries.size());
  }
  for (const PortEntry& entry : entries) {
    const bool stands = std::ranges::any_of(state.rules, [&entry](const demo::Rule& rule) {
      return rule.name == entry.app_name && QString::number(rule.first) == entry.start_port &&
             QString::number(rule.last) == entry.end_port &&
             demo::ProtocolText(rule.protocol) == entry.protocol &&
             rule.address == FieldsOf(entry).address && rule.enabled;
    });
    if (!stands) {
      return QStringLiteral("%1 is not in the router").arg(entry.app_name);
    }
  }
  return {};
}

std::expected<RouterRecord, QString> ReadBenchRouter(const QString& file_name) {
  Problems problems;
  const QList<RouterSource> routers =
      ReadRouters(ReadTextFile(file_name, problems), file_name, {}, problems);
  if (routers.isEmpty() || !problems.isEmpty()) {
    return std::unexpected(QStringLiteral("There is no router in %1.\n").arg(file_name) +
                           FormatProblems(problems));
  }
  return routers.first().record;
}

std::expected<void, QString> WriteProgramFolder(const QList<RouterRecord>& routers,
                                                const QString& folder) {
  dbtool::ProgramData data;
  for (const RouterRecord& router : routers) {
    data.routers.append({.record = router});
  }
  return dbtool::WriteDatabases(data, folder);
}

}  // namespace quayline::bench
