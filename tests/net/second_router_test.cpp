// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/second_router.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include "net/router_chain.h"
#include "platform/linux/linux_adapters.h"
#include "platform/linux/linux_echoes.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::RouterChain;

TEST(SecondRouterTest, HomeAddressesAreCountedAndTheOutsideAddressDecides) {
  const struct {
    const char* addresses;
    const char* outside;
    int count;
    const char* shown;
  } cases[] = {
      {"192.168.1.1", "", 1, "1"},
      {"192.168.1.1 10.0.0.1", "", 2, "2"},
      {"192.168.1.1 10.10.3.1", "", 2, "2"},
      {"10.0.01.1 10.1.1.9 10.10.0.1 192.168", "", 4, "4"},
      {"10.2.0.1 10.0.1.1 10.1.10.1 8.8.8.8 11.0.0.1", "", 0, "1"},
      {"172.16.0.1 172.31.255.254 172.15.0.1 172.32.0.1", "", 2, "2"},
      {"192.168.1.1 100.64.0.1 100.127.0.1 100.128.0.1", "", 3, "3"},
      {"10.0.0.1 10.0.0.2 10.0.0.3 10.0.0.4 10.0.0.5", "", 5, "5+"},
      {"10.0.0.1 10.0.0.2 10.0.0.3 10.0.0.4 10.0.0.5 10.0.0.6", "", 6, ""},
      {"", "", 0, "1"},
      {"192.168.1.1 10.10.3.1", " 203.0.113.7 ", 1, "1"},
      {"192.168.1.1", "100.70.0.5", 2, "2"},
      {"192.168.1.1 10.0.0.1 10.10.3.1", "10.0.0.7", 3, "3"},
      {"192.168.1.1 10.0.0.1", "0.0.0.0", 2, "2"},
      {"192.168.1.1 10.0.0.1", "not yet", 2, "2"},
  };
  for (const auto& c : cases) {
    const QStringList addresses = QString::fromLatin1(c.addresses).split(u' ', Qt::SkipEmptyParts);
    const RouterCount count = CountRouters(addresses, QLatin1String(c.outside));
    EXPECT_EQ(count.count, c.count) << c.addresses;
    EXPECT_EQ(count.Shown(), QLatin1String(c.shown)) << c.addresses;
    EXPECT_EQ(count.HasSecondRouter(), c.count > 1 && c.count < 6) << c.addresses;
  }
  for (const auto& [number, text] :
       {std::pair(2, "2nd"), {11, "11th"}, {21, "21st"}, {23, "23rd"}, {101, "101th"}}) {
    EXPECT_EQ(EnglishOf(OrdinalText(number)), QLatin1String(text));
  }
}

class SecondRouterChainTest : public ::testing::Test {
 protected:
  // What a search finds, as text: the addresses, and what else it reports.
  static QString Find() {
    const LinuxAdapters adapters;
    LinuxEchoes echoes;
    SecondRouterSearch search(adapters, echoes);
    QString found;
    QObject::connect(&search, &SecondRouterSearch::ended, &search, [&](const RouterTrace& trace) {
      found = u'[' + trace.addresses.join(u' ') + u']' +
              (trace.is_forbidden ? u" forbidden"_s : u""_s) +
              (trace.is_silent ? u" silent"_s : u""_s);
    });
    search.Start();
    testing::RunUntil([&] { return !found.isEmpty(); }, 10s);
    return found;
  }
};

#define SKIP_WITHOUT(chain)                                                               \
  if (!(chain).IsReady()) {                                                               \
    GTEST_SKIP() << "needs the right to make network namespaces (as root), and iproute2"; \
  }

TEST_F(SecondRouterChainTest, EveryRouterOnTheWayIsFoundOnce) {
  const QList<QStringList> chains{
      {u"192.168.1"_s, u"203.0.113"_s},
      {u"192.168.1"_s, u"10.0.0"_s, u"203.0.113"_s},
      {u"192.168.1"_s, u"192.168.2"_s, u"10.0.0"_s, u"100.64.1"_s, u"172.16.5"_s, u"203.0.113"_s}};
  const QStringList found{u"[192.168.1.1 208.67.222.222]"_s,
                          u"[192.168.1.1 10.0.0.1 208.67.222.222]"_s,
                          u"[192.168.1.1 192.168.2.1 10.0.0.1 100.64.1.1 172.16.5.1]"_s};
  for (qsizetype i = 0; i < chains.size(); ++i) {
    const RouterChain chain(chains[i]);
    SKIP_WITHOUT(chain);
    EXPECT_EQ(Find(), found[i]);
  }
}

TEST_F(SecondRouterChainTest, ASilentRouterIsPassedOverWithTheOneAfterIt) {
  RouterChain chain({u"192.168.1"_s, u"192.168.2"_s, u"10.0.0"_s, u"100.64.1"_s, u"203.0.113"_s});
  SKIP_WITHOUT(chain);
  chain.Silence(2);
  EXPECT_EQ(Find(), u"[192.168.1.1 100.64.1.1 208.67.222.222]"_s);
  chain.Silence(1);
  chain.Silence(3);
  EXPECT_EQ(Find(), u"[192.168.1.1 208.67.222.222]"_s) << "the gateway is known";
}

TEST_F(SecondRouterChainTest, WithoutANetworkOrTheRightItSaysSo) {
  {
    const RouterChain alone(QStringList{});
    SKIP_WITHOUT(alone);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(Find(), u"[] silent"_s);
    EXPECT_LT(timer.elapsed(), 20000);
  }
  RouterChain chain({u"192.168.1"_s, u"203.0.113"_s});
  chain.AllowEchoes(false);
  EXPECT_EQ(Find(), u"[192.168.1.1] forbidden"_s);
}

TEST_F(SecondRouterChainTest, ACancelledSearchReportsNothing) {
  RouterChain chain({u"192.168.1"_s, u"203.0.113"_s});
  SKIP_WITHOUT(chain);
  chain.Silence(1);
  const LinuxAdapters adapters;
  LinuxEchoes echoes;
  SecondRouterSearch search(adapters, echoes);
  bool has_ended = false;
  int steps = 0;
  QObject::connect(&search, &SecondRouterSearch::ended, &search, [&] { has_ended = true; });
  QObject::connect(&search, &SecondRouterSearch::progressed, &search, [&] { ++steps; });
  search.Start();
  EXPECT_EQ(steps, 1) << "it has waited before it came back";
  search.Cancel();
  testing::RunUntil([&] { return has_ended; }, 700ms);
  EXPECT_FALSE(has_ended);
  EXPECT_EQ(steps, 1);
}

}  // namespace
}  // namespace quayline
