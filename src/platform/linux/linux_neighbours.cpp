// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_neighbours.h"

#include <QDeadlineTimer>

#include <arpa/inet.h>
#include <cstring>
#include <linux/neighbour.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "async/wait.h"
#include "platform/linux/netlink_dump.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr auto kInterval = 50ms;
constexpr quint16 kDiscardPort = 9;
constexpr int kSettled = NUD_REACHABLE | NUD_PERMANENT | NUD_NOARP;

// Through the adapter, and not through a router, even where the address is in another network than
// the adapter's own.
bool SendDatagram(int adapter, quint32 address) {
  const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (socket < 0) {
    return false;
  }
  sockaddr_in target = {};
  target.sin_family = AF_INET;
  target.sin_port = htons(kDiscardPort);
  target.sin_addr.s_addr = htonl(address);
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof(in_pktinfo))] = {};
  msghdr message = {};
  message.msg_name = &target;
  message.msg_namelen = sizeof target;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  cmsghdr* header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = IPPROTO_IP;
  header->cmsg_type = IP_PKTINFO;
  header->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
  in_pktinfo place = {};
  place.ipi_ifindex = adapter;
  std::memcpy(CMSG_DATA(header), &place, sizeof place);
  const bool is_sent = sendmsg(socket, &message, MSG_DONTROUTE) >= 0;
  close(socket);
  return is_sent;
}

// What the kernel knows of the neighbour now.
NeighbourAnswer Look(int adapter, quint32 address) {
  ndmsg request = {};
  request.ndm_family = AF_INET;
  const QByteArray bytes(reinterpret_cast<const char*>(&request), sizeof request);
  const auto rows = DumpNetlinkTable(NETLINK_ROUTE, RTM_GETNEIGH, bytes);
  for (const QByteArray& message : rows.value_or(QList<QByteArray>())) {
    const RouteRow<ndmsg> row(message);
    const auto neighbour = row.attributes.Value<in_addr>(NDA_DST, {});
    if (row.fixed.ndm_ifindex != adapter || ntohl(neighbour.s_addr) != address) {
      continue;
    }
    if ((row.fixed.ndm_state & NUD_FAILED) != 0) {
      return {.kind = NeighbourAnswer::Kind::kSilence};
    }
    const rtattr* hardware = row.attributes.Find(NDA_LLADDR);
    if ((row.fixed.ndm_state & kSettled) != 0 && hardware != nullptr) {
      return {.kind = NeighbourAnswer::Kind::kAnswers,
              .hardware_address = QByteArray(static_cast<const char*>(RTA_DATA(hardware)),
                                             static_cast<qsizetype>(RTA_PAYLOAD(hardware)))};
    }
  }
  return {};
}

}  // namespace

Task<NeighbourAnswer> LinuxNeighbours::Ask(int adapter, quint32 address,
                                           std::chrono::milliseconds limit) {
  const QDeadlineTimer deadline(limit);
  NeighbourAnswer answer;
  if (!SendDatagram(adapter, address)) {
    co_return answer;
  }
  // The kernel signals a change of its table only to sockets that get all of them, so the row is
  // read again. What an earlier question found out is confirmed before it counts as an answer.
  while (answer.kind == NeighbourAnswer::Kind::kUnknown && !deadline.hasExpired()) {
    co_await Sleep(kInterval);
    answer = Look(adapter, address);
  }
  co_return answer;
}

}  // namespace quayline
