// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quayline {

// `text` with a visible mark in place of each control character: the text of a page, a list or a
// file must not move the cursor, begin a line or change the direction of the terminal's text.
QString WithoutControls(QString text);

// A piece of the job's log as it goes to standard output: its line breaks are CR LF, and any other
// control character comes from a page or a list.
QString LogForTerminal(const QString& text);

// Writes to standard output.
void WriteLog(const QString& piece);
// Writes lines that end with LF to standard output.
void WriteLines(const QString& lines);
// Writes to standard error, on one line.
void Report(const QString& sentence);
// The same for a text of the program's own, which may have several lines.
void ReportLines(const QString& text);

}  // namespace quayline
