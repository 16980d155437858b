// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonValue>
#include <QMap>
#include <QString>

#include <optional>
#include <utility>

#include "transport/http_message.h"

namespace quayline {

// The values that a request carries, each found by a path: the fields of its form and of its query
// by their names, the values of a JSON body by paths such as "params[3].values.name", of an XML
// body by paths such as "Body[0].SetRule[0].Port[0]", a header by "header:x-token", a cookie by
// "cookie:sid".
class RequestValues final {
 public:
  explicit RequestValues(const HttpRequest& request);

  // The JSON of the body; undefined where it is not JSON.
  const QJsonValue& Json() const { return json_; }
  // The same request with another JSON value: one call of several that were sent together.
  RequestValues WithJson(const QJsonValue& json) const;
  // With further values that are found first.
  RequestValues With(const QMap<QString, QString>& names) const;

  // The value as JSON; undefined where the request lacks it.
  QJsonValue Find(const QString& path) const;
  std::optional<QString> FindText(const QString& path) const;

  // `text` with the values of its "${path}" in it; a text that begins with "$" and has no brace
  // after it is one path. Nothing where none of its paths is there.
  std::optional<QString> Filled(const QString& text) const;

  // The fields of form and query, in their order.
  const QList<std::pair<QString, QString>>& Fields() const { return fields_; }

 private:
  QList<std::pair<QString, QString>> fields_;
  QList<std::pair<QByteArray, QByteArray>> headers_;
  QMap<QString, QString> names_;
  QJsonValue json_ = QJsonValue::Undefined;
};

// A JSON value as a text: a whole number without a point, true and false as words.
QString JsonText(const QJsonValue& value);

}  // namespace quayline
