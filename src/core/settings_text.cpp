// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/settings_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <algorithm>

#include "core/ini_text.h"
#include "core/text_bytes.h"

namespace quayline {

namespace {

constexpr int kMostDocuments = 4;  // in one JSON file
constexpr qsizetype kMostValues = 100;

QStringList IniValues(const QByteArray& bytes, const QString& key) {
  const qsizetype slash = key.indexOf(QLatin1Char('/'));
  const QString value = IniText(bytes).Value(key.left(slash), key.mid(slash + 1));
  return value.isEmpty() ? QStringList() : QStringList{value};
}

// Some programs write a header object, and their settings as a second object after it.
QJsonDocument LastDocument(QByteArray bytes) {
  QJsonDocument last;
  for (int i = 0; i < kMostDocuments; ++i) {
    QJsonParseError error;
    const QJsonDocument whole = QJsonDocument::fromJson(bytes, &error);
    if (error.error == QJsonParseError::NoError) {
      return whole;
    }
    if (error.error != QJsonParseError::GarbageAtEnd || error.offset <= 0) {
      break;
    }
    last = QJsonDocument::fromJson(bytes.first(error.offset));
    bytes = bytes.sliced(error.offset);
  }
  return last;
}

QStringList JsonValues(const QByteArray& bytes, const QString& key) {
  const QJsonDocument document = LastDocument(bytes);
  QJsonValue value = document.isArray() ? QJsonValue(document.array()) : document.object();
  for (const QString& step : key.split(QLatin1Char('/'))) {
    value = value.isArray() ? value.toArray().at(step.toInt()) : value.toObject().value(step);
  }
  const QString text = value.toVariant().toString();
  return text.isEmpty() ? QStringList() : QStringList{text};
}

QStringList XmlValues(const QByteArray& bytes, const QString& key) {
  const QStringList path = key.split(QLatin1Char('/'));
  QXmlStreamReader xml(bytes);
  qsizetype depth = -1;   // of the current element; that of the root is 0
  qsizetype matched = 0;  // how many elements of the path lead to the current one
  QStringList values;
  while (!xml.atEnd() && values.size() < kMostValues) {
    switch (xml.readNext()) {
      case QXmlStreamReader::StartElement:
        ++depth;
        if (depth > 0 && matched == depth - 1 && matched < path.size() &&
            xml.name() == path.at(matched)) {
          ++matched;
        }
        if (matched == path.size() && matched == depth) {
          values += QString();
        }
        break;
      case QXmlStreamReader::Characters:
        if (matched == path.size() && matched == depth) {
          values.last() += xml.text();
        }
        break;
      case QXmlStreamReader::EndElement:
        matched = std::min(matched, std::max<qsizetype>(0, depth - 1));
        --depth;
        break;
      default:
        break;
    }
  }
  return values;
}

// The value of a line that begins with the key. Comments and the semicolon that ends a statement
// are left out.
QStringList LineValues(const QByteArray& bytes, const QString& key) {
  static constexpr auto kIsBetween = [](QChar c) {
    return c.isSpace() || c == QLatin1Char('=') || c == QLatin1Char(':');
  };
  QStringList values;
  for (const QByteArray& line : bytes.split('\n')) {
    if (values.size() == kMostValues) {
      break;
    }
    const QString text = FromUtf8OrWindows1252(line).trimmed();
    if (!text.startsWith(key, Qt::CaseInsensitive) || text.size() == key.size() ||
        !kIsBetween(text.at(key.size()))) {
      continue;
    }
    const auto begin = std::find_if_not(text.begin() + key.size(), text.end(), kIsBetween);
    const auto end = std::find_if(
        begin, text.end(), [](QChar c) { return c == QLatin1Char('#') || c == QLatin1Char(';'); });
    values += QString(begin, end - begin).trimmed();
  }
  return values;
}

}  // namespace

QStringList SettingsValues(SettingsFormat format, const QByteArray& bytes, const QString& key) {
  switch (format) {
    case SettingsFormat::kIni:
      return IniValues(bytes, key);
    case SettingsFormat::kJson:
      return JsonValues(bytes, key);
    case SettingsFormat::kXml:
      return XmlValues(bytes, key);
    case SettingsFormat::kLines:
      return LineValues(bytes, key);
  }
  return {};
}

}  // namespace quayline
