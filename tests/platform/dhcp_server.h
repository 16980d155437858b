// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>

#include <fcntl.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quayline::testing {

// Gives 192.168.77.30 to whoever asks on the adapter "lan" of the network namespace "router", as
// the router 192.168.77.1 with the DNS server 192.168.77.1.
class DhcpServer final {
 public:
  DhcpServer() {
    const int home = open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
    const int router = open("/run/netns/router", O_RDONLY | O_CLOEXEC);
    if (setns(router, CLONE_NEWNET) == 0) {
      socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
      setns(home, CLONE_NEWNET);
    }
    close(home);
    close(router);
    const int on = 1;
    sockaddr_in own = Address(INADDR_ANY, 67);
    setsockopt(socket_, SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
    setsockopt(socket_, SOL_SOCKET, SO_BINDTODEVICE, "lan", 3);
    is_ready_ = bind(socket_, reinterpret_cast<sockaddr*>(&own), sizeof own) == 0;
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { Answer(); });
  }
  ~DhcpServer() { close(socket_); }
  DhcpServer(const DhcpServer&) = delete;
  DhcpServer& operator=(const DhcpServer&) = delete;

  bool IsReady() const { return is_ready_; }

 private:
  static constexpr qsizetype kOptions = 240;  // behind the fixed fields and the magic number

  static sockaddr_in Address(in_addr_t host, quint16 port) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(host);
    return address;
  }

  void Answer() {
    QByteArray packet(1500, '\0');
    packet.resize(std::max(recv(socket_, packet.data(), 1500, 0), ssize_t{0}));
    const qsizetype type = packet.indexOf(QByteArray("\x35\x01", 2), kOptions);
    if (packet.size() < kOptions || type < 0) {
      return;
    }
    const char reply = packet[type + 2] == 1 ? 2 : 5;  // a discovery is offered, a request granted
    packet.resize(kOptions);
    packet[0] = 2;
    packet.replace(16, 4, QByteArray("\xc0\xa8\x4d\x1e", 4));
    packet.append("\x35\x01").append(reply);
    packet.append(QByteArray("\x36\x04\xc0\xa8\x4d\x01\x01\x04\xff\xff\xff\x00", 12));
    packet.append(QByteArray("\x03\x04\xc0\xa8\x4d\x01\x06\x04\xc0\xa8\x4d\x01", 12));
    packet.append(QByteArray("\x33\x04\x00\x00\x0e\x10\xff", 7));
    packet.append(QByteArray(64, '\0'));
    sockaddr_in everyone = Address(INADDR_BROADCAST, 68);
    sendto(socket_, packet.constData(), static_cast<size_t>(packet.size()), 0,
           reinterpret_cast<sockaddr*>(&everyone), sizeof everyone);
  }

  int socket_ = -1;
  bool is_ready_ = false;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quayline::testing
