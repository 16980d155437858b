// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "net/router_chain.h"
#include "platform/linux/linux_firewall.h"
#include "test_main.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

sockaddr_in AddressAt(const char* address, int port) {
  sockaddr_in all{.sin_family = AF_INET, .sin_port = htons(static_cast<in_port_t>(port))};
  inet_pton(AF_INET, address, &all.sin_addr);
  return all;
}

// A computer with a firewall, and another one on its network that sends packets to it.
class FirewallTest : public ::testing::Test {
 protected:
  FirewallTest() : chain_({u"192.168.1"_s}) {}
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
    const auto seen = co_await firewall_.Look(Firewall::Asking::kAllowed);
    EXPECT_TRUE(seen.has_value());
    *view = seen.value_or(FirewallView());
  }
  Task<> ChangeInto(bool adds, QList<FirewallPorts> ports, FirewallChange* change) {
    const Firewall::Progress note = [this](qsizetype rule) { steps_.append(rule); };
    *change = adds ? co_await firewall_.Add(ports, note) : co_await firewall_.Remove(ports, note);
  }

  RouterChain chain_;
  LinuxFirewall firewall_{HelperLaunch::OfSystem(), {.ufw_settings = u"/nonexistent"_s}};
  QList<qsizetype> steps_;
};

const FirewallPorts kWeb{8080, 8080, kTcpNumber};
const FirewallPorts kGame{6881, 6889, kUdpNumber};

TEST_F(FirewallTest, PortsOfNftablesPassAfterTheyAreAddedAndNotAfterTheyAreRemoved) {
  EXPECT_EQ(Look().kind, FirewallKind::kNone) << "nothing filters yet";
  const FirewallChange nothing = Change(true, {kWeb});
  ASSERT_FALSE(nothing.result.has_value());
  EXPECT_EQ(nothing.result.error().fault, FirewallFault::kMissing);
  EXPECT_TRUE(Passes(SOCK_STREAM, 8080));

  // Two tables, of which either drops what the other one accepts.
  ASSERT_TRUE(chain_.Run(
      u"nft add table inet filter && "
      "nft add chain inet filter input '{ type filter hook input priority 0; policy drop; }' && "
      "nft add rule inet filter input ct state established accept && "
      "nft add rule inet filter input tcp dport 22 accept comment '\"ssh\"' && "
      "nft add rule inet filter input tcp dport 23 accept comment '\"qyl port 23\"' && "
      "nft add table ip other && "
      "nft add chain ip other late '{ type filter hook input priority 50; policy accept; }' && "
      "nft add rule ip other late tcp dport 8000-9000 reject"_s));
  const FirewallView before = Look();
  EXPECT_EQ(before.kind, FirewallKind::kNftables);
  EXPECT_FALSE(before.LetsIn(kWeb));
  EXPECT_FALSE(Passes(SOCK_STREAM, 8080));
  EXPECT_FALSE(Passes(SOCK_DGRAM, 6885));

  for (int round = 0; round < 2; ++round) {
    const FirewallChange change = Change(true, {kWeb, kGame});
    EXPECT_TRUE(change.result.has_value());
    EXPECT_EQ(change.done, 2);
    EXPECT_EQ(Names(), QStringList({u"QYL Port 8080 TCP"_s, u"QYL Port 6881-6889 UDP"_s, u"ssh"_s,
                                    u"qyl port 23"_s}))
        << "the second round adds nothing";
  }
  EXPECT_EQ(steps_, (QList<qsizetype>{0, 1, 0, 1}));
  EXPECT_TRUE(Look().LetsIn(kWeb));
  EXPECT_TRUE(Passes(SOCK_STREAM, 8080));
  EXPECT_TRUE(Passes(SOCK_DGRAM, 6885));
  EXPECT_FALSE(Passes(SOCK_STREAM, 8081));

  const FirewallPorts ssh{22, 22, kTcpNumber};
  const FirewallPorts telnet{23, 23, kTcpNumber};
  EXPECT_TRUE(Change(false, {kWeb, ssh, telnet}).result.has_value());
  EXPECT_EQ(Names(), QStringList({u"QYL Port 6881-6889 UDP"_s, u"ssh"_s}))
      << "a rule of another name stays; one that was made by hand under this name goes";
  EXPECT_FALSE(Passes(SOCK_STREAM, 8080));
  EXPECT_TRUE(Passes(SOCK_DGRAM, 6885));
  EXPECT_TRUE(Change(false, {kGame}).result.has_value());
  EXPECT_FALSE(Passes(SOCK_DGRAM, 6885));
  EXPECT_FALSE(chain_.Run(u"nft list table inet quayline 2>/dev/null"_s));
}

TEST_F(FirewallTest, EveryPortIsOpenedInSecondsAndOneByOneTooInOneTransaction) {
  ASSERT_TRUE(chain_.Run(
      u"nft add table inet filter && "
      "nft add chain inet filter input '{ type filter hook input priority 0; policy drop; }'"_s));
  QElapsedTimer time;
  time.start();
  QList<FirewallPorts> odd;
  for (int port = 1; port < 8000; port += 2) {
    odd.append({port, port, kUdpNumber});
  }
  const FirewallPorts all{1, 65535, kTcpNumber};
  EXPECT_TRUE(Change(true, QList<FirewallPorts>{all} + odd).result.has_value());
  EXPECT_EQ(Look().rules.size(), 4001);
  EXPECT_TRUE(Look().LetsIn(all));
  EXPECT_LT(time.elapsed(), 60'000);
}

// A helper, and what asks for the password, that end as they are told; the test is no root then.
TEST(FirewallRights, WhatIsRefusedOrMissingIsToldApartAndNothingIsAskedUnasked) {
  const QTemporaryDir folder;
  const auto write = [&folder](const char* name, const QByteArray& lines) {
    QFile file(folder.filePath(QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + lines);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file.fileName();
  };
  const QString ufw_settings = write("ufw.conf", "LOGLEVEL=low\nENABLED=yes\n");
  struct Case {
    const char* name;
    QByteArray pkexec;  // empty: it is not installed
    FirewallFault fault;
    qsizetype done;
    const char* text = "";
  };
  const Case cases[] = {
      {"the password dialog is closed", "exit 126", FirewallFault::kRefused, 0},
      {"the password is wrong", "exit 127", FirewallFault::kRefused, 0},
      {"ufw is not installed", "exit 3", FirewallFault::kMissing, 0},
      {"no pkexec", "", FirewallFault::kMissing, 0, "pkexec"},
      {"the second rule fails", "echo 0; echo 1; echo 'ERROR: no' >&2; exit 1",
       FirewallFault::kFailed, 1, "ERROR: no"},
      {"it crashes", "echo 0; kill -9 $$", FirewallFault::kFailed, 0},
  };
  for (const Case& each : cases) {
    LinuxFirewall firewall({.helper = write("helper", "exit 0"),
                            .is_root = false,
                            .pkexec = each.pkexec.isEmpty() ? QString()
                                                            : write("pkexec", each.pkexec)},
                           {.ufw_settings = ufw_settings});
    const auto run = [](Firewall* asked, FirewallChange* change,
                        std::expected<FirewallView, FirewallError>* quiet) -> Task<> {
      *quiet = co_await asked->Look(Firewall::Asking::kNever);
      *change = co_await asked->Add({kWeb, kGame}, [](qsizetype) {});
    };
    FirewallChange change;
    std::expected<FirewallView, FirewallError> quiet;
    ASSERT_TRUE(RunTask(run(&firewall, &change, &quiet)));
    ASSERT_FALSE(quiet.has_value()) << each.name;
    EXPECT_EQ(quiet.error().kind, FirewallKind::kUfw);
    ASSERT_FALSE(change.result.has_value()) << each.name;
    EXPECT_EQ(change.result.error().fault, each.fault) << each.name;
    EXPECT_EQ(change.done, each.done) << each.name;
    EXPECT_EQ(change.result.error().text, QLatin1String(each.text)) << each.name;
  }
}

// The helper believes nothing that it is given.
TEST(FirewallHelper, OtherArgumentsAreRefused) {
  const QList<QStringList> cases{{},
                                 {u"nft"_s},
                                 {u"nft"_s, u"add"_s},
                                 {u"nft"_s, u"list"_s, u"tcp:1"_s},
                                 {u"nft"_s, u"flush"_s, u"tcp:1"_s},
                                 {u"sh"_s, u"list"_s},
                                 {u"ufw"_s, u"add"_s, u"tcp:1"_s, u"--force"_s}};
  for (const QStringList& arguments : cases) {
    QProcess helper;
    helper.start(HelperLaunch::OfSystem().helper, arguments);
    ASSERT_TRUE(helper.waitForFinished()) << "is the helper built?";
    EXPECT_EQ(helper.exitCode(), 2) << arguments.join(u' ').toStdString();
  }
}

}  // namespace
}  // namespace quayline::testing
