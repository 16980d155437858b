// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QString>

#include <optional>

#include "platform/linux/bus_call.h"

namespace quayline {

// Calls of firewalld's methods over the message bus. The connection is made with the first one. A
// call never starts the service, and lets it ask the user for a password.
class FirewalldBus final {
 public:
  // The object of what is kept over a restart.
  static constexpr char kConfigPath[] = "/org/fedoraproject/FirewallD1/config";

  // Of a message bus; empty for the system's.
  explicit FirewalldBus(QString address) : address_(std::move(address)) {}

  Task<bool> IsRunning();
  // Whether the rules can be read without a question to the user.
  Task<bool> MayReadUnasked();
  // A method of the main object, or of that at `path`; `interface` without the common beginning,
  // empty for the main one.
  Task<BusReply> Call(QString interface, QString method, QVariantList arguments);
  Task<BusReply> CallAt(QString path, QString interface, QString method, QVariantList arguments);

 private:
  QDBusConnection& Bus();
  Task<BusReply> Send(QDBusMessage call);

  QString address_;
  std::optional<QDBusConnection> bus_;
};

}  // namespace quayline
