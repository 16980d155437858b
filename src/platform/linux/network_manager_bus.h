// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QObject>
#include <QVariantMap>

#include <optional>

#include "platform/linux/bus_call.h"

namespace quayline {

// A connection profile as NetworkManager passes it: its settings by group ("ipv4") and name.
using NetworkProfile = QMap<QString, QVariantMap>;

// Calls of NetworkManager's methods. The connection to the bus is made with the first one.
class NetworkManagerBus final : public QObject {
  Q_OBJECT

 public:
  // Of a message bus; empty for the system's.
  explicit NetworkManagerBus(QString address) : address_(std::move(address)) {}

  // A method of the object at `path`; `interface` without the common beginning, empty for the main
  // one. Lets the service ask the user for a password.
  Task<BusReply> Call(QString path, QString interface, QString method, QVariantList arguments);
  // All properties of an object; empty if there are none.
  Task<QVariantMap> Properties(QString path, QString interface);
  // Grows with every property of NetworkManager's objects that changes.
  quint64 Changes() const { return changes_; }

 Q_SIGNALS:
  // Changes() has grown.
  void changed();

 private:
  Q_SLOT void NoteChange();
  QDBusConnection& Bus();
  Task<BusReply> Send(QString path, QString full_interface, QString method, QVariantList arguments);

  QString address_;
  std::optional<QDBusConnection> bus_;
  quint64 changes_ = 0;
};

}  // namespace quayline
