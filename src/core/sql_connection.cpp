// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/sql_connection.h"

#include <QUuid>

namespace quayline {

SqlConnection::SqlConnection(const QString& path, SqlAccess access)
    : name_(QStringLiteral("quayline-") + QUuid::createUuid().toString(QUuid::WithoutBraces)) {
  QSqlDatabase handle = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name_);
  handle.setDatabaseName(path);
  // Another instance locks a file only while it writes. A longer wait would freeze the window.
  handle.setConnectOptions(access == SqlAccess::kReadOnly
                               ? QStringLiteral("QSQLITE_BUSY_TIMEOUT=500;QSQLITE_OPEN_READONLY")
                               : QStringLiteral("QSQLITE_BUSY_TIMEOUT=500"));
  handle.open();
}

SqlConnection::~SqlConnection() {
  Handle().close();
  QSqlDatabase::removeDatabase(name_);
}

}  // namespace quayline
