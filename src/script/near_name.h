// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// The command whose name `name` (in lower case) was probably meant to be, or an empty text. Near
// enough is a third of the name where the line is written as a call, a fifth where it may as well
// be a comment.
QString NearestCommandName(const QString& name, bool is_call);

}  // namespace quayline
