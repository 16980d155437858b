// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "net/firewall_fixture.h"

namespace quayline::testing {
namespace {

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
    LinuxFirewall firewall(
        {.helper = write("helper", "exit 0"),
         .is_root = false,
         .pkexec = each.pkexec.isEmpty() ? QString() : write("pkexec", each.pkexec)},
        {.ufw_settings = ufw_settings, .bus = u"unix:path=/nonexistent"_s});
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
