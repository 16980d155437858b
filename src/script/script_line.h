// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace quayline {

// One line of a router script: command_name("argument").
struct ScriptLine {
  QString name;      // lower case, not trimmed: a blank in front makes the line unknown
  QString argument;  // as written, without the two characters at either end
};

// Reads a line strictly by position: the name is everything in front of the first opening
// parenthesis; of the rest the first two and the last two characters are cut off, whatever they
// are. A line without a parenthesis, or with fewer characters after the name, has an empty
// argument.
ScriptLine ParseScriptLine(const QString& line);

// `argument` with `inserted` at `position` characters before its end. An empty position, one that
// is no whole number, and one outside the argument leave it as it is.
QString InsertAt(const QString& argument, const QString& position, const QString& inserted);

// The letter of an entry: A for 1, B for 2; after Z come the characters that follow it.
QString EntryLetter(int entry_index);

// The whole number that a text holds, with blanks around it and a sign allowed; nothing for any
// other text and beyond 32 bits.
std::optional<int> WholeNumber(const QString& text);

// "true" in any case and any number but 0 are true; "false" and 0 are false; nothing for any other
// text.
std::optional<bool> TruthValue(const QString& text);

}  // namespace quayline
