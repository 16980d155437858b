// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

// The texts of the job's log, beside those that every window with a run has.
namespace quayline::job_text {

inline constexpr Message kRouter{"Router:"};
inline constexpr Message kLoadingCommands{"Loading Commands..."};
inline constexpr Message kNumberOfForwards{"Number Of Port Forwards To Send To Router"};
inline constexpr Message kRunningCommands{"Running Commands..."};
inline constexpr Message kCurrent{"Current", "before the number of an entry"};
inline constexpr Message kAdding{"Adding", "before the name of an entry"};
inline constexpr Message kRemoving{"Removing", "before the name of an entry"};
inline constexpr Message kNotEnteredAgain{"Not Entered Again:", "before the name of an entry"};
inline constexpr Message kForPorts{"For Ports"};
inline constexpr Message kTo{"To", "after ports, before the address that they lead to"};
inline constexpr Message kFinishedAdding{"Finished Adding"};
inline constexpr Message kDone{"DONE! (All Commands Finished)"};

// What makes an entry doubtful, in sentences.
inline constexpr Message kPageFailed{"A script or another part of the page failed."};
inline constexpr Message kStepsNotFound{
    "Steps that did not find what they look for on the page: %1."};
inline constexpr Message kPageSaid{"The page said: \"%1\""};
inline constexpr Message kPageShowed{"The page showed: \"%1\""};

}  // namespace quayline::job_text
