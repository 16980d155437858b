// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quayline {

// The password is in the memory of this process, and of the browser's processes that it starts.
// After this call none of them leaves a core dump. To be called first in main().
void KeepMemoryPrivate();

}  // namespace quayline
