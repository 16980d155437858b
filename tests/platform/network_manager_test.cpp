// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// A real NetworkManager on a network of its own (managed_network.sh), and a double of it that fails
// as the real one cannot be made to.

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <net/if.h>

#include "async/wait.h"
#include "dhcp_server.h"
#include "platform/ipv4.h"
#include "platform/linux/linux_adapters.h"
#include "platform/linux/linux_neighbours.h"
#include "platform/linux/network_manager_codes.h"
#include "platform/linux/network_manager_setup.h"
#include "test_main.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Undo = SetupResult::Undo;

quint32 Ip(const char* text) { return ParseIpv4(QLatin1String(text)).value_or(0); }

FixedAddress Fixed(const char* address, const char* gateway = "192.168.77.1") {
  return {.address = Ip(address),
          .prefix_length = 24,
          .gateway = Ip(gateway),
          .servers = {Ip(gateway), Ip("208.67.222.222")}};
}

template <typename T>
T Await(Task<T> task) {
  std::optional<T> result;
  const auto run = [](Task<T> inner, std::optional<T>* out) -> Task<> {
    out->emplace(co_await inner);
  };
  EXPECT_TRUE(RunTask(run(std::move(task), &result), 100s));
  return result ? *result : T();
}

// What managed_network.sh runs.
class ManagedNetwork : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(RunUntil([this] { return !List().isEmpty(); }));
    adapter_ = List().first();
  }

  QList<SetupAdapter> List() { return Await(setup_.List()).value_or(QList<SetupAdapter>()); }
  SetupResult SetFixed(const FixedAddress& wanted) {
    return Await(setup_.SetFixed(adapter_.index, wanted));
  }
  // "address mask gateway" of the adapter, as the kernel has them.
  QString InKernel() const {
    for (const Adapter& adapter : LinuxAdapters().List()) {
      if (adapter.index == adapter_.index) {
        return QStringList{adapter.address, adapter.mask, adapter.gateway}.join(u' ');
      }
    }
    return {};
  }
  static QByteArray Profile() {
    QFile file(qEnvironmentVariable("QUAYLINE_PROFILE"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  LinuxNeighbours neighbours_;
  NetworkManagerSetup setup_{neighbours_,
                             qEnvironmentVariable("QUAYLINE_NETWORK_BUS"),
                             {.fixed = 15s, .automatic = 6s, .gateway = 1s, .unconfirmed = 10s}};
  SetupAdapter adapter_;
};

constexpr char kBefore[] = "192.168.77.20 255.255.255.0 192.168.77.1";

TEST_F(ManagedNetwork, DISABLED_AFixedAddressIsInTheKernelAndTheRestOfTheProfileStays) {
  EXPECT_EQ(adapter_.description, u"Home (cable)"_s);
  EXPECT_EQ(Await(setup_.List()).value_or(QList<SetupAdapter>()).size(), 1)
      << "loopback is no adapter";
  const auto before = Await(setup_.Read(adapter_.index)).value_or(AdapterAddresses());
  EXPECT_EQ((QStringList{before.address, before.mask, before.gateway, before.first_server,
                         before.second_server}),
            (QStringList{u"192.168.77.20"_s, u"255.255.255.0"_s, u"192.168.77.1"_s,
                         u"192.168.77.1"_s, u"9.9.9.9"_s}));
  EXPECT_FALSE(before.is_automatic);
  const SetupResult result = SetFixed(Fixed("192.168.77.200"));
  EXPECT_EQ(result.code, SetupCode::kDone) << result.detail.toStdString();
  EXPECT_EQ(InKernel(), u"192.168.77.200 255.255.255.0 192.168.77.1"_s);
  const auto after = Await(setup_.Read(adapter_.index)).value_or(AdapterAddresses());
  EXPECT_EQ(after.second_server, u"208.67.222.222"_s);
  const QByteArray profile = Profile();
  for (const char* kept : {"mtu=1400", "dns-search=home.example;", "fd00:77::20/64", "fd00:77::1;",
                           "10.5.0.0/16,192.168.77.7", "interface-name=cable"}) {
    EXPECT_TRUE(profile.contains(kept)) << kept << " in\n" << profile.toStdString();
  }
  EXPECT_FALSE(profile.contains("192.168.77.20/24")) << profile.toStdString();
}

TEST_F(ManagedNetwork, DISABLED_AChangeThatCutsTheComputerOffIsTakenBack) {
  const SetupResult result = SetFixed(Fixed("192.168.77.200", "192.168.77.99"));
  EXPECT_EQ(result.code, SetupCode::kInvalidGateway) << result.detail.toStdString();
  EXPECT_EQ(result.undo, Undo::kRolledBack);
  EXPECT_EQ(InKernel(), QLatin1String(kBefore));
  EXPECT_TRUE(Profile().contains("address1=192.168.77.20/24,192.168.77.1\n"));
}

TEST_F(ManagedNetwork, DISABLED_AChangeThatIsNotConfirmedIsTakenBack) {
  Flow flow;
  const auto change = [](NetworkManagerSetup* setup, int adapter) -> Task<> {
    const auto result = co_await setup->SetFixed(adapter, Fixed("192.168.77.200", "192.168.77.99"));
    ADD_FAILURE() << "ended with " << static_cast<int>(result.code);
  };
  flow.Start(change(&setup_, adapter_.index));
  ASSERT_TRUE(RunUntil([this] { return InKernel().startsWith(u"192.168.77.200"_s); }));
  flow.Cancel();  // as the end of the program does
  EXPECT_TRUE(RunUntil([this] { return InKernel() == QLatin1String(kBefore); }, 60s));
}

TEST_F(ManagedNetwork, DISABLED_TheRouterGivesAnAddressAgain) {
  const SetupResult silent = Await(setup_.SetAutomatic(adapter_.index));
  EXPECT_EQ(silent.code, SetupCode::kCannotConfigureDhcp) << "there is no DHCP server yet";
  EXPECT_EQ(silent.undo, Undo::kRolledBack);
  EXPECT_EQ(InKernel(), QLatin1String(kBefore));
  const DhcpServer server;
  ASSERT_TRUE(server.IsReady());
  const SetupResult result = Await(setup_.SetAutomatic(adapter_.index));
  EXPECT_EQ(result.code, SetupCode::kDone) << result.detail.toStdString();
  EXPECT_EQ(InKernel(), u"192.168.77.30 255.255.255.0 192.168.77.1"_s);
  const auto read = Await(setup_.Read(adapter_.index)).value_or(AdapterAddresses());
  EXPECT_TRUE(read.is_automatic);
  EXPECT_EQ(read.first_server, u"192.168.77.1"_s);
  EXPECT_EQ(read.second_server, u"0.0.0.0"_s) << "the fixed servers are no longer used";
  // And from a fixed address that fails back to the one that the router gave.
  const SetupResult cut_off = SetFixed(Fixed("192.168.77.200", "192.168.77.99"));
  EXPECT_EQ(cut_off.undo, Undo::kRolledBack);
  EXPECT_EQ(InKernel(), u"192.168.77.30 255.255.255.0 192.168.77.1"_s);
}

TEST_F(ManagedNetwork, DISABLED_WhatTheServiceRefusesChangesNothing) {
  const QByteArray profile = Profile();
  FixedAddress wanted = Fixed("192.168.77.200");
  wanted.prefix_length = 77;  // the address is dropped, and a gateway alone is refused
  const SetupResult result = SetFixed(wanted);
  EXPECT_EQ(result.code, SetupCode::kInvalidGateway) << result.detail.toStdString();
  EXPECT_EQ(result.undo, Undo::kNotNeeded);
  EXPECT_EQ(Await(setup_.SetFixed(99, Fixed("192.168.77.200"))).code, SetupCode::kNotEnabled);
  EXPECT_EQ(InKernel(), QLatin1String(kBefore));
  EXPECT_EQ(Profile(), profile);
  const SetupResult next = SetFixed(Fixed("192.168.77.201"));
  EXPECT_EQ(next.code, SetupCode::kDone) << "no checkpoint is left: " << next.detail.toStdString();
}

TEST_F(ManagedNetwork, DISABLED_DevicesAreFoundByArpAlone) {
  using Kind = NeighbourAnswer::Kind;
  const NeighbourAnswer other = Await(neighbours_.Ask(adapter_.index, Ip("192.168.77.50"), 5s));
  EXPECT_EQ(other.kind, Kind::kAnswers);
  EXPECT_EQ(other.hardware_address.size(), 6);
  EXPECT_EQ(Await(neighbours_.Ask(adapter_.index, Ip("192.168.77.51"), 10s)).kind, Kind::kSilence);
  // In a network that this computer is not in.
  EXPECT_EQ(Await(neighbours_.Ask(adapter_.index, Ip("172.30.1.1"), 10s)).kind, Kind::kSilence);
}

// Each in a network of its own, all at once: they mostly wait.
TEST(NetworkManager, ChangesARealAdapter) {
  constexpr int kNoNetworks = 77;
  std::vector<std::unique_ptr<QProcess>> networks;
  for (const char* test :
       {"AFixed", "AChangeThatCuts", "AChangeThatIsNot", "TheRouter", "What", "Devices"}) {
    networks.push_back(std::make_unique<QProcess>());
    networks.back()->setProcessChannelMode(QProcess::MergedChannels);
    networks.back()->start(
        QStringLiteral(QUAYLINE_SOURCE_DIR "/tests/platform/managed_network.sh"),
        {QCoreApplication::applicationFilePath(), u"--gtest_also_run_disabled_tests"_s,
         u"--gtest_filter=ManagedNetwork.DISABLED_%1*"_s.arg(QLatin1String(test))});
  }
  for (const auto& network : networks) {
    ASSERT_TRUE(network->waitForFinished(120'000));
    const QByteArray output = network->readAll();
    if (network->exitCode() == kNoNetworks) {
      GTEST_SKIP() << "needs the right to make networks, iproute2 and NetworkManager";
    }
    EXPECT_EQ(network->exitCode(), 0) << output.toStdString();
    EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.toStdString();
  }
}

// NetworkManager with one device, whose methods `failing` fail with `error`.
class FakeNetworkManager final : public QDBusVirtualObject {
 public:
  QStringList failing;
  QString error;
  QString message;
  quint32 state = 100;
  quint32 flags = 0;  // of the connection
  QString address = u"10.0.0.7"_s;
  QString gateway = u"10.0.0.1"_s;
  AdapterAddresses reapplied{.address = u"10.0.0.200"_s, .gateway = u"10.0.0.1"_s};
  std::chrono::milliseconds late{0};  // after which it takes a change back by itself, if it does
  QStringList calls;                  // without those that only read

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
    const QString method = call.member();
    if (method.startsWith(u"Checkpoint"_s) || method == u"Update"_s || method == u"Reapply"_s) {
      calls.append(method);
    }
    if (method == u"CheckpointRollback"_s && late.count() > 0) {
      QTimer::singleShot(late, this, [this, connection] {
        TakeBack();
        connection.send(QDBusMessage::createSignal(
            u"/device"_s, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s));
      });
    }
    if (failing.contains(method)) {
      return connection.send(call.createErrorReply(error, message));
    }
    if (method == u"Reapply"_s) {
      address = reapplied.address;
      gateway = reapplied.gateway;
    } else if (method == u"CheckpointRollback"_s) {
      TakeBack();
    }
    return connection.send(call.createReply(Answer(call)));
  }

 private:
  void TakeBack() {
    address = u"10.0.0.7"_s;
    gateway = u"10.0.0.1"_s;
  }
  static QVariant Path(const char* path) {
    return QVariant::fromValue(QDBusObjectPath(QLatin1String(path)));
  }

  QVariantList Answer(const QDBusMessage& call) const {
    const QString method = call.member();
    if (method == u"GetDevices"_s) {
      return {QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(u"/device"_s)})};
    }
    if (method == u"GetSettings"_s) {
      const NetworkProfile profile{{u"ipv4"_s, {{u"method"_s, u"manual"_s}}}};
      return {QVariant::fromValue(profile)};
    }
    if (method == u"CheckpointCreate"_s) {
      return {Path("/checkpoint")};
    }
    return method == u"GetAll"_s ? QVariantList{Properties(call.path())} : QVariantList();
  }

  QVariantMap Properties(const QString& path) const {
    if (path == u"/device"_s) {
      return {{u"Interface"_s, u"lo"_s},
              {u"DeviceType"_s, quint32{1}},
              {u"State"_s, state},
              {u"ActiveConnection"_s, Path("/active")},
              {u"Ip4Config"_s, Path("/config")}};
    }
    if (path == u"/active"_s) {
      return {{u"Id"_s, u"Home"_s}, {u"Connection"_s, Path("/profile")}, {u"StateFlags"_s, flags}};
    }
    const QVariantMap own{{u"address"_s, address}, {u"prefix"_s, quint32{8}}};
    return {{u"AddressData"_s, QVariant::fromValue(QList<QVariantMap>{own})},
            {u"Gateway"_s, gateway}};
  }
};

class GatewayThatAnswers final : public Neighbours {
 public:
  Task<NeighbourAnswer> Ask(int, quint32, std::chrono::milliseconds) override {
    co_return NeighbourAnswer{.kind = NeighbourAnswer::Kind::kAnswers};
  }
};

class FailingNetworkManager : public ::testing::Test {
 protected:
  void SetUp() override {
    bus_.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    if (!bus_.waitForStarted() || !bus_.waitForReadyRead(10000)) {
      GTEST_SKIP() << "needs dbus-daemon";
    }
    address_ = QString::fromLatin1(bus_.readAllStandardOutput().trimmed());
    setup_ = std::make_unique<NetworkManagerSetup>(neighbours_, address_);
  }
  void TearDown() override {
    setup_.reset();
    QDBusConnection::disconnectFromBus(address_);
    QDBusConnection::disconnectFromBus(u"service"_s);
    bus_.kill();
    bus_.waitForFinished();
  }
  void Serve() {
    QDBusConnection served = QDBusConnection::connectToBus(address_, u"service"_s);
    ASSERT_TRUE(served.registerVirtualObject(u"/"_s, &service_, QDBusConnection::SubPath));
    ASSERT_TRUE(served.registerService(u"org.freedesktop.NetworkManager"_s));
  }
  SetupResult SetFixed() {
    service_.calls.clear();
    return Await(
        setup_->SetFixed(static_cast<int>(if_nametoindex("lo")), Fixed("10.0.0.200", "10.0.0.1")));
  }

  QProcess bus_;
  QString address_;
  FakeNetworkManager service_;
  GatewayThatAnswers neighbours_;
  std::unique_ptr<NetworkManagerSetup> setup_;
};

TEST_F(FailingNetworkManager, EachFailureHasItsCodeAndLeavesNothingHalfDone) {
  Serve();
  const QString manager = u"org.freedesktop.NetworkManager."_s;
  const QString bus = u"org.freedesktop.DBus.Error."_s;
  const QStringList refused{u"CheckpointCreate"_s, u"Update"_s, u"CheckpointDestroy"_s};
  const QStringList taken_back{u"CheckpointCreate"_s, u"Update"_s, u"Reapply"_s,
                               u"CheckpointRollback"_s};
  const struct {
    QString method;
    QString error;
    QString message;
    SetupCode code;
    Undo undo;
    QStringList calls;
  } cases[] = {
      {u"CheckpointCreate"_s,
       manager + u"PermissionDenied"_s,
       u"no"_s,
       SetupCode::kAccessDenied,
       Undo::kNotNeeded,
       {u"CheckpointCreate"_s}},
      {u"CheckpointCreate"_s,
       bus + u"UnknownMethod"_s,
       u"old"_s,
       SetupCode::kNotSupported,
       Undo::kNotNeeded,
       {u"CheckpointCreate"_s}},
      {u"Update"_s, manager + u"Settings.PermissionDenied"_s, u"no"_s, SetupCode::kAccessDenied,
       Undo::kNotNeeded, refused},
      {u"Update"_s, manager + u"Settings.Connection.InvalidProperty"_s, u"ipv4.addresses: wrong"_s,
       SetupCode::kInvalidAddress, Undo::kNotNeeded, refused},
      {u"Update"_s, manager + u"Settings.Connection.InvalidProperty"_s, u"ipv4.dns: wrong"_s,
       SetupCode::kInvalidParameter, Undo::kNotNeeded, refused},
      {u"Update"_s, bus + u"NoMemory"_s, u""_s, SetupCode::kOutOfMemory, Undo::kNotNeeded, refused},
      {u"Update"_s, u"com.example.Odd"_s, u""_s, SetupCode::kUnknownFailure, Undo::kNotNeeded,
       refused},
      // The password box may still be open, and the settings be written later.
      {u"Update"_s,
       bus + u"NoReply"_s,
       u"late"_s,
       SetupCode::kUnknownFailure,
       Undo::kUnknown,
       {u"CheckpointCreate"_s, u"Update"_s, u"CheckpointRollback"_s}},
      {u"Reapply"_s, manager + u"Device.IncompatibleConnection"_s, u"no"_s,
       SetupCode::kNotConfigurable, Undo::kRolledBack, taken_back},
      {u"CheckpointDestroy"_s,
       bus + u"NoReply"_s,
       u"late"_s,
       SetupCode::kUnknownFailure,
       Undo::kRolledBack,
       {u"CheckpointCreate"_s, u"Update"_s, u"Reapply"_s, u"CheckpointDestroy"_s,
        u"CheckpointRollback"_s}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE((each.method + u' ' + each.error).toStdString());
    service_.failing = {each.method};
    service_.error = each.error;
    service_.message = each.message;
    const SetupResult result = SetFixed();
    EXPECT_EQ(result.code, each.code);
    EXPECT_EQ(result.undo, each.undo);
    EXPECT_EQ(result.detail, each.message);
    EXPECT_EQ(service_.calls, each.calls);
    EXPECT_FALSE(result.is_service_missing);
    EXPECT_EQ(service_.address, u"10.0.0.7"_s);
  }
  service_.failing.clear();
  EXPECT_TRUE(SetFixed().IsDone());
}

TEST_F(FailingNetworkManager, AChangeIsTakenBackWhenTheGatewayIsTheFormerOneAlsoIfThatIsLate) {
  Serve();
  NetworkManagerSetup setup(neighbours_, address_,
                            {.fixed = 15s, .automatic = 500ms, .gateway = 1s, .unconfirmed = 1s});
  service_.failing = {u"CheckpointDestroy"_s, u"CheckpointRollback"_s};
  service_.error = u"org.freedesktop.DBus.Error.NoReply"_s;
  service_.reapplied = {.address = service_.address, .gateway = u"10.0.0.9"_s};
  const auto undo = [&] {
    return Await(setup.SetFixed(static_cast<int>(if_nametoindex("lo")),
                                Fixed("10.0.0.7", "10.0.0.9")))
        .undo;
  };
  EXPECT_EQ(undo(), Undo::kFailed);
  service_.gateway = u"10.0.0.1"_s;
  service_.late = 800ms;
  EXPECT_EQ(undo(), Undo::kRolledBack);
}

TEST_F(FailingNetworkManager, ADeviceThatIsNotItsOwnOrNotActiveIsLeftAlone) {
  Serve();
  service_.flags = 0x80;  // Something else has configured it.
  EXPECT_EQ(SetFixed().code, SetupCode::kNotConfigurable);
  EXPECT_TRUE(Await(setup_->List()).value_or(QList<SetupAdapter>(1)).isEmpty());
  service_.flags = 0;
  service_.state = 30;
  EXPECT_EQ(SetFixed().code, SetupCode::kNotEnabled);
  EXPECT_EQ(service_.calls, QStringList());
  service_.failing = {u"GetAll"_s};
  service_.error = u"org.freedesktop.DBus.Error.Failed"_s;
  EXPECT_EQ(SetFixed().code, SetupCode::kNotEnabled);
}

TEST_F(FailingNetworkManager, WithoutTheServiceOrABusItIsMissing) {
  NetworkManagerSetup without_bus(neighbours_, u"unix:path=/nowhere"_s);
  for (AddressSetup* setup :
       {static_cast<AddressSetup*>(setup_.get()), static_cast<AddressSetup*>(&without_bus)}) {
    const auto list = Await(setup->List());
    ASSERT_FALSE(list.has_value());
    EXPECT_TRUE(list.error().is_service_missing) << list.error().detail.toStdString();
    EXPECT_EQ(list.error().code, SetupCode::kNotSupported);
  }
  EXPECT_TRUE(SetFixed().is_service_missing);
}

}  // namespace
}  // namespace quayline::testing
