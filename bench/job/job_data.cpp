// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "bench/job/job_data.h"

#include <QFile>
#include <QHash>

#include <algorithm>

#include "core/table_data.h"

namespace quayline::bench {

namespace {

TableData EmptyTable(const char* name, std::initializer_list<const char*> fields) {
  TableData table{.name = QLatin1String(name), .columns = {QStringLiteral("ID")}, .rows = {}};
  for (const char* field : fields) {
    table.columns.append(QLatin1String(field));
  }
  return table;
}

}  // namespace

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
  QFile file(file_name);
  if (!file.open(QIODevice::ReadOnly)) {
    return std::unexpected(
        QStringLiteral("%1 cannot be read: %2.").arg(file_name, file.errorString()));
  }
  QHash<QString, QString> values;
  QString script;  // the heading that was read last
  for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
    if (line.startsWith(QLatin1Char('['))) {
      script = line.mid(1, line.size() - 2);
    } else if (!script.isEmpty()) {
      values[script] += line + QStringLiteral("\r\n");
    } else if (!line.startsWith(QLatin1Char('#')) && line.contains(QLatin1Char(':'))) {
      values[line.section(QLatin1Char(':'), 0, 0)] = line.section(QLatin1Char(':'), 1).trimmed();
    }
  }
  const auto Value = [&values](const char* name) { return values.value(QLatin1String(name)); };
  return RouterRecord{.id = Value("id").toInt(),
                      .routername = Value("routername"),
                      .routerusername = Value("routerusername"),
                      .routerpassword = Value("routerpassword"),
                      .routersupportsboth = Value("routersupportsboth"),
                      .routerneedscomputername = Value("routerneedscomputername"),
                      .routermaxentries = Value("routermaxentries"),
                      .routermaxrange = Value("routermaxrange"),
                      .routerminport = Value("routerminport"),
                      .routermaxport = Value("routermaxport"),
                      .routerpic = Value("routerpic"),
                      .routercommands = Value("routercommands"),
                      .routerportpage = Value("routerportpage")};
}

std::expected<void, QString> WriteProgramFolder(const QList<RouterRecord>& routers,
                                                const QString& folder) {
  TableData router_table = EmptyTable(
      "routers", {"routername", "routerusername", "routerpassword", "routersupportsboth",
                  "routerneedscomputername", "routermaxentries", "routermaxrange", "routerminport",
                  "routermaxport", "routerpic", "routercommands", "routerportpage"});
  for (const RouterRecord& router : routers) {
    router_table.rows.append({QString::number(router.id), router.routername, router.routerusername,
                              router.routerpassword, router.routersupportsboth,
                              router.routerneedscomputername, router.routermaxentries,
                              router.routermaxrange, router.routerminport, router.routermaxport,
                              router.routerpic, router.routercommands, router.routerportpage});
  }
  for (const TableData& table :
       {router_table,
        EmptyTable("ports",
                   {"appname", "nameforrouter", "tcpportsonly", "udpportsonly", "tcpudpports"}),
        EmptyTable("custom", {"appname", "portype", "startport", "endport"})}) {
    const QString file = folder + QLatin1Char('/') + table.name + QStringLiteral(".mdb");
    if (auto written = WriteTables({table}, file); !written) {
      return written;
    }
  }
  return {};
}

}  // namespace quayline::bench
