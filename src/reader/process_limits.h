// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quayline::reader {

// Limits the whole process for good: memory in bytes and processor time in seconds. It can write no
// file and leaves no core dump.
void LimitProcess(uint64_t memory, unsigned seconds);

// Refuses system calls beyond what parsing takes: network, other processes, programs, and files to
// write. To be called when everything that has to be loaded is loaded. Where the system has no such
// filter the limits alone have to do.
void FilterSystemCalls();

}  // namespace quayline::reader
