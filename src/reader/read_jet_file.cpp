// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "reader/read_jet_file.h"

// clang-format off
// The second opens an extern "C" block and includes the first in it: that must be known by then.
#include <glib.h>
#include <mdbtools.h>
// clang-format on

#include <QFile>
#include <QFileInfo>

#include <memory>
#include <vector>

namespace quayline::reader {

namespace {

// libmdb silently cuts a value at this size.
constexpr int kMaxValueBytes = 1 << 20;
const QString kDamaged = QStringLiteral("is damaged");

struct CloseMdb {
  void operator()(MdbHandle* handle) const { mdb_close(handle); }
};
struct FreeTable {
  void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};

std::expected<TableData, QString> ReadTable(MdbCatalogEntry* entry) {
  const std::unique_ptr<MdbTableDef, FreeTable> table(mdb_read_table(entry));
  if (!table || mdb_read_columns(table.get()) == nullptr) {
    return std::unexpected(kDamaged);
  }
  TableData data{.name = QString::fromUtf8(entry->object_name), .columns = {}, .rows = {}};
  const size_t columns = table->num_cols;
  std::vector<std::vector<char>> values(columns, std::vector<char>(kMaxValueBytes));
  std::vector<int> lengths(columns);
  mdb_rewind_table(table.get());
  for (size_t i = 0; i < columns; ++i) {
    const auto* column = static_cast<MdbColumn*>(g_ptr_array_index(table->columns, i));
    data.columns.append(QString::fromUtf8(column->name));
    mdb_bind_column(table.get(), static_cast<int>(i) + 1, values[i].data(), &lengths[i]);
  }
  while (mdb_fetch_row(table.get())) {
    QStringList row;
    for (const auto& value : values) {
      row.append(QString::fromUtf8(value.data()));
      if (qstrnlen(value.data(), kMaxValueBytes) >= kMaxValueBytes - 1) {
        return std::unexpected(QStringLiteral("holds a text of more than a million letters"));
      }
    }
    data.rows.append(row);
  }
  // libmdb silently skips missing pages.
  if (data.rows.size() < static_cast<qsizetype>(table->num_rows)) {
    return std::unexpected(kDamaged);
  }
  return data;
}

}  // namespace

std::expected<QList<TableData>, QString> ReadJetFile(const QString& path) {
  const std::unique_ptr<MdbHandle, CloseMdb> handle(
      mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS));
  if (!handle || mdb_read_catalog(handle.get(), MDB_TABLE) == nullptr) {
    return std::unexpected(kDamaged);
  }
  if (QFileInfo(path).size() % handle->fmt->pg_size != 0) {
    return std::unexpected(kDamaged);  // It ends within a page.
  }
  mdb_set_bind_size(handle.get(), kMaxValueBytes);
  QList<TableData> tables;
  for (guint i = 0; i < handle->num_catalog; ++i) {
    auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(handle->catalog, i));
    if (entry->object_type != MDB_TABLE || !mdb_is_user_table(entry)) {
      continue;
    }
    auto table = ReadTable(entry);
    if (!table) {
      return std::unexpected(table.error());
    }
    tables.append(*table);
  }
  return tables;
}

}  // namespace quayline::reader
