// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

#include "i18n/language_file.h"
#include "i18n/message.h"

namespace quayline {

// The language of the texts in the code, as the language list would name it.
inline constexpr char kEnglish[] = "English | English";

// By what a record is found.
enum class LookupMode : qint16 { kNumber = 1, kBracedKey = 2, kLeftText = 3 };

// Gives the texts of the program in the language that the user chose. A language is a file
// "Languages/NAME.lng" of the program's folder; the key of a translation is the English text.
// Going back to English needs no English file: any file has the English texts.
//
// The strings that Text() gives are kept, and a control shares the string that it was given. So the
// string that a control has shows which text it is, and the control can be shown in another
// language without knowing anything of languages: see WindowLanguage.
class Translator final : public QObject {
  Q_OBJECT

 public:
  explicit Translator(const QString& program_folder);

  // Sets the folder of the language files and reads which ones are there.
  void SetFolder(const QString& path);
  // Always ends with "/".
  const QString& Folder() const { return folder_; }
  // All "*.lng" of the folder.
  const QStringList& LanguageFiles() const { return files_; }
  // The file of the current language.
  const QString& LanguageFile() const { return file_; }

  void SetDefaultLanguage(const QString& name) { default_language_ = name; }
  void SetLookupMode(LookupMode mode);
  // Whether a translation is the text that it translates: English.
  void SetReturnLeft(bool return_left);

  // `name` is a language file's name without ".lng", or the default language, in any case. If the
  // file is missing or empty, the records of the former language stay. Emits languageChanged().
  void SetLanguage(const QString& name);
  // The same, unless it is English and no other language has been set: nothing is read then.
  void Choose(const QString& choice);
  // The language that a line of the language list names: by its first field, or, where a list has
  // the fields the other way round, by the second.
  QString LanguageOf(const QString& choice) const;
  // Whether the current language is not the default one.
  bool IsTranslated() const { return !return_left_; }
  // The current language's name.
  QString Language() const;

  // The text of the first record that matches, or an empty one.
  QString Translate(const QString& key) const;
  // The text in the current language; what has no translation stays English. Each line of a text of
  // several lines is a record of its own. A file may leave out the mark of an access key ("&").
  // In a language that is read from right to left, what replaces %1 is read on its own: addresses
  // and names with brackets would be shown in a wrong order otherwise.
  QString Text(const Message& message) const;
  QString Text(const QString& english) const;
  // `text` as a string that counts as given for `english`: a translation with another access key.
  QString GivenAs(const QString& text, const QString& english) const;
  // The English text, if `text` is a string that Text() has given, and not just an equal one.
  std::optional<QString> EnglishOf(const QString& text) const;

  // "English | English", then the lines of the language list.
  QStringList AvailableLanguages() const;

 Q_SIGNALS:
  void languageChanged();

 private:
  struct GivenText {
    QString text;  // kept, so that its data are never those of another string
    QString english;
  };

  QString Keep(const QString& text, const QString& english) const;
  void IndexRecords();
  QString FindFile(const QString& name) const;
  QString TranslateLines(const QString& english) const;

  QString folder_;
  QStringList files_;
  QString file_;
  QString default_language_ = QStringLiteral("English");
  LookupMode mode_ = LookupMode::kLeftText;
  bool return_left_ = true;
  bool is_right_to_left_ = false;
  QList<LanguageRecord> records_;
  QHash<QString, qsizetype> by_key_;              // in one case; the first record of each key
  mutable QHash<QString, QString> texts_;         // what Text() gives in this language
  mutable QHash<const QChar*, GivenText> given_;  // by the data of the string
  mutable QHash<std::pair<QString, QString>, QString> variants_;  // by English text and variant
};

}  // namespace quayline
