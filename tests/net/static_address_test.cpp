// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/static_address.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "net/maker_prefixes.h"
#include "platform/fake_adapters.h"
#include "platform/ipv4.h"
#include "test_main.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using Field = AddressField;
using Fault = AddressFault;

TypedAddresses Typed(const char* address, const char* mask = "255.255.255.0",
                     const char* gateway = "192.168.1.1", const char* first = "0.0.0.0",
                     const char* second = "0.0.0.0") {
  return {.address = QLatin1String(address),
          .mask = QLatin1String(mask),
          .gateway = QLatin1String(gateway),
          .first_server = QLatin1String(first),
          .second_server = QLatin1String(second)};
}

TEST(StaticAddress, WhatIsNoAddressForThisComputerIsFound) {
  const struct {
    TypedAddresses typed;
    AddressProblem problem;
  } cases[] = {
      {Typed(""), {Field::kAddress, Fault::kNoAddress}},
      {Typed("192.168.1"), {Field::kAddress, Fault::kNoAddress}},
      {Typed("192.168.1.256"), {Field::kAddress, Fault::kNoAddress}},
      {Typed("192.168.1.1.5"), {Field::kAddress, Fault::kNoAddress}},
      {Typed("192.168.1.-5"), {Field::kAddress, Fault::kNoAddress}},
      {Typed("192.168.1.010"), {Field::kAddress, Fault::kNoAddress}},  // 8 or 10?
      {Typed("192.168.1.\u0665"), {Field::kAddress, Fault::kNoAddress}},
      {Typed("0.0.0.0"), {Field::kAddress, Fault::kNotOfComputer}},
      {Typed("127.0.0.1"), {Field::kAddress, Fault::kNotOfComputer}},
      {Typed("224.0.0.5"), {Field::kAddress, Fault::kNotOfComputer}},
      {Typed("255.255.255.255"), {Field::kAddress, Fault::kNotOfComputer}},
      {Typed("192.168.1.5", "255.0.255.0"), {Field::kMask, Fault::kNoMask}},
      {Typed("192.168.1.5", "0.0.0.0"), {Field::kMask, Fault::kNoMask}},
      {Typed("192.168.1.5", "255.255.255.254"), {Field::kMask, Fault::kNoMask}},
      {Typed("192.168.1.5", "24"), {Field::kMask, Fault::kNoMask}},
      {Typed("192.168.1.5", "255.255.255.0", "0.0.0.0"), {Field::kGateway, Fault::kNotOfComputer}},
      {Typed("192.168.1.5", "255.255.255.0", "router"), {Field::kGateway, Fault::kNoAddress}},
      {Typed("192.168.1.5", "255.255.255.0", "192.168.1.0"),
       {Field::kGateway, Fault::kNetworkItself}},
      {Typed("192.168.2.5"), {Field::kAddress, Fault::kOutsideNetwork}},
      {Typed("192.168.1.129", "255.255.255.128"), {Field::kAddress, Fault::kOutsideNetwork}},
      {Typed("192.168.1.0"), {Field::kAddress, Fault::kNetworkItself}},
      {Typed("192.168.1.255"), {Field::kAddress, Fault::kBroadcast}},
      {Typed("192.168.1.127", "255.255.255.128"), {Field::kAddress, Fault::kBroadcast}},
      {Typed("192.168.1.1"), {Field::kAddress, Fault::kRoutersOwn}},
      {Typed("192.168.1.5", "255.255.255.0", "192.168.1.1", "8.8.8"),
       {Field::kFirstServer, Fault::kNoAddress}},
      {Typed("192.168.1.5", "255.255.255.0", "192.168.1.1", "0.0.0.0", "239.1.1.1"),
       {Field::kSecondServer, Fault::kNotOfComputer}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(
        (each.typed.address + u' ' + each.typed.mask + u' ' + each.typed.gateway).toStdString());
    const auto checked = CheckAddresses(each.typed);
    ASSERT_FALSE(checked.has_value());
    EXPECT_TRUE(checked.error() == each.problem) << static_cast<int>(checked.error().field) << ' '
                                                 << static_cast<int>(checked.error().fault);
  }
}

TEST(StaticAddress, EmptyServersAreLeftOutAndTheRouterIsOneWhereAllAre) {
  const struct {
    const char* first;
    const char* second;
    QStringList servers;
  } cases[] = {{"9.9.9.9", "8.8.8.8", {u"9.9.9.9"_s, u"8.8.8.8"_s}},
               {"9.9.9.9", "0.0.0.0", {u"9.9.9.9"_s}},
               {"0.0.0.0", "8.8.8.8", {u"8.8.8.8"_s}},
               {"0.0.0.0", " 0.0.0.0 ", {u"10.1.2.1"_s}}};
  for (const auto& each : cases) {
    const auto checked =
        CheckAddresses(Typed(" 10.9.8.7 ", "255.0.0.0", "10.1.2.1", each.first, each.second));
    ASSERT_TRUE(checked.has_value());
    EXPECT_EQ(DottedIpv4(checked->address), u"10.9.8.7"_s);
    EXPECT_EQ(checked->prefix_length, 8);
    QStringList servers;
    for (const quint32 server : checked->servers) {
      servers.append(DottedIpv4(server));
    }
    EXPECT_EQ(servers, each.servers);
  }
}

TEST(StaticAddress, TheOfferedAddressIsARandomOneOrTheLastOneOfTheSameNetwork) {
  QSet<QString> seen;
  for (int i = 0; i < 5000; ++i) {
    seen.insert(RandomAddress(u"10.0.0.7"_s));
  }
  EXPECT_EQ(seen.size(), 125);
  EXPECT_TRUE(seen.contains(u"10.0.0.125"_s) && seen.contains(u"10.0.0.249"_s));
  EXPECT_EQ(OfferedAddress(u"10.0.0.130"_s, u"10.0.0.77"_s), u"10.0.0.77"_s);
  EXPECT_EQ(OfferedAddress(u"10.0.0.130"_s, u"10.0.1.77"_s), u"10.0.0.130"_s);
  EXPECT_EQ(OfferedAddress(u"10.0.10.130"_s, u"10.0.1.77"_s), u"10.0.10.130"_s);
  EXPECT_EQ(OfferedAddress(u"10.0.0.130"_s, QString()), u"10.0.0.130"_s);
}

// Notes what is set, and never fails.
class NotingSetup final : public AddressSetup {
 public:
  QList<quint32> set;

  Task<std::expected<QList<SetupAdapter>, SetupResult>> List() override {
    co_return QList<SetupAdapter>();
  }
  Task<std::expected<AdapterAddresses, SetupResult>> Read(int) override {
    co_return AdapterAddresses();
  }
  Task<SetupResult> SetFixed(int, FixedAddress wanted) override {
    set.append(wanted.address);
    co_return SetupResult();
  }
  Task<SetupResult> SetAutomatic(int) override { co_return SetupResult(); }
};

class FakeNeighbours final : public Neighbours {
 public:
  NeighbourAnswer answer;
  int asked = 0;

  Task<NeighbourAnswer> Ask(int, quint32, std::chrono::milliseconds) override {
    ++asked;
    co_return answer;
  }
};

TEST(StaticAddress, AnAddressThatADeviceAnswersForIsNotSet) {
  using Kind = NeighbourAnswer::Kind;
  NotingSetup setup;
  FakeNeighbours neighbours;
  FakeAdapters adapters;
  adapters.address_table = {u"192.168.1.20"_s};
  StaticAddress changes(setup, neighbours, adapters);
  const auto set = [&](const char* address) {
    StaticOutcome outcome;
    const auto run = [](StaticAddress* made, TypedAddresses typed, StaticOutcome* out) -> Task<> {
      *out = co_await made->Set(2, std::move(typed));
    };
    EXPECT_TRUE(RunTask(run(&changes, Typed(address), &outcome)));
    return outcome;
  };
  const QByteArray hardware("\xb8\x27\xeb\x01\x02\x03", 6);
  neighbours.answer = {.kind = Kind::kAnswers, .hardware_address = hardware};
  const StaticOutcome taken = set("192.168.1.150");
  EXPECT_EQ(taken.taken_by, hardware);
  EXPECT_FALSE(taken.IsDone());
  EXPECT_FALSE(set("192.168.1.1").IsDone());
  EXPECT_TRUE(setup.set.isEmpty());
  EXPECT_EQ(neighbours.asked, 1) << "nothing is asked about an address that is refused anyway";
  EXPECT_TRUE(set("192.168.1.20").IsDone()) << "this computer's own";
  for (const Kind kind : {Kind::kSilence, Kind::kUnknown}) {
    neighbours.answer = {.kind = kind};
    EXPECT_TRUE(set("192.168.1.150").IsDone());
  }
  EXPECT_EQ(setup.set.size(), 3);
}

TEST(StaticAddress, TheMakerOfADeviceIsNamedByThePrefix) {
  const QByteArray known("\x00\x11\x32\x00\x00\xff", 6);
  EXPECT_EQ(MakerOf(known), u"Synology"_s);
  EXPECT_EQ(MakerPrefix(known), u"00:11:32"_s);
  EXPECT_EQ(HardwareAddressText(known), u"00:11:32:00:00:FF"_s);
  EXPECT_FALSE(IsMadeUp(known));
  const QByteArray phone("\xfe\x51\xe3\x9a\x95\x5c", 6);
  EXPECT_EQ(MakerOf(phone), QString());
  EXPECT_TRUE(IsMadeUp(phone));
  EXPECT_EQ(MakerOf("ab"), QString());
  EXPECT_EQ(MakerPrefix("ab"), u"61:62"_s);
}

}  // namespace
}  // namespace quayline::testing
