// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/port_entry.h"
#include "script/script_run.h"

namespace quayline {

// Sets the entry of a pass. The name of the computer stays what it was where the entry has none.
void GiveEntry(RunArguments& arguments, const PortEntry& entry);

// The entry of a pass. Its description is not known to scripts.
PortEntry EntryOf(const RunArguments& arguments);

}  // namespace quayline
