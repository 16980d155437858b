// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/entry_look.h"
#include "i18n/message.h"

namespace quayline {

// What the user should do next for an entry.
enum class EntryAdvice {
  kNone,          // too little is known
  kNothing,       // the port is reached from the internet
  kUpdateRouter,  // the rule is not on the router
  kCorrectRule,   // the rule on the router is not as it is wanted; another one would come beside it
  kOpenFirewall,  // the rule is there, and the firewall of this computer blocks the port
  kStartProgram,  // the rule is there, and no program listens
  kSecondRouter,  // all is right here, and nothing arrives
};

// The router's page, this computer and the test from outside together.
EntryAdvice AdviceOf(const EntryLook& look);

// The advice for what was seen, as a sentence. Null for kNone.
const Message* AdviceText(const EntryLook& look);

}  // namespace quayline
