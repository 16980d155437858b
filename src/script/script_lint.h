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
  QStringList values;  // for %1, %2, ... of the text
};

// What a script is for.
enum class ScriptKind {
  kUpdate,  // enters one entry
  kView,    // leads to the page of the rules
  kRemove   // removes one entry
};

// The kind of the script in a column of the routers: "routercommands", "routerportpage",
// "routerremove".
ScriptKind ScriptKindOf(const QString& column);

// A finding in a script, with its line counted from 1.
struct ScriptFinding {
  int line = 1;
  LintFinding finding;
};

// Finds what is wrong with a line before a router sees it. A script never fails: a line that is no
// command is a comment, and a missing field is that of an earlier line. So the lint reports lines
// that would silently do nothing, or something else than they say. Each line is checked by itself,
// against its command's row.
QList<LintFinding> LintScriptLine(const QString& line);

// The findings of each line, and what is wrong with the lines together: a line that needs an
// earlier one, a condition that never holds, a page that is left before it sends what was filled
// in. A view script is also compared with the router's update script, if that is given: it has to
// get past the same login. In the order of the lines.
QList<ScriptFinding> LintScript(const QStringList& lines, ScriptKind kind,
                                const QStringList& update_lines = {});

// The finding as a sentence, in the user's language or in English.
QString LintSentence(const LintFinding& finding, const Translator& translator);
QString LintSentence(const LintFinding& finding);

}  // namespace quayline
