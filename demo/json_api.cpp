// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/json_api.h"

#include <QJsonDocument>

#include "demo/rule_form.h"

namespace quayline::demo {

using namespace Qt::StringLiterals;

HttpResponse JsonAnswer(const QJsonObject& object, int status) {
  return {.status = status,
          .content_type = "application/json",
          .headers = {{"Cache-Control", "no-store"}},
          .body = QJsonDocument(object).toJson(QJsonDocument::Compact)};
}

HttpResponse FaultAnswer(RuleFault fault) { return JsonAnswer({{u"fault"_s, FaultText(fault)}}); }

QJsonObject PostedJson(const HttpRequest& request) {
  return QJsonDocument::fromJson(request.body).object();
}

TypedRule RuleFromJson(const QJsonObject& object) {
  return {.name = object.value("name"_L1).toString(),
          .first = object.value("first"_L1).toString(),
          .last = object.value("last"_L1).toString(),
          .protocol = object.value("protocol"_L1).toString(),
          .address = object.value("address"_L1).toString()};
}

QJsonArray RulesAsJson(const RuleTable& table) {
  QJsonArray rules;
  for (const Rule& rule : table.Rules()) {
    const TypedRule typed = AsTyped(rule);
    rules.append(QJsonObject{{u"name"_s, typed.name},
                             {u"first"_s, typed.first},
                             {u"last"_s, typed.last},
                             {u"protocol"_s, typed.protocol},
                             {u"address"_s, typed.address}});
  }
  return rules;
}

}  // namespace quayline::demo
