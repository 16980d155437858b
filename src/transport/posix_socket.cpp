// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/posix_socket.h"

#include <QScopeGuard>

#include <arpa/inet.h>
#include <cerrno>
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace quayline {

namespace {

sockaddr_in MakeAddress(in_addr address, quint16 port) {
  sockaddr_in result = {};
  result.sin_family = AF_INET;
  result.sin_addr = address;
  result.sin_port = htons(port);
  return result;
}

int ErrorOf(int result) { return result == 0 ? 0 : errno; }

}  // namespace

PosixSocket PosixSocket::Open(bool is_datagram) {
  const int kind = is_datagram ? SOCK_DGRAM : SOCK_STREAM;
  PosixSocket made(::socket(AF_INET, kind | SOCK_NONBLOCK | SOCK_CLOEXEC,
                            is_datagram ? IPPROTO_UDP : IPPROTO_TCP));
  const int on = 1;
  // Two datagram sockets that may share a port would take each other's datagrams.
  ::setsockopt(made.handle_, SOL_SOCKET, is_datagram ? SO_BROADCAST : SO_REUSEADDR, &on, sizeof on);
  return made;
}

int PosixSocket::Close() {
  const int handle = std::exchange(handle_, -1);
  return handle < 0 ? 0 : ErrorOf(::close(handle));
}

int PosixSocket::Bind(in_addr address, quint16 port) const {
  const sockaddr_in own = MakeAddress(address, port);
  return ErrorOf(::bind(handle_, reinterpret_cast<const sockaddr*>(&own), sizeof own));
}

int PosixSocket::Connect(in_addr address, quint16 port) const {
  const sockaddr_in peer = MakeAddress(address, port);
  return ErrorOf(::connect(handle_, reinterpret_cast<const sockaddr*>(&peer), sizeof peer));
}

int PosixSocket::SendTo(QByteArrayView datagram, in_addr address, quint16 port) const {
  const sockaddr_in peer = MakeAddress(address, port);
  const ssize_t sent = ::sendto(handle_, datagram.data(), static_cast<size_t>(datagram.size()), 0,
                                reinterpret_cast<const sockaddr*>(&peer), sizeof peer);
  return sent < 0 ? errno : 0;
}

int PosixSocket::TakeError() const {
  int error = 0;
  socklen_t size = sizeof error;
  const int result = ::getsockopt(handle_, SOL_SOCKET, SO_ERROR, &error, &size);
  return result == 0 ? error : errno;
}

std::optional<sockaddr_in> PosixSocket::OwnAddress() const {
  sockaddr_in own = {};
  socklen_t size = sizeof own;
  const int result = ::getsockname(handle_, reinterpret_cast<sockaddr*>(&own), &size);
  return result == 0 ? std::optional(own) : std::nullopt;
}

std::expected<sockaddr_in, int> PosixSocket::PeerAddress() const {
  sockaddr_in peer = {};
  socklen_t size = sizeof peer;
  if (::getpeername(handle_, reinterpret_cast<sockaddr*>(&peer), &size) != 0) {
    return std::unexpected(errno);
  }
  return peer;
}

int PosixSocket::BufferSize(int option) const {
  int bytes = 0;
  socklen_t size = sizeof bytes;
  ::getsockopt(handle_, SOL_SOCKET, option, &bytes, &size);
  return bytes;
}

int PosixSocket::ReadableBytes() const {
  int bytes = 0;
  ::ioctl(handle_, FIONREAD, &bytes);
  return bytes;
}

QString Dotted(in_addr address) {
  char text[INET_ADDRSTRLEN] = {};
  ::inet_ntop(AF_INET, &address, text, sizeof text);
  return QString::fromLatin1(text);
}

std::optional<in_addr> AddressOfText(const QString& text) {
  const in_addr_t address = ::inet_addr(text.toLatin1().constData());
  return address == INADDR_NONE ? std::nullopt : std::optional(in_addr{address});
}

std::expected<in_addr, int> ResolveNow(const QString& host) {
  if (host.isEmpty()) {
    return FirstOwnAddress();
  }
  if (const auto address = AddressOfText(host)) {
    return *address;
  }
  addrinfo wanted = {};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  const int error = ::getaddrinfo(host.toUtf8().constData(), nullptr, &wanted, &found);
  if (error != 0) {
    return std::unexpected(error);
  }
  const in_addr address = reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr;
  ::freeaddrinfo(found);
  return address;
}

in_addr FirstOwnAddress() {
  in_addr first = {htonl(INADDR_LOOPBACK)};
  ifaddrs* all = nullptr;
  if (::getifaddrs(&all) != 0) {
    return first;
  }
  const auto free = qScopeGuard([all] { ::freeifaddrs(all); });
  for (const ifaddrs* each = all; each != nullptr; each = each->ifa_next) {
    if (each->ifa_addr != nullptr && each->ifa_addr->sa_family == AF_INET &&
        (each->ifa_flags & IFF_LOOPBACK) == 0) {
      return reinterpret_cast<const sockaddr_in*>(each->ifa_addr)->sin_addr;
    }
  }
  return first;
}

}  // namespace quayline
