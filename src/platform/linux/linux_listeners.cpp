// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_listeners.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <arpa/inet.h>
#include <dirent.h>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/linux/netlink_dump.h"

// The kernel's headers, in the order in which they need each other.
#include <linux/sock_diag.h>
// clang-format off
#include <linux/inet_diag.h>
// clang-format on

namespace quayline {

namespace {

// The kernel's numbers for the states of a socket. A UDP socket without a partner is "closed".
constexpr unsigned kTcpListen = 10;
constexpr unsigned kTcpClose = 7;

struct Socket {
  Listener listener;
  quint32 inode = 0;
};

QString AddressText(const inet_diag_msg& message, bool* is_mapped) {
  char text[INET6_ADDRSTRLEN] = {};
  const auto* address = reinterpret_cast<const in6_addr*>(message.id.idiag_src);
  *is_mapped = message.idiag_family == AF_INET6 && IN6_IS_ADDR_V4MAPPED(address);
  const void* const bytes = *is_mapped ? static_cast<const void*>(&message.id.idiag_src[3])
                                       : static_cast<const void*>(message.id.idiag_src);
  const int family = *is_mapped ? AF_INET : message.idiag_family;
  inet_ntop(family, bytes, text, sizeof(text));
  return QString::fromLatin1(text);
}

bool AddSockets(quint8 family, bool is_udp, QList<Socket>& sockets) {
  inet_diag_req_v2 request = {};
  request.sdiag_family = family;
  request.sdiag_protocol = is_udp ? IPPROTO_UDP : IPPROTO_TCP;
  request.idiag_states = 1U << (is_udp ? kTcpClose : kTcpListen);
  const auto rows =
      DumpNetlinkTable(NETLINK_SOCK_DIAG, SOCK_DIAG_BY_FAMILY,
                       QByteArray(reinterpret_cast<const char*>(&request), sizeof(request)));
  if (!rows) {
    return false;
  }
  for (const QByteArray& row : *rows) {
    const RouteRow<inet_diag_msg> socket(row);
    const inet_diag_msg& message = socket.fixed;
    bool is_mapped = false;
    const QString address = AddressText(message, &is_mapped);
    const bool is_ipv6_only = socket.attributes.Value<quint8>(INET_DIAG_SKV6ONLY, 0) != 0;
    sockets.append({.listener = {.is_udp = is_udp,
                                 .port = ntohs(message.id.idiag_sport),
                                 .address = address,
                                 .takes_ipv4 = address == QLatin1String("::") && !is_ipv6_only,
                                 .program = {}},
                    .inode = message.idiag_inode});
  }
  return true;
}

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

// The inodes of the sockets that a process has open. Nothing is read of another user's.
void AddSocketsOf(const QByteArray& process, const QString& program,
                  QHash<quint32, QString>& programs) {
  const QByteArray files = "/proc/" + process + "/fd";
  const std::unique_ptr<DIR, CloseFolder> folder(opendir(files.constData()));
  while (const dirent* file = folder ? readdir(folder.get()) : nullptr) {
    constexpr char kSocket[] = "socket:[";
    char target[64] = {};
    const ssize_t size =
        readlink((files + '/' + file->d_name).constData(), target, sizeof(target) - 1);
    const QByteArray link(target, std::max<ssize_t>(size, 0));
    if (link.startsWith(kSocket)) {
      const quint32 inode = link.sliced(qstrlen(kSocket)).chopped(1).toUInt();
      // A process and what it has started share sockets: the older one has the lower number.
      if (programs.contains(inode) && programs[inode].isEmpty()) {
        programs[inode] = program;
      }
    }
  }
}

void NamePrograms(QList<Socket>& sockets) {
  QHash<quint32, QString> programs;
  for (const Socket& socket : std::as_const(sockets)) {
    programs.insert(socket.inode, {});
  }
  const QStringList processes =
      QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
  for (const QString& process : processes) {
    QFile name(QStringLiteral("/proc/%1/comm").arg(process));
    if (name.open(QIODevice::ReadOnly)) {
      AddSocketsOf(process.toLatin1(), QString::fromUtf8(name.readAll()).trimmed(), programs);
    }
  }
  for (Socket& socket : sockets) {
    socket.listener.program = programs.value(socket.inode);
  }
}

}  // namespace

std::optional<QList<Listener>> LinuxListeners::List() const {
  QList<Socket> sockets;
  // A kernel may lack IPv6, or the diagnosis of UDP.
  const bool has_tcp = AddSockets(AF_INET, false, sockets);
  AddSockets(AF_INET6, false, sockets);
  const bool has_udp = AddSockets(AF_INET, true, sockets);
  AddSockets(AF_INET6, true, sockets);
  if (!has_tcp || !has_udp) {
    return std::nullopt;
  }
  NamePrograms(sockets);
  QList<Listener> listeners;
  for (const Socket& socket : std::as_const(sockets)) {
    listeners.append(socket.listener);
  }
  return listeners;
}

}  // namespace quayline
