// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "async/task.h"
#include "script/run_environment.h"
#include "script/script_run.h"

namespace quayline {

// Walks the lines of a router script from top to bottom for one entry. Each line's step and result
// are logged at once. A line that is no command logs its step and does nothing; a command whose
// condition fails likewise. Nothing that a line or a page does is an error of the run: only a page
// that cannot be loaded, an entry that the router has already, and a stop end it early.
//
// Both arguments are taken by value or outlive the run.
Task<RunEnd> RunRouterCommands(RunEnvironment& environment, RunArguments arguments);

}  // namespace quayline
