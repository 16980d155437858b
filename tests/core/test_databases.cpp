// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/test_databases.h"

#include <QFile>

#include "core/table_data.h"

namespace quayline::testing {

namespace {

// `fields` gives the texts behind the ID of a record.
template <typename Record>
bool MakeFile(const QString& folder, const char* name, const char* columns,
              const QList<Record>& records, QStringList (*fields)(const Record&)) {
  TableData table{
      .name = QLatin1String(name), .columns = QString::fromLatin1(columns).split(u' '), .rows = {}};
  for (const Record& record : records) {
    table.rows.append(QStringList{QString::number(record.id)} + fields(record));
  }
  const QString path = folder + u'/' + table.name + QStringLiteral(".mdb");
  QFile::remove(path);
  return WriteTables({table}, path).has_value();
}

QStringList RouterFields(const RouterRecord& r) {
  return {r.routername,         r.routerusername,          r.routerpassword,
          r.routersupportsboth, r.routerneedscomputername, r.routermaxentries,
          r.routermaxrange,     r.routerminport,           r.routermaxport,
          r.routerpic,          r.routercommands,          r.routerportpage};
}

QStringList ProgramFields(const AppPortRecord& p) {
  return {p.appname, p.nameforrouter, p.tcpportsonly, p.udpportsonly, p.tcpudpports};
}

QStringList CustomFields(const CustomPortRecord& c) {
  return {c.appname, c.portype, c.startport, c.endport};
}

}  // namespace

bool MakeTestDatabases(const QString& folder, const QList<RouterRecord>& routers,
                       const QList<AppPortRecord>& ports, const QList<CustomPortRecord>& custom) {
  return MakeFile(folder, "routers",
                  "ID routername routerusername routerpassword routersupportsboth "
                  "routerneedscomputername routermaxentries routermaxrange routerminport "
                  "routermaxport routerpic routercommands routerportpage",
                  routers, RouterFields) &&
         MakeFile(folder, "ports", "ID appname nameforrouter tcpportsonly udpportsonly tcpudpports",
                  ports, ProgramFields) &&
         MakeFile(folder, "custom", "ID appname portype startport endport", custom, CustomFields);
}

}  // namespace quayline::testing
