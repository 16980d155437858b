// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include "net/firewall_exceptions.h"
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
      "nft add chain inet filter more && nft add rule inet filter input jump more && "
      "nft add rule inet filter more tcp dport 23 accept comment '\"qyl port 23\"' && "
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
  QList<FirewallPorts> odd;
  for (int port = 1; port < 8000; port += 2) {
    odd.append({port, port, kUdpNumber});
  }
  const FirewallPorts all{1, 65535, kTcpNumber};
  EXPECT_TRUE(Change(true, QList<FirewallPorts>{all} + odd).result.has_value());
  EXPECT_EQ(Look().rules.size(), 4001);
  EXPECT_TRUE(Look().LetsIn(all));
}

TEST_F(FirewallTest, OwnRulesOfUfwAreRemovedInWhateverFormAndAPortThatStaysBlockedIsNotAdded) {
  const QTemporaryDir folder;
  const QString settings = folder.filePath(u"ufw"_s);
  // Settings of its own, which only the processes see that it starts.
  const QString inside =
      u"unshare --mount sh -c 'mount --bind \"$0\" /etc/ufw && exec \"$@\"' \"%1\" "_s.arg(
          settings);
  const auto ufw = [&](const QString& arguments) {
    return chain_.Run(inside + u"ufw "_s + arguments + u" >/dev/null"_s);
  };
  if (!chain_.Run(u"cp -a /etc/ufw \"%1\" 2>/dev/null"_s.arg(settings)) ||
      !ufw(u"--force enable"_s)) {
    GTEST_SKIP() << "needs ufw";
  }
  for (const QString& rule :
       {u"allow 1 comment 'qyl port 1'"_s,
        u"allow in on lo to any port 77 proto tcp comment 'QYL Port 77 TCP'"_s,
        u"limit 80,443/tcp comment 'qyl port web'"_s, u"allow 22/tcp comment 'ssh'"_s,
        u"deny 7000:7010/tcp"_s, u"allow 7005/tcp comment 'chat'"_s}) {
    ASSERT_TRUE(ufw(rule)) << rule.toStdString();
  }
  QFile helper(folder.filePath(u"helper"_s));
  ASSERT_TRUE(helper.open(QIODevice::WriteOnly));
  helper.write("#!/bin/sh\n" + inside.toUtf8() + '"' + HelperLaunch::OfSystem().helper.toUtf8() +
               "\" \"$@\"\n");
  helper.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  helper.close();
  firewall_ =
      std::make_unique<LinuxFirewall>(HelperLaunch{.helper = helper.fileName(), .is_root = true},
                                      FirewallPlaces{.ufw_settings = settings + u"/ufw.conf"_s,
                                                     .bus = u"unix:path=/nonexistent"_s});

  const FirewallChange blocked = Change(true, {kWeb, {7005, 7005, kTcpNumber}, kGame});
  ASSERT_FALSE(blocked.result.has_value()) << "the rule of the user before it denies the port";
  EXPECT_EQ(blocked.done, 1);
  EXPECT_TRUE(blocked.result.error().text.contains(u"7005/tcp"_s))
      << blocked.result.error().text.toStdString();
  EXPECT_TRUE(Passes(SOCK_STREAM, 8080));
  EXPECT_FALSE(Passes(SOCK_STREAM, 7005));

  const QList<FirewallPorts> own = OwnPortsOf(Look());
  EXPECT_EQ(own.size(), 6);
  const FirewallChange removed = Change(false, own);
  EXPECT_TRUE(removed.result.has_value()) << removed.result.error().text.toStdString();
  EXPECT_EQ(removed.done, own.size());
  EXPECT_EQ(Names(), QStringList({u"ssh"_s, u"chat"_s}));
  EXPECT_FALSE(Passes(SOCK_STREAM, 8080));

  // The numbered list does not say which ports an application has.
  ASSERT_TRUE(ufw(u"allow Telnet comment 'qyl port 23'"_s));
  const FirewallChange left = Change(false, OwnPortsOf(Look()));
  ASSERT_FALSE(left.result.has_value());
  EXPECT_EQ(left.done, 0);
  EXPECT_TRUE(left.result.error().text.contains(u"23/tcp (Telnet)"_s))
      << left.result.error().text.toStdString();
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
      {"ufw is not installed", "exit 3", FirewallFault::kMissing, 0, "ufw"},
      {"nothing filters", "exit 6", FirewallFault::kMissing, 0, ""},
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
        {.ufw_settings = ufw_settings,
         .ufw_programs = {ufw_settings},
         .bus = u"unix:path=/nonexistent"_s});
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

TEST(FirewallRights, SettingsThatARemovedUfwLeftBehindDoNotCount) {
  QTemporaryFile settings;
  ASSERT_TRUE(settings.open());
  settings.write("ENABLED=yes\n");
  settings.close();
  for (const bool is_installed : {true, false}) {
    const QString program = is_installed ? settings.fileName() : u"/nonexistent"_s;
    LinuxFirewall firewall({.helper = program, .is_root = false, .pkexec = program},
                           {.ufw_settings = settings.fileName(),
                            .ufw_programs = {program},
                            .nft_programs = {settings.fileName()},
                            .nft_services = {settings.fileName()},
                            .bus = u"unix:path=/nonexistent"_s});
    FirewallKind kind = FirewallKind::kNone;
    const auto look = [](Firewall* asked, FirewallKind* seen) -> Task<> {
      const auto view = co_await asked->Look(Firewall::Asking::kNever);
      *seen = view ? view->kind : view.error().kind;
    };
    ASSERT_TRUE(RunTask(look(&firewall, &kind)));
    EXPECT_EQ(kind, is_installed ? FirewallKind::kUfw : FirewallKind::kNftables);
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
