// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/socket_readiness.h"

#include <utility>

namespace quayline {

SocketReadiness::SocketReadiness(QObject* parent) : QObject(parent) {
  pause_.setSingleShot(true);
  connect(&pause_, &QTimer::timeout, this, [this] { SetReading(true); });
}

void SocketReadiness::Use(int socket) {
  socket_ = socket;
  pause_.stop();
  for (QSocketNotifier** each : {&read_, &write_}) {
    if (QSocketNotifier* old = std::exchange(*each, nullptr)) {
      old->setEnabled(false);
      old->deleteLater();  // this may run inside its signal
    }
  }
}

void SocketReadiness::PauseReading(std::chrono::milliseconds time) {
  SetReading(false);
  pause_.start(time);
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
