// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSqlDatabase>
#include <QString>

namespace quayline {

enum class SqlAccess { kReadWrite, kReadOnly };

// One connection to one SQLite file under a name of its own, closed with the object. Queries on it
// must be gone by then.
class SqlConnection final {
 public:
  // The file is created when the first statement runs, unless it is opened to be read.
  SqlConnection(const QString& path, SqlAccess access);
  ~SqlConnection();
  SqlConnection(const SqlConnection&) = delete;
  SqlConnection& operator=(const SqlConnection&) = delete;

  QSqlDatabase Handle() const { return QSqlDatabase::database(name_, false); }

 private:
  QString name_;
};

}  // namespace quayline
