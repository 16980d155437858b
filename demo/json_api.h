// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include "demo/rule_table.h"
#include "transport/http_message.h"

namespace quayline::demo {

// What pages that are built by script exchange with their router.

HttpResponse JsonAnswer(const QJsonObject& object, int status = 200);

// An object whose "fault" is the sentence for `fault`.
HttpResponse FaultAnswer(RuleFault fault);

// Invalid JSON counts as an empty object.
QJsonObject PostedJson(const HttpRequest& request);

// A rule of the string members "name", "first", "last", "protocol" and "address".
TypedRule RuleFromJson(const QJsonObject& object);

// All rules, each with these members.
QJsonArray RulesAsJson(const RuleTable& table);

}  // namespace quayline::demo
