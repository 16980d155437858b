// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "core/records.h"
#include "platform/foreign_settings.h"

namespace quayline {

// Some programs choose random ports when they are installed, and others let the user choose them.
// They are read from the settings of these programs on this computer. The programs are the rows of
// program_sources.cpp (Windows programs) and native_programs.cpp (programs of this system).

enum class DiscoveryOutcome {
  kRead,             // the settings were read, but may contain no usable port
  kNoFile,           // there is no settings file
  kNoRegistryValue,  // the registry does not know the program
  kUnreadable,       // the file is there and cannot be read, or is too large: see `problem`
};

struct DiscoveredPorts {
  // As a row of the program database, so that both become entries in the same way: the program's
  // name, the name's first word, and an element "start-end" for each port. A port that the settings
  // do not hold is the element "-". The lists are empty unless the outcome is kRead.
  AppPortRecord ports;
  DiscoveryOutcome outcome = DiscoveryOutcome::kNoFile;
  // The file that was read, or the registry value, as "HKEY_CURRENT_USER\key\name". Empty where no
  // file was found.
  QString source;
  QString problem;  // an error number, a blank and the system's words for it
  // The texts that should be ports (1 to 65535) and are not, shortened to a few characters; an
  // empty text where nothing was found. One for each element "-".
  QStringList refused;

  // Nothing is missing, and the elements can become entries.
  bool IsComplete() const { return outcome == DiscoveryOutcome::kRead && refused.isEmpty(); }
};

// The names of the programs whose ports can be read, in the order of the user's list.
QStringList DiscoverablePrograms();

// Reads the settings of the program of that name (ignoring case). Takes a few milliseconds,
// some 50 where the registry has grown to 10 MB. A file of more than 4 MB is kUnreadable. kNoFile
// for a name that is not listed.
DiscoveredPorts DiscoverPorts(const QString& program, const ForeignSettings& settings);

// Every program with complete settings on this computer, in the list's order.
QList<DiscoveredPorts> DiscoverAllPorts(const ForeignSettings& settings);

}  // namespace quayline
