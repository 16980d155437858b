// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

#include <expected>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <utility>

namespace quayline {

// Owns one open socket.
class PosixSocket final {
 public:
  PosixSocket() = default;
  explicit PosixSocket(int handle) : handle_(handle) {}
  PosixSocket(PosixSocket&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}
  PosixSocket& operator=(PosixSocket&& other) noexcept {
    Close();
    handle_ = std::exchange(other.handle_, -1);
    return *this;
  }
  ~PosixSocket() { Close(); }

  // A new IPv4 socket that never blocks and is not inherited by other programs. A datagram socket
  // may send to broadcast addresses. A stream socket may be bound to a port on which connections of
  // before still end, but not to one on which somebody listens. Without a handle on failure.
  static PosixSocket Open(bool is_datagram);

  int Handle() const { return handle_; }
  bool IsOpen() const { return handle_ >= 0; }
  // Returns 0 or an errno value. Does nothing when there is no socket.
  int Close();

  // The functions below return 0, or an errno value.
  int Bind(in_addr address, quint16 port) const;
  int Connect(in_addr address, quint16 port) const;
  int SendTo(QByteArrayView datagram, in_addr address, quint16 port) const;
  // The error of a connection attempt, or what else is pending.
  int TakeError() const;

  std::optional<sockaddr_in> OwnAddress() const;
  std::expected<sockaddr_in, int> PeerAddress() const;
  // The size of a system buffer: SO_RCVBUF or SO_SNDBUF.
  int BufferSize(int option) const;
  // The bytes that can be read; of a datagram socket, those of the next datagram.
  int ReadableBytes() const;

 private:
  int handle_ = -1;
};

QString Dotted(in_addr address);

// The address in the text: dotted, or one of the shorter forms that inet_addr() reads. Never
// 255.255.255.255.
std::optional<in_addr> AddressOfText(const QString& text);

// The address of the text or name, the first one of this computer for an empty text. A name is
// looked up at once, which blocks until the resolver answers. The error is that of getaddrinfo().
std::expected<in_addr, int> ResolveNow(const QString& host);

// The first address of this computer that others can reach; loopback if there is no other.
in_addr FirstOwnAddress();

}  // namespace quayline
