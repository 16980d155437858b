// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_adapters.h"

#include <QStandardPaths>

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// Each look is taken by a child in a network of its own, which has nothing but a switched-off
// loopback.
class LinuxAdaptersTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (See({}, [] { return u"allowed"_s; }) != u"allowed"_s) {
      GTEST_SKIP() << "needs the right to make a network namespace, and iproute2";
    }
  }

  // What `look` returns in a child process, after `ip -batch` with `setup`.
  QString See(const QByteArray& setup, const std::function<QString()>& look) const {
    int ends[2] = {};
    if (pipe(ends) != 0) {
      return {};
    }
    const pid_t child = fork();
    if (child == 0) {
      const int flags = geteuid() == 0 ? CLONE_NEWNET : CLONE_NEWNET | CLONE_NEWUSER;
      const bool is_alone = unshare(flags) == 0 && RunIp(setup);
      const QByteArray seen = is_alone ? look().toUtf8() : QByteArray("no such network");
      _exit(write(ends[1], seen.constData(), static_cast<std::size_t>(seen.size())) < seen.size());
    }
    close(ends[1]);
    QByteArray seen;
    char buffer[4096];
    for (ssize_t size = 0; (size = read(ends[0], buffer, sizeof(buffer))) > 0;) {
      seen.append(buffer, size);
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0 ? QString::fromUtf8(seen) : u"the child died"_s;
  }

 private:
  bool RunIp(const QByteArray& commands) const {
    FILE* ip = popen((program_.toLocal8Bit() + " -batch - >/dev/null").constData(), "w");
    fwrite(commands.constData(), 1, static_cast<std::size_t>(commands.size()), ip);
    return pclose(ip) == 0;
  }

  QString program_ = QStandardPaths::findExecutable(u"ip"_s, {u"/sbin"_s, u"/usr/sbin"_s});
};

// The adapters of the tests begin with "q"; their other ends and what the kernel adds by itself
// (tunnels) do not.
QString Listed() {
  QStringList lines;
  for (const Adapter& each : LinuxAdapters().List()) {
    if (each.description.startsWith(u'q') || each.description == u"lo"_s) {
      lines += QStringList{each.description, each.address, each.mask, each.gateway}.join(u' ');
    }
  }
  return lines.join(u"; "_s);
}

const QByteArray kTwoCables =
    "link set lo up\n"
    "link add q1 type veth peer name p1\nlink set q1 up\nlink set p1 up\n"
    "link add q0 type veth peer name p0\nlink set q0 up\nlink set p0 up\n";

TEST_F(LinuxAdaptersTest, ListsWhatTheKernelKnows) {
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
       kTwoCables + "addr add 192.168.16.5/20 dev q0\naddr add 192.168.16.6/20 dev q0\n"
                    "addr add 10.1.1.1/30 dev q0\n",
       "q1 0.0.0.0 0.0.0.0 0.0.0.0; q0 192.168.16.5 255.255.240.0 0.0.0.0"},
      {"the other end of a point-to-point link is taken for ours",
       kTwoCables + "addr add 10.8.0.2 peer 10.8.0.1/32 dev q0\n",
       "q1 0.0.0.0 0.0.0.0 0.0.0.0; q0 10.8.0.2 255.255.255.255 0.0.0.0"},
      {"a worse metric wins, or one adapter's gateway goes to another",
       kTwoCables + "addr add 10.0.0.2/24 dev q0\naddr add 10.0.1.2/24 dev q1\n"
                    "route add default via 10.0.0.9 dev q0 metric 900\n"
                    "route add default via 10.0.0.1 dev q0 metric 100\n"
                    "route add default via 10.0.1.1 dev q1 metric 600\n",
       "q1 10.0.1.2 255.255.255.0 10.0.1.1; q0 10.0.0.2 255.255.255.0 10.0.0.1"},
      {"a route to a part of the net, a device route, another table or a ban counts as gateway",
       kTwoCables + "addr add 10.0.0.2/24 dev q0\nroute add 172.16.0.0/12 via 10.0.0.3 dev q0\n"
                    "route add default dev q1 metric 5\nroute add blackhole default metric 7\n"
                    "route add default via 10.0.0.4 dev q0 table 200\n",
       "q1 0.0.0.0 0.0.0.0 0.0.0.0; q0 10.0.0.2 255.255.255.0 0.0.0.0"},
      {"the hops of a route over two adapters are lost",
       kTwoCables + "addr add 10.0.0.2/24 dev q0\naddr add 10.0.1.2/24 dev q1\n"
                    "route add default nexthop via 10.0.0.1 dev q0 nexthop via 10.0.1.1 dev q1\n",
       "q1 10.0.1.2 255.255.255.0 10.0.1.1; q0 10.0.0.2 255.255.255.0 10.0.0.1"},
      {"an unplugged adapter keeps its gateway",
       kTwoCables + "addr add 10.0.0.2/24 dev q0\nroute add default via 10.0.0.1 dev q0\n"
                    "link set p0 down\n",
       "q1 0.0.0.0 0.0.0.0 0.0.0.0; q0 10.0.0.2 255.255.255.0 0.0.0.0"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(See(c.setup, Listed), QLatin1String(c.expected)) << c.fault;
  }
}

TEST_F(LinuxAdaptersTest, ReadsATableThatComesInManyPieces) {
  QByteArray setup;
  for (int i = 0; i < 120; ++i) {
    const QByteArray n = QByteArray::number(i);
    setup += "link add q" + n + " type veth peer name p" + n + "\nlink set q" + n +
             " up\naddr add 10.1." + n + ".2/24 dev q" + n + "\n";
  }
  const QStringList lines = See(setup, Listed).split(u"; "_s);
  EXPECT_EQ(lines.size(), 120);
  EXPECT_EQ(lines.last(), u"q119 10.1.119.2 255.255.255.0 0.0.0.0"_s);
}

TEST_F(LinuxAdaptersTest, TheAddressTableHoldsEveryAddressInTheKernelsOrder) {
  EXPECT_EQ(See(kTwoCables + "addr add 10.0.0.2/24 dev q0\naddr add 10.0.0.9/24 dev q0\n"
                             "addr add 10.8.0.2 peer 10.8.0.1/32 dev q1\n",
                [] { return LinuxAdapters().AddressTable().join(u' '); }),
            u"127.0.0.1 10.8.0.2 10.0.0.2 10.0.0.9"_s);
}

TEST_F(LinuxAdaptersTest, LocalAddressFollowsTheRouteToTheHost) {
  const QByteArray lan =
      kTwoCables + "addr add 10.0.0.2/24 dev q0\naddr add 192.168.7.2/24 dev q1\n";
  const QByteArray wan = lan + "route add default via 10.0.0.1 dev q0\n";
  const struct {
    const char* fault;
    QByteArray setup;
    const char* host;
    const char* expected;
  } cases[] = {
      {"always the default route's address", wan, "192.168.7.1", "192.168.7.2"},
      {"the first adapter's address", wan, "", "10.0.0.2"},
      {"an address though nothing leads there", lan, "8.8.8.8", ""},
      {"an address without any internet", lan, "", ""},
      {"the program's own computer", lan, "127.0.0.1", "127.0.0.1"},
      {"a name is taken for an address", wan, "router.lan", ""},
      {"a host that is no number", wan, "192.168.7.", ""},
  };
  for (const auto& c : cases) {
    const QString host = QString::fromLatin1(c.host);
    EXPECT_EQ(See(c.setup, [&] { return LinuxAdapters().LocalAddress(host); }),
              QLatin1String(c.expected))
        << c.fault;
  }
}

}  // namespace
}  // namespace quayline
