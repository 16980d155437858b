// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_advice.h"

#include <gtest/gtest.h>

#include "core/entry_firewall.h"
#include "test_main.h"

namespace quayline {
namespace {

TEST(EntryAdvice, WhatTheUserShouldDoFollowsFromAllLooks) {
  constexpr std::optional<bool> kUnknown;
  const struct {
    const char* fault;
    std::optional<EntryState> on_router;
    std::optional<bool> listens;
    std::optional<bool> reached;
    EntryAdvice expected;
    std::optional<bool> let_in = std::nullopt;
  } cases[] = {
      {"advice from nothing", std::nullopt, kUnknown, kUnknown, EntryAdvice::kNone},
      {"what works is not believed", EntryState::kUnknown, false, true, EntryAdvice::kNothing},
      {"a rule that is missing is not the first to mend", EntryState::kMissing, true, false,
       EntryAdvice::kUpdateRouter},
      {"a rule with another port is taken for right", EntryState::kDifferent, false, kUnknown,
       EntryAdvice::kCorrectRule},
      {"a second rule is added beside one that is different", EntryState::kDifferent, true, false,
       EntryAdvice::kCorrectRule},
      {"a rule that is missing is not named before the test", EntryState::kMissing, kUnknown,
       kUnknown, EntryAdvice::kUpdateRouter},
      {"a program that is not running is not named", EntryState::kOnRouter, false, kUnknown,
       EntryAdvice::kStartProgram},
      {"the test listened, and a program is asked for", EntryState::kOnRouter, false, false,
       EntryAdvice::kSecondRouter},
      {"a second router is not thought of", EntryState::kOnRouter, true, false,
       EntryAdvice::kSecondRouter},
      {"a second router is blamed before the test", EntryState::kOnRouter, true, kUnknown,
       EntryAdvice::kNone},
      {"a router that does not tell is blamed", EntryState::kUnknown, true, false,
       EntryAdvice::kNone},
      {"a firewall that blocks is not named", EntryState::kOnRouter, true, false,
       EntryAdvice::kOpenFirewall, false},
      {"a program is started before the firewall is open", EntryState::kOnRouter, false, kUnknown,
       EntryAdvice::kOpenFirewall, false},
      {"a firewall is named where the rule is missing", EntryState::kMissing, true, false,
       EntryAdvice::kUpdateRouter, false},
      {"a firewall is named though the port is reached", EntryState::kOnRouter, true, true,
       EntryAdvice::kNothing, false},
      {"a firewall that lets in is blamed", EntryState::kOnRouter, true, false,
       EntryAdvice::kSecondRouter, true},
  };
  for (const auto& row : cases) {
    EntryLook look{.on_router = row.on_router};
    look.listening = ReachVerdict{.works = row.listens, .words = {}};
    look.firewall = ReachVerdict{.works = row.let_in, .words = {}};
    look.outside = ReachVerdict{.works = row.reached, .words = {}};
    EXPECT_EQ(AdviceOf(look), row.expected) << row.fault;
    EXPECT_EQ(AdviceText(look) == nullptr, row.expected == EntryAdvice::kNone);
    // What was not tested is not said to fail.
    const bool says_nothing_arrives =
        AdviceText(look) != nullptr &&
        QByteArray(AdviceText(look)->english).toLower().contains("nothing arrives");
    EXPECT_TRUE(!says_nothing_arrives || row.reached == false) << row.fault;
  }
}

TEST(EntryFirewallTest, EntriesOfThisComputerThatAreNotLetInAreFound) {
  using namespace Qt::StringLiterals;
  const PortEntry entry{.forwarded_to = u"10.0.0.7(Me)"_s,
                        .start_port = u"80"_s,
                        .end_port = u"81"_s,
                        .protocol = u"TCP/UDP"_s};
  FirewallView view{.kind = FirewallKind::kUfw, .open_tcp = {}};
  view.open_tcp.Fill(80, 81);
  const FirewallAnswer answers[] = {
      view,
      FirewallView(),
      std::unexpected(FirewallError{FirewallFault::kRefused, FirewallKind::kUfw, {}}),
      std::unexpected(FirewallError{FirewallFault::kFailed, FirewallKind::kUfw, {}}),
  };
  const QList<FirewallPorts> both{{80, 81, kTcpNumber}, {80, 81, kUdpNumber}};
  struct Case {
    const char* fault;
    QString words;
    std::optional<bool> lets_in;
    QList<FirewallPorts> blocked;
  };
  view.open_udp = PortSet().Fill(0, 80);
  const Case cases[] = {
      {"what passes is counted as blocked", u"the firewall lets it in"_s, true, {}},
      {"no firewall is named", {}, true, {}},
      {"what is hidden is known", u"the firewall (ufw) may block it"_s, std::nullopt, both},
  };
  for (int i = 0; i < 3; ++i) {
    const auto firewall = FirewallOf(entry, {u"10.0.0.7"_s}, answers[i]);
    ASSERT_TRUE(firewall) << cases[i].fault;
    EXPECT_EQ(firewall->lets_in, cases[i].lets_in) << cases[i].fault;
    EXPECT_EQ(firewall->blocked, cases[i].blocked) << cases[i].fault;
    EXPECT_EQ(EnglishOf(FirewallVerdict(*firewall).words), cases[i].words);
    EXPECT_FALSE(FirewallOf(entry, {u"10.0.0.8"_s}, answers[i])) << "it is another computer's";
  }
  EXPECT_FALSE(FirewallOf(entry, {u"10.0.0.7"_s}, answers[3])) << "nothing is known";
  const auto half = FirewallOf(entry, {u"10.0.0.7"_s}, view);
  ASSERT_TRUE(half);
  EXPECT_EQ(half->lets_in, false) << "one port of a range is shut";
  EXPECT_EQ(half->blocked, (QList<FirewallPorts>{{80, 81, kUdpNumber}}));
  EXPECT_EQ(EnglishOf(FirewallVerdict(*half).words), u"the firewall (ufw) blocks it"_s);
}

}  // namespace
}  // namespace quayline
