// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/socket_readiness.h"

#include <QTimer>

#include <utility>

namespace quayline {

void SocketReadiness::Use(int socket) {
  socket_ = socket;
  for (QSocketNotifier** each : {&read_, &write_}) {
    if (QSocketNotifier* old = std::exchange(*each, nullptr)) {
      old->setEnabled(false);
      old->deleteLater();  // this may run inside its signal
    }
  }
}

void SocketReadiness::PauseReading(std::chrono::milliseconds time) {
  SetReading(false);
  QTimer::singleShot(time, read_, [notifier = read_] { notifier->setEnabled(true); });
}

void SocketReadiness::Set(QSocketNotifier*& notifier, QSocketNotifier::Type type, bool enabled) {
  if (notifier == nullptr && enabled && socket_ >= 0) {
    notifier = new QSocketNotifier(socket_, type, this);
    connect(
        notifier, &QSocketNotifier::activated, this,
        type == QSocketNotifier::Read ? &SocketReadiness::readable : &SocketReadiness::writable);
  } else if (notifier != nullptr) {
    notifier->setEnabled(enabled);
  }
}

}  // namespace quayline
