// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>

#include "core/table_data.h"

namespace quayline {

// The databases that come from the maker's server may be Jet files, which are read but never
// written.

// By the file's first bytes.
bool IsJetFile(const QString& path);

// All user tables of a Jet file. Nulls are empty texts. The error is a part of a sentence that says
// what the file is or does ("is damaged").
std::expected<QList<TableData>, QString> ReadJetFile(const QString& path);

// Puts a SQLite file with the same tables in the place of the Jet file `path`, and keeps the
// original beside it with ".jet" behind its name. Nothing is done where `path` is no Jet file. On
// failure, also where `table` is missing, the Jet file stands as it was, and the error is such a
// part of a sentence.
std::expected<void, QString> ConvertJetFile(const QString& path, const QString& table);

}  // namespace quayline
