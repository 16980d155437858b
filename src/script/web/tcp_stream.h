// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QSocketNotifier>

#include <chrono>
#include <memory>

namespace quayline {

// One TCP connection on the event loop. Unlike QTcpSocket it reports how the other side ended the
// connection (an orderly end or a reset, and the exact errno of a failed connect), can end its own
// side either way, and knows whether the other side has received anything. Data is passed on as it
// arrives; nothing is buffered for reading.
class TcpStream final : public QObject {
  Q_OBJECT

 public:
  explicit TcpStream(QObject* parent) : QObject(parent) {}
  ~TcpStream() override;

  // Takes over a connected, non-blocking socket.
  void Adopt(int descriptor);
  // Replaces whatever connection there was. The outcome is reported by connected() or ended(), and
  // always from the event loop. Never goes through a proxy.
  void ConnectTo(const QHostAddress& address, quint16 port);

  bool IsOpen() const { return descriptor_ >= 0; }
  void Write(QByteArrayView bytes);
  qsizetype UnsentBytes() const { return unsent_.size(); }
  // Whether data is read when it arrives. Off, the other side is slowed down by TCP itself.
  void SetReading(bool reading);
  // Ends this side in order after the last byte was sent; data that still arrives is dropped. The
  // socket is closed when the other side has ended too, or after `patience`.
  void CloseWhenSent(std::chrono::milliseconds patience = {});
  // The same, but the other side sees a reset.
  void ResetWhenSent();
  // True when the other side's system has not acknowledged one byte of what was written. Valid
  // inside a slot of ended().
  bool IsUnreceived() const;

 Q_SIGNALS:
  void connected();
  void received(const QByteArray& bytes);
  // Everything that was written has been handed to the system.
  void allSent();
  // The other side ended the connection: 0 for an orderly end, otherwise the errno. Comes once, and
  // not after a Close or Reset of our own.
  void ended(int error);
  // The socket is closed, whichever side began.
  void closed();

 private:
  enum class State { kConnecting, kOpen, kClosing, kClosed };

  void Watch();
  void OnReadable();
  void OnWritable();
  bool Send();
  void End(int error);
  // This side is over.
  void CloseNow();
  void Release();

  int descriptor_ = -1;
  State state_ = State::kOpen;  // kClosed: this side alone
  std::chrono::milliseconds patience_{};
  bool reset_ = false;      // on closing
  bool was_reset_ = false;  // by the other side
  int connections_ = 0;     // counts them, so that one is not taken for the next
  QByteArray unsent_;
  std::unique_ptr<QSocketNotifier> read_;
  std::unique_ptr<QSocketNotifier> write_;
};

}  // namespace quayline
