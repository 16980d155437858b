// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QCoreApplication>

#include <cstdio>

#include "dbtool/commands.h"
#include "script/script_lint.h"

namespace {

// UTF-8 in any locale: a dump becomes a text file.
bool Print(const QString& text, std::FILE* stream) {
  const QByteArray bytes = text.toUtf8();
  const auto size = static_cast<size_t>(bytes.size());
  return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

QList<quayline::ScriptRemark> Lint(const quayline::SourceScript& script) {
  QList<quayline::ScriptRemark> remarks;
  for (const quayline::ScriptFinding& found : quayline::LintScript(
           script.lines, quayline::ScriptKindOf(script.column), script.update_lines)) {
    const quayline::LintFinding& finding = found.finding;
    remarks.append({.sentence = quayline::LintSentence(finding),
                    .is_warning = finding.severity == quayline::LintSeverity::kWarning,
                    .line = found.line});
  }
  return remarks;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const quayline::dbtool::Result result =
      quayline::dbtool::RunCommand(QCoreApplication::arguments().mid(1), Lint);
  Print(result.error, stderr);
  if (!Print(result.output, stdout)) {
    Print(QStringLiteral("The output cannot be written.\n"), stderr);
    return quayline::dbtool::kExitFailed;
  }
  return result.exit_code;
}
