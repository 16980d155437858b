// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <optional>

#include "cli/allowed_host.h"

namespace quayline {

// The options of `quayline-cli update` and `check`. What is missing comes from the settings of the
// program's folder, else from the router's row, else from the program's defaults.
struct UpdateArguments {
  QString data_folder;
  QString list_file;
  std::optional<QString> router;
  std::optional<QString> address;
  std::optional<QString> port;
  std::optional<QString> type;  // "http://" or "https://"
  std::optional<QString> user;
  std::optional<QString> password_file;
  bool password_from_stdin = false;
  std::optional<QString> trusted_certificate;  // SHA-256 fingerprint
  QList<AllowedHost> allowed_hosts;
  bool allow_script = false;           // of somebody else
  std::optional<int> timeout_seconds;  // of the whole run
  bool no_wait = false;                // for another program that works on the router
  bool throttle = false;
  bool no_verify = false;  // the router's rules are not read before and after
  bool as_json = false;
  bool only_looks = false;  // `check`: the entries are looked up, and nothing is entered
  bool is_trial = false;    // `try`: what is entered is removed again, and the log holds everything
};

}  // namespace quayline
