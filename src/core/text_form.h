// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

#include "core/data_problem.h"

namespace quayline {

// The text files under the records: lines of UTF-8, and texts that may hold anything at all. A text
// is written as it is if it can be read back that way. Otherwise it begins with a backslash, and
// after that mark "\\" is a backslash and "\u" with four hex digits any character.

inline constexpr qint64 kMaxTextFileBytes = qint64{4} << 20;

struct TextLine {
  int number = 0;  // counted from 1
  QString text;    // without its line end
};

// The lines of a file, LF or CR LF. A line that is not UTF-8 or holds a control character other
// than a tab is a problem and left out.
QList<TextLine> ReadLines(const QByteArray& bytes, const QString& file, Problems& problems);

// As above; a file that cannot be read or is too large is a problem.
QList<TextLine> ReadTextFile(const QString& file, Problems& problems);

// `text` with the mark in front, whether it needs it or not. `separator` is written as an escape,
// so that the line can be split there.
QString EscapedText(const QString& text, QChar separator = {});

// A value: as it is, or escaped when blanks around it, control characters, a leading backslash or
// the separator would be lost or misread.
QString WrittenValue(const QString& text, QChar separator = {});

// Whether a text contains what no line of a file can: control characters other than tabs.
bool HasControlCharacter(const QString& text);

// Nothing when the text begins with the mark and is followed by an unknown escape.
std::optional<QString> ReadWritten(const QString& written);

// The value that WrittenValue() wrote. Nothing as above, and nothing when the mark was not needed:
// whoever typed "\files" meant the backslash.
std::optional<QString> ReadValue(const QString& written, QChar separator = {});

inline constexpr Message kEscapeSentence{
    "In a text that begins with a backslash, each further one must be \"\\\\\" or \"\\uHHHH\". A "
    "backslash at the beginning of the text itself is written as three."};

// A key: digits only, from 1 to the largest 32-bit number.
std::optional<int> ReadId(const QString& text);
Sentence IdSentence(const QString& text);

// Digits only, up to `most`.
std::optional<int> ReadNumber(const QString& text, int most);

}  // namespace quayline
