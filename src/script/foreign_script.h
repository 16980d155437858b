// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "core/foreign_scripts.h"
#include "i18n/translator.h"

namespace quayline {

// The scripts of a router that somebody else wrote, before they run for the first time: who wrote
// them and what they may do.
struct ForeignScript {
  QString router;
  ScriptOrigin origin;
  QStringList pages;       // that it opens, each once, as the script names them
  QStringList code_lines;  // "12: call_javascript(...)": the lines that run JavaScript
};

ForeignScript DescribeScripts(const RouterRecord& router, const ScriptOrigin& origin);

// Whether a line of a script runs JavaScript.
bool RunsJavaScript(const QString& line);

// What the user reads before he decides, as it is asked or reported.
QString ForeignScriptText(const ForeignScript& script, const Translator& translator);

}  // namespace quayline
