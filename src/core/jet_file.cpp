// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/jet_file.h"

// clang-format off
// The second opens an extern "C" block and includes the first in it: that must be known by then.
#include <glib.h>
#include <mdbtools.h>
// clang-format on

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <vector>

#include "core/save_file.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

// libmdb cuts a value at this size without a word.
constexpr int kMaxValueBytes = 1 << 20;
const QString kDamaged = QStringLiteral("is damaged");
constexpr std::chrono::milliseconds kLockWait = 10s;  // as long as a large conversion may take

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
  // Pages that are missing are passed over in silence.
  if (data.rows.size() < static_cast<qsizetype>(table->num_rows)) {
    return std::unexpected(kDamaged);
  }
  return data;
}

bool CopyFile(const QString& from, const QString& to) {
  QFile source(from);
  if (!source.open(QIODevice::ReadOnly)) {
    return false;
  }
  const QByteArray bytes = source.readAll();
  return source.error() == QFileDevice::NoError && SaveFile(to, bytes);
}

bool ReplaceFile(const QString& with, const QString& path) {
  std::error_code error;
  std::filesystem::rename(with.toStdU16String(), path.toStdU16String(), error);
  return !error;
}

}  // namespace

bool IsJetFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return false;
  }
  const QByteArray head = file.read(19);
  const QByteArray mark("\0\1\0\0", 4);
  return head == mark + "Standard Jet DB" || head == mark + "Standard ACE DB";
}

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

std::expected<void, QString> ConvertJetFile(const QString& path, const QString& table) {
  if (!IsJetFile(path)) {
    return {};
  }
  // Without the lock a second copy of the program could keep the first one's result as original.
  QLockFile lock(path + QStringLiteral(".lock"));
  const QTemporaryDir work(path + QStringLiteral(".XXXXXX"));
  if (!lock.tryLock(kLockWait.count()) || !work.isValid()) {
    return std::unexpected(QStringLiteral("has to be converted, but its folder cannot be written"));
  }
  if (!IsJetFile(path)) {
    return {};
  }
  const auto tables = ReadJetFile(path);
  if (!tables) {
    return std::unexpected(tables.error());
  }
  const auto is_table = [&table](const TableData& data) {
    return data.name.compare(table, Qt::CaseInsensitive) == 0;
  };
  if (std::ranges::none_of(*tables, is_table)) {
    return std::unexpected(QStringLiteral("has no table \"%1\"").arg(table));
  }
  const QString converted = work.filePath(QStringLiteral("converted"));
  if (const auto written = WriteTables(*tables, converted); !written) {
    return std::unexpected(QStringLiteral("cannot be converted (%1)").arg(written.error()));
  }
  if (!CopyFile(path, path + QStringLiteral(".jet")) || !ReplaceFile(converted, path)) {
    return std::unexpected(QStringLiteral("cannot be converted in its folder"));
  }
  return {};
}

}  // namespace quayline
