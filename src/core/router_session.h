// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>

#include "core/records.h"
#include "core/settings.h"

namespace quayline {

struct Login {
  QString username;
  QString password;

  bool operator==(const Login&) const = default;
  bool IsEmpty() const { return username.isEmpty() && password.isEmpty(); }
};

// What the user chose and typed on the main window, and what the selected router's row says: the
// values that jobs and dialogs read. The main window or the command line writes it.
struct RouterSession {
  QString router_name;           // as the router box shows it
  QString chosen_router;         // the selected router, or one of the last run that is gone since
  int router_id = 0;             // 0: no router is selected
  bool is_name_unknown = false;  // router_name was typed, and is no router's
  QString router_ip = QStringLiteral("0.0.0.0");
  QString http_port = setting::kHttpPort.Standard();
  QString http_type = setting::kHttpType.Standard();  // "http://" or "https://"
  QString username;
  QString password;
  Login factory_login;  // of the selected router
  bool show_password = false;
  QString supports_both;        // routersupportsboth
  QString needs_computer_name;  // routerneedscomputername
  QString max_entries;          // routermaxentries
  QString max_range;            // routermaxrange
  QString min_port;             // routerminport
  QString max_port;             // routermaxport
  QString picture_path;         // routerpic with "/" for every "\"
  QString tested;               // routertested
  QString versions;             // routerversions
  QStringList update_script;
  QStringList view_script;
  QStringList remove_script;  // empty: it has none

  Login CurrentLogin() const { return {username, password}; }
};

// The checks of the menu Advanced. A job looks at them at every line, so a change takes effect
// while it runs.
struct JobOptions {
  bool silent_mode = setting::kSilentMode.IsOn();
  bool throttle = setting::kScriptThrottle.IsOn();
  // The router's rules are read before and after a job.
  bool verify_after_update = false;
  bool debug_mode = false;  // not stored
};

// Fills the session from a router's row: login, limits, scripts, picture path. The fields of
// the address stay.
void SelectRouter(RouterSession& session, const RouterRecord& record);

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
