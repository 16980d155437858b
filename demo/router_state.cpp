// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "demo/demo_router.h"

namespace quayline::demo {

namespace {

QJsonObject RuleObject(const Rule& rule) {
  return {{QStringLiteral("name"), rule.name},
          {QStringLiteral("protocol"), ProtocolText(rule.protocol)},
          {QStringLiteral("start"), rule.first},
          {QStringLiteral("end"), rule.last},
          {QStringLiteral("address"), rule.address},
          {QStringLiteral("enabled"), rule.enabled}};
}

std::optional<Rule> ReadRuleObject(const QJsonObject& object) {
  const QJsonValue name = object.value(QStringLiteral("name"));
  const auto protocol = ProtocolFromText(object.value(QStringLiteral("protocol")).toString());
  const QJsonValue first = object.value(QStringLiteral("start"));
  const QJsonValue last = object.value(QStringLiteral("end"));
  const QJsonValue address = object.value(QStringLiteral("address"));
  const QJsonValue enabled = object.value(QStringLiteral("enabled"));
  if (!name.isString() || !protocol || !first.isDouble() || !last.isDouble() ||
      !address.isString() || !enabled.isBool()) {
    return std::nullopt;
  }
  return Rule{.name = name.toString(),
              .protocol = *protocol,
              .first = first.toInt(),
              .last = last.toInt(),
              .address = address.toString(),
              .enabled = enabled.toBool()};
}

}  // namespace

QByteArray FormatState(const RouterState& state) {
  QJsonArray rules;
  for (const Rule& rule : state.rules) {
    rules.append(RuleObject(rule));
  }
  return QJsonDocument(QJsonObject{{QStringLiteral("model"), state.model},
                                   {QStringLiteral("rules"), rules},
                                   {QStringLiteral("requests"), state.requests},
                                   {QStringLiteral("saves"), state.saves}})
      .toJson();
}

std::expected<RouterState, QString> ReadState(const QByteArray& json) {
  QJsonParseError error;
  const QJsonObject object = QJsonDocument::fromJson(json, &error).object();
  if (error.error != QJsonParseError::NoError) {
    return std::unexpected(QStringLiteral("The state is not JSON: %1.").arg(error.errorString()));
  }
  const QJsonValue rules = object.value(QStringLiteral("rules"));
  if (!rules.isArray()) {
    return std::unexpected(QStringLiteral("The state holds no list of rules."));
  }
  RouterState state{.model = object.value(QStringLiteral("model")).toString(),
                    .rules = {},
                    .requests = object.value(QStringLiteral("requests")).toInt(),
                    .saves = object.value(QStringLiteral("saves")).toInt()};
  const QJsonArray array = rules.toArray();
  for (const auto& value : array) {
    const auto rule = ReadRuleObject(value.toObject());
    if (!rule) {
      return std::unexpected(
          QStringLiteral("Rule %1 of the state is not complete.").arg(state.rules.size() + 1));
    }
    state.rules.append(*rule);
  }
  return state;
}

}  // namespace quayline::demo
