// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/test_databases.h"

#include <QFile>

namespace quayline::testing {

namespace {

QStringList Columns(const char* names) {
  return QString::fromLatin1(names).split(QLatin1Char(' '));
}

bool MakeFile(const QString& path, const TableData& table) {
  QFile::remove(path);
  return WriteTables({table}, path).has_value();
}

}  // namespace

TableData RouterTable(const QList<RouterRecord>& routers) {
  TableData table{.name = QStringLiteral("routers"),
                  .columns = Columns("ID routername routerusername routerpassword "
                                     "routersupportsboth routerneedscomputername routermaxentries "
                                     "routermaxrange routerminport routermaxport routerpic "
                                     "routercommands routerportpage"),
                  .rows = {}};
  for (const RouterRecord& r : routers) {
    table.rows.append({QString::number(r.id), r.routername, r.routerusername, r.routerpassword,
                       r.routersupportsboth, r.routerneedscomputername, r.routermaxentries,
                       r.routermaxrange, r.routerminport, r.routermaxport, r.routerpic,
                       r.routercommands, r.routerportpage});
  }
  return table;
}

bool MakeTestDatabases(const QString& folder, const QList<RouterRecord>& routers,
                       const QList<AppPortRecord>& ports, const QList<CustomPortRecord>& custom) {
  TableData port_table{
      .name = QStringLiteral("ports"),
      .columns = Columns("ID appname nameforrouter tcpportsonly udpportsonly tcpudpports"),
      .rows = {}};
  for (const AppPortRecord& p : ports) {
    port_table.rows.append({QString::number(p.id), p.appname, p.nameforrouter, p.tcpportsonly,
                            p.udpportsonly, p.tcpudpports});
  }
  TableData custom_table{.name = QStringLiteral("custom"),
                         .columns = Columns("ID appname portype startport endport"),
                         .rows = {}};
  for (const CustomPortRecord& c : custom) {
    custom_table.rows.append({QString::number(c.id), c.appname, c.portype, c.startport, c.endport});
  }
  return MakeFile(folder + QStringLiteral("/routers.mdb"), RouterTable(routers)) &&
         MakeFile(folder + QStringLiteral("/ports.mdb"), port_table) &&
         MakeFile(folder + QStringLiteral("/custom.mdb"), custom_table);
}

}  // namespace quayline::testing
