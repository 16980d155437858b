// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// The text of `quayline-cli --help`.
QString CliHelp();

}  // namespace quayline
