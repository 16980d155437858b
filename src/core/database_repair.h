// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "i18n/message.h"

namespace quayline {

// The names of the program's database files.
QStringList DatabaseFiles();

// Whether one of them is in order, or was put in order.
struct DatabaseState {
  bool is_good = false;
  bool can_be_rebuilt = false;  // damaged or missing
  Message words;                // a sentence
  QString kept_as;              // the name of the damaged file, if it was replaced
};

// Reads the whole file, also if it has not changed since it was good: a disk may have lost a part.
DatabaseState CheckDatabase(const QString& folder, const QString& file_name);

// Replaces a file that is damaged or missing: by its last good copy, else by the one that came with
// the program, else by an empty one. The damaged file is kept under another name; one that is in
// order, or cannot be read at the moment, is not touched. The databases are closed meanwhile.
DatabaseState RebuildDatabase(const QString& folder, const QString& shipped_folder,
                              const QString& file_name);

}  // namespace quayline
