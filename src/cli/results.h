// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "script/job_runner.h"

namespace quayline {

// What became of each entry, as a table with a sentence below it.
QString ResultTable(const JobOutcome& outcome);

// The same for programs: one object a line for each entry,
//   {"entry": "Web", "state": "different", "differs": ["port"], "seen": "the row's text",
//    "existed": false, "listens": "nothing listens on 80"}
// where "listens" is only of entries that lead to this computer,
// and one for the job: {"job": "done" | "stopped" | "error", "exit": 4}.
QString ResultObjects(const JobOutcome& outcome, int exit_status);

}  // namespace quayline
