// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "core/router_text.h"
#include "dbtool/table_text.h"

namespace quayline::dbtool {

// All that a data folder holds.
struct ProgramData {
  QList<RouterSource> routers;
  QList<PortsSource> ports;
  QList<CustomSource> custom;
};

// Reads routers/*.txt, ports/*.txt and, where it is there, custom.txt of `folder`. What cannot be
// read is a problem.
ProgramData ReadDataFolder(const QString& folder, const ScriptLint& lint, Problems& problems);

// What is wrong with the records themselves: missing and invalid values, keys and names that occur
// twice, programs whose own entries would be refused as a conflict.
void CheckData(const ProgramData& data, Problems& problems);

}  // namespace quayline::dbtool
