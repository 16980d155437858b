// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "script/command_table.h"

namespace quayline {

// The reference of the script language in English, made from the rows of the command table. Lines
// end with "\n".

// When the command runs, as a sentence; empty where it always does.
QString ConditionSentence(Condition condition);
// What a field holds, where it may be left out, and what is inserted into it.
QString FieldSentences(const CommandRow& row, const FieldSpec& field);

// One command, for a terminal.
QString CommandManual(const CommandRow& row);
// One line a command: how it is written.
QString CommandList();
// The whole reference as a Markdown page.
QString CommandReferencePage();

}  // namespace quayline
