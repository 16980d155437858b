// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "i18n/message.h"

namespace quayline {

// The language of the texts in the code, as the language list would name it.
inline constexpr char kEnglish[] = "English | English";

// Gives every message in the language that the user chose. The languages are listed in
// "Languages/_Current_Languages.txt" of the program's folder; English needs no file.
class Translator final {
 public:
  explicit Translator(QString program_folder);
  Translator(const Translator&) = delete;
  Translator& operator=(const Translator&) = delete;

  // The text of `message` in the current language.
  QString Text(const Message& message) const;

  // The lines of the language list, each "Own name | English name", with "English | English"
  // last. A list that cannot be read, or is not UTF-16 little-endian with its mark, adds nothing.
  QStringList AvailableLanguages() const;

 private:
  QString languages_folder_;
};

}  // namespace quayline
