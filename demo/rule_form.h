// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "demo/rule_table.h"
#include "transport/http_message.h"

namespace quayline::demo {

// How a router calls the fields of one rule. An address of nullptr: the form has no such field.
struct RuleFieldNames {
  const char* name = "rule_name";
  const char* first = "start_port";
  const char* last = "end_port";
  const char* protocol = "protocol";
  const char* address = "server_ip";
};

// One row of a form's table: caption and text box. `extra` is written into the box's tag.
QString TextRow(const char* caption, const char* name, const QString& value,
                const char* extra = "");

// The rows of a form for one rule, filled with what was typed.
QString RuleRows(const RuleFieldNames& names, const TypedRule& typed);

// The rule that such a form posted.
TypedRule PostedRule(const RuleFieldNames& names, const FormFields& form);

// The rules of the router as a table; a router without rules has one row with a text.
QString RuleListHtml(const RuleTable& table);

TypedRule AsTyped(const Rule& rule);

}  // namespace quayline::demo
