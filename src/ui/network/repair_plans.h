// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "core/app_context.h"
#include "ui/network/repair_dialog.h"

namespace quayline {

// What the hosted browser is repaired with; the windows do not know the engine.
struct BrowserTools {
  std::function<Task<bool>()> clear_cache;
  std::function<bool()> remove_files;
  std::function<Task<bool>()> try_new_browser;
};

// Where the system can register components again, the plans do that; elsewhere they repair what
// does the work of these components here.
RepairPlan BrowserRepair(BrowserTools tools, bool has_regsvr32);
// `context` outlives the plan. Its databases are closed while a file is replaced.
RepairPlan DatabaseRepair(AppContext& context, bool has_regsvr32);

// Whether this system is one whose components the program "regsvr32" registers, and has it.
bool HasRegsvr32();

}  // namespace quayline
