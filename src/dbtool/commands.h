// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "core/router_text.h"

namespace quayline::dbtool {

inline constexpr int kExitFine = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

struct Result {
  int exit_code = kExitFine;
  QString output;
  QString error;
};

// Runs "build DATA OUT", "check DATA" or "dump FILE". Build writes nothing when check would find
// something wrong; warnings are printed and refuse nothing. `lint` checks the lines of the scripts;
// without it they are not checked.
Result RunCommand(const QStringList& arguments, const ScriptLint& lint = {});

}  // namespace quayline::dbtool
