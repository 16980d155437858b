// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_adapters.h"

#include <QHash>

#include <algorithm>
#include <arpa/inet.h>
#include <limits>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/linux/netlink_dump.h"

namespace quayline {

namespace {

// A reserved address that means "anywhere in the internet" when a route is asked for.
constexpr char kSomewhere[] = "192.0.2.1";

QString Dotted(in_addr address) {
  char text[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &address, text, sizeof(text));
  return QString::fromLatin1(text);
}

QString DottedMask(int prefix_length) {
  const quint64 ones = ~quint64{0} << (32 - qBound(0, prefix_length, 32));
  return Dotted({htonl(static_cast<quint32>(ones))});
}

// Description and index of each adapter.
QList<Adapter> Links() {
  QList<Adapter> links;
  const auto rows = DumpRouteTable(RTM_GETLINK, AF_UNSPEC);
  for (const QByteArray& message : rows.value_or(QList<QByteArray>())) {
    const RouteRow<ifinfomsg> row(message);
    const rtattr* name = row.attributes.Find(IFLA_IFNAME);
    if ((row.fixed.ifi_flags & IFF_LOOPBACK) == 0 && name != nullptr) {
      Adapter adapter;
      adapter.description = QString::fromUtf8(static_cast<const char*>(RTA_DATA(name)));
      adapter.index = row.fixed.ifi_index;
      links.append(adapter);
    }
  }
  return links;
}

struct OwnAddress {
  int adapter = 0;
  QString address;
  QString mask;
};

QList<OwnAddress> OwnAddresses() {
  QList<OwnAddress> addresses;
  const auto rows = DumpRouteTable(RTM_GETADDR, AF_INET);
  for (const QByteArray& message : rows.value_or(QList<QByteArray>())) {
    const RouteRow<ifaddrmsg> row(message);
    // On a point-to-point link IFA_ADDRESS is the other end; IFA_LOCAL is always our own.
    const auto peer = row.attributes.Value<in_addr>(IFA_ADDRESS, {});
    const auto own = row.attributes.Value<in_addr>(IFA_LOCAL, peer);
    if (row.fixed.ifa_family == AF_INET) {
      addresses.append({static_cast<int>(row.fixed.ifa_index), Dotted(own),
                        DottedMask(row.fixed.ifa_prefixlen)});
    }
  }
  return addresses;
}

// Collects for each adapter the gateway of the default route that the kernel prefers.
class Gateways final {
 public:
  void AddRoute(const RouteRow<rtmsg>& row) {
    const RouteAttributes& attributes = row.attributes;
    const auto table = attributes.Value<quint32>(RTA_TABLE, row.fixed.rtm_table);
    if (row.fixed.rtm_family != AF_INET || row.fixed.rtm_dst_len != 0 ||
        row.fixed.rtm_type != RTN_UNICAST || table != RT_TABLE_MAIN) {
      return;
    }
    const auto metric = attributes.Value<quint32>(RTA_PRIORITY, 0);
    AddHop(attributes, attributes.Value<int>(RTA_OIF, 0), row.fixed.rtm_flags, metric);
    if (const rtattr* hops = attributes.Find(RTA_MULTIPATH)) {
      AddHops(*hops, metric);
    }
  }

  QString Of(int adapter) const {
    const auto found = best_.constFind(adapter);
    return found == best_.constEnd() ? Adapter().gateway : Dotted(found->gateway);
  }

 private:
  struct Best {
    in_addr gateway = {};
    quint32 metric = 0;
  };

  void AddHop(const RouteAttributes& attributes, int adapter, unsigned flags, quint32 metric) {
    const auto gateway = attributes.Value<in_addr>(RTA_GATEWAY, {});
    // The route of a cable that is pulled out stays, with the flag that it leads nowhere.
    const bool is_alive = (flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) == 0;
    const auto known = best_.constFind(adapter);
    const bool is_better = known == best_.constEnd() || metric < known->metric;
    if (gateway.s_addr != 0 && is_alive && is_better) {
      best_.insert(adapter, {gateway, metric});
    }
  }

  // A route over several adapters carries a list of hops, each with attributes of its own.
  void AddHops(const rtattr& hops, quint32 metric) {
    const auto* hop = static_cast<const rtnexthop*>(RTA_DATA(&hops));
    auto left = static_cast<int>(RTA_PAYLOAD(&hops));
    while (left >= static_cast<int>(sizeof(rtnexthop)) && RTNH_OK(hop, left)) {
      const RouteAttributes attributes(RTNH_DATA(hop), hop->rtnh_len - RTNH_LENGTH(0));
      AddHop(attributes, hop->rtnh_ifindex, hop->rtnh_flags, metric);
      left -= RTNH_ALIGN(hop->rtnh_len);
      hop = RTNH_NEXT(hop);
    }
  }

  QHash<int, Best> best_;
};

Gateways ReadGateways() {
  Gateways gateways;
  const auto rows = DumpRouteTable(RTM_GETROUTE, AF_INET);
  for (const QByteArray& message : rows.value_or(QList<QByteArray>())) {
    gateways.AddRoute(RouteRow<rtmsg>(message));
  }
  return gateways;
}

}  // namespace

QList<Adapter> LinuxAdapters::List() const {
  QList<Adapter> adapters = Links();
  const QList<OwnAddress> addresses = OwnAddresses();
  const Gateways gateways = ReadGateways();
  for (Adapter& adapter : adapters) {
    const auto own = std::ranges::find(addresses, adapter.index, &OwnAddress::adapter);
    if (own != addresses.end()) {
      adapter.address = own->address;
      adapter.mask = own->mask;
    }
    adapter.gateway = gateways.Of(adapter.index);
  }
  return adapters;
}

QStringList LinuxAdapters::AddressTable() const {
  QStringList table;
  for (const OwnAddress& own : OwnAddresses()) {
    table.append(own.address);
  }
  return table;
}

QString LinuxAdapters::LocalAddress(const QString& host) const {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(9);
  const QByteArray target = host.isEmpty() ? QByteArray(kSomewhere) : host.toLatin1();
  if (inet_pton(AF_INET, target.constData(), &address.sin_addr) != 1) {
    return {};
  }
  const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (socket < 0) {
    return {};
  }
  // Connecting a datagram socket looks the route up and sends nothing.
  socklen_t size = sizeof(address);
  const bool is_known =
      connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
      getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0;
  close(socket);
  return is_known ? Dotted(address.sin_addr) : QString();
}

}  // namespace quayline
