// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <expected>
#include <functional>

#include "async/task.h"
#include "platform/firewall.h"

namespace quayline {

// How quayline-firewall-helper is started.
struct HelperLaunch {
  QString helper;
  bool is_root = false;  // then it is started directly
  QString pkexec;        // else by this; empty if it is not installed

  // As the system has it.
  static HelperLaunch OfSystem();
};

struct HelperEnd {
  std::expected<void, FirewallError> result;  // without the kind of firewall
  QByteArray output;
};

// Runs the helper to its end; the user may be asked for a password. `progress` is called with each
// number that it prints on a line of its own. Destroying the task stops it between two rules.
Task<HelperEnd> RunFirewallHelper(HelperLaunch launch, QStringList arguments,
                                  std::function<void(qsizetype rule)> progress);

}  // namespace quayline
