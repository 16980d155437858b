// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace quayline {

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

  bool operator==(const RouterRecord&) const = default;
};

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

// A row of table `custom` in "custom.mdb": a program that the user entered.
struct CustomPortRecord {
  int id = 0;  // assigned by the store
  QString appname;
  QString portype;  // "TCP", "UDP" or "TCP/UDP"
  QString startport;
  QString endport;

  bool operator==(const CustomPortRecord&) const = default;
};

// The lines of a script field: split at CR LF (a lone LF is taken as well), lines that are blank
// dropped, the others as they are.
QStringList ScriptLines(const QString& script);

}  // namespace quayline
