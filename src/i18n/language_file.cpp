// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "i18n/language_file.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>

namespace quayline {

namespace {

constexpr qint64 kMaxFileBytes = 16 << 20;
constexpr char kMark[] = "\xff\xfe";

QByteArray ReadLimited(const QString& file_name) {
  QFile file(file_name);
  if (!file.open(QIODevice::ReadOnly)) {
    return {};
  }
  const QByteArray bytes = file.read(kMaxFileBytes + 1);
  return bytes.size() > kMaxFileBytes ? QByteArray() : bytes;
}

// From UTF-16 little-endian, without the first character.
QString TextOf(const QByteArray& bytes) {
  constexpr auto kUnit = static_cast<qsizetype>(sizeof(char16_t));
  QString text(bytes.size() / kUnit, Qt::Uninitialized);
  qFromLittleEndian<char16_t>(bytes.constData(), text.size(), text.data());
  return text.sliced(std::min<qsizetype>(1, text.size()));
}

// Without the blanks at both ends; other white space stays.
QString Trimmed(const QString& line) {
  const auto is_blank = [](QChar c) { return c == u' '; };
  const auto first = std::ranges::find_if_not(line, is_blank);
  auto last = line.end();
  while (last != first && is_blank(*(last - 1))) {
    --last;
  }
  return QString(first, last - first);
}

qint32 LeadingNumber(const QString& line) {
  qsizetype digits = 0;
  while (digits < line.size() && line.at(digits) >= u'0' && line.at(digits) <= u'9') {
    ++digits;
  }
  return QStringView(line).first(digits).toInt();  // 0 if there are none or too many
}

LanguageRecord RecordOf(const QString& line, const QString& section) {
  static const QString kQuotes = QStringLiteral("\"");
  LanguageRecord record{.section = section, .number = LeadingNumber(line)};
  if (line.contains(u':')) {
    record.braced_key = GetBetween(line, QStringLiteral("{}"));
  }
  if (const qsizetype bar = line.indexOf(u'|'); bar >= 0) {
    record.left_text = GetBetween(line.first(bar), kQuotes);
    record.right_text = GetBetween(line.sliced(bar + 1), kQuotes);
  }
  return record;
}

}  // namespace

QString GetBetween(const QString& text, const QString& marks) {
  if (marks.isEmpty()) {
    return {};
  }
  const qsizetype first = text.indexOf(marks.front());
  const qsizetype last = text.lastIndexOf(marks.back());
  return first >= 0 && last > first ? text.sliced(first + 1, last - first - 1) : QString();
}

QList<LanguageRecord> ParseLanguageText(const QString& text) {
  QList<LanguageRecord> records;
  QString section;
  for (const QString& whole : text.split(QStringLiteral("\r\n"))) {
    const QString line = Trimmed(whole);
    if (line.isEmpty() || line.front() == u'\'') {
      continue;
    }
    if (line.front() == u'[') {
      section = GetBetween(line, QStringLiteral("[]"));
    } else {
      records.append(RecordOf(line, section));
    }
  }
  return records;
}

QList<LanguageRecord> ReadLanguageFile(const QString& file_name) {
  return ParseLanguageText(TextOf(ReadLimited(file_name)));
}

QStringList ReadLanguageList(const QString& file_name) {
  const QByteArray bytes = ReadLimited(file_name);
  QStringList lines;
  if (bytes.startsWith(kMark)) {
    for (const QString& line : TextOf(bytes).split(QStringLiteral("\r\n"))) {
      if (const QString trimmed = Trimmed(line); !trimmed.isEmpty()) {
        lines.append(trimmed);
      }
    }
  }
  return lines;
}

QByteArray LanguageFileBytes(const QStringList& lines) {
  QString text;
  for (const QString& line : lines) {
    text += line + QStringLiteral("\r\n");
  }
  QByteArray bytes(text.size() * static_cast<qsizetype>(sizeof(char16_t)), Qt::Uninitialized);
  qToLittleEndian<char16_t>(text.utf16(), text.size(), bytes.data());
  return bytes.prepend(kMark);
}

}  // namespace quayline
