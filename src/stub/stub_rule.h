// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include "core/port_entry.h"

namespace quayline {

// A rule of the stub router: "name", "start", "end", "protocol" (TCP, UDP or TCP/UDP), "address",
// "enabled" (yes or no), and whatever else its pages send. A member may be missing: some routers
// make a rule first and fill it in afterwards.
using StubRule = QMap<QString, QString>;

// The value of a member as it is stored: "on" becomes "yes". An empty text for one that a router
// would refuse, such as a port of 0.
QString StoredMember(const QString& member, const QString& value);

// The ports as pages write them: "80" or "80-90".
QString PortsOf(const StubRule& rule);

// "Web TCP 80-80 to 192.168.1.10", with what is missing or off.
QString RuleText(const StubRule& rule);

// What is wrong where `rules` should be exactly those for `entries` and those of `before`, a
// sentence each. A rule for both protocols may be two. Names are not compared: routers cut them.
QStringList DifferencesFrom(const QList<PortEntry>& entries, const QList<StubRule>& before,
                            const QList<StubRule>& rules);

}  // namespace quayline
