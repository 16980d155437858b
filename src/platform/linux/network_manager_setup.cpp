// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/network_manager_setup.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDeadlineTimer>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <net/if.h>

#include "async/wait.h"
#include "platform/ipv4.h"
#include "platform/linux/network_manager_codes.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

const QString kManager = u"/org/freedesktop/NetworkManager"_s;
constexpr auto kInterval = 200ms;
constexpr auto kTryOfGateway = 4s;

// NetworkManager's numbers.
constexpr quint32 kActivated = 100;
constexpr quint32 kDeactivating = 110;
constexpr quint32 kDisconnected = 30;
constexpr quint32 kExternal = 0x80;  // of an active connection: found, and not made, by it
constexpr std::array kTypes{1U, 2U, 10U, 11U, 13U, 15U, 20U};  // cable, radio, and bundles of them

QString PathIn(const QVariantMap& properties, const QString& name) {
  const QString path = properties.value(name).value<QDBusObjectPath>().path();
  return path == "/"_L1 ? QString() : path;
}

QList<QVariantMap> MapsIn(const QVariantMap& properties, const QString& name) {
  return qdbus_cast<QList<QVariantMap>>(properties.value(name));
}

quint32 StateIn(const QVariantMap& device) { return device.value(u"State"_s).toUInt(); }

// Why the device is in its state.
quint32 ReasonIn(const QVariantMap& device) {
  const auto argument = device.value(u"StateReason"_s).value<QDBusArgument>();
  quint32 state = 0;
  quint32 reason = 0;
  if (argument.currentSignature() == "(uu)"_L1) {
    argument.beginStructure();
    argument >> state >> reason;
    argument.endStructure();
  }
  return reason;
}

std::unexpected<SetupResult> Failure(SetupCode code) {
  return std::unexpected(SetupResult{.code = code});
}

// The service may do it yet, for example while the user is asked for a password.
bool IsWithoutAnswer(const QDBusError& error) {
  const QDBusError::ErrorType type = error.type();
  return type == QDBusError::NoReply || type == QDBusError::Timeout || type == QDBusError::TimedOut;
}

void MakeFixed(const FixedAddress& wanted, QVariantMap* ipv4) {
  for (const char* old : {"addresses", "dns-data", "ignore-auto-dns"}) {
    ipv4->remove(QLatin1String(old));
  }
  const QVariantMap address{{u"address"_s, DottedIpv4(wanted.address)},
                            {u"prefix"_s, static_cast<quint32>(wanted.prefix_length)}};
  QList<quint32> servers;
  for (const quint32 server : wanted.servers) {
    servers.append(htonl(server));
  }
  ipv4->insert(u"method"_s, u"manual"_s);
  ipv4->insert(u"address-data"_s, QVariant::fromValue(QList<QVariantMap>{address}));
  ipv4->insert(u"gateway"_s, DottedIpv4(wanted.gateway));
  ipv4->insert(u"dns"_s, QVariant::fromValue(servers));
}

void MakeAutomatic(QVariantMap* ipv4) {
  for (const char* old :
       {"addresses", "address-data", "gateway", "dns", "dns-data", "ignore-auto-dns"}) {
    ipv4->remove(QLatin1String(old));
  }
  ipv4->insert(u"method"_s, u"auto"_s);
}

}  // namespace

NetworkManagerSetup::NetworkManagerSetup(Neighbours& neighbours, QString bus_address, Limits limits)
    : neighbours_(neighbours), bus_(std::move(bus_address)), limits_(limits) {}

Task<std::expected<QStringList, SetupResult>> NetworkManagerSetup::DevicePaths() {
  const auto reply = co_await bus_.Call(kManager, {}, u"GetDevices"_s, {});
  if (!reply) {
    co_return std::unexpected(ResultOfError(reply.error()));
  }
  QStringList paths;
  for (const QDBusObjectPath& path : qdbus_cast<QList<QDBusObjectPath>>(reply->value(0))) {
    paths.append(path.path());
  }
  co_return paths;
}

// One without a profile has no connection.
Task<NetworkManagerSetup::Device> NetworkManagerSetup::Describe(QString path) {
  const QVariantMap properties = co_await bus_.Properties(path, u"Device"_s);
  const QString name = properties.value(u"Interface"_s).toString();
  Device device{.index = static_cast<int>(if_nametoindex(name.toUtf8().constData())),
                .path = path,
                .description = name};
  const QString connection = PathIn(properties, u"ActiveConnection"_s);
  if (std::ranges::count(kTypes, properties.value(u"DeviceType"_s).toUInt()) == 0 ||
      StateIn(properties) != kActivated || PathIn(properties, u"Ip4Config"_s).isEmpty() ||
      connection.isEmpty()) {
    co_return device;
  }
  const QVariantMap active = co_await bus_.Properties(connection, u"Connection.Active"_s);
  device.profile = PathIn(active, u"Connection"_s);
  device.is_foreign = (active.value(u"StateFlags"_s).toUInt() & kExternal) != 0;
  device.description = u"%1 (%2)"_s.arg(active.value(u"Id"_s).toString(), name);
  co_return device;
}

Task<std::expected<QList<SetupAdapter>, SetupResult>> NetworkManagerSetup::List() {
  const auto paths = co_await DevicePaths();
  if (!paths) {
    co_return std::unexpected(paths.error());
  }
  QList<SetupAdapter> adapters;
  for (const QString& path : *paths) {
    const Device device = co_await Describe(path);
    if (!device.profile.isEmpty() && !device.is_foreign) {
      adapters.append({.description = device.description, .index = device.index});
    }
  }
  co_return adapters;
}

Task<std::expected<NetworkManagerSetup::Device, SetupResult>> NetworkManagerSetup::Find(
    int adapter) {
  const auto paths = co_await DevicePaths();
  if (!paths) {
    co_return std::unexpected(paths.error());
  }
  for (const QString& path : *paths) {
    Device device = co_await Describe(path);
    if (device.index == adapter) {
      if (device.is_foreign) {
        co_return Failure(SetupCode::kNotConfigurable);
      }
      if (device.profile.isEmpty()) {
        co_return Failure(SetupCode::kNotEnabled);
      }
      co_return device;
    }
  }
  co_return Failure(SetupCode::kNotEnabled);
}

Task<std::expected<NetworkProfile, SetupResult>> NetworkManagerSetup::ReadProfile(Device device) {
  const auto reply =
      co_await bus_.Call(device.profile, u"Settings.Connection"_s, u"GetSettings"_s, {});
  if (!reply) {
    co_return std::unexpected(ResultOfError(reply.error()));
  }
  NetworkProfile profile = qdbus_cast<NetworkProfile>(reply->value(0));
  if (profile.isEmpty()) {
    co_return Failure(SetupCode::kBadInstance);
  }
  co_return profile;
}

Task<std::expected<AdapterAddresses, SetupResult>> NetworkManagerSetup::Read(int adapter) {
  const auto device = co_await Find(adapter);
  if (!device) {
    co_return std::unexpected(device.error());
  }
  const auto profile = co_await ReadProfile(*device);
  const QVariantMap properties = co_await bus_.Properties(device->path, u"Device"_s);
  const QVariantMap config =
      co_await bus_.Properties(PathIn(properties, u"Ip4Config"_s), u"IP4Config"_s);
  AdapterAddresses addresses;
  const QList<QVariantMap> own = MapsIn(config, u"AddressData"_s);
  if (!own.isEmpty()) {
    addresses.address = own.first().value(u"address"_s).toString();
    addresses.mask = DottedIpv4(MaskOfLength(own.first().value(u"prefix"_s).toInt()));
  }
  const QString gateway = config.value(u"Gateway"_s).toString();
  addresses.gateway = gateway.isEmpty() ? addresses.gateway : gateway;
  const QList<QVariantMap> servers = MapsIn(config, u"NameserverData"_s);
  for (qsizetype i = 0; i < servers.size() && i < 2; ++i) {
    (i == 0 ? addresses.first_server : addresses.second_server) =
        servers[i].value(u"address"_s).toString();
  }
  addresses.is_automatic =
      profile && profile->value(u"ipv4"_s).value(u"method"_s).toString() == "auto"_L1;
  co_return addresses;
}

Task<SetupResult> NetworkManagerSetup::SetFixed(int adapter, FixedAddress wanted) {
  SetupResult result = co_await Apply(
      adapter,
      {.edit = [wanted](QVariantMap* ipv4) { MakeFixed(wanted, ipv4); }, .wanted = wanted});
  co_return result;
}

Task<SetupResult> NetworkManagerSetup::SetAutomatic(int adapter) {
  SetupResult result = co_await Apply(adapter, {.edit = MakeAutomatic, .wanted = {}});
  co_return result;
}

Task<SetupResult> NetworkManagerSetup::Apply(int adapter, Change change) {
  const auto device = co_await Find(adapter);
  if (!device) {
    co_return device.error();
  }
  const auto addresses = co_await Read(adapter);
  if (!addresses) {
    co_return addresses.error();
  }
  const auto created = co_await bus_.Call(
      kManager, {}, u"CheckpointCreate"_s,
      {QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath(device->path)}),
       static_cast<quint32>(limits_.unconfirmed.count()), quint32{0}});
  if (!created) {
    co_return ResultOfError(created.error());
  }
  const QVariant checkpoint = created->value(0);
  SetupResult result = co_await WriteProfile(*device, change);
  const bool is_changed = result.IsDone();
  if (is_changed) {
    result = co_await TakeEffect(*device, change);
  }
  if (result.IsDone()) {
    result = co_await CheckGateway(*device, change.wanted);
  }
  if (result.undo == SetupResult::Undo::kUnknown) {
    co_await bus_.Call(kManager, {}, u"CheckpointRollback"_s, {checkpoint});
    co_return result;
  }
  if (result.IsDone() || !is_changed) {
    const auto ended = co_await bus_.Call(kManager, {}, u"CheckpointDestroy"_s, {checkpoint});
    if (ended || !is_changed) {
      co_return result;
    }
    result = ResultOfError(ended.error());  // unconfirmed, the change would not last
  }
  result.undo = co_await RollBack(checkpoint, *device, *addresses);
  co_return result;
}

Task<SetupResult> NetworkManagerSetup::WriteProfile(Device device, Change change) {
  auto profile = co_await ReadProfile(device);
  if (!profile) {
    co_return profile.error();
  }
  change.edit(&(*profile)[u"ipv4"_s]);
  const auto reply = co_await bus_.Call(device.profile, u"Settings.Connection"_s, u"Update"_s,
                                        {QVariant::fromValue(*profile)});
  if (reply) {
    co_return SetupResult();
  }
  SetupResult result = ResultOfError(reply.error());
  result.undo =
      IsWithoutAnswer(reply.error()) ? SetupResult::Undo::kUnknown : SetupResult::Undo::kNotNeeded;
  co_return result;
}

Task<SetupResult> NetworkManagerSetup::TakeEffect(Device device, Change change) {
  const auto reply = co_await bus_.Call(
      device.path, u"Device"_s, u"Reapply"_s,
      {QVariant::fromValue(NetworkProfile()), QVariant::fromValue(quint64{0}), quint32{0}});
  if (!reply) {
    co_return ResultOfError(reply.error());
  }
  const bool is_fixed = change.wanted.address != 0;
  const QDeadlineTimer deadline(is_fixed ? limits_.fixed : limits_.automatic);
  while (!deadline.hasExpired()) {
    const quint64 seen = bus_.Changes();
    const QVariantMap properties = co_await bus_.Properties(device.path, u"Device"_s);
    const quint32 state = StateIn(properties);
    if (state >= kDeactivating || state <= kDisconnected) {
      co_return SetupResult{.code = CodeOfStateReason(ReasonIn(properties))};
    }
    const bool is_in_effect = co_await IsInEffect(properties, change.wanted);
    if (is_in_effect) {
      co_return SetupResult();
    }
    co_await Until([&] { return bus_.Changes() != seen; })
        .WokenBy(&bus_, &NetworkManagerBus::changed)
        .AtMost(std::chrono::milliseconds(deadline.remainingTime()));
  }
  co_return SetupResult{.code = is_fixed ? SetupCode::kCannotConfigure
                                         : SetupCode::kCannotConfigureDhcp};
}

Task<bool> NetworkManagerSetup::IsInEffect(QVariantMap device, FixedAddress wanted) {
  if (StateIn(device) != kActivated) {
    co_return false;
  }
  QString address = DottedIpv4(wanted.address);
  if (wanted.address == 0) {
    const QVariantMap lease =
        co_await bus_.Properties(PathIn(device, u"Dhcp4Config"_s), u"DHCP4Config"_s);
    address = qdbus_cast<QVariantMap>(lease.value(u"Options"_s)).value(u"ip_address"_s).toString();
  }
  const QVariantMap config =
      co_await bus_.Properties(PathIn(device, u"Ip4Config"_s), u"IP4Config"_s);
  co_return std::ranges::any_of(MapsIn(config, u"AddressData"_s), [&](const QVariantMap& own) {
    return !address.isEmpty() && own.value(u"address"_s).toString() == address;
  });
}

// The computer is not cut off if its gateway answers. Without a gateway this cannot be told.
Task<SetupResult> NetworkManagerSetup::CheckGateway(Device device, FixedAddress wanted) {
  quint32 gateway = wanted.gateway;
  if (wanted.address == 0) {
    const QVariantMap properties = co_await bus_.Properties(device.path, u"Device"_s);
    const QVariantMap config =
        co_await bus_.Properties(PathIn(properties, u"Ip4Config"_s), u"IP4Config"_s);
    gateway = ParseIpv4(config.value(u"Gateway"_s).toString()).value_or(0);
  }
  const QDeadlineTimer deadline(limits_.gateway);
  NeighbourAnswer answer;
  while (gateway != 0) {
    answer = co_await neighbours_.Ask(device.index, gateway, kTryOfGateway);
    if (answer.kind == NeighbourAnswer::Kind::kAnswers || deadline.hasExpired()) {
      break;
    }
    co_await Sleep(kInterval);
  }
  co_return SetupResult{.code = answer.kind == NeighbourAnswer::Kind::kSilence
                                    ? SetupCode::kInvalidGateway
                                    : SetupCode::kDone};
}

Task<SetupResult::Undo> NetworkManagerSetup::RollBack(QVariant checkpoint, Device device,
                                                      AdapterAddresses former) {
  const auto reply = co_await bus_.Call(kManager, {}, u"CheckpointRollback"_s, {checkpoint});
  // Where this fails, NetworkManager does it by itself once the change is too old, or has done so.
  const QDeadlineTimer deadline(reply ? limits_.automatic
                                      : limits_.unconfirmed + limits_.automatic);
  while (!deadline.hasExpired()) {
    const quint64 seen = bus_.Changes();
    const bool is_back = co_await IsBack(device, former);
    if (is_back) {
      co_return SetupResult::Undo::kRolledBack;
    }
    co_await Until([&] { return bus_.Changes() != seen; })
        .WokenBy(&bus_, &NetworkManagerBus::changed)
        .AtMost(std::chrono::milliseconds(deadline.remainingTime()));
  }
  co_return SetupResult::Undo::kFailed;
}

Task<bool> NetworkManagerSetup::IsBack(Device device, AdapterAddresses former) {
  if (former.is_automatic) {
    const QVariantMap properties = co_await bus_.Properties(device.path, u"Device"_s);
    const bool is_in_effect = co_await IsInEffect(properties, {});
    co_return is_in_effect;
  }
  const auto now = co_await Read(device.index);
  co_return now && now->address == former.address && now->mask == former.mask &&
      now->gateway == former.gateway;
}

}  // namespace quayline
