// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "dbtool/table_text.h"

#include <algorithm>
#include <expected>
#include <type_traits>

namespace quayline::dbtool {

namespace {

constexpr QLatin1Char kSeparator(';');

// A cell of a port list reads "21, 6881-6889" for the stored "21-21|6881-6889". Any other stored
// text is written escaped and as it is.
QString StoredPorts(const QString& cell) {
  if (cell.isEmpty()) {
    return {};
  }
  QStringList elements;
  for (const QString& part : cell.split(QLatin1Char(','))) {
    const QString ports = part.trimmed();
    elements.append(ports.contains(QLatin1Char('-')) ? ports : ports + QLatin1Char('-') + ports);
  }
  return elements.join(QLatin1Char('|'));
}

QString WrittenPorts(const QString& stored) {
  QStringList parts;
  for (const QString& element : stored.split(QLatin1Char('|'))) {
    const QString start = element.section(QLatin1Char('-'), 0, 0);
    parts.append(element == start + QLatin1Char('-') + start ? start : element);
  }
  const QString cell = parts.join(QStringLiteral(", "));
  const bool is_plain = cell == WrittenValue(cell, kSeparator) && StoredPorts(cell) == stored;
  return is_plain ? cell : EscapedText(stored, kSeparator);
}

std::optional<QString> ReadPortsCell(const QString& cell) {
  return cell.startsWith(QLatin1Char('\\')) ? ReadWritten(cell) : StoredPorts(cell);
}

template <typename Record>
std::optional<QString> ReadCell(const Column<Record>& column, const QString& cell) {
  return column.kind == ColumnKind::kPortList ? ReadPortsCell(cell) : ReadValue(cell, kSeparator);
}

template <typename Record>
QString WriteCell(const Column<Record>& column, const QString& stored) {
  return column.kind == ColumnKind::kPortList ? WrittenPorts(stored)
                                              : WrittenValue(stored, kSeparator);
}

// Ports are written with a last cell that the record does not have: the document that names them.
template <typename Record>
inline constexpr bool kHasOrigin = std::is_same_v<Record, AppPortRecord>;

// The record of a line, or what is wrong with the line. Its place is not set.
template <typename Record>
std::expected<Sourced<Record>, QString> ReadRecord(const QString& line) {
  const auto columns = kTableOf<Record>.columns;
  const auto wanted = static_cast<qsizetype>(columns.size()) + (kHasOrigin<Record> ? 2 : 1);
  const QStringList cells = line.split(kSeparator);
  if (cells.size() != wanted) {
    return std::unexpected(QStringLiteral("The line has %1 cells and should have %2.")
                               .arg(QString::number(cells.size()), QString::number(wanted)));
  }
  Sourced<Record> source;
  Record& record = source.record;
  record.id = ReadId(cells.first().trimmed()).value_or(0);
  if (record.id == 0) {
    return std::unexpected(EnglishOf(IdSentence(cells.first().trimmed())));
  }
  qsizetype next = 1;
  for (const Column<Record>& column : columns) {
    const auto text = ReadCell(column, cells.at(next++).trimmed());
    if (!text) {
      return std::unexpected(EnglishOf({kEscapeSentence}));
    }
    record.*(column.member) = *text;
  }
  if constexpr (kHasOrigin<Record>) {
    source.origin = cells.last().trimmed();
  }
  return source;
}

template <typename Record>
QList<Sourced<Record>> ReadTable(const QList<TextLine>& lines, const QString& file,
                                 Problems& problems) {
  QList<Sourced<Record>> sources;
  for (const TextLine& line : lines) {
    if (line.text.trimmed().isEmpty() || line.text.startsWith(QLatin1Char('#'))) {
      continue;
    }
    auto source = ReadRecord<Record>(line.text);
    if (source) {
      source->file = file;
      source->line = line.number;
      sources.append(*source);
    } else {
      problems.append({file, line.number, AsItIs(source.error())});
    }
  }
  return sources;
}

QString Aligned(const QList<QStringList>& table) {
  QList<qsizetype> widths(table.first().size());
  for (const QStringList& cells : table) {
    for (qsizetype i = 0; i < cells.size(); ++i) {
      widths[i] = std::max(widths.at(i), cells.at(i).size());
    }
  }
  QString text;
  for (const QStringList& cells : table) {
    QString line = cells.first().leftJustified(widths.first());
    for (qsizetype i = 1; i < cells.size(); ++i) {
      line += QStringLiteral(" ; ") + cells.at(i).leftJustified(widths.at(i));
    }
    while (line.endsWith(QLatin1Char(' '))) {
      line.chop(1);
    }
    text += line + QLatin1Char('\n');
  }
  return text;
}

template <typename Record>
QString FormatTable(const QList<Record>& records) {
  const auto columns = kTableOf<Record>.columns;
  QStringList headings{QStringLiteral("# id")};
  for (const Column<Record>& column : columns) {
    headings.append(QLatin1String(column.heading));
  }
  if constexpr (kHasOrigin<Record>) {
    headings.append(QStringLiteral("source"));
  }
  QList<QStringList> table{headings};
  for (const Record& record : records) {
    QStringList cells{QString::number(record.id)};
    for (const Column<Record>& column : columns) {
      cells.append(WriteCell(column, record.*(column.member)));
    }
    if constexpr (kHasOrigin<Record>) {
      cells.append(QString());
    }
    table.append(cells);
  }
  return Aligned(table);
}

}  // namespace

QList<PortsSource> ReadPorts(const QList<TextLine>& lines, const QString& file,
                             Problems& problems) {
  return ReadTable<AppPortRecord>(lines, file, problems);
}

QList<CustomSource> ReadCustom(const QList<TextLine>& lines, const QString& file,
                               Problems& problems) {
  return ReadTable<CustomPortRecord>(lines, file, problems);
}

QString FormatPorts(const QList<AppPortRecord>& records) { return FormatTable(records); }

QString FormatCustom(const QList<CustomPortRecord>& records) { return FormatTable(records); }

}  // namespace quayline::dbtool
