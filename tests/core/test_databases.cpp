// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/test_databases.h"

#include <QFile>

#include "core/table_data.h"

namespace quayline::testing {

namespace {

template <typename Record>
bool MakeFile(const QString& folder, const QList<Record>& records) {
  TableData table{.name = QLatin1String(kTableOf<Record>.name),
                  .columns = QStringList{QStringLiteral("ID")} + ColumnNames<Record>(),
                  .rows = {}};
  for (const Record& record : records) {
    table.rows.append(QStringList{QString::number(record.id)} + TextsOf(record));
  }
  const QString path = folder + u'/' + QLatin1String(kTableOf<Record>.file_name);
  QFile::remove(path);
  return WriteTables({table}, path).has_value();
}

}  // namespace

bool MakeTestDatabases(const QString& folder, const QList<RouterRecord>& routers,
                       const QList<AppPortRecord>& ports, const QList<CustomPortRecord>& custom) {
  return MakeFile(folder, routers) && MakeFile(folder, ports) && MakeFile(folder, custom);
}

}  // namespace quayline::testing
