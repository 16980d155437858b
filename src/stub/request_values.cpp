// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/request_values.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

// An element as JSON: a text, or where it has elements, an object with a list for each of their
// names.
QJsonValue ReadElement(QXmlStreamReader& xml, int depth) {
  constexpr int kMaxDepth = 50;
  QJsonObject children;
  QString text;
  while (!xml.atEnd() && xml.readNext() != QXmlStreamReader::EndElement) {
    if (xml.isCharacters()) {
      text += xml.text();
    } else if (xml.isStartElement() && depth == kMaxDepth) {
      xml.skipCurrentElement();
    } else if (xml.isStartElement()) {
      const QString name = xml.name().toString();
      QJsonArray list = children.value(name).toArray();
      list.append(ReadElement(xml, depth + 1));
      children.insert(name, list);
    }
  }
  return children.isEmpty() ? QJsonValue(text) : QJsonValue(children);
}

QJsonValue ParseXml(const QByteArray& body) {
  QXmlStreamReader xml(body);
  if (!xml.readNextStartElement()) {
    return QJsonValue::Undefined;
  }
  const QJsonValue root = ReadElement(xml, 0);
  return xml.hasError() ? QJsonValue(QJsonValue::Undefined) : root;
}

QJsonValue ParseBody(const QByteArray& body) {
  if (body.trimmed().startsWith('<')) {
    return ParseXml(body);
  }
  const QJsonDocument document = QJsonDocument::fromJson(body);
  if (document.isArray()) {
    return document.array();
  }
  return document.isObject() ? QJsonValue(document.object()) : QJsonValue(QJsonValue::Undefined);
}

// Follows "params[3].values.name" into a value.
QJsonValue Reach(QJsonValue value, const QString& path) {
  static const QRegularExpression kStep(u"\\G(?:\\.?([^.\\[\\]]+)|\\[(\\d+)\\])"_s);
  qsizetype end = 0;
  for (const QRegularExpressionMatch& step : kStep.globalMatch(path)) {
    value = step.captured(2).isEmpty() ? value.toObject().value(step.captured(1))
                                       : value.toArray().at(step.captured(2).toInt());
    end = step.capturedEnd();
  }
  return end == path.size() && end > 0 ? value : QJsonValue(QJsonValue::Undefined);
}

QJsonValue Cookie(const QByteArray& header, const QString& name) {
  for (const QByteArray& pair : header.split(';')) {
    const qsizetype equals = pair.indexOf('=');
    if (equals > 0 && QString::fromUtf8(pair.first(equals).trimmed()) == name) {
      return QString::fromUtf8(pair.mid(equals + 1).trimmed());
    }
  }
  return QJsonValue::Undefined;
}

}  // namespace

QString JsonText(const QJsonValue& value) {
  switch (value.type()) {
    case QJsonValue::Bool:
      return value.toBool() ? u"true"_s : u"false"_s;
    case QJsonValue::Double:
      return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QJsonValue::String:
      return value.toString();
    case QJsonValue::Array:
      return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    case QJsonValue::Object:
      return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    default:
      return {};
  }
}

RequestValues::RequestValues(const HttpRequest& request) : headers_(request.headers) {
  int number = 0;
  for (const QString& part : request.path.split(u'/', Qt::SkipEmptyParts)) {
    names_.insert(u"path:%1"_s.arg(++number), part);
  }
  json_ = ParseBody(request.body);
  if (json_.isUndefined()) {
    fields_ = FormFields(request.body).All();
  }
  fields_ += FormFields(request.query).All();
}

RequestValues RequestValues::WithJson(const QJsonValue& json) const {
  RequestValues values = *this;
  values.json_ = json;
  return values;
}

RequestValues RequestValues::With(const QMap<QString, QString>& names) const {
  RequestValues values = *this;
  values.names_.insert(names);
  return values;
}

QJsonValue RequestValues::Find(const QString& path) const {
  if (names_.contains(path)) {
    return names_.value(path);
  }
  for (const auto& [name, value] : fields_) {
    if (name == path) {
      return value;
    }
  }
  for (const auto& [name, value] : headers_) {
    if (path.startsWith("header:"_L1) && QString::fromLatin1(name) == path.sliced(7)) {
      return QString::fromUtf8(value);
    }
    if (path.startsWith("cookie:"_L1) && name == "cookie") {
      return Cookie(value, path.sliced(7));
    }
  }
  return Reach(json_, path);
}

std::optional<QString> RequestValues::FindText(const QString& path) const {
  const QJsonValue value = Find(path);
  return value.isUndefined() ? std::nullopt : std::optional(JsonText(value));
}

std::optional<QString> RequestValues::Filled(const QString& text) const {
  if (text.startsWith(u'$') && !text.startsWith("${"_L1)) {
    return FindText(text.sliced(1));
  }
  static const QRegularExpression kPath(u"\\$\\{([^}]+)\\}"_s);
  QString filled;
  qsizetype end = 0;
  bool has_path = false;
  bool is_there = false;
  for (const QRegularExpressionMatch& match : kPath.globalMatch(text)) {
    const std::optional<QString> value = FindText(match.captured(1));
    has_path = true;
    is_there = is_there || value;
    filled += text.sliced(end, match.capturedStart() - end) + value.value_or(QString());
    end = match.capturedEnd();
  }
  filled += text.sliced(end);
  return has_path && !is_there ? std::nullopt : std::optional(filled);
}

}  // namespace quayline
