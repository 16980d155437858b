// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// Why the databases could not be opened; `description` names the file and says what is wrong in a
// sentence for the user.
struct DatabaseError {
  int number = 0;
  QString description;
  bool is_damaged = false;  // the content is at fault, not the access to it
};

}  // namespace quayline
