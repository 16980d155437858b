// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/lint_command.h"

#include <QFile>

#include "core/text_bytes.h"
#include "script/script_lint.h"

namespace quayline {

namespace {

constexpr qint64 kMaxScriptBytes = qint64{4} << 20;

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
  int number = 0;
  for (QString line : FromUtf8OrWindows1252(bytes).split(QLatin1Char('\n'))) {
    ++number;
    if (line.endsWith(QLatin1Char('\r'))) {
      line.chop(1);
    }
    for (const LintFinding& finding : LintScriptLine(line)) {
      const bool is_error = finding.severity == LintSeverity::kError;
      report.exit_status = is_error ? 1 : report.exit_status;
      report.output += QStringLiteral("%1:%2: ").arg(file_name).arg(number) +
                       (is_error ? QString() : QStringLiteral("warning: ")) +
                       LintSentence(finding) + QLatin1Char('\n');
    }
  }
  return report;
}

}  // namespace quayline
