// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/lint_command.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>

#include "core/text_bytes.h"
#include "script/script_lint.h"

namespace quayline {

namespace {

constexpr qint64 kMaxScriptBytes = qint64{4} << 20;

// The lines of one script.
struct Part {
  QString heading;
  ScriptKind kind = ScriptKind::kUpdate;
  qsizetype lines_before = 0;
  QStringList lines;
};

// The scripts of a router's file, which are under their headings, or the one of a script's file.
QList<Part> PartsOf(const QString& text) {
  static const QRegularExpression kHeading(QStringLiteral("^\\[(\\w+)[^\\]]*\\]$"));
  QList<Part> parts{Part()};
  qsizetype number = 0;
  for (QString line : text.split(QLatin1Char('\n'))) {
    ++number;
    if (line.endsWith(QLatin1Char('\r'))) {
      line.chop(1);
    }
    const QRegularExpressionMatch heading = kHeading.match(line.trimmed());
    if (heading.hasMatch()) {
      parts.append({.heading = heading.captured(1),
                    .kind = ScriptKindOf(heading.captured(1)),
                    .lines_before = number,
                    .lines = {}});
    } else {
      parts.last().lines.append(line);
    }
  }
  return parts;
}

LintReport Unreadable(const QString& file_name, const QString& why) {
  return {.exit_status = 2,
          .output = {},
          .error = QStringLiteral("\"%1\" cannot be read: %2.").arg(file_name, why)};
}

}  // namespace

LintReport LintFile(const QString& file_name) {
  QFile file(file_name);
  if (!file.open(QIODevice::ReadOnly)) {
    return Unreadable(file_name, file.errorString());
  }
  const QByteArray bytes = file.read(kMaxScriptBytes + 1);
  if (file.error() != QFile::NoError) {
    return Unreadable(file_name, file.errorString());
  }
  if (bytes.size() > kMaxScriptBytes) {
    return Unreadable(file_name, QStringLiteral("it is larger than 4 MB"));
  }
  LintReport report;
  const QList<Part> parts = PartsOf(FromUtf8OrWindows1252(bytes));
  const auto update = std::ranges::find(parts, QLatin1String("routercommands"), &Part::heading);
  for (const Part& part : parts) {
    for (const ScriptFinding& found :
         LintScript(part.lines, part.kind, update == parts.end() ? QStringList() : update->lines)) {
      const bool is_error = found.finding.severity == LintSeverity::kError;
      report.exit_status = is_error ? 1 : report.exit_status;
      report.output +=
          QStringLiteral("%1:%2: ").arg(file_name).arg(part.lines_before + found.line) +
          (is_error ? QString() : QStringLiteral("warning: ")) + LintSentence(found.finding) +
          QLatin1Char('\n');
    }
  }
  return report;
}

}  // namespace quayline
