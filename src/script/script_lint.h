// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "i18n/translator.h"
#include "script/command_table.h"

namespace quayline {

enum class LintSeverity {
  kWarning,  // the line may be meant so
  kError     // the line cannot do what it says
};

// Something about a line of a script, and the part of the line that it is about.
struct LintFinding {
  LintSeverity severity = LintSeverity::kError;
  qsizetype start = 0;
  qsizetype length = 0;
  Message text{};
  QStringList values;  // what stands for %1, %2, ... of the text
};

// What whoever writes scripts should know of a line before a router meets it. A script never fails:
// a line that is no command is a comment, a field that is missing is that of an earlier line. So
// the lint speaks where a line would silently do nothing or something else. Each line is judged by
// itself, against its command's row.
QList<LintFinding> LintScriptLine(const QString& line);

// The finding as a sentence, in the user's language or in English.
QString LintSentence(const LintFinding& finding, const Translator& translator);
QString LintSentence(const LintFinding& finding);

// How a command is written: set_name("field,position").
QString CommandShape(const CommandRow& row);
QString CommandName(const CommandRow& row);

}  // namespace quayline
