// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSqlError>
#include <QSqlQuery>
#include <QString>

#include <optional>

#include "core/database_error.h"

namespace quayline {

// The checks of an untrusted database file: what makes it unusable, in words for the user. Each
// returns the first fault that it finds. `query` belongs to the opened file, `path` names it.

// Before it is opened. A Jet file is converted here.
std::optional<DatabaseError> CheckFile(const QString& path, const QString& table);
// Whether SQLite would have to compute something, such as a view: it could be without end.
std::optional<DatabaseError> CheckSchema(QSqlQuery& query, const QString& path,
                                         const QString& table);
// Whether the end of the file is there.
std::optional<DatabaseError> CheckEnd(QSqlQuery& query, const QString& path);
// Reads the file. The quick check does not compare the indices with their tables.
enum class ContentCheck { kQuick, kWhole };
std::optional<DatabaseError> CheckContent(QSqlQuery& query, ContentCheck check,
                                          const QString& path);

// SQLite could not use the file.
DatabaseError SqlFailure(const QSqlError& error, const QString& path);
// The file has no table of this name, or it has no IDs.
DatabaseError NoTable(const QString& path, const QString& table);

}  // namespace quayline
