// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/table_stream.h"

#include <QDataStream>
#include <QIODevice>

namespace quayline {

namespace {

constexpr quint32 kMark = 0x51594c31;

// Texts are UTF-8, which takes half of the room of QString's own form.
void WriteTexts(QDataStream& out, const QStringList& texts) {
  for (const QString& text : texts) {
    out << text.toUtf8();
  }
}

QString ReadText(QDataStream& in) {
  QByteArray utf8;
  in >> utf8;
  return QString::fromUtf8(utf8);
}

// A count is believed only as far as items are found.
QStringList ReadTexts(QDataStream& in, quint32 count) {
  QStringList texts;
  for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
    texts.append(ReadText(in));
  }
  return texts;
}

TableData ReadTable(QDataStream& in) {
  TableData table{.name = ReadText(in), .columns = {}, .rows = {}};
  quint32 columns = 0;
  quint32 rows = 0;
  in >> columns >> rows;
  if (columns == 0 && rows != 0) {  // rows that take no room would have no end
    in.setStatus(QDataStream::ReadCorruptData);
  }
  table.columns = ReadTexts(in, columns);
  for (quint32 row = 0; row < rows && in.status() == QDataStream::Ok; ++row) {
    table.rows.append(ReadTexts(in, columns));
  }
  return table;
}

}  // namespace

QByteArray EncodeTables(const QList<TableData>& tables) {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setVersion(QDataStream::Qt_6_4);
  out << kMark << static_cast<quint32>(tables.size());
  for (const TableData& table : tables) {
    out << table.name.toUtf8() << static_cast<quint32>(table.columns.size())
        << static_cast<quint32>(table.rows.size());
    WriteTexts(out, table.columns);
    for (const QStringList& row : table.rows) {
      WriteTexts(out, row);
    }
  }
  return bytes;
}

std::optional<QList<TableData>> DecodeTables(const QByteArray& bytes) {
  QDataStream in(bytes);
  in.setVersion(QDataStream::Qt_6_4);
  quint32 mark = 0;
  quint32 count = 0;
  in >> mark >> count;
  QList<TableData> tables;
  for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
    tables.append(ReadTable(in));
  }
  if (mark != kMark || in.status() != QDataStream::Ok || !in.atEnd()) {
    return std::nullopt;
  }
  return tables;
}

}  // namespace quayline
