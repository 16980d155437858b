// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "dbtool/language_source.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

#include "core/save_file.h"

namespace quayline::dbtool {

namespace {

QString RecordLine(const QString& english, const QString& translation) {
  return QStringLiteral("\"%1\"|\"%2\"").arg(english, translation);
}

QStringList Placeholders(const QString& text) {
  static const QRegularExpression placeholder(QStringLiteral("%\\d"));
  QStringList found;
  for (const QRegularExpressionMatch& match : placeholder.globalMatch(text)) {
    found.append(match.captured());
  }
  found.sort();
  found.removeDuplicates();
  return found;
}

bool HasAccessKey(QString text) {
  return text.remove(QStringLiteral("&&")).contains(QRegularExpression(QStringLiteral("&[^ ]")));
}

// What is wrong with a translation, or an empty text.
QString Fault(const LanguageRecord& record) {
  if (Placeholders(record.left_text) != Placeholders(record.right_text)) {
    return QStringLiteral("The placeholders differ");
  }
  if (HasAccessKey(record.left_text) != HasAccessKey(record.right_text)) {
    return QStringLiteral("One of the texts has no access key (\"&\")");
  }
  const bool is_trimmed = record.right_text.trimmed() == record.right_text ||
                          record.left_text.trimmed() != record.left_text;
  return is_trimmed ? QString() : QStringLiteral("There are blanks at the ends");
}

}  // namespace

std::expected<LanguageSource, QString> ReadLanguageSource(const QString& file_name) {
  QFile file(file_name);
  if (!file.open(QIODevice::ReadOnly)) {
    return std::unexpected(file_name + QStringLiteral(": ") + file.errorString());
  }
  const QByteArray bytes = file.readAll();
  if (!bytes.isValidUtf8()) {
    return std::unexpected(file_name + QStringLiteral(": this is not UTF-8"));
  }
  QString text = QString::fromUtf8(bytes).remove(u'\r');
  LanguageSource source{.name = QFileInfo(file_name).completeBaseName(),
                        .records = ParseLanguageText(text.replace(u'\n', QStringLiteral("\r\n")))};
  if (source.records.isEmpty() || source.records.first().section.isEmpty()) {
    return std::unexpected(file_name +
                           QStringLiteral(": the first record needs a section with the "
                                          "language's own name above it, as in [Deutsch]"));
  }
  source.own_name = source.records.first().section;
  for (const LanguageRecord& record : source.records) {
    if (record.left_text.isEmpty()) {
      return std::unexpected(file_name +
                             QStringLiteral(": a line is no \"English\"|\"text\", near ") +
                             record.right_text);
    }
  }
  return source;
}

std::expected<void, QString> WriteLanguages(const QString& data_folder, const QString& folder) {
  const QDir sources(data_folder + QStringLiteral("/languages"));
  const QString target = folder + QStringLiteral("/Languages");
  if (!QDir().mkpath(target)) {
    return std::unexpected(QStringLiteral("The folder \"%1\" cannot be made").arg(target));
  }
  QStringList list;
  for (const QString& file :
       sources.entryList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name)) {
    const auto source = ReadLanguageSource(sources.filePath(file));
    if (!source) {
      return std::unexpected(source.error());
    }
    QStringList lines{QStringLiteral("' %1. Made from data/languages/%2.").arg(source->name, file),
                      QStringLiteral("[%1]").arg(source->own_name)};
    for (const LanguageRecord& record : source->records) {
      if (!record.right_text.isEmpty()) {
        lines.append(RecordLine(record.left_text, record.right_text));
      }
    }
    list.append(source->name + QStringLiteral(" | ") + source->own_name);
    if (!SaveFile(target + u'/' + source->name + QStringLiteral(".lng"),
                  LanguageFileBytes(lines))) {
      return std::unexpected(QStringLiteral("%1.lng cannot be written").arg(source->name));
    }
  }
  if (!SaveFile(target + QStringLiteral("/_Current_Languages.txt"), LanguageFileBytes(list))) {
    return std::unexpected(QStringLiteral("_Current_Languages.txt cannot be written"));
  }
  return {};
}

LanguageFindings CompareLanguage(const LanguageSource& language, const ProgramTexts& program) {
  LanguageFindings findings;
  QSet<QString> used;
  for (const ProgramText& text : program.texts) {
    used.insert(text.english.toCaseFolded());
  }
  QSet<QString> translated;
  for (const LanguageRecord& record : language.records) {
    const QString key = record.left_text.toCaseFolded();
    const QString line = RecordLine(record.left_text, record.right_text);
    if (translated.contains(key)) {
      findings.wrong.append(QStringLiteral("Twice: ") + line);
    } else if (!used.contains(key)) {
      findings.unused.append(line);
    } else if (const QString fault = Fault(record);
               !fault.isEmpty() && !record.right_text.isEmpty()) {
      findings.wrong.append(fault + QStringLiteral(": ") + line);
    }
    if (!record.right_text.isEmpty()) {
      translated.insert(key);
    }
  }
  for (const ProgramText& text : program.texts) {
    if (!translated.contains(text.english.toCaseFolded())) {
      findings.missing.append(RecordLine(text.english, {}));
    }
  }
  return findings;
}

QString LanguageTemplate(const ProgramTexts& program) {
  QString lines;
  QString place;
  for (const ProgramText& text : program.texts) {
    if (text.place != place) {
      place = text.place;
      lines += QStringLiteral("\n' %1\n").arg(place);
    }
    if (!text.note.isEmpty()) {
      lines += QStringLiteral("' Note: %1\n").arg(text.note);
    }
    lines += RecordLine(text.english, {}) + u'\n';
  }
  return lines;
}

}  // namespace quayline::dbtool
