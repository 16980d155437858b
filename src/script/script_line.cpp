// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_line.h"

#include "core/port_entry.h"

namespace quayline {

ScriptLine ParseScriptLine(const QString& line) {
  constexpr int kCutAtEachEnd = 2;
  const qsizetype parenthesis = line.indexOf(QLatin1Char('('));
  if (parenthesis < 0) {
    return {.name = line.toLower(), .argument = {}};
  }
  const QStringView raw = QStringView(line).sliced(parenthesis);
  ScriptLine parsed{.name = line.left(parenthesis).toLower(), .argument = {}};
  if (raw.size() > 2 * kCutAtEachEnd) {
    parsed.argument = raw.sliced(kCutAtEachEnd, raw.size() - 2 * kCutAtEachEnd).toString();
  }
  return parsed;
}

QString InsertAt(const QString& argument, const QString& position, const QString& inserted) {
  const std::optional<int> from_end = WholeNumber(position);
  if (!from_end || *from_end < 0 || *from_end > argument.size()) {
    return argument;
  }
  const qsizetype split = argument.size() - *from_end;
  return argument.left(split) + inserted + argument.mid(split);
}

QString EntryLetter(int entry_index) {
  constexpr int kBeforeA = 'A' - 1;
  return QString(QChar(static_cast<char16_t>(entry_index + kBeforeA)));
}

std::optional<int> WholeNumber(const QString& text) { return PortNumber(text); }

std::optional<bool> TruthValue(const QString& text) {
  const QString trimmed = text.trimmed();
  if (trimmed.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0) {
    return true;
  }
  if (trimmed.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0) {
    return false;
  }
  const std::optional<int> number = WholeNumber(trimmed);
  return number ? std::optional(*number != 0) : std::nullopt;
}

}  // namespace quayline
