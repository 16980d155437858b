// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/list_compare.h"

#include <QStringDecoder>

#include <algorithm>
#include <functional>

namespace quayline::demo {

namespace {

QString ListText(QByteArray bytes) {
  bytes.replace('\0', QByteArray());
  QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  QString text = utf8(bytes);
  if (!utf8.hasError()) {
    return text;
  }
  QStringDecoder windows("windows-1252");
  return windows.isValid() ? QString(windows(bytes)) : QString::fromLatin1(bytes);
}

ListEntry ReadLine(const QString& line) {
  QStringList fields = line.split(QLatin1Char('|'));
  fields.resize(std::max<qsizetype>(fields.size(), 5));
  return {.name = fields.at(0),
          .first = fields.at(2),
          .last = fields.at(3),
          .protocol = fields.at(4),
          .address = fields.at(1).section(QLatin1Char('('), 0, 0)};
}

bool IsAsListed(const ListEntry& entry, const Rule& rule) {
  bool has_first = false;
  bool has_last = false;
  const int first = entry.first.toInt(&has_first);
  const int last = entry.last.toInt(&has_last);
  return has_first && has_last && entry.name == rule.name && first == rule.first &&
         last == rule.last && entry.protocol == ProtocolText(rule.protocol) &&
         entry.address == rule.address;
}

bool IsNamedAlike(const ListEntry& entry, const Rule& rule) {
  return entry.name.compare(rule.name, Qt::CaseInsensitive) == 0;
}

// Assigns to each entry without a rule the first free rule that `fits` it.
void AssignRules(QList<ComparedRow>& rows, QList<Rule>& rules,
                 const std::function<bool(const ListEntry&, const Rule&)>& fits, EntryMark mark) {
  for (ComparedRow& row : rows) {
    const auto found = std::ranges::find_if(
        rules, [&](const Rule& rule) { return !row.rule && fits(*row.entry, rule); });
    if (found != rules.end()) {
      row.mark = mark;
      row.rule = *found;
      rules.erase(found);
    }
  }
}

QLatin1String MarkText(EntryMark mark) {
  switch (mark) {
    case EntryMark::kMatches:
      return QLatin1String("ok");
    case EntryMark::kOff:
      return QLatin1String("OFF");
    case EntryMark::kDiffers:
      return QLatin1String("DIFFERS");
    case EntryMark::kMissing:
      return QLatin1String("MISSING");
    case EntryMark::kExtra:
      return QLatin1String("extra");
  }
  return {};
}

// A name may hold anything, and a terminal obeys control characters.
QString Printable(QString text) {
  for (QChar& c : text) {
    if (!c.isPrint() && !c.isSurrogate()) {
      c = QLatin1Char('?');
    }
  }
  return text;
}

using Cells = QStringList;

Cells RowCells(const ComparedRow& row) {
  Cells cells{MarkText(row.mark)};
  cells += row.entry ? Cells{row.entry->name, row.entry->first + QLatin1Char('-') + row.entry->last,
                             row.entry->protocol, row.entry->address}
                     : Cells(4);
  cells += QStringLiteral("|");
  cells += row.rule ? Cells{row.rule->name,
                            QStringLiteral("%1-%2").arg(row.rule->first).arg(row.rule->last),
                            ProtocolText(row.rule->protocol), row.rule->address,
                            row.rule->enabled ? QStringLiteral("on") : QStringLiteral("off")}
                    : Cells(5);
  return cells;
}

QString Aligned(const QList<Cells>& lines) {
  QList<qsizetype> widths(lines.first().size());
  for (const Cells& cells : lines) {
    for (qsizetype i = 0; i < cells.size(); ++i) {
      widths[i] = std::max(widths.at(i), cells.at(i).size());
    }
  }
  QString text;
  for (const Cells& cells : lines) {
    QString line;
    for (qsizetype i = 0; i < cells.size(); ++i) {
      line += Printable(cells.at(i)).leftJustified(widths.at(i) + 2);
    }
    while (line.endsWith(QLatin1Char(' '))) {
      line.chop(1);
    }
    text += line + QLatin1Char('\n');
  }
  return text;
}

}  // namespace

QList<ListEntry> ReadList(const QByteArray& bytes) {
  QString text = ListText(bytes);
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  QList<ListEntry> entries;
  for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
    entries.append(ReadLine(line));
  }
  return entries;
}

QList<ComparedRow> CompareList(const QList<ListEntry>& entries, const QList<Rule>& rules) {
  QList<ComparedRow> rows;
  for (const ListEntry& entry : entries) {
    rows.append({.mark = EntryMark::kMissing, .entry = entry, .rule = {}});
  }
  // Full matches are assigned first: a rule that only has the name must not be assigned to an entry
  // while a later one needs it.
  QList<Rule> free = rules;
  const auto matches = [](const ListEntry& entry, const Rule& rule) {
    return rule.enabled && IsAsListed(entry, rule);
  };
  AssignRules(rows, free, matches, EntryMark::kMatches);
  AssignRules(rows, free, IsAsListed, EntryMark::kOff);
  AssignRules(rows, free, IsNamedAlike, EntryMark::kDiffers);
  for (const Rule& rule : free) {
    rows.append({.mark = EntryMark::kExtra, .entry = {}, .rule = rule});
  }
  return rows;
}

bool HasEveryEntry(const QList<ComparedRow>& rows) {
  const auto matches = [](const ComparedRow& row) { return row.mark == EntryMark::kMatches; };
  const auto matches_or_extra = [&](const ComparedRow& row) { return matches(row) || !row.entry; };
  return std::ranges::any_of(rows, matches) && std::ranges::all_of(rows, matches_or_extra);
}

QString FormatComparison(const QList<ComparedRow>& rows) {
  QList<Cells> lines{{QString(), QStringLiteral("List"), QStringLiteral("Ports"),
                      QStringLiteral("Protocol"), QStringLiteral("Address"), QStringLiteral("|"),
                      QStringLiteral("Router"), QStringLiteral("Ports"), QStringLiteral("Protocol"),
                      QStringLiteral("Address"), QStringLiteral("On")}};
  int entries = 0;
  int standing = 0;
  for (const ComparedRow& row : rows) {
    lines.append(RowCells(row));
    entries += row.entry ? 1 : 0;
    standing += row.mark == EntryMark::kMatches ? 1 : 0;
  }
  return Aligned(lines) +
         QStringLiteral("%1 of %2 entries stand on the router.\n").arg(standing).arg(entries);
}

}  // namespace quayline::demo
