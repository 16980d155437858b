// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/tcp_stream.h"

#include <QPointer>
#include <QTimer>

#include <array>
#include <cerrno>
#include <cstring>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace quayline {

namespace {

constexpr qsizetype kReadAtOnce = qsizetype{64} << 10;

// The socket address of `address`, and its length.
socklen_t SocketAddress(const QHostAddress& address, quint16 port, sockaddr_storage* storage) {
  *storage = {};
  if (address.protocol() == QAbstractSocket::IPv4Protocol) {
    auto* ip4 = reinterpret_cast<sockaddr_in*>(storage);
    ip4->sin_family = AF_INET;
    ip4->sin_port = htons(port);
    ip4->sin_addr.s_addr = htonl(address.toIPv4Address());
    return sizeof *ip4;
  }
  auto* ip6 = reinterpret_cast<sockaddr_in6*>(storage);
  ip6->sin6_family = AF_INET6;
  ip6->sin6_port = htons(port);
  const Q_IPV6ADDR bytes = address.toIPv6Address();
  std::memcpy(&ip6->sin6_addr, &bytes, sizeof bytes);
  ip6->sin6_scope_id = address.scopeId().toUInt();
  return sizeof *ip6;
}

// Small writes go out at once: a request waits for nothing.
void SendAtOnce(int descriptor) {
  const int on = 1;
  setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

}  // namespace

TcpStream::~TcpStream() {
  blockSignals(true);
  Release();
}

void TcpStream::Adopt(int descriptor) {
  Release();
  descriptor_ = descriptor;
  state_ = State::kOpen;
  SendAtOnce(descriptor_);
  Watch();
}

void TcpStream::ConnectTo(const QHostAddress& address, quint16 port) {
  Release();
  unsent_.clear();
  state_ = State::kConnecting;
  sockaddr_storage storage;
  const socklen_t size = SocketAddress(address, port, &storage);
  descriptor_ = socket(storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  int error = descriptor_ < 0 ? errno : 0;
  if (error == 0) {
    SendAtOnce(descriptor_);
    const auto* const target = reinterpret_cast<const sockaddr*>(&storage);
    error = ::connect(descriptor_, target, size) == 0 ? 0 : errno;
  }
  if (error == 0 || error == EINPROGRESS) {
    Watch();
    return;
  }
  QTimer::singleShot(0, this, [this, error] { End(error); });
}

void TcpStream::Watch() {
  read_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
  write_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Write);
  read_->setEnabled(state_ == State::kOpen);
  write_->setEnabled(state_ == State::kConnecting);
  connect(read_.get(), &QSocketNotifier::activated, this, &TcpStream::OnReadable);
  connect(write_.get(), &QSocketNotifier::activated, this, &TcpStream::OnWritable);
}

void TcpStream::SetReading(bool reading) {
  if (read_ != nullptr && state_ == State::kOpen) {
    read_->setEnabled(reading);
  }
}

void TcpStream::Write(QByteArrayView bytes) {
  if (!IsOpen() || state_ == State::kClosing || state_ == State::kClosed) {
    return;
  }
  unsent_.append(bytes);
  if (state_ == State::kOpen && !write_->isEnabled()) {
    // What cannot be sent at once is sent from the event loop, errors included: a caller is never
    // called back from inside Write().
    Send();
    write_->setEnabled(!unsent_.isEmpty());
  }
}

// False when the connection has failed.
bool TcpStream::Send() {
  while (!unsent_.isEmpty()) {
    const ssize_t sent =
        send(descriptor_, unsent_.constData(), static_cast<size_t>(unsent_.size()), MSG_NOSIGNAL);
    if (sent < 0) {
      was_reset_ = was_reset_ || errno == ECONNRESET;
      return errno == EAGAIN || errno == EINTR;
    }
    unsent_.remove(0, sent);
  }
  return true;
}

void TcpStream::OnWritable() {
  if (state_ == State::kConnecting) {
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(descriptor_, SOL_SOCKET, SO_ERROR, &error, &size);
    if (error != 0) {
      End(error);
      return;
    }
    state_ = State::kOpen;
    read_->setEnabled(true);
    write_->setEnabled(!unsent_.isEmpty());
    Q_EMIT connected();
    return;
  }
  if (!Send()) {
    // The other side has closed. The data that it sent before is read first, and then its end.
    unsent_.clear();
    if (state_ == State::kClosing) {
      Release();
      return;
    }
    read_->setEnabled(true);
  }
  write_->setEnabled(!unsent_.isEmpty());
  if (!unsent_.isEmpty()) {
    return;
  }
  if (state_ == State::kClosing) {
    CloseNow();
  } else {
    Q_EMIT allSent();
  }
}

void TcpStream::OnReadable() {
  static std::array<char, kReadAtOnce> buffer;  // one thread, and nothing is left in it
  const ssize_t count = recv(descriptor_, buffer.data(), buffer.size(), 0);
  if (state_ == State::kClosed) {
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
      Release();
    }
    return;
  }
  if (count > 0) {
    Q_EMIT received(QByteArray(buffer.data(), count));
  } else if (count == 0) {
    End(was_reset_ ? ECONNRESET : 0);  // a failed write has taken the error from the socket
  } else if (errno != EAGAIN && errno != EINTR) {
    End(errno);
  }
}

void TcpStream::CloseWhenSent(std::chrono::milliseconds patience) {
  if (!IsOpen() || state_ == State::kClosed) {
    return;
  }
  patience_ = state_ == State::kConnecting ? std::chrono::milliseconds() : patience;
  state_ = State::kClosing;
  read_->setEnabled(false);
  if (unsent_.isEmpty()) {
    CloseNow();
  }
}

void TcpStream::CloseNow() {
  if (patience_.count() == 0 || shutdown(descriptor_, SHUT_WR) != 0) {
    Release();
    return;
  }
  state_ = State::kClosed;
  read_->setEnabled(true);
  QTimer::singleShot(patience_, this, [this, closing = connections_] {
    if (connections_ == closing) {
      Release();
    }
  });
}

void TcpStream::ResetWhenSent() {
  reset_ = true;
  CloseWhenSent();
}

bool TcpStream::IsUnreceived() const {
  tcp_info info = {};
  socklen_t size = sizeof info;
  if (descriptor_ < 0 || getsockopt(descriptor_, IPPROTO_TCP, TCP_INFO, &info, &size) != 0) {
    return false;
  }
  // The first acknowledged byte is the handshake's.
  return info.tcpi_bytes_acked <= 1;
}

void TcpStream::End(int error) {
  if (read_ != nullptr) {
    read_->setEnabled(false);
    write_->setEnabled(false);
  }
  const int ending = connections_;
  const QPointer<TcpStream> self(this);
  Q_EMIT ended(error);
  if (self != nullptr && connections_ == ending) {
    Release();
  }
}

void TcpStream::Release() {
  ++connections_;
  was_reset_ = false;
  // A notifier may be the caller.
  for (auto* notifier : {&read_, &write_}) {
    if (*notifier != nullptr) {
      (*notifier)->setEnabled(false);
      notifier->release()->deleteLater();
    }
  }
  if (descriptor_ < 0) {
    return;
  }
  if (std::exchange(reset_, false)) {
    const linger none{.l_onoff = 1, .l_linger = 0};
    setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &none, sizeof none);
  }
  close(std::exchange(descriptor_, -1));
  Q_EMIT closed();
}

}  // namespace quayline
