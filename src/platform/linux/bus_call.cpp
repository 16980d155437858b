// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/bus_call.h"

#include <QDBusPendingCallWatcher>

#include "async/wait.h"

namespace quayline {

Task<BusReply> CallBus(QDBusConnection bus, QDBusMessage call, std::chrono::milliseconds limit) {
  if (!bus.isConnected()) {
    co_return std::unexpected(
        QDBusError(QDBusError::Disconnected, QStringLiteral("There is no message bus.")));
  }
  OneShot<QDBusMessage> answer;
  QDBusPendingCallWatcher watcher(bus.asyncCall(call, static_cast<int>(limit.count())));
  QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &watcher,
                   [deliver = answer.Callback()](const QDBusPendingCallWatcher* ended) {
                     deliver(ended->reply());
                   });
  const std::optional<QDBusMessage> reply = co_await answer;
  if (!reply || reply->type() == QDBusMessage::ErrorMessage) {
    co_return std::unexpected(reply ? QDBusError(*reply) : QDBusError());
  }
  co_return reply->arguments();
}

}  // namespace quayline
