// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quayline {

// One line of a language file: `12 {key}: "English text"|"translation"`, each part optional.
struct LanguageRecord {
  QString left_text;
  QString section;  // the last section head above the line
  qint32 number = 0;
  QString braced_key;
  QString right_text;
};

// What is between the first `marks.first()` and the last `marks.last()` of `text`. Empty without
// the first mark, or without a last one after it.
QString GetBetween(const QString& text, const QString& marks);

// The records of a language file's text, in the order of its lines. A double quotation mark inside
// a text is written as it is; an English text cannot contain "|", which ends it.
QList<LanguageRecord> ParseLanguageText(const QString& text);

// The same of a file in UTF-16 little-endian, of which the first character is dropped. Empty when
// the file cannot be read, or is larger than any language file.
QList<LanguageRecord> ReadLanguageFile(const QString& file_name);

// The lines of "_Current_Languages.txt", trimmed. None if it is not UTF-16 little-endian with its
// byte-order mark.
QStringList ReadLanguageList(const QString& file_name);

// The bytes of a file in that encoding, with its mark; `lines` get their ends.
QByteArray LanguageFileBytes(const QStringList& lines);

}  // namespace quayline
