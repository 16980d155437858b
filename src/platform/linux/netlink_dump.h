// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <cstring>
#include <optional>

// The kernel's headers, in the order in which they need each other.
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

namespace quayline {

// Asks the kernel for one of its tables (RTM_GETLINK, RTM_GETADDR or RTM_GETROUTE) of one address
// family: the rows, each a whole netlink message, in the kernel's order. A table that changes while
// it is read is read again. Nothing when the kernel gives no whole answer.
std::optional<QList<QByteArray>> DumpRouteTable(quint16 request, quint8 family);

// The same for a table of another of the kernel's netlink protocols: `request` is the fixed part
// that follows the header of the message.
std::optional<QList<QByteArray>> DumpNetlinkTable(int protocol, quint16 type,
                                                  const QByteArray& request);

// A view of the attributes in the `length` bytes from `first`, one after the other.
class RouteAttributes final {
 public:
  RouteAttributes(const rtattr* first, qsizetype length) : first_(first), length_(length) {}

  // Null when the list has no such attribute.
  const rtattr* Find(int type) const;

  // The value of an attribute, or `fallback` where it is missing or shorter than a T.
  template <typename T>
  T Value(int type, T fallback) const {
    const rtattr* found = Find(type);
    if (found != nullptr && RTA_PAYLOAD(found) >= sizeof(T)) {
      std::memcpy(&fallback, RTA_DATA(found), sizeof(T));
    }
    return fallback;
  }

 private:
  const rtattr* first_;
  qsizetype length_;
};

// One row of a dump taken apart: its fixed part (ifinfomsg, ifaddrmsg, rtmsg) and its attributes,
// which point into `message`.
template <typename Fixed>
struct RouteRow {
  explicit RouteRow(const QByteArray& message)
      : attributes(reinterpret_cast<const rtattr*>(message.constData() + kFixedEnd),
                   message.size() - kFixedEnd) {
    if (message.size() >= kFixedEnd) {
      std::memcpy(&fixed, message.constData() + NLMSG_HDRLEN, sizeof(Fixed));
    }
  }

  static constexpr qsizetype kFixedEnd = NLMSG_HDRLEN + NLMSG_ALIGN(sizeof(Fixed));

  Fixed fixed = {};
  RouteAttributes attributes;
};

}  // namespace quayline
