// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>

#include "core/table_data.h"
#include "i18n/sentence.h"

namespace quayline {

// The databases that come from the maker's server may be Jet files, which are read but never
// written.

// Why a Jet file was not converted; `reason` says of "it" what the file is or does.
struct JetError {
  Sentence reason;
  bool is_damaged = false;  // the content is at fault
};

// By the file's first bytes.
bool IsJetFile(const QString& path);

// Replaces the Jet file `path` by a SQLite file with the same tables, and keeps the original beside
// it with ".jet" added to its name. Does nothing if `path` is not a Jet file. On failure, which
// includes a missing `table`, the Jet file is unchanged.
std::expected<void, JetError> ConvertJetFile(const QString& path, const QString& table);

// Writes the tables of the Jet file `path` into `out`, a new SQLite file, and gives them back.
// `path` is only read. On failure, which includes an existing `out`, nothing is written. The error
// is a sentence.
std::expected<QList<TableData>, QString> ImportJetFile(const QString& path, const QString& out);

}  // namespace quayline
