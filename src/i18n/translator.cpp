// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "i18n/translator.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

#include "i18n/language_locale.h"

namespace quayline {

namespace {

constexpr QLatin1String kSuffix(".lng");
const QString kFieldSeparator = QStringLiteral(" | ");

// "&Save" without its mark; "A && B" stays.
QString WithoutAccessKey(QString text) {
  static const QRegularExpression mark(QStringLiteral("&(?!&)"));
  static const QString kKept(QChar(0xfffc));
  return text.replace(QStringLiteral("&&"), kKept)
      .remove(mark)
      .replace(kKept, QStringLiteral("&&"));
}

// U+2068 and U+2069: what is between them is ordered by itself, in the direction of its first
// letter.
QString WithIsolatedValues(QString text) {
  static const QRegularExpression placeholder(QStringLiteral("(%\\d)"));
  return text.replace(placeholder, QStringLiteral("\u2068\\1\u2069"));
}

bool IsSame(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

}  // namespace

Translator::Translator(const QString& program_folder) {
  if (!program_folder.isEmpty()) {
    SetFolder(program_folder + QStringLiteral("/Languages"));
  }
}

void Translator::SetFolder(const QString& path) {
  folder_ = path.endsWith(u'/') ? path : path + u'/';
  files_ = QDir(folder_).entryList({QStringLiteral("*.lng")}, QDir::Files, QDir::Name);
}

void Translator::SetLookupMode(LookupMode mode) {
  mode_ = mode;
  IndexRecords();
}

void Translator::SetReturnLeft(bool return_left) {
  return_left_ = return_left;
  texts_.clear();
}

// A file of the folder in whatever case, so that no name leads out of the folder.
QString Translator::FindFile(const QString& name) const {
  const QString file = name + kSuffix;
  const auto found =
      std::ranges::find_if(files_, [&](const QString& each) { return IsSame(each, file); });
  return found == files_.end() ? QString() : *found;
}

void Translator::SetLanguage(const QString& name) {
  return_left_ = IsSame(name, default_language_);
  file_ = return_left_ ? files_.value(0) : name + kSuffix;
  const QString found = return_left_ ? file_ : FindFile(name);
  QList<LanguageRecord> records =
      found.isEmpty() ? QList<LanguageRecord>() : ReadLanguageFile(folder_ + found);
  if (!records.isEmpty()) {
    records_ = std::move(records);
  }
  is_right_to_left_ = LocaleOfLanguage(Language()).textDirection() == Qt::RightToLeft;
  IndexRecords();
  Q_EMIT languageChanged();
}

void Translator::Choose(const QString& choice) {
  const QString language = LanguageOf(choice);
  if (!records_.isEmpty() || !IsSame(language, default_language_)) {
    SetLanguage(language);
  }
}

QString Translator::LanguageOf(const QString& choice) const {
  const QStringList fields = choice.split(kFieldSeparator);
  for (const QString& field : fields) {
    const QString name = field.trimmed();
    if (IsSame(name, default_language_) || !FindFile(name).isEmpty()) {
      return name;
    }
  }
  return choice.trimmed().isEmpty() ? default_language_ : fields.first().trimmed();
}

QString Translator::Language() const {
  return return_left_ ? default_language_ : file_.chopped(kSuffix.size());
}

void Translator::IndexRecords() {
  by_key_.clear();
  texts_.clear();
  by_key_.reserve(records_.size());
  for (qsizetype i = 0; i < records_.size(); ++i) {
    const LanguageRecord& record = records_.at(i);
    const QString key = mode_ == LookupMode::kNumber      ? QString::number(record.number)
                        : mode_ == LookupMode::kBracedKey ? record.braced_key.toCaseFolded()
                                                          : record.left_text.toCaseFolded();
    if (!by_key_.contains(key)) {
      by_key_.insert(key, i);
    }
  }
}

QString Translator::Translate(const QString& key) const {
  const auto found = by_key_.constFind(mode_ == LookupMode::kNumber ? QString::number(key.toInt())
                                                                    : key.toCaseFolded());
  if (found == by_key_.cend()) {
    return {};
  }
  const LanguageRecord& record = records_.at(*found);
  return return_left_ ? record.left_text : record.right_text;
}

QString Translator::TranslateLines(const QString& english) const {
  QStringList lines = english.split(u'\n');
  for (QString& line : lines) {
    QString text = line.isEmpty() ? line : Translate(line);
    if (text.isEmpty() && line.contains(u'&')) {
      text = Translate(WithoutAccessKey(line));
    }
    if (!text.isEmpty()) {
      line = text;
    }
  }
  return lines.join(u'\n');
}

QString Translator::Text(const Message& message) const {
  return Text(QString::fromUtf8(message.english));
}

QString Translator::Text(const QString& english) const {
  if (english.isEmpty()) {
    return english;
  }
  if (const auto known = texts_.constFind(english); known != texts_.cend()) {
    return *known;
  }
  // Texts that differ in case only share a record, but not their English.
  const QString found = return_left_ ? english : TranslateLines(english);
  const QString text = Keep(is_right_to_left_ ? WithIsolatedValues(found) : found, english);
  texts_.insert(english, text);
  return text;
}

QString Translator::GivenAs(const QString& text, const QString& english) const {
  QString& variant = variants_[{english, text}];
  if (variant.isNull()) {
    variant = Keep(text, english);
  }
  return variant;
}

// A copy with data of its own: two English texts may have one translation.
QString Translator::Keep(const QString& text, const QString& english) const {
  const QString kept(text.constData(), text.size());
  given_.insert(kept.constData(), {kept, english});
  return kept;
}

std::optional<QString> Translator::EnglishOf(const QString& text) const {
  const auto given = given_.constFind(text.constData());
  return given != given_.cend() && given->text.size() == text.size() ? std::optional(given->english)
                                                                     : std::nullopt;
}

QStringList Translator::AvailableLanguages() const {
  QStringList languages{QString::fromLatin1(kEnglish)};
  for (const QString& line : ReadLanguageList(folder_ + QStringLiteral("_Current_Languages.txt"))) {
    if (!languages.contains(line)) {
      languages.append(line);
    }
  }
  return languages;
}

}  // namespace quayline
