// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "dbtool/table_text.h"

#include <algorithm>
#include <expected>

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

// How a text field of a record and its cell become each other.
template <typename Record>
struct Column {
  const char* heading;
  QString Record::* member;
  std::optional<QString> (*read)(const QString& cell);
  QString (*write)(const QString& stored);
};

std::optional<QString> ReadCell(const QString& cell) { return ReadValue(cell, kSeparator); }

QString WriteCell(const QString& stored) { return WrittenValue(stored, kSeparator); }

constexpr Column<AppPortRecord> kPortsColumns[] = {
    {"program", &AppPortRecord::appname, ReadCell, WriteCell},
    {"short name", &AppPortRecord::nameforrouter, ReadCell, WriteCell},
    {"TCP", &AppPortRecord::tcpportsonly, ReadPortsCell, WrittenPorts},
    {"UDP", &AppPortRecord::udpportsonly, ReadPortsCell, WrittenPorts},
    {"both", &AppPortRecord::tcpudpports, ReadPortsCell, WrittenPorts},
};

constexpr Column<CustomPortRecord> kCustomColumns[] = {
    {"name", &CustomPortRecord::appname, ReadCell, WriteCell},
    {"protocol", &CustomPortRecord::portype, ReadCell, WriteCell},
    {"start", &CustomPortRecord::startport, ReadCell, WriteCell},
    {"end", &CustomPortRecord::endport, ReadCell, WriteCell},
};

// The record of a line, or what is wrong with the line.
template <typename Record, size_t kCount>
std::expected<Record, QString> ReadRecord(const QString& line,
                                          const Column<Record> (&columns)[kCount]) {
  QStringList cells = line.split(kSeparator);
  if (cells.size() != kCount + 1) {
    return std::unexpected(QStringLiteral("The line has %1 cells and should have %2.")
                               .arg(QString::number(cells.size()), QString::number(kCount + 1)));
  }
  Record record;
  record.id = ReadId(cells.first().trimmed()).value_or(0);
  if (record.id == 0) {
    return std::unexpected(IdSentence(cells.first().trimmed()));
  }
  for (size_t i = 0; i < kCount; ++i) {
    const auto text = columns[i].read(cells.at(i + 1).trimmed());
    if (!text) {
      return std::unexpected(QLatin1String(kEscapeSentence));
    }
    record.*(columns[i].member) = *text;
  }
  return record;
}

template <typename Record, size_t kCount>
QList<Sourced<Record>> ReadTable(const QList<TextLine>& lines, const QString& file,
                                 const Column<Record> (&columns)[kCount], Problems& problems) {
  QList<Sourced<Record>> sources;
  for (const TextLine& line : lines) {
    if (line.text.trimmed().isEmpty() || line.text.startsWith(QLatin1Char('#'))) {
      continue;
    }
    const auto record = ReadRecord(line.text, columns);
    if (record) {
      sources.append({*record, file, line.number});
    } else {
      problems.append({file, line.number, record.error()});
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

template <typename Record, size_t kCount>
QString FormatTable(const QList<Record>& records, const Column<Record> (&columns)[kCount]) {
  QStringList headings{QStringLiteral("# id")};
  for (const auto& column : columns) {
    headings.append(QLatin1String(column.heading));
  }
  QList<QStringList> table{headings};
  for (const Record& record : records) {
    QStringList cells{QString::number(record.id)};
    for (const auto& column : columns) {
      cells.append(column.write(record.*(column.member)));
    }
    table.append(cells);
  }
  return Aligned(table);
}

}  // namespace

QList<PortsSource> ReadPorts(const QList<TextLine>& lines, const QString& file,
                             Problems& problems) {
  return ReadTable(lines, file, kPortsColumns, problems);
}

QList<CustomSource> ReadCustom(const QList<TextLine>& lines, const QString& file,
                               Problems& problems) {
  return ReadTable(lines, file, kCustomColumns, problems);
}

QString FormatPorts(const QList<AppPortRecord>& records) {
  return FormatTable(records, kPortsColumns);
}

QString FormatCustom(const QList<CustomPortRecord>& records) {
  return FormatTable(records, kCustomColumns);
}

}  // namespace quayline::dbtool
