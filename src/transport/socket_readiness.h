// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <QTimer>

#include <chrono>

namespace quayline {

// Reports when a socket can be read and written, while that is asked for. It may be destroyed in a
// handler of its own signals.
class SocketReadiness final : public QObject {
  Q_OBJECT

 public:
  explicit SocketReadiness(QObject* parent);

  // Reports this socket from now on, with both off. -1 for none. To be called before the socket is
  // closed, since its number may be given to another.
  void Use(int socket);
  void SetReading(bool enabled) { Set(read_, QSocketNotifier::Read, enabled); }
  void SetWriting(bool enabled) { Set(write_, QSocketNotifier::Write, enabled); }
  void PauseReading(std::chrono::milliseconds time);

 Q_SIGNALS:
  void readable();
  void writable();

 private:
  void Set(QSocketNotifier*& notifier, QSocketNotifier::Type type, bool enabled);

  int socket_ = -1;
  QTimer pause_;
  QSocketNotifier* read_ = nullptr;
  QSocketNotifier* write_ = nullptr;
};

}  // namespace quayline
