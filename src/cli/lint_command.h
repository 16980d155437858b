// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

struct LintReport {
  int exit_status = 0;  // 1: a line cannot do what it says; 2: the file cannot be read
  QString output;       // "file:line: sentence" lines
  QString error;        // one sentence, for exit status 2
};

// Judges every line of a file that holds a router script, or a router with its two.
LintReport LintFile(const QString& file_name);

}  // namespace quayline
