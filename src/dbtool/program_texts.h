// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

namespace quayline::dbtool {

// A text that the user reads, as the sources have it.
struct ProgramText {
  QString english;
  QString note;   // for translators; also which other case the text is written in
  QString place;  // the file, relative to the folder of the sources
};

struct ProgramTexts {
  // What a language file translates: the texts of forms and of Message constants, in the order of
  // the files. Of a text of several lines each line is one. Each text is there once.
  QList<ProgramText> texts;
  // Sentences in the code that are no Message, so that no language file reaches them; and texts
  // that cannot be written in a language file.
  QList<ProgramText> unreachable;
};

// Reads all forms and C++ files below `source_folder`.
ProgramTexts ReadProgramTexts(const QString& source_folder);

// The texts of one file, for ReadProgramTexts(). Of a C++ file: `structs` are the names of the
// structs with members of the type Message, in whatever file they are.
ProgramTexts ReadForm(const QByteArray& xml, const QString& place);
ProgramTexts ReadCode(const QString& code, const QString& place, const QStringList& structs);
QStringList FindMessageStructs(const QString& code);

}  // namespace quayline::dbtool
