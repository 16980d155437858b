// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_advice.h"

#include <gtest/gtest.h>

namespace quayline {
namespace {

TEST(EntryAdvice, WhatTheUserShouldDoFollowsFromAllThreeLooks) {
  constexpr std::optional<bool> kUnknown;
  const struct {
    const char* fault;
    std::optional<EntryState> on_router;
    std::optional<bool> listens;
    std::optional<bool> reached;
    EntryAdvice expected;
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
  };
  for (const auto& row : cases) {
    EntryLook look{.on_router = row.on_router};
    look.listening = ReachVerdict{.works = row.listens, .words = {}};
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

}  // namespace
}  // namespace quayline
