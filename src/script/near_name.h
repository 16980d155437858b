// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// The command whose name `name` (in lower case) was probably meant to be, or an empty text. Up to a
// third of the name may differ if the line is written as a call, up to a fifth if it may be a
// comment.
QString NearestCommandName(const QString& name, bool is_call);

}  // namespace quayline
