// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/router_session.h"

#include <QHostAddress>
#include <QUrl>

namespace quayline {

void SelectRouter(RouterSession& session, const RouterRecord& record) {
  session.router_name = session.chosen_router = record.routername;
  session.is_name_unknown = false;
  session.router_id = record.id;
  session.username = record.routerusername;
  session.password = record.routerpassword;
  session.factory_login = session.CurrentLogin();
  session.supports_both = record.routersupportsboth;
  session.needs_computer_name = record.routerneedscomputername;
  session.max_entries = record.routermaxentries;
  session.max_range = record.routermaxrange;
  session.min_port = record.routerminport;
  session.max_port = record.routermaxport;
  session.picture_path = record.routerpic;
  session.picture_path.replace(QLatin1Char('\\'), QLatin1Char('/'));
  session.tested = record.routertested;
  session.versions = record.routerversions;
  session.update_script = ScriptLines(record.routercommands);
  session.view_script = ScriptLines(record.routerportpage);
  session.remove_script = ScriptLines(record.routerremove);
}

QString RouterHost(const RouterSession& session) {
  if (session.http_port == setting::kHttpPort.Standard()) {
    return session.router_ip;
  }
  return session.router_ip + QLatin1Char(':') + session.http_port;
}

QString RouterKey(const RouterSession& session) {
  const QUrl url(session.http_type + RouterHost(session));
  const QString host = url.host();
  const bool is_here = host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
  return is_here ? QStringLiteral("%1:%2").arg(host).arg(url.port(80)) : host;
}

QString ShownPassword(const RouterSession& session) {
  return session.show_password ? session.password
                               : QString(session.password.size(), QLatin1Char('*'));
}

}  // namespace quayline
