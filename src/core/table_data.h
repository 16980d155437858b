// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <expected>

namespace quayline {

// A whole table in memory, every value as text.
struct TableData {
  QString name;
  QStringList columns;
  QList<QStringList> rows;  // each as long as `columns`
};

// Writes `tables` into a new SQLite file; a file of that name must not exist. Column "ID" is the
// key where its values are whole numbers and differ, and is kept as it is where they do not. The
// error is SQLite's, in words.
std::expected<void, QString> WriteTables(const QList<TableData>& tables, const QString& path);

}  // namespace quayline
