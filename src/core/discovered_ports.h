// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "core/records.h"

namespace quayline {

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

}  // namespace quayline
