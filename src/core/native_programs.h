// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "core/settings_text.h"

namespace quayline {

// One port, or some ports, among the settings of a program of this system.
struct NativePort {
  enum class Protocol { kTcp, kUdp, kBoth };
  enum class Shape {
    kPorts,    // "22000", "6881-6999", "6881,6890-6899"
    kPair,     // "(2234, 2239)": the first and the last port of a range
    kAddress,  // "22000", "0.0.0.0:80", "[::]:443 ssl", "tcp://:22000". Loopback addresses do not
               // count: nothing outside of this computer reaches them.
  };

  Protocol protocol = Protocol::kTcp;
  // Each is tried until the file has one. Older and newer versions differ.
  std::span<const char* const> keys;
  const char* fallback = nullptr;  // the default of the program, when the file does not set it
  Shape shape = Shape::kPorts;
  const char* scheme = nullptr;  // only addresses of it: "tcp"
  // The port counts only if the value of another key is this one.
  const char* switch_key = nullptr;
  const char* switch_value = nullptr;
  const char* last_key = nullptr;  // of a range whose ends are two values
};

// Where a program of this system keeps its settings, and which ports they name. The row is all that
// is needed to read another program.
struct NativeProgram {
  const char* program = nullptr;     // the name by which the user knows it; unique
  const char* short_name = nullptr;  // stem of the entries' names, at most 8 characters
  SettingsFormat format = SettingsFormat::kLines;
  // Below the user's configuration folder, and below that of a Flatpak and of a Snap package.
  const char* config_file = nullptr;
  const char* flatpak = nullptr;
  const char* snap = nullptr;
  // Other places: "~/" is the home folder, "/" the system. The last part may have wildcards.
  std::span<const char* const> files;
  bool reads_all = false;  // all files that exist, not just the first
  std::span<const NativePort> ports;
};

// All programs, in alphabetical order.
std::span<const NativeProgram> NativePrograms();

}  // namespace quayline
