// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_adapters.h"

#include <gtest/gtest.h>

#include "platform/network_namespace.h"
#include "test_main.h"

namespace quayline {
namespace {

// The adapters of the tests begin with "q"; their other ends and what the kernel adds by itself
// (tunnels) do not.
QString Seen(const LinuxAdapters& adapters) {
  QStringList lines;
  for (const Adapter& each : adapters.List()) {
    if (each.description.startsWith(QLatin1Char('q')) || each.description == QStringLiteral("lo")) {
      lines.append(QStringList{each.description, each.address, each.mask, each.gateway}.join(
          QLatin1Char(' ')));
    }
  }
  return lines.join(QStringLiteral("; "));
}

constexpr char kTwoCables[] =
    "link set lo up\n"
    "link add q1 type veth peer name p1\n"
    "link add q0 type veth peer name p0\n"
    "link set q1 up\nlink set p1 up\nlink set q0 up\nlink set p0 up\n";

TEST(LinuxAdapters, ListsWhatTheKernelKnows) {
  const struct {
    const char* fault;
    QByteArray setup;
    const char* expected;
  } cases[] = {
      {"loopback is listed", "link set lo up\n", ""},
      {"order by name, or an adapter without address is left out",
       "link add q9 type veth peer name p9\nlink add q1 type veth peer name p1\n"
       "link set q1 up\nlink set p1 up\naddr add 10.0.0.2/8 dev q1\nroute add default via "
       "10.0.0.1\n",
       "q9 0.0.0.0 0.0.0.0 0.0.0.0; q1 10.0.0.2 255.0.0.0 10.0.0.1"},
      {"a later address wins, or the mask is rounded to whole bytes",
       "addr add 192.168.16.5/20 dev q0\naddr add 192.168.16.6/20 dev q0\n"
       "addr add 10.1.1.1/30 dev q0\n",
       "q1 0.0.0.0 0.0.0.0 0.0.0.0; q0 192.168.16.5 255.255.240.0 0.0.0.0"},
      {"the other end of a point-to-point link is taken for ours",
       "addr add 10.8.0.2 peer 10.8.0.1/32 dev q0\n",
       "q1 0.0.0.0 0.0.0.0 0.0.0.0; q0 10.8.0.2 255.255.255.255 0.0.0.0"},
      {"a worse metric wins, or one adapter's gateway goes to another",
       "addr add 10.0.0.2/24 dev q0\naddr add 10.0.1.2/24 dev q1\n"
       "route add default via 10.0.0.9 dev q0 metric 900\n"
       "route add default via 10.0.0.1 dev q0 metric 100\n"
       "route add default via 10.0.1.1 dev q1 metric 600\n",
       "q1 10.0.1.2 255.255.255.0 10.0.1.1; q0 10.0.0.2 255.255.255.0 10.0.0.1"},
      {"a route to a part of the net, a device route, another table or a ban counts as gateway",
       "addr add 10.0.0.2/24 dev q0\nroute add 172.16.0.0/12 via 10.0.0.3 dev q0\n"
       "route add default dev q1 metric 5\nroute add blackhole default metric 7\n"
       "route add default via 10.0.0.4 dev q0 table 200\n",
       "q1 0.0.0.0 0.0.0.0 0.0.0.0; q0 10.0.0.2 255.255.255.0 0.0.0.0"},
      {"the hops of a route over two adapters are lost",
       "addr add 10.0.0.2/24 dev q0\naddr add 10.0.1.2/24 dev q1\n"
       "route add default nexthop via 10.0.0.1 dev q0 nexthop via 10.0.1.1 dev q1\n",
       "q1 10.0.1.2 255.255.255.0 10.0.1.1; q0 10.0.0.2 255.255.255.0 10.0.0.1"},
      {"an unplugged adapter keeps its gateway",
       "addr add 10.0.0.2/24 dev q0\nroute add default via 10.0.0.1 dev q0\nlink set p0 down\n",
       "q1 0.0.0.0 0.0.0.0 0.0.0.0; q0 10.0.0.2 255.255.255.0 0.0.0.0"},
  };
  for (const auto& c : cases) {
    const bool is_whole_setup = c.setup.startsWith("link add") || c.setup.startsWith("link set lo");
    const auto seen = testing::InNetworkOfItsOwn(is_whole_setup ? c.setup : kTwoCables + c.setup,
                                                 [] { return Seen(LinuxAdapters()); });
    if (!seen) {
      GTEST_SKIP() << "needs the right to make a network namespace, and iproute2";
    }
    EXPECT_EQ(*seen, QLatin1String(c.expected)) << c.fault;
  }
}

TEST(LinuxAdapters, ReadsATableThatComesInManyPieces) {
  QByteArray setup;
  for (int i = 0; i < 120; ++i) {
    const QByteArray n = QByteArray::number(i);
    setup += "link add q" + n + " type veth peer name p" + n + "\nlink set q" + n +
             " up\naddr add 10.1." + n + ".2/24 dev q" + n + "\n";
  }
  const auto seen = testing::InNetworkOfItsOwn(setup, [] {
    const QStringList lines = Seen(LinuxAdapters()).split(QStringLiteral("; "));
    return QString::number(lines.size()) + QLatin1Char(' ') + lines.last();
  });
  if (!seen) {
    GTEST_SKIP() << "needs the right to make a network namespace, and iproute2";
  }
  EXPECT_EQ(*seen, QStringLiteral("120 q119 10.1.119.2 255.255.255.0 0.0.0.0"));
}

TEST(LinuxAdapters, TheAddressTableHoldsEveryAddressInTheKernelsOrder) {
  const auto seen = testing::InNetworkOfItsOwn(
      QByteArray(kTwoCables) +
          "addr add 10.0.0.2/24 dev q0\naddr add 10.0.0.9/24 dev q0\n"
          "addr add 10.8.0.2 peer 10.8.0.1/32 dev q1\n",
      [] { return LinuxAdapters().AddressTable().join(QLatin1Char(' ')); });
  if (!seen) {
    GTEST_SKIP() << "needs the right to make a network namespace, and iproute2";
  }
  EXPECT_EQ(*seen, QStringLiteral("127.0.0.1 10.8.0.2 10.0.0.2 10.0.0.9"));
}

TEST(LinuxAdapters, LocalAddressFollowsTheRouteToTheHost) {
  const QByteArray lan = "addr add 10.0.0.2/24 dev q0\naddr add 192.168.7.2/24 dev q1\n";
  const QByteArray wan = "route add default via 10.0.0.1 dev q0\n";
  const struct {
    const char* fault;
    QByteArray setup;
    const char* host;
    const char* expected;
  } cases[] = {
      {"always the default route's address", lan + wan, "192.168.7.1", "192.168.7.2"},
      {"the first adapter's address", lan + wan, "", "10.0.0.2"},
      {"an address though nothing leads there", lan, "8.8.8.8", ""},
      {"an address without any internet", lan, "", ""},
      {"the program's own computer", lan, "127.0.0.1", "127.0.0.1"},
      {"a name is taken for an address", lan + wan, "router.lan", ""},
      {"a host that is no number", lan + wan, "192.168.7.", ""},
  };
  for (const auto& c : cases) {
    const auto seen = testing::InNetworkOfItsOwn(kTwoCables + c.setup, [&] {
      return LinuxAdapters().LocalAddress(QString::fromLatin1(c.host));
    });
    if (!seen) {
      GTEST_SKIP() << "needs the right to make a network namespace, and iproute2";
    }
    EXPECT_EQ(*seen, QLatin1String(c.expected)) << c.fault;
  }
}

}  // namespace
}  // namespace quayline
