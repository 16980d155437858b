// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

// The texts of the job's log, beside those that every window with a run has.
namespace quayline::job_text {

inline constexpr Message kRouter{"FrmJobStatus", "Text8", "Router:"};
inline constexpr Message kLoadingCommands{"FrmJobStatus", "Text9", "Loading Commands..."};
inline constexpr Message kNumberOfForwards{"FrmJobStatus", "Text10",
                                           "Number Of Port Forwards To Send To Router"};
inline constexpr Message kRunningCommands{"FrmJobStatus", "Text11", "Running Commands..."};
inline constexpr Message kCurrent{"FrmJobStatus", "Text12", "Current"};
inline constexpr Message kAdding{"FrmJobStatus", "Text13", "Adding"};
inline constexpr Message kForPorts{"FrmJobStatus", "Text14", "For Ports"};
inline constexpr Message kTo{"FrmJobStatus", "Text15", "To"};
inline constexpr Message kFinishedAdding{"FrmJobStatus", "Text16", "Finished Adding"};
inline constexpr Message kDone{"FrmJobStatus", "Text17", "DONE! (All Commands Finished)"};

}  // namespace quayline::job_text
