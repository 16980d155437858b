// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "platform/foreign_settings.h"

namespace quayline {

// One port, or one range of ports, among the settings of a program.
struct PortPlace {
  enum class Protocol { kTcp, kUdp };

  Protocol protocol = Protocol::kTcp;
  // In a text, what directly precedes the port; in an INI file, its key; in the registry, its value
  // name.
  const char* at = nullptr;
  // In a text, what directly follows the port; null: the end of the line.
  const char* end = nullptr;
  // Of a range: what precedes its last port. Null for a single port.
  const char* at_last = nullptr;
};

// Where a program that chooses its own ports keeps them, and how they are read there.
struct ProgramSource {
  enum class Kind {
    kRegistry,       // the ports are registry values
    kAppData,        // the file lies in the user's application data folder
    kInstallFolder,  // the file lies in the folder that a registry value names
    kCommandFolder,  // likewise, and the value is a command line: "folder\program" arguments
  };

  const char* program = nullptr;  // the name by which the user knows it; unique
  Kind kind = Kind::kAppData;
  // The value that names the folder, or (kRegistry) the key of the ports.
  ForeignSettings::Hive hive = ForeignSettings::Hive::kCurrentUser;
  const char* key = nullptr;
  const char* value_name = "";
  qsizetype program_length = 0;       // of "\program" in a command line
  const char* file = nullptr;         // below the folder, with the backslash that begins it
  const char* native_file = nullptr;  // the same file of the program's Linux edition, below home
  const char* ini_section = nullptr;  // null: the file is taken as plain text
  std::span<const PortPlace> ports;
};

// All programs, in the order of the user's list.
std::span<const ProgramSource> ProgramSources();

}  // namespace quayline
