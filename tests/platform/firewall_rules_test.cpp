// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// What the rules of firewalls let in, read from what their programs print.

#include <gtest/gtest.h>

#include "platform/linux/helper_firewall.h"
#include "platform/linux/nft_view.h"
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
8080/tcp (v6)              ALLOW IN    Anywhere (v6)              # QYL Port 8080 TCP
9000/tcp (v6)              ALLOW IN    Anywhere (v6)             

25/tcp                     ALLOW OUT   Anywhere                  
)";

TEST(FirewallRules, UfwIsReadAsItPrintsItsRulesAndTheFirstOneThatFitsCounts) {
  const FirewallView view = UfwView(kUfwStatus);
  EXPECT_EQ(Rows(view), QStringList({u"QYL Port 8080 TCP|8080|6"_s, u"53|53|6"_s, u"53|53|17"_s,
                                     u"2222/tcp|2222|6"_s, u"3306/tcp|3306|6"_s,
                                     u"80,443/tcp on eth0|80|6"_s, u"80,443/tcp on eth0|443|6"_s,
                                     u"192.168.1.5 99/tcp|99|6"_s, u"Anywhere/gre|0|47"_s,
                                     u"22/tcp (OpenSSH)|22|6"_s, u"not mine, # 3|8000-8100|6"_s}));
  for (const char* open : {"tcp:8080", "udp:53", "tcp:2222", "tcp:22", "tcp:8000-8080"}) {
    EXPECT_TRUE(LetsIn(view, QLatin1String(open))) << open;
  }
  for (const char* shut : {"udp:8080", "tcp:8081", "tcp:3306", "tcp:99", "tcp:25", "tcp:9000"}) {
    EXPECT_FALSE(LetsIn(view, QLatin1String(shut))) << shut;
  }
  const FirewallView open = UfwView(
      "Status: active\nDefault: allow (incoming), allow (outgoing), disabled (routed)\n\n"
      "To                         Action      From\n--                         ------      ----\n"
      "99/tcp                     REJECT IN   Anywhere\n");
  EXPECT_TRUE(LetsIn(open, u"udp:1-65535"_s));
  EXPECT_FALSE(LetsIn(open, u"tcp:98-100"_s));
  EXPECT_EQ(UfwView("Status: inactive\n").kind, FirewallKind::kNone);
}

// A ruleset as nft prints it, of the rules of one chain "inet filter input" and others.
FirewallView NftViewOf(const QByteArray& rules, const char* policy = "drop") {
  const QByteArray json =
      R"({"nftables": [{"metainfo": {"version": "1.0.6"}},
      {"chain": {"family": "inet", "table": "filter", "name": "input", "type": "filter",
                 "hook": "input", "prio": 0, "policy": ")" +
      QByteArray(policy) + R"("}})" + (rules.isEmpty() ? "" : ",") + rules + "]}";
  return NftView(NftRuleset::Read(json).value());
}

QByteArray Rule(const char* expressions, const char* chain = "input", const char* comment = "") {
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

QByteArray Both(const char* first, const char* second) { return QByteArray(first) + ", " + second; }

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
