// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// A real firewalld on a bus of its own, and a double of it that fails as the real one cannot be
// made to.

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include "net/firewall_fixture.h"

namespace quayline::testing {
namespace {

class PrivateBus final {
 public:
  PrivateBus() {
    process_.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    if (process_.waitForStarted() && process_.waitForReadyRead(10'000)) {
      address = QString::fromLatin1(process_.readAllStandardOutput().trimmed());
    }
  }
  ~PrivateBus() {
    process_.kill();
    process_.waitForFinished();
  }

  QString address;  // empty without dbus-daemon

 private:
  QProcess process_;
};

class FirewalldTest : public FirewallTest {
 protected:
  FirewalldTest() : FirewalldTest(std::make_shared<PrivateBus>()) {}
  ~FirewalldTest() override {
    service_.terminate();
    service_.waitForFinished();
  }

  void SetUp() override {
    FirewallTest::SetUp();
    if (IsSkipped() || bus_->address.isEmpty() || !QFileInfo::exists(u"/usr/sbin/firewalld"_s)) {
      GTEST_SKIP() << "needs firewalld and dbus-daemon";
    }
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus_->address.toLatin1());
    service_.start(u"firewalld"_s,
                   {u"--nofork"_s, u"--nopid"_s, u"--system-config"_s, settings_.path(),
                    u"--log-file"_s, settings_.filePath(u"log"_s)});
    if (!RunUntil([] { return Command({u"--state"_s}) == 0; })) {
      GTEST_SKIP() << "firewalld does not start here";
    }
  }
  void TearDown() override { qunsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

  static int Command(const QStringList& arguments) {
    QProcess command;
    command.start(u"firewall-cmd"_s, arguments);
    return command.waitForFinished() ? command.exitCode() : -1;
  }

 private:
  explicit FirewalldTest(const std::shared_ptr<PrivateBus>& bus)
      : FirewallTest(bus->address), bus_(bus) {}

  std::shared_ptr<PrivateBus> bus_;
  QTemporaryDir settings_;
  QProcess service_;
};

TEST_F(FirewalldTest, PortsPassAtOnceAndAfterARestartUntilTheyAreRemoved) {
  const FirewallView before = Look();
  EXPECT_EQ(before.kind, FirewallKind::kFirewalld);
  EXPECT_TRUE(
      before.rules.contains(FirewallRule{.name = u"SSH"_s, .first_port = 22, .last_port = 22}));
  EXPECT_TRUE(before.LetsIn({22, 22, kTcpNumber}));
  EXPECT_FALSE(before.LetsIn(kWeb));
  EXPECT_FALSE(Passes(SOCK_STREAM, 8080));
  // What the user opened is his, and covers some of ours.
  EXPECT_EQ(Command({u"--add-port=6885-7000/udp"_s}), 0);

  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(Change(true, {kWeb, kGame}).result.has_value());
    EXPECT_EQ(Look().rules.size(), before.rules.size() + 3) << "the second round adds nothing";
  }
  EXPECT_TRUE(Names().contains(u"QYL Port 6881-6889 UDP"_s));
  EXPECT_TRUE(Look().LetsIn(kGame));
  EXPECT_TRUE(Passes(SOCK_STREAM, 8080));
  EXPECT_TRUE(Passes(SOCK_DGRAM, 6881));
  EXPECT_FALSE(Passes(SOCK_STREAM, 8081));

  EXPECT_EQ(Command({u"--reload"_s}), 0);  // as a restart: only what is kept is left
  EXPECT_TRUE(Passes(SOCK_STREAM, 8080));
  EXPECT_FALSE(Passes(SOCK_DGRAM, 6999)) << "what the user opened until the restart is not kept";
  EXPECT_EQ(Command({u"--add-port=6885-7000/udp"_s}), 0);

  EXPECT_TRUE(Change(false, {kWeb, kGame}).result.has_value());
  EXPECT_FALSE(Passes(SOCK_STREAM, 8080));
  EXPECT_FALSE(Passes(SOCK_DGRAM, 6881));
  EXPECT_TRUE(Passes(SOCK_DGRAM, 6885)) << "the user's rule stays";
  EXPECT_EQ(Command({u"--reload"_s}), 0);
  EXPECT_FALSE(Passes(SOCK_STREAM, 8080));
  EXPECT_TRUE(Look().LetsIn({22, 22, kTcpNumber})) << "the rest of the zone is as it was";
}

TEST_F(FirewalldTest, EveryPortIsOneRule) {
  const FirewallPorts all{1, 65535, kTcpNumber};
  EXPECT_TRUE(Change(true, {all, {1, 65535, kUdpNumber}}).result.has_value());
  EXPECT_TRUE(Look().LetsIn(all));
  EXPECT_TRUE(Passes(SOCK_STREAM, 65000));
}

// Answers as firewalld does, with one zone, and fails at one method.
class FirewalldDouble final : public QDBusVirtualObject {
 public:
  QStringList now{u"rule service name=\"ssh\" accept"_s};
  QStringList kept = now;
  QString failing;
  QString error;
  QString interface;  // of which the zone was asked for

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QString method = message.member();
    if (method == failing) {
      return connection.send(message.createErrorReply(error, u"INVALID_RULE: no"_s));
    }
    return connection.send(message.createReply(Answer(method, message.arguments())));
  }

 private:
  QVariantList Answer(const QString& method, const QVariantList& arguments) {
    if (method == u"getDefaultZone"_s) {
      return {u"public"_s};
    }
    if (method == u"getZoneOfInterface"_s) {
      interface = arguments.value(0).toString();
      return {QString()};
    }
    if (method == u"getZones"_s) {
      return {QStringList{u"public"_s}};
    }
    if (method == u"getRichRules"_s) {
      return {now};
    }
    if (method == u"getZoneByName"_s) {
      return {
          QVariant::fromValue(QDBusObjectPath(u"/org/fedoraproject/FirewallD1/config/zone/7"_s))};
    }
    if (method == u"getSettings2"_s) {
      return {QVariantMap{{u"short"_s, u"Public"_s}, {u"rules_str"_s, kept}}};
    }
    if (method == u"setZoneSettings2"_s) {
      now = qdbus_cast<QVariantMap>(arguments.value(1))[u"rules_str"_s].toStringList();
    }
    if (method == u"update2"_s) {
      kept = qdbus_cast<QVariantMap>(arguments.value(0))[u"rules_str"_s].toStringList();
    }
    return {};
  }
};

TEST(FirewalldRights, AChangeThatFailsAnywhereLeavesTheRulesAsTheyWere) {
  const PrivateBus bus;
  if (bus.address.isEmpty()) {
    GTEST_SKIP() << "needs dbus-daemon";
  }
  // A VPN has two routes to half of all addresses each.
  QTemporaryFile routes;
  ASSERT_TRUE(routes.open());
  routes.write(
      "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n"
      "tun0\t00000000\t0100080A\t0003\t0\t0\t0\t00000080\t0\t0\t0\n"
      "eth0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"
      "tun0\t00000080\t0100080A\t0003\t0\t0\t0\t00000080\t0\t0\t0\n");
  routes.close();
  const QString refusal = u"org.fedoraproject.FirewallD1.NotAuthorizedException"_s;
  const QString exception = u"org.fedoraproject.FirewallD1.Exception"_s;
  struct Case {
    QString failing;
    QString error;
    FirewallFault fault;
    QString text;
    bool adds = true;
  };
  const Case cases[] = {
      {u"getRichRules"_s, refusal, FirewallFault::kRefused, {}},
      {u"setZoneSettings2"_s, refusal, FirewallFault::kRefused, {}},
      {u"setZoneSettings2"_s, exception, FirewallFault::kFailed, u"INVALID_RULE: no"_s},
      {u"getZoneByName"_s, exception, FirewallFault::kFailed, u"INVALID_RULE: no"_s},
      {u"update2"_s, refusal, FirewallFault::kRefused, {}},
      {u"getZones"_s, refusal, FirewallFault::kRefused, {}, false},
      {u"getRichRules"_s, refusal, FirewallFault::kRefused, {}, false},
      {u"update2"_s, exception, FirewallFault::kFailed, u"INVALID_RULE: no"_s, false},
      {{}, {}, {}, {}},
      {{}, {}, {}, {}, false},
  };
  QDBusConnection served = QDBusConnection::connectToBus(bus.address, u"firewalld"_s);
  for (const Case& each : cases) {
    FirewalldDouble service;
    const QStringList others = service.now;
    if (!each.adds) {
      service.now.append(OwnRichRule(kWeb));
      service.kept = service.now;
    }
    const QStringList before = service.now;
    service.failing = each.failing;
    service.error = each.error;
    ASSERT_TRUE(served.registerVirtualObject(u"/org/fedoraproject/FirewallD1"_s, &service,
                                             QDBusConnection::SubPath));
    ASSERT_TRUE(served.registerService(u"org.fedoraproject.FirewallD1"_s));
    LinuxFirewall firewall({}, {.bus = bus.address, .routes = routes.fileName()});
    FirewallChange change;
    const auto run = [](Firewall* asked, bool adds, FirewallChange* out) -> Task<> {
      const auto ignore = [](qsizetype) {};
      *out = adds ? co_await asked->Add({kWeb}, ignore) : co_await asked->Remove({kWeb}, ignore);
    };
    ASSERT_TRUE(RunTask(run(&firewall, each.adds, &change)));
    ASSERT_EQ(change.result.has_value(), each.failing.isEmpty()) << each.failing.toStdString();
    EXPECT_EQ(service.interface, each.adds ? u"eth0"_s : QString());
    if (each.failing.isEmpty()) {
      EXPECT_EQ(service.now, each.adds ? others + QStringList(OwnRichRule(kWeb)) : others);
      EXPECT_EQ(service.kept, service.now);
    } else {
      EXPECT_EQ(change.result.error().fault, each.fault) << each.failing.toStdString();
      EXPECT_EQ(change.result.error().text, each.text);
      EXPECT_EQ(service.now, before) << each.failing.toStdString();
      EXPECT_EQ(service.kept, before) << each.failing.toStdString();
    }
    served.unregisterObject(u"/org/fedoraproject/FirewallD1"_s, QDBusConnection::UnregisterTree);
  }
  QDBusConnection::disconnectFromBus(u"firewalld"_s);
}

}  // namespace
}  // namespace quayline::testing
