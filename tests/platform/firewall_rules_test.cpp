// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// What the rules of firewalls let in, read from what their programs print.

#include <gtest/gtest.h>

#include "platform/linux/firewalld_rules.h"
#include "platform/linux/helper_firewall.h"
#include "platform/linux/nft_view.h"
#include "platform/linux/ufw_status.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// "name|ports|protocol" of each rule.
QStringList Rows(const FirewallView& view) {
  QStringList rows;
  for (const FirewallRule& rule : view.rules) {
    rows.append(u"%1|%2|%3"_s.arg(rule.name, PortsText(rule.first_port, rule.last_port))
                    .arg(rule.protocol));
  }
  return rows;
}

bool LetsIn(const FirewallView& view, const QString& ports) {
  return view.LetsIn(ParsePortsArgument(ports).value());
}

// As ufw 0.36.2 prints it; the OpenSSH line is one of an application profile.
constexpr const char* kUfwStatus = R"(Status: active
Logging: on (low)
Default: deny (incoming), allow (outgoing), disabled (routed)
New profiles: skip

To                         Action      From
--                         ------      ----
8080/tcp                   ALLOW IN    Anywhere                   # QYL Port 8080 TCP
53                         ALLOW IN    Anywhere                  
8081/tcp                   DENY IN     Anywhere                  
2222/tcp                   LIMIT IN    Anywhere                  
3306/tcp                   ALLOW IN    10.0.0.0/8                
80,443/tcp on eth0         ALLOW IN    Anywhere                  
192.168.1.5 99/tcp         ALLOW IN    Anywhere                  
Anywhere/gre               ALLOW IN    Anywhere/gre              
22/tcp (OpenSSH)           ALLOW IN    Anywhere                  
Anywhere                   ALLOW IN    1.2.3.4                   
8000:8100/tcp              ALLOW IN    Anywhere                   # not mine, # 3
5/tcp                      ALLOW IN    Anywhere                   (log) # to (v6) too
Anywhere/vrrp              ALLOW IN    Anywhere/vrrp             
8001/tcp                   DENY IN     Anywhere                   (log-all)
7000/udp                   DENY IN     Anywhere                   (log-all)
7000/udp                   ALLOW IN    Anywhere                  
8080/tcp (v6)              ALLOW IN    Anywhere (v6)              # QYL Port 8080 TCP
9000/tcp (v6)              ALLOW IN    Anywhere (v6)             

25/tcp                     ALLOW OUT   Anywhere                  
)";

TEST(FirewallRules, UfwIsReadAsItPrintsItsRulesAndTheFirstOneThatFitsCounts) {
  const FirewallView view = UfwView(kUfwStatus);
  EXPECT_EQ(Rows(view),
            QStringList({u"QYL Port 8080 TCP|8080|6"_s, u"53|53|6"_s, u"53|53|17"_s,
                         u"2222/tcp|2222|6"_s, u"3306/tcp|3306|6"_s, u"80,443/tcp on eth0|80|6"_s,
                         u"80,443/tcp on eth0|443|6"_s, u"192.168.1.5 99/tcp|99|6"_s,
                         u"Anywhere/gre|0|47"_s, u"22/tcp (OpenSSH)|22|6"_s,
                         u"not mine, # 3|8000-8100|6"_s, u"to (v6) too|5|6"_s,
                         u"Anywhere/vrrp|0|112"_s, u"7000/udp|7000|17"_s}));
  for (const char* open : {"tcp:8080", "udp:53", "tcp:2222", "tcp:22", "tcp:8000-8080", "tcp:5"}) {
    EXPECT_TRUE(LetsIn(view, QLatin1String(open))) << open;
  }
  for (const char* shut :
       {"udp:8080", "tcp:8081", "tcp:3306", "tcp:99", "tcp:25", "tcp:9000", "udp:7000", "tcp:80"}) {
    EXPECT_FALSE(LetsIn(view, QLatin1String(shut))) << shut;
  }
  EXPECT_TRUE(LetsIn(UfwView(kUfwStatus, u"eth0"_s), u"tcp:80"_s));
  EXPECT_FALSE(LetsIn(UfwView(kUfwStatus, u"eth1"_s), u"tcp:80"_s));
  const FirewallView open = UfwView(
      "Status: active\nDefault: allow (incoming), allow (outgoing), disabled (routed)\n\n"
      "To                         Action      From\n--                         ------      ----\n"
      "99/tcp                     REJECT IN   Anywhere\n");
  EXPECT_TRUE(LetsIn(open, u"udp:1-65535"_s));
  EXPECT_FALSE(LetsIn(open, u"tcp:98-100"_s));
  EXPECT_EQ(UfwView("Status: inactive\n").kind, FirewallKind::kNone);
}

constexpr const char* kUfwNumbered = R"(Status: active

     To                         Action      From
     --                         ------      ----
[ 1] 1                          ALLOW IN    Anywhere                   # qyl port 1
[ 2] 6 on lo                    LIMIT IN    10.0.0.1                   # QYL Port 6
[ 3] 25/tcp                     ALLOW OUT   Anywhere                   (out) # qyl port 25
[ 4] 1/udp                      DENY IN     Anywhere                   # qyl port 1
[ 5] 80,443:445/tcp             ALLOW IN    Anywhere                   (log) # QYL Port web
[ 6] 80/tcp                     ALLOW IN    Anywhere                   # web
[10] 1 (v6)                     ALLOW IN    Anywhere (v6)              # qyl port 1
)";

TEST(FirewallRules, OwnRulesOfUfwAreFoundByPortInWhateverFormTheyAre) {
  const struct {
    const char* ports;
    QList<int> numbers;
  } cases[] = {
      {"tcp:1", {10, 1}}, {"udp:1", {10, 1}}, {"udp:6", {2}},       {"tcp:25", {}},
      {"tcp:80", {5}},    {"tcp:444", {}},    {"tcp:443-445", {5}}, {"tcp:22", {}},
  };
  for (const auto& each : cases) {
    const FirewallPorts ports = ParsePortsArgument(QLatin1String(each.ports)).value();
    EXPECT_EQ(OwnUfwRules(kUfwNumbered, ports), each.numbers) << each.ports;
  }
}

// A ruleset as nft prints it, of the rules of one chain "inet filter input" and others.
FirewallView NftViewOf(const QByteArray& rules, const char* policy = "drop",
                       const QString& interface = {}) {
  const QByteArray json =
      R"({"nftables": [{"metainfo": {"version": "1.0.6"}},
      {"chain": {"family": "inet", "table": "filter", "name": "input", "type": "filter",
                 "hook": "input", "prio": 0, "policy": ")" +
      QByteArray(policy) + R"("}})" + (rules.isEmpty() ? "" : ",") + rules + "]}";
  return NftView(NftRuleset::Read(json).value(), interface);
}

QByteArray Rule(const QByteArray& expressions, const char* chain = "input",
                const char* comment = "") {
  return QByteArray(R"({"rule": {"family": "inet", "table": "filter", "chain": ")") + chain +
         R"(", "handle": 4, "comment": ")" + comment + R"(", "expr": [)" + expressions + "]}}";
}

constexpr const char* kWeb =
    R"({"match": {"op": "==", "left": {"payload": {"protocol": "tcp", "field": "dport"}},
                  "right": {"set": [80, {"range": [8000, 8010]}]}}})";
constexpr const char* kAccept = R"({"accept": null})";
constexpr const char* kNewOnly =
    R"({"match": {"op": "in", "left": {"ct": {"key": "state"}}, "right": ["new", "related"]}})";
constexpr const char* kEstablished =
    R"({"match": {"op": "in", "left": {"ct": {"key": "state"}},
                  "right": ["established", "related"]}})";
constexpr const char* kLoopback =
    R"({"match": {"op": "==", "left": {"meta": {"key": "iifname"}}, "right": "lo"}})";
constexpr const char* kFrom =
    R"({"match": {"op": "==", "left": {"payload": {"protocol": "ip", "field": "saddr"}},
                  "right": "10.0.0.1"}})";

QByteArray Both(const QByteArray& first, const QByteArray& second) { return first + ", " + second; }

TEST(FirewallRules, NftablesIsFollowedThroughItsChains) {
  struct Case {
    const char* name;
    QByteArray rules;
    bool web;   // whether tcp 80 and 8000-8010 pass
    bool rest;  // whether udp 80 passes
    const char* policy = "drop";
  };
  const QByteArray jump = Rule(R"({"jump": {"target": "more"}})");
  const Case cases[] = {
      {"no rules, policy drop", {}, false, false},
      {"no rules, policy accept", {}, true, true, "accept"},
      {"accepted ports", Rule(Both(kWeb, kAccept)), true, false},
      {"accepted when new", Rule(Both(kNewOnly, Both(kWeb, kAccept))), true, false},
      {"what is established is no new packet", Rule(Both(kEstablished, kAccept)), false, false},
      {"the computer's own packets", Rule(Both(kLoopback, kAccept)), false, false},
      {"one sender only", Rule(Both(kFrom, Both(kWeb, kAccept))), false, false},
      {"dropped before accepted", Rule(Both(kWeb, R"({"drop": null})")) + "," + Rule(kAccept),
       false, true},
      {"accepted before rejected",
       Rule(Both(kWeb, kAccept)) + "," + Rule(R"({"reject": {"type": "icmpx"}})"), true, false,
       "accept"},
      {"a match of iptables that is not known",
       Rule(Both(R"({"xt": {"type": "match", "name": "conntrack"}})", kAccept)), false, false},
      {"a comment of iptables",
       Rule(Both(kWeb, Both(R"({"xt": {"type": "match", "name": "comment"}})", kAccept))), true,
       false},
      {"another chain accepts", jump + "," + Rule(Both(kWeb, kAccept), "more"), true, false},
      {"another chain returns",
       jump + "," + Rule(kAccept) + "," + Rule(R"({"return": null})", "more"), true, true},
      {"goto does not come back", Rule(R"({"goto": {"target": "more"}})") + "," + Rule(kAccept),
       false, false},
      {"a chain that jumps to itself", Rule(R"({"jump": {"target": "input"}})"), false, false},
      {"an empty table of ours does not help",
       R"({"chain": {"family": "inet", "table": "quayline", "name": "input", "type": "filter",
                     "hook": "input", "prio": -10, "policy": "accept"}})",
       false, false},
  };
  for (const Case& each : cases) {
    const FirewallView view = NftViewOf(each.rules, each.policy);
    EXPECT_EQ(LetsIn(view, u"tcp:80"_s) && LetsIn(view, u"tcp:8000-8010"_s), each.web) << each.name;
    EXPECT_EQ(LetsIn(view, u"udp:80"_s), each.rest) << each.name;
  }
  const QByteArray gre =
      R"({"match": {"op": "==", "left": {"meta": {"key": "l4proto"}}, "right": 47}})";
  EXPECT_EQ(
      Rows(NftViewOf(Rule(Both(kWeb, kAccept)) + "," + Rule(Both(kWeb, kAccept), "input", "web") +
                     "," + Rule(Both(gre, kAccept)))),
      QStringList({u"filter input|80|6"_s, u"filter input|8000-8010|6"_s, u"web|80|6"_s,
                   u"web|8000-8010|6"_s, u"filter input|0|47"_s}));
  EXPECT_FALSE(NftRuleset::Read("Operation not permitted"));
}

TEST(FirewallRules, PortsOfNftablesThatAreComparedAreRanges) {
  const struct {
    const char* op;
    const char* row;
  } cases[] = {{">=", "1024-65535"}, {">", "1025-65535"}, {"<=", "1-1024"}, {"<", "1-1023"}};
  for (const auto& each : cases) {
    const QByteArray match = QByteArray(R"({"match": {"op": ")") + each.op +
                             R"(", "left": {"payload": {"protocol": "udp", "field": "dport"}},
                                 "right": 1024}})";
    const FirewallView view = NftViewOf(Rule(Both(match, kAccept)));
    const QString ports = QLatin1String(each.row);
    EXPECT_EQ(Rows(view), QStringList(u"filter input|%1|17"_s.arg(ports))) << each.op;
    EXPECT_TRUE(LetsIn(view, u"udp:"_s + ports)) << each.op;
    EXPECT_NE(LetsIn(view, u"udp:1"_s), LetsIn(view, u"udp:65535"_s)) << each.op;
  }
}

TEST(FirewallRules, ARuleOfNftablesForAnInterfaceCountsIfTheNetworkIsThere) {
  const struct {
    const char* op;
    const char* names;
    const char* network;
    bool passes;
  } cases[] = {
      {"==", R"("eth0")", "eth0", true},
      {"==", R"("docker0")", "eth0", false},
      {"!=", R"("docker0")", "eth0", true},
      {"!=", R"("eth0")", "eth0", false},
      {"==", R"({"set": ["docker0", "eth*"]})", "eth0", true},
      {"==", R"("eth*")", "wlan0", false},
      {"==", R"("docker0")", "", true},
      {"!=", R"("lo")", "", true},
      {"==", R"("lo")", "", false},
  };
  for (const auto& each : cases) {
    const QByteArray match = QByteArray(R"({"match": {"op": ")") + each.op +
                             R"(", "left": {"meta": {"key": "iifname"}}, "right": )" + each.names +
                             "}}";
    const FirewallView view =
        NftViewOf(Rule(Both(match, kAccept)), "drop", QLatin1String(each.network));
    EXPECT_EQ(LetsIn(view, u"tcp:80"_s), each.passes)
        << each.op << ' ' << each.names << ' ' << each.network;
  }
}

TEST(FirewallRules, RulesOfFirewalldAreReadByWhatTheyAreAbout) {
  const FirewallRule sctp{.name = u"sctp"_s, .first_port = 80, .last_port = 80, .protocol = 132};
  const FirewallRule ssh{.name = u"SSH"_s, .first_port = 22, .last_port = 22};
  const struct {
    const char* rule;
    QStringList rows;
    const char* ports;
    bool lets_in;
  } cases[] = {
      {R"(rule port port="80-90" protocol="tcp" nflog prefix="web" accept)",
       {u"web|80-90|6"_s},
       "tcp:80-90",
       true},
      {R"(rule source-port port="80" protocol="tcp" log prefix="x" accept)", {}, "tcp:80", false},
      {R"(rule service name="ssh" log prefix="QYL Port 22 TCP" accept)",
       {u"SSH|22|6"_s},
       "tcp:22",
       true},
      {R"(rule source address="10.0.0.1" service name="ssh" accept)",
       {u"SSH|22|6"_s},
       "tcp:22",
       false},
      {R"(rule service name="ssh" drop)", {}, "tcp:22", false},
      {R"(rule protocol value="udp" log prefix="all" accept)",
       {u"all|0|17"_s},
       "udp:1-65535",
       true},
  };
  for (const auto& each : cases) {
    const QStringList rules{QLatin1String(each.rule)};
    const FirewallView view = FirewalldView(
        {.rich_rules = rules, .ports_and_services = {sctp}, .services = {{u"ssh"_s, {ssh}}}});
    EXPECT_EQ(Rows(view), QStringList(u"sctp|80|132"_s) + each.rows) << each.rule;
    EXPECT_EQ(LetsIn(view, QLatin1String(each.ports)), each.lets_in) << each.rule;
    EXPECT_EQ(ServicesOfRichRules(rules).contains(u"ssh"_s), rules.first().contains(u"ssh"_s));
  }
}

TEST(FirewallRules, NamesAndArgumentsAreExactlyThese) {
  EXPECT_EQ(OwnRuleName({8080, 8080, kTcpNumber}), u"QYL Port 8080 TCP"_s);
  EXPECT_EQ(OwnRuleName({1, 65535, kUdpNumber}), u"QYL Port 1-65535 UDP"_s);
  EXPECT_TRUE(IsOwnRuleName(u"qyl port 1"_s));
  EXPECT_FALSE(IsOwnRuleName(u"QYL"_s));
  EXPECT_EQ(PortsArgument({6881, 6889, kUdpNumber}), u"udp:6881-6889"_s);
  for (const char* wrong : {"", "8080", "tcp:", "tcp:0", "tcp:65536", "tcp:9-8", "tcp:08", "gre:1",
                            "tcp:1-2-3", "tcp:1;reboot", "tcp:1\n", "TCP:1", "tcp:1-"}) {
    EXPECT_FALSE(ParsePortsArgument(QLatin1String(wrong))) << wrong;
  }
}

}  // namespace
}  // namespace quayline
