// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/sentence.h"

namespace quayline {

// What was done about a database that could not be opened.
using Notice = QList<Sentence>;

// Why the databases could not be opened; `description` names the file and says what is wrong.
struct DatabaseError {
  int number = 0;
  QList<Sentence> description;
  bool is_damaged = false;  // the content is at fault, not the access to it
};

}  // namespace quayline
