// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/discovered_ports.h"
#include "core/native_programs.h"
#include "platform/foreign_settings.h"

namespace quayline {

// Reads the settings of one program of this system. Of its places the first one counts that has a
// file; files that may not be read are skipped where another one can be read. Files of more than
// 1 MB and all that is no regular file are not read.
DiscoveredPorts DiscoverNativePorts(const NativeProgram& program, const ForeignSettings& settings);

}  // namespace quayline
