// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>

#include <optional>

#include "core/entry_result.h"
#include "i18n/sentence.h"
#include "i18n/translator.h"

namespace quayline {

// Whether an entry works, as seen from another place than the router's page.
struct ReachVerdict {
  std::optional<bool> works;  // nothing: it cannot be told
  Sentence words = {};        // for the user: "sshd listens"

  bool operator==(const ReachVerdict&) const = default;
};

// What was last seen of an entry of the port list. It is known for the run of the program only.
struct EntryLook {
  std::optional<EntryState> on_router;    // nothing: the router has not been looked at
  QList<RuleField> differs;               // of EntryState::kDifferent only
  QString seen;                           // the row of the router's page
  QDateTime looked_at;                    // of the last look at the router
  std::optional<ReachVerdict> listening;  // does a program on this computer listen
  std::optional<ReachVerdict> firewall;   // does the firewall of this computer let it in
  std::optional<ReachVerdict> outside;    // is the port reached from the internet

  bool operator==(const EntryLook&) const = default;
};

// An entry and what was seen of it.
struct SeenEntry {
  PortEntry entry;
  EntryLook look;
};

// `look` with what a job found out. `looked_at`: nothing where the job entered the rule and did not
// look at it afterwards, so that what was seen before need not be there any more.
EntryLook WithResult(EntryLook look, const EntryResult& result,
                     const std::optional<QDateTime>& looked_at);

// The state in the words of the lists: "On the router", "Different: the port".
QString StateText(EntryState state, const QList<RuleField>& differs, const Translator& translator);
// A look on one line: "On the router, 14:05 (sshd listens)". Empty where nothing was looked at.
QString LookText(const EntryLook& look, const Translator& translator);
// The same with what it rests on, in several lines.
QString LookToolTip(const EntryLook& look, const Translator& translator);

}  // namespace quayline
