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
inline constexpr Message kForPorts{"For Ports"};
inline constexpr Message kTo{"To", "between a start port and an end port"};
inline constexpr Message kFinishedAdding{"Finished Adding"};
inline constexpr Message kDone{"DONE! (All Commands Finished)"};

}  // namespace quayline::job_text
