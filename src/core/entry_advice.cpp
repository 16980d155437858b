// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_advice.h"

namespace quayline {

namespace {

constexpr Message kAllWorks{"All is well: this port is reached from the internet."};
constexpr Message kUpdateIt{"The rule is not on your router. Press \"Update Router\"."};
constexpr Message kUpdateItNothingArrives{
    "Nothing arrives, since the rule is not on your router. Press \"Update Router\"."};
constexpr Message kCorrectIt{
    "The rule on your router is not as you want it. Please correct it on your router's page, or "
    "remove it there and press \"Update Router\"."};
constexpr Message kOpenFirewallFor{
    "The rule is there, but the firewall of this computer blocks this port. Open it there: Tools, "
    "Firewall Port Exceptions, Add Current Ports List."};
constexpr Message kStartIt{
    "The rule is there, but no program listens on this port. Start the program that needs it, and "
    "test again."};
constexpr Message kSearchRouter{
    "The rule is there and a program listens, but nothing arrives: a second router is likely. "
    "Search for it?"};
constexpr Message kSearchRouterFirst{
    "The rule is there, but nothing arrives from the internet: a second router is likely. Search "
    "for it?"};

}  // namespace

EntryAdvice AdviceOf(const EntryLook& look) {
  const std::optional<bool> is_reached = look.outside ? look.outside->works : std::nullopt;
  const std::optional<bool> listens = look.listening ? look.listening->works : std::nullopt;
  if (is_reached == true) {
    return EntryAdvice::kNothing;
  }
  if (look.on_router == EntryState::kMissing) {
    return EntryAdvice::kUpdateRouter;
  }
  if (look.on_router == EntryState::kDifferent) {
    return EntryAdvice::kCorrectRule;
  }
  if (look.on_router != EntryState::kOnRouter) {
    return EntryAdvice::kNone;
  }
  if (look.firewall && look.firewall->works == false) {
    return EntryAdvice::kOpenFirewall;
  }
  if (listens == false && is_reached != false) {
    return EntryAdvice::kStartProgram;
  }
  // The test from outside listens itself: no program is needed for it.
  return is_reached == false ? EntryAdvice::kSecondRouter : EntryAdvice::kNone;
}

const Message* AdviceText(const EntryLook& look) {
  switch (AdviceOf(look)) {
    case EntryAdvice::kNone:
      return nullptr;
    case EntryAdvice::kNothing:
      return &kAllWorks;
    case EntryAdvice::kUpdateRouter:
      return look.outside && look.outside->works == false ? &kUpdateItNothingArrives : &kUpdateIt;
    case EntryAdvice::kCorrectRule:
      return &kCorrectIt;
    case EntryAdvice::kOpenFirewall:
      return &kOpenFirewallFor;
    case EntryAdvice::kStartProgram:
      return &kStartIt;
    case EntryAdvice::kSecondRouter:
      return look.listening && look.listening->works == true ? &kSearchRouter : &kSearchRouterFirst;
  }
  return nullptr;
}

}  // namespace quayline
