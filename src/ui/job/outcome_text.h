// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/translator.h"
#include "script/job_outcome.h"
#include "ui/job/entry_states.h"

namespace quayline {

// How a job ended, in a sentence for the user. `verifies`: an update looks at the router's rules.
QString OutcomeText(const JobOutcome& outcome, bool stopped_by_user, bool verifies,
                    const EntryStates& states, const Translator& translator);

// The rules as a list, one a line.
QString RulesText(const QList<PortEntry>& rules);

}  // namespace quayline
