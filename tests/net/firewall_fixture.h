// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "net/router_chain.h"
#include "platform/linux/linux_firewall.h"
#include "test_main.h"

namespace quayline::testing {

using Qt::StringLiterals::operator""_s;

inline sockaddr_in AddressAt(const char* address, int port) {
  sockaddr_in all{.sin_family = AF_INET, .sin_port = htons(static_cast<in_port_t>(port))};
  inet_pton(AF_INET, address, &all.sin_addr);
  return all;
}

// A computer with a firewall, and another one on its network that sends packets to it.
class FirewallTest : public ::testing::Test {
 protected:
  explicit FirewallTest(const QString& bus = u"unix:path=/nonexistent"_s)
      : chain_({u"192.168.1"_s}),
        firewall_(std::make_unique<LinuxFirewall>(
            HelperLaunch::OfSystem(),
            FirewallPlaces{.ufw_settings = u"/nonexistent"_s, .bus = bus})) {}
  void SetUp() override {
    if (!chain_.IsReady() || !chain_.Run(u"nft list ruleset"_s)) {
      GTEST_SKIP() << "needs the right to make networks, iproute2 and nftables";
    }
  }

  // Whether a packet from outside arrives at a program on this port.
  bool Passes(int type, int port) const {
    const int inside = socket(AF_INET, type | SOCK_CLOEXEC, 0);
    const int outside = chain_.SocketOutside(type);
    const sockaddr_in any = AddressAt("0.0.0.0", port);
    const sockaddr_in target = AddressAt("192.168.1.2", port);
    EXPECT_EQ(bind(inside, reinterpret_cast<const sockaddr*>(&any), sizeof any), 0);
    if (type == SOCK_STREAM) {
      listen(inside, 1);
    }
    connect(outside, reinterpret_cast<const sockaddr*>(&target), sizeof target);
    if (type == SOCK_DGRAM) {
      send(outside, "x", 1, 0);
    }
    pollfd arrival{.fd = inside, .events = POLLIN};
    const bool arrived = poll(&arrival, 1, 300) == 1;
    close(inside);
    close(outside);
    return arrived;
  }

  FirewallView Look() {
    FirewallView view;
    EXPECT_TRUE(RunTask(LookInto(&view)));
    return view;
  }
  FirewallChange Change(bool adds, const QList<FirewallPorts>& ports) {
    FirewallChange change;
    EXPECT_TRUE(RunTask(ChangeInto(adds, ports, &change)));
    return change;
  }
  QStringList Names() {
    QStringList names;
    for (const FirewallRule& rule : Look().rules) {
      names.append(rule.name);
    }
    return names;
  }

  Task<> LookInto(FirewallView* view) {
    const auto seen = co_await firewall_->Look(Firewall::Asking::kAllowed);
    EXPECT_TRUE(seen.has_value());
    *view = seen.value_or(FirewallView());
  }
  Task<> ChangeInto(bool adds, QList<FirewallPorts> ports, FirewallChange* change) {
    const Firewall::Progress note = [this](qsizetype rule) { steps_.append(rule); };
    *change = adds ? co_await firewall_->Add(ports, note) : co_await firewall_->Remove(ports, note);
  }

  RouterChain chain_;
  std::unique_ptr<Firewall> firewall_;
  QList<qsizetype> steps_;
};

inline const FirewallPorts kWeb{8080, 8080, kTcpNumber};
inline const FirewallPorts kGame{6881, 6889, kUdpNumber};

}  // namespace quayline::testing
