// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>

#include "core/records.h"

namespace quayline {

// What the user chose and typed on the main window, and what the selected router's row says: the
// values that jobs and dialogs read. The main window or the command line writes it, and the
// router's address also the adapter dialog.
struct RouterSession {
  QString router_name;
  int router_id = 0;  // 0: no router is selected
  QString router_ip = QStringLiteral("0.0.0.0");
  QString http_port = QStringLiteral("80");
  QString http_type = QStringLiteral("http://");  // "http://" or "https://"
  QString username;
  QString password;
  bool show_password = false;
  QString supports_both;        // routersupportsboth
  QString needs_computer_name;  // routerneedscomputername
  QString max_entries;          // routermaxentries
  QString max_range;            // routermaxrange
  QString min_port;             // routerminport
  QString max_port;             // routermaxport
  QString picture_path;         // routerpic with "/" for every "\"
  QStringList update_script;
  QStringList view_script;
};

// The checks of the menu Advanced. A job looks at them at every line, so a change takes effect
// while it runs.
struct JobOptions {
  bool silent_mode = true;
  bool throttle = true;
  // The router's rules are read before and after a job.
  bool verify_after_update = false;
  bool debug_mode = false;  // not stored
};

// Fills the session from a router's row: login, limits, both scripts, picture path. The fields of
// the address stay.
void SelectRouter(RouterSession& session, const RouterRecord& record);

// `typed` without a leading "http://" or "https://" in any case, each cut once in this order.
QString WithoutScheme(const QString& typed);

// The router's address as URLs and logs show it: the host, followed by ":" and the port unless the
// port field contains exactly "80".
QString RouterHost(const RouterSession& session);

// The router as the lock on it is named: its host, however it is reached. Addresses on this
// computer (tunnels, each to a router of its own) differ by their ports.
QString RouterKey(const RouterSession& session);

// The password as the login field shows it: as typed when show_password is set, else a "*" a
// character.
QString ShownPassword(const RouterSession& session);

}  // namespace quayline
