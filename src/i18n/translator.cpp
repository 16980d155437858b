// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "i18n/translator.h"

#include <QFile>

namespace quayline {

namespace {

constexpr qint64 kMaxLanguageListBytes = 1 << 20;

}  // namespace

Translator::Translator(QString program_folder)
    : languages_folder_(std::move(program_folder) + QStringLiteral("/Languages")) {}

QString Translator::Text(const Message& message) const {
  return QString::fromUtf8(message.english);
}

QStringList Translator::AvailableLanguages() const {
  QStringList languages;
  QFile file(languages_folder_ + QStringLiteral("/_Current_Languages.txt"));
  if (file.open(QIODevice::ReadOnly)) {
    const QByteArray bytes = file.read(kMaxLanguageListBytes);
    if (bytes.startsWith("\xff\xfe")) {
      QStringDecoder decode(QStringDecoder::Utf16LE);
      const QString text = decode(QByteArrayView(bytes).sliced(2));
      languages = text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    }
  }
  languages.append(QString::fromLatin1(kEnglish));
  return languages;
}

}  // namespace quayline
