// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_echoes.h"

#include <QScopeGuard>
#include <QSocketNotifier>

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

#include "async/wait.h"

// The kernel's headers, in the order in which they need each other.
#include <linux/errqueue.h>
#include <linux/icmp.h>
#include <netinet/in.h>

namespace quayline {

namespace {

constexpr int kPayload = 32;
constexpr int kLongestAnswer = 512;

QString Dotted(in_addr address) {
  char text[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &address, text, sizeof text);
  return QString::fromLatin1(text);
}

// The answer of a computer on the way, which the kernel keeps apart from replies.
std::optional<EchoReply> TakeError(int socket) {
  char data[kLongestAnswer];
  alignas(cmsghdr) char control[kLongestAnswer];
  iovec place{data, sizeof data};
  msghdr message = {};
  message.msg_iov = &place;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  if (recvmsg(socket, &message, MSG_ERRQUEUE | MSG_DONTWAIT) < 0) {
    return std::nullopt;
  }
  for (cmsghdr* each = CMSG_FIRSTHDR(&message); each != nullptr;
       each = CMSG_NXTHDR(&message, each)) {
    if (each->cmsg_level != IPPROTO_IP || each->cmsg_type != IP_RECVERR) {
      continue;
    }
    struct {
      sock_extended_err error;
      sockaddr_in offender;
    } answer = {};
    std::memcpy(&answer, CMSG_DATA(each), sizeof answer);
    if (answer.error.ee_origin == SO_EE_ORIGIN_ICMP) {
      const bool is_hop = answer.error.ee_type == ICMP_TIME_EXCEEDED;
      return EchoReply{is_hop ? EchoReply::Kind::kHop : EchoReply::Kind::kRefused,
                       Dotted(answer.offender.sin_addr)};
    }
  }
  return std::nullopt;
}

std::optional<EchoReply> TakeReply(int socket) {
  icmphdr header = {};
  sockaddr_in sender = {};
  socklen_t size = sizeof sender;
  const ssize_t count = recvfrom(socket, &header, sizeof header, MSG_DONTWAIT,
                                 reinterpret_cast<sockaddr*>(&sender), &size);
  if (count < static_cast<ssize_t>(sizeof header) || header.type != ICMP_ECHOREPLY) {
    return std::nullopt;
  }
  return EchoReply{EchoReply::Kind::kReached, Dotted(sender.sin_addr)};
}

bool SendRequest(int socket, in_addr target, int ttl) {
  struct {
    icmphdr header;
    char payload[kPayload];
  } request = {};
  request.header.type = ICMP_ECHO;
  request.header.un.echo.sequence = htons(static_cast<quint16>(ttl));
  std::memset(request.payload, ' ', sizeof request.payload);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr = target;
  const int on = 1;
  return setsockopt(socket, IPPROTO_IP, IP_RECVERR, &on, sizeof on) == 0 &&
         setsockopt(socket, IPPROTO_IP, IP_TTL, &ttl, sizeof ttl) == 0 &&
         sendto(socket, &request, sizeof request, 0, reinterpret_cast<const sockaddr*>(&address),
                sizeof address) >= 0;
}

}  // namespace

Task<EchoReply> LinuxEchoes::Send(QString target, int ttl, std::chrono::milliseconds limit) {
  in_addr address = {};
  if (inet_pton(AF_INET, target.toLatin1().constData(), &address) != 1) {
    co_return EchoReply();
  }
  const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_ICMP);
  if (socket < 0) {
    co_return EchoReply{
        errno == EACCES || errno == EPERM ? EchoReply::Kind::kForbidden : EchoReply::Kind::kSilence,
        QString()};
  }
  const auto close_socket = qScopeGuard([socket] { close(socket); });
  if (!SendRequest(socket, address, ttl)) {
    co_return EchoReply();
  }
  std::optional<EchoReply> reply;
  QSocketNotifier notifier(socket, QSocketNotifier::Read);
  co_await Until([&] {
    if (!reply) {
      reply = TakeError(socket);
    }
    if (!reply) {
      reply = TakeReply(socket);
    }
    return reply.has_value();
  })
      .WokenBy(&notifier, &QSocketNotifier::activated)
      .AtMost(limit);
  co_return reply.value_or(EchoReply());
}

}  // namespace quayline
