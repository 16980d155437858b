// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <expected>

#include "dbtool/program_texts.h"
#include "i18n/language_file.h"

namespace quayline::dbtool {

// A language as "data/languages/NAME.txt" has it: UTF-8, with the lines of a language file. The
// first section head is the language's own name: "[Deutsch]".
struct LanguageSource {
  QString name;  // English, as the file is called
  QString own_name;
  QList<LanguageRecord> records;
};

// The error says what is wrong with the file.
std::expected<LanguageSource, QString> ReadLanguageSource(const QString& file_name);

// Makes "Languages/NAME.lng" of each source in DATA/languages below `folder`, and the list
// "_Current_Languages.txt". The error says what is wrong.
std::expected<void, QString> WriteLanguages(const QString& data_folder, const QString& folder);

// What a language has to do with the texts of the program; each line is one finding.
struct LanguageFindings {
  QStringList missing;  // as records without a translation
  QStringList unused;
  QStringList wrong;  // placeholders, access keys, a text that is there twice
};
LanguageFindings CompareLanguage(const LanguageSource& language, const ProgramTexts& program);

// All texts of the program as a source to fill in, by file, with the notes for translators.
QString LanguageTemplate(const ProgramTexts& program);

}  // namespace quayline::dbtool
