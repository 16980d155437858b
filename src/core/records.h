// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <span>

namespace quayline {

enum class ColumnKind { kText, kScript, kPortList };

// A text column of a table, and the member of the record that holds it.
template <typename Record>
struct Column {
  const char* name;
  QString Record::* member;
  const char* heading = nullptr;  // of the column where the table is written as text
  ColumnKind kind = ColumnKind::kText;
  // Files made before the column existed lack it, and the text of a record may omit it.
  bool is_optional = false;
};

// How a kind of record is stored: one file with one table, whose key is the whole number "ID".
// Everything that reads, writes, prints or checks records goes by this.
template <typename Record>
struct RecordTable {
  const char* file_name;
  const char* name;
  std::span<const Column<Record>> columns;
};

// Specialised below for each kind of record.
template <typename Record>
inline constexpr RecordTable<Record> kTableOf;

// A row of table `routers` in "routers.mdb". Every field but the key is text and kept as stored; a
// missing field reads as empty.
struct RouterRecord {
  int id = 0;  // key and sort order
  QString routername;
  QString routerusername;
  QString routerpassword;
  QString routersupportsboth;       // "no" in any case: no combined TCP and UDP rule
  QString routerneedscomputername;  // "yes" in any case: rules name the computer
  QString routermaxentries;         // decimal; empty: unknown, no limit
  QString routermaxrange;           // largest end port minus start port of one rule
  QString routerminport;
  QString routermaxport;
  QString routerpic;       // path under the maker's "/files" folder; backslashes are allowed
  QString routercommands;  // update script, lines separated by CR LF
  QString routerportpage;  // list/remove script, likewise
  QString routerremove;    // script that removes one rule, likewise; empty: it has no such script
  QString routertested;    // how the scripts were tried: one of kWaysOfTesting, or empty
  QString routerversions;  // the firmware versions that the scripts were written for

  bool operator==(const RouterRecord&) const = default;
};

// Tried on a real router, on a rebuild of its pages, or only written by its documentation.
inline constexpr const char* kWaysOfTesting[] = {"real", "rebuild", "documentation"};

inline constexpr Column<RouterRecord> kRouterColumns[] = {
    {"routername", &RouterRecord::routername},
    {"routerusername", &RouterRecord::routerusername},
    {"routerpassword", &RouterRecord::routerpassword},
    {"routersupportsboth", &RouterRecord::routersupportsboth},
    {"routerneedscomputername", &RouterRecord::routerneedscomputername},
    {"routermaxentries", &RouterRecord::routermaxentries},
    {"routermaxrange", &RouterRecord::routermaxrange},
    {"routerminport", &RouterRecord::routerminport},
    {"routermaxport", &RouterRecord::routermaxport},
    {"routerpic", &RouterRecord::routerpic},
    {.name = "routercommands",
     .member = &RouterRecord::routercommands,
     .kind = ColumnKind::kScript},
    {.name = "routerportpage",
     .member = &RouterRecord::routerportpage,
     .kind = ColumnKind::kScript},
    {.name = "routerremove",
     .member = &RouterRecord::routerremove,
     .kind = ColumnKind::kScript,
     .is_optional = true},
    {.name = "routertested", .member = &RouterRecord::routertested, .is_optional = true},
    {.name = "routerversions", .member = &RouterRecord::routerversions, .is_optional = true},
};
template <>
inline constexpr RecordTable<RouterRecord> kTableOf<RouterRecord> = {"routers.mdb", "routers",
                                                                     kRouterColumns};

// A row of table `ports` in "ports.mdb": the ports that a known program needs. The three port lists
// hold elements "start-end" separated by "|".
struct AppPortRecord {
  int id = 0;
  QString appname;
  QString nameforrouter;
  QString tcpportsonly;
  QString udpportsonly;
  QString tcpudpports;

  bool operator==(const AppPortRecord&) const = default;
};

inline constexpr Column<AppPortRecord> kAppPortColumns[] = {
    {"appname", &AppPortRecord::appname, "program"},
    {"nameforrouter", &AppPortRecord::nameforrouter, "short name"},
    {"tcpportsonly", &AppPortRecord::tcpportsonly, "TCP", ColumnKind::kPortList},
    {"udpportsonly", &AppPortRecord::udpportsonly, "UDP", ColumnKind::kPortList},
    {"tcpudpports", &AppPortRecord::tcpudpports, "both", ColumnKind::kPortList},
};
template <>
inline constexpr RecordTable<AppPortRecord> kTableOf<AppPortRecord> = {"ports.mdb", "ports",
                                                                       kAppPortColumns};

// A row of table `custom` in "custom.mdb": a program that the user entered.
struct CustomPortRecord {
  int id = 0;  // assigned by the store
  QString appname;
  QString portype;  // "TCP", "UDP" or "TCP/UDP"
  QString startport;
  QString endport;

  bool operator==(const CustomPortRecord&) const = default;
};

inline constexpr Column<CustomPortRecord> kCustomPortColumns[] = {
    {"appname", &CustomPortRecord::appname, "name"},
    {"portype", &CustomPortRecord::portype, "protocol"},
    {"startport", &CustomPortRecord::startport, "start"},
    {"endport", &CustomPortRecord::endport, "end"},
};
template <>
inline constexpr RecordTable<CustomPortRecord> kTableOf<CustomPortRecord> = {"custom.mdb", "custom",
                                                                             kCustomPortColumns};

// The names of the columns of a kind of record.
template <typename Record>
QStringList ColumnNames() {
  QStringList names;
  for (const Column<Record>& column : kTableOf<Record>.columns) {
    names.append(QLatin1String(column.name));
  }
  return names;
}

// The texts of a record in the order of its columns, none of them null (a null would be stored as
// such), and the record of such texts.
template <typename Record>
QStringList TextsOf(const Record& record) {
  QStringList texts;
  for (const Column<Record>& column : kTableOf<Record>.columns) {
    const QString& text = record.*(column.member);
    texts.append(text.isNull() ? QStringLiteral("") : text);
  }
  return texts;
}
template <typename Record>
Record RecordOf(int id, const QStringList& texts) {
  Record record;
  record.id = id;
  qsizetype next = 0;
  for (const Column<Record>& column : kTableOf<Record>.columns) {
    record.*(column.member) = texts.at(next++);
  }
  return record;
}

// The lines of a script field: split at CR LF (a lone LF is taken as well), lines that are blank
// dropped, the others as they are.
QStringList ScriptLines(const QString& script);

}  // namespace quayline
