// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/static_address.h"

#include <QRandomGenerator>

#include <chrono>

#include "platform/ipv4.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;
using Fault = AddressFault;

constexpr auto kProbeTime = 12s;    // a device that was seen before is asked again after five
constexpr int kLowestRandom = 125;  // routers begin to give addresses away at 2 or 100
constexpr int kHighestRandom = 249;
constexpr int kLongestPrefix = 30;  // leaves a network and a broadcast address, and two others

// Not this network, this computer, a group of computers, or all of them.
bool IsOfComputer(quint32 address) {
  const quint32 first = address >> 24;
  return first != 0 && first != 127 && first < 224;
}

std::expected<quint32, AddressProblem> CheckHost(const QString& text, AddressField field) {
  const std::optional<quint32> address = ParseIpv4(text.trimmed());
  if (!address) {
    return std::unexpected(AddressProblem{field, Fault::kNoAddress});
  }
  if (!IsOfComputer(*address)) {
    return std::unexpected(AddressProblem{field, Fault::kNotOfComputer});
  }
  return *address;
}

std::expected<int, AddressProblem> CheckMask(const QString& text) {
  const std::optional<quint32> mask = ParseIpv4(text.trimmed());
  const std::optional<int> length = mask ? PrefixLength(*mask) : std::nullopt;
  if (!length || *length == 0 || *length > kLongestPrefix) {
    return std::unexpected(AddressProblem{AddressField::kMask, Fault::kNoMask});
  }
  return *length;
}

// That `address` is a place for a computer in its network.
std::optional<Fault> FaultInNetwork(quint32 address, quint32 mask) {
  if ((address & ~mask) == 0) {
    return Fault::kNetworkItself;
  }
  return (address | mask) == ~quint32{0} ? std::optional(Fault::kBroadcast) : std::nullopt;
}

std::optional<AddressProblem> CheckPlaces(const FixedAddress& checked) {
  const quint32 mask = MaskOfLength(checked.prefix_length);
  if (const auto fault = FaultInNetwork(checked.gateway, mask)) {
    return AddressProblem{AddressField::kGateway, *fault};
  }
  if ((checked.address & mask) != (checked.gateway & mask)) {
    return AddressProblem{AddressField::kAddress, Fault::kOutsideNetwork};
  }
  if (const auto fault = FaultInNetwork(checked.address, mask)) {
    return AddressProblem{AddressField::kAddress, *fault};
  }
  if (checked.address == checked.gateway) {
    return AddressProblem{AddressField::kAddress, Fault::kRoutersOwn};
  }
  return std::nullopt;
}

}  // namespace

std::expected<FixedAddress, AddressProblem> CheckAddresses(const TypedAddresses& typed) {
  const auto address = CheckHost(typed.address, AddressField::kAddress);
  const auto length = CheckMask(typed.mask);
  const auto gateway = CheckHost(typed.gateway, AddressField::kGateway);
  if (!address || !length || !gateway) {
    return std::unexpected(!address ? address.error() : !length ? length.error() : gateway.error());
  }
  FixedAddress checked{.address = *address, .prefix_length = *length, .gateway = *gateway};
  if (const auto problem = CheckPlaces(checked)) {
    return std::unexpected(*problem);
  }
  const std::pair<QString, AddressField> servers[] = {
      {typed.first_server, AddressField::kFirstServer},
      {typed.second_server, AddressField::kSecondServer}};
  for (const auto& [text, field] : servers) {
    if (text.trimmed() == QLatin1String("0.0.0.0")) {
      continue;
    }
    const auto server = CheckHost(text, field);
    if (!server) {
      return std::unexpected(server.error());
    }
    checked.servers.append(*server);
  }
  if (checked.servers.isEmpty()) {
    checked.servers.append(checked.gateway);
  }
  return checked;
}

QString RandomAddress(const QString& current) {
  const int number = QRandomGenerator::global()->bounded(kLowestRandom, kHighestRandom + 1);
  return current.section(u'.', 0, 2) + u'.' + QString::number(number);
}

QString OfferedAddress(const QString& random, const QString& last_set) {
  const QString network = last_set.section(u'.', 0, 2) + u'.';
  return !last_set.isEmpty() && random.startsWith(network) ? last_set : random;
}

Task<StaticOutcome> StaticAddress::Set(int adapter, TypedAddresses typed) {
  const auto wanted = CheckAddresses(typed);
  if (!wanted) {
    co_return StaticOutcome{.problem = wanted.error()};
  }
  // This computer may keep the address that it has.
  if (!adapters_.AddressTable().contains(DottedIpv4(wanted->address))) {
    const NeighbourAnswer answer = co_await neighbours_.Ask(adapter, wanted->address, kProbeTime);
    if (answer.kind == NeighbourAnswer::Kind::kAnswers) {
      co_return StaticOutcome{.taken_by = answer.hardware_address};
    }
  }
  const SetupResult result = co_await setup_.SetFixed(adapter, *wanted);
  co_return StaticOutcome{.result = result};
}

}  // namespace quayline
