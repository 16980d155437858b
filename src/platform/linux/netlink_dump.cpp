// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/netlink_dump.h"

#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace quayline {

namespace {

constexpr int kMostReadings = 5;
constexpr qsizetype kBufferSize = qsizetype{64} << 10;  // the kernel sends at most 32 KiB

enum class Reading { kMore, kWhole, kChanged, kFailed };

// Adds the messages of one datagram to `rows`.
Reading TakeMessages(const char* data, ssize_t size, QList<QByteArray>* rows) {
  bool changed = false;
  const auto* message = reinterpret_cast<const nlmsghdr*>(data);
  for (auto left = static_cast<unsigned>(size); NLMSG_OK(message, left);
       message = NLMSG_NEXT(message, left)) {
    changed = changed || (message->nlmsg_flags & NLM_F_DUMP_INTR) != 0;
    if (message->nlmsg_type == NLMSG_ERROR) {
      return Reading::kFailed;
    }
    if (message->nlmsg_type == NLMSG_DONE) {
      return changed ? Reading::kChanged : Reading::kWhole;
    }
    rows->append(QByteArray(reinterpret_cast<const char*>(message), message->nlmsg_len));
  }
  return changed ? Reading::kChanged : Reading::kMore;
}

bool SendRequest(int socket, quint16 type, const QByteArray& request) {
  nlmsghdr header = {};
  header.nlmsg_len = static_cast<quint32>(NLMSG_LENGTH(request.size()));
  header.nlmsg_type = type;
  header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  const QByteArray message =
      QByteArray(reinterpret_cast<const char*>(&header), sizeof(header)) + request;
  return send(socket, message.constData(), static_cast<size_t>(message.size()), 0) ==
         message.size();
}

Reading ReadOnce(int protocol, quint16 type, const QByteArray& request, QList<QByteArray>* rows) {
  // A socket for each reading: the rest of an answer that was given up cannot reach the next one.
  const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, protocol);
  if (socket < 0) {
    return Reading::kFailed;
  }
  Reading state = SendRequest(socket, type, request) ? Reading::kMore : Reading::kFailed;
  QByteArray buffer(kBufferSize, Qt::Uninitialized);
  while (state == Reading::kMore) {
    const ssize_t size = recv(socket, buffer.data(), kBufferSize, MSG_TRUNC);
    if (size < 0 && errno == EINTR) {
      continue;
    }
    const bool is_whole = size > 0 && size <= kBufferSize;
    state = is_whole ? TakeMessages(buffer.constData(), size, rows) : Reading::kFailed;
  }
  close(socket);
  return state;
}

}  // namespace

const rtattr* RouteAttributes::Find(int type) const {
  auto left = static_cast<int>(length_);
  for (const rtattr* each = first_; RTA_OK(each, left); each = RTA_NEXT(each, left)) {
    if (each->rta_type == type) {
      return each;
    }
  }
  return nullptr;
}

std::optional<QList<QByteArray>> DumpRouteTable(quint16 request, quint8 family) {
  rtgenmsg body = {};
  body.rtgen_family = family;
  QByteArray bytes(reinterpret_cast<const char*>(&body), sizeof(body));
  bytes.resize(NLMSG_ALIGN(sizeof(body)), '\0');
  return DumpNetlinkTable(NETLINK_ROUTE, request, bytes);
}

std::optional<QList<QByteArray>> DumpNetlinkTable(int protocol, quint16 type,
                                                  const QByteArray& request) {
  for (int i = 0; i < kMostReadings; ++i) {
    QList<QByteArray> rows;
    switch (ReadOnce(protocol, type, request, &rows)) {
      case Reading::kWhole:
        return rows;
      case Reading::kChanged:
        break;
      case Reading::kMore:
      case Reading::kFailed:
        return std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace quayline
