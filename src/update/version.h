// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace quayline {

// Whether the program of version `local` needs no update to `server`: dotted numbers, of which the
// first three count. Nothing where a part is reached that is missing, and for what is no version.
//
// The comparison has a peculiarity that is kept: a lower first part at the server does not end it,
// so "2.9.0" is an update of "3.0.0".
std::optional<bool> IsUpToDate(const QString& server, const QString& local);

}  // namespace quayline
