// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace quayline {

// Reads one object of a JSON file strictly: a value of the wrong type and a key that nobody has
// asked for are errors, each a sentence that names the place.
class JsonReader final {
 public:
  // `errors` outlives the reader. `place` is how the object is named in a sentence.
  JsonReader(const QJsonValue& value, QString place, QStringList& errors);
  JsonReader(const JsonReader&) = delete;
  JsonReader& operator=(const JsonReader&) = delete;
  // Reports the keys that are left.
  ~JsonReader();

  bool Has(const char* key) const { return object_.contains(QLatin1String(key)); }
  QStringList Keys() const { return object_.keys(); }
  QString Place(const char* key) const;
  void Report(const QString& place, const QString& what);

  // Nothing where the key is missing, or wrong.
  QString Text(const char* key, const QString& standard = {});
  QString NeededText(const char* key);
  int Number(const char* key, int least, int most, int standard);
  bool Flag(const char* key);
  QStringList Texts(const char* key);
  QJsonArray Array(const char* key);
  QJsonValue Value(const char* key);
  // An object of texts.
  QMap<QString, QString> TextMap(const char* key);

 private:
  QJsonValue Take(const char* key, const char* kind, bool (*is_kind)(const QJsonValue&));

  QJsonObject object_;
  QString place_;
  QStringList& errors_;
  QStringList asked_;
};

}  // namespace quayline
