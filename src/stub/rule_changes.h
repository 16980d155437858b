// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "stub/answer_file.h"
#include "stub/request_values.h"

namespace quayline {

// What a request does to the rules.
struct RuleChange {
  QList<StubRule> rules;    // afterwards
  QStringList done;         // "added Web TCP 80 to 192.168.1.10"
  QStringList problems;     // values that the router has no meaning for, rules that do not exist
  bool is_refused = false;  // by AnswerRow::refusal: nothing has changed
};

// Carries out the action of a row, except kCommit and kDiscard, which change no rule.
RuleChange ChangeRules(const QList<StubRule>& rules, const AnswerRow& row,
                       const RequestValues& request, int& next_id);

}  // namespace quayline
