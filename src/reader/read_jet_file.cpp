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

#include <cstring>
#include <memory>
#include <optional>
#include <vector>

namespace quayline::reader {

namespace {

// libmdb silently cuts a value at this size.
constexpr int kMaxValueBytes = 1 << 20;
const QString kDamaged = QStringLiteral("Its content is damaged.");

struct CloseMdb {
  void operator()(MdbHandle* handle) const { mdb_close(handle); }
};
struct FreeTable {
  void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};

// One piece of a long text: the bytes of its row in a page for long values, of which the first four
// are the place of the next piece if there are several. Nothing if it is not there.
struct Piece {
  size_t size = 0;
  guint32 next = 0;
};
std::optional<Piece> FindPiece(MdbHandle* handle, guint32 place) {
  constexpr int kMarkOffset = 4;
  void* page = nullptr;
  int start = 0;
  Piece piece;
  if (mdb_find_pg_row(handle, static_cast<int>(place), &page, &start, &piece.size) != 0 ||
      std::memcmp(static_cast<char*>(page) + kMarkOffset, "LVAL", 4) != 0) {
    return std::nullopt;
  }
  if (piece.size >= sizeof(piece.next)) {
    piece.next = static_cast<guint32>(mdb_get_int32(page, start));
  }
  return piece;
}

// Whether all of a long text of the current row is there: libmdb silently gives the pieces that it
// finds.
bool IsWhole(const MdbTableDef* table, const MdbColumn* column) {
  constexpr int kHeader = 12;
  constexpr guint32 kInRow = 0x80000000;
  constexpr guint32 kOnePiece = 0x40000000;
  MdbHandle* handle = table->entry->mdb;
  if (column->col_type != MDB_MEMO || column->cur_value_len == 0) {
    return true;
  }
  if (column->cur_value_len < kHeader || column->cur_value_start < 0 ||
      column->cur_value_start + kHeader > handle->fmt->pg_size) {
    return false;
  }
  const auto head = static_cast<guint32>(mdb_get_int32(handle->pg_buf, column->cur_value_start));
  auto place = static_cast<guint32>(mdb_get_int32(handle->pg_buf, column->cur_value_start + 4));
  const size_t wanted = head & ~(kInRow | kOnePiece);
  if ((head & kInRow) != 0) {
    return static_cast<size_t>(column->cur_value_len - kHeader) >= wanted;
  }
  if ((head & kOnePiece) != 0) {
    const auto piece = FindPiece(handle, place);
    return piece && piece->size >= wanted;
  }
  size_t found = 0;
  while (place != 0 && found < wanted) {
    const auto piece = FindPiece(handle, place);
    if (!piece || piece->size <= sizeof(piece->next)) {
      return false;
    }
    found += piece->size - sizeof(piece->next);
    place = piece->next;
  }
  return found == wanted;
}

bool AreLongTextsWhole(const MdbTableDef* table) {
  for (guint i = 0; i < table->num_cols; ++i) {
    if (!IsWhole(table, static_cast<MdbColumn*>(g_ptr_array_index(table->columns, i)))) {
      return false;
    }
  }
  return true;
}

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
    if (!AreLongTextsWhole(table.get())) {
      return std::unexpected(kDamaged);
    }
    QStringList row;
    for (const auto& value : values) {
      row.append(QString::fromUtf8(value.data()));
      if (qstrnlen(value.data(), kMaxValueBytes) >= kMaxValueBytes - 1) {
        return std::unexpected(
            QStringLiteral("It contains a text of more than a million letters."));
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

// The catalog is a table itself: a page of it that is missing would silently cost a table.
bool IsCatalogWhole(MdbHandle* handle) {
  char name[] = "MSysObjects";
  const std::unique_ptr<MdbTableDef, FreeTable> table(
      mdb_read_table_by_name(handle, name, MDB_TABLE));
  return table && table->num_rows <= handle->num_catalog;
}

}  // namespace

std::expected<QList<TableData>, QString> ReadJetFile(const QString& path) {
  const std::unique_ptr<MdbHandle, CloseMdb> handle(
      mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS));
  if (!handle || mdb_read_catalog(handle.get(), MDB_ANY) == nullptr ||
      !IsCatalogWhole(handle.get())) {
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
