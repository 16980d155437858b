// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/json_reader.h"

#include <algorithm>

namespace quayline {

using namespace Qt::StringLiterals;

JsonReader::JsonReader(const QJsonValue& value, QString place, QStringList& errors)
    : object_(value.toObject()), place_(std::move(place)), errors_(errors) {
  if (!value.isObject()) {
    errors_.append(u"%1 is not an object."_s.arg(place_.isEmpty() ? u"The file"_s : place_));
  }
}

JsonReader::~JsonReader() {
  for (const QString& key : object_.keys()) {
    if (!asked_.contains(key)) {
      Report(place_.isEmpty() ? key : place_ + u'.' + key, u"is not a known key"_s);
    }
  }
}

QString JsonReader::Place(const char* key) const {
  const QString name = QLatin1String(key);
  return place_.isEmpty() ? name : place_ + u'.' + name;
}

void JsonReader::Report(const QString& place, const QString& what) {
  errors_.append(place + u' ' + what + u'.');
}

QJsonValue JsonReader::Take(const char* key, const char* kind, bool (*is_kind)(const QJsonValue&)) {
  asked_.append(QLatin1String(key));
  const QJsonValue value = object_.value(QLatin1String(key));
  if (value.isUndefined() || is_kind(value)) {
    return value;
  }
  Report(Place(key), u"is not %1"_s.arg(QLatin1String(kind)));
  return QJsonValue::Undefined;
}

QString JsonReader::Text(const char* key, const QString& standard) {
  return Take(key, "a text", [](const QJsonValue& v) { return v.isString(); }).toString(standard);
}

QString JsonReader::NeededText(const char* key) {
  if (!Has(key)) {
    Report(Place(key), u"is missing"_s);
  }
  return Text(key);
}

int JsonReader::Number(const char* key, int least, int most, int standard) {
  const QJsonValue value = Take(key, "a number", [](const QJsonValue& v) { return v.isDouble(); });
  const int number = value.toInt(value.isUndefined() ? standard : least - 1);
  if (number < least || number > most) {
    Report(Place(key), u"is not a whole number from %1 to %2"_s.arg(least).arg(most));
    return standard;
  }
  return number;
}

bool JsonReader::Flag(const char* key) {
  return Take(key, "true or false", [](const QJsonValue& v) { return v.isBool(); }).toBool();
}

QJsonArray JsonReader::Array(const char* key) {
  return Take(key, "a list", [](const QJsonValue& v) { return v.isArray(); }).toArray();
}

QStringList JsonReader::Texts(const char* key) {
  const QJsonValue list = Take(key, "a list of texts", [](const QJsonValue& v) {
    const QJsonArray array = v.toArray();
    return v.isArray() &&
           std::ranges::all_of(array, [](const QJsonValue& e) { return e.isString(); });
  });
  QStringList texts;
  for (const auto& element : list.toArray()) {
    texts.append(element.toString());
  }
  return texts;
}

QJsonValue JsonReader::Value(const char* key) {
  return Take(key, "a value", [](const QJsonValue&) { return true; });
}

QMap<QString, QString> JsonReader::TextMap(const char* key) {
  const QJsonObject object = Take(key, "an object of texts", [](const QJsonValue& v) {
                               const QJsonObject o = v.toObject();
                               return v.isObject() && std::ranges::all_of(o, [](const auto& e) {
                                        return QJsonValue(e).isString();
                                      });
                             }).toObject();
  QMap<QString, QString> texts;
  for (const QString& name : object.keys()) {
    texts.insert(name, object.value(name).toString());
  }
  return texts;
}

}  // namespace quayline
