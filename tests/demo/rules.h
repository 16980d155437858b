// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "demo/rule_table.h"

namespace quayline::demo {

// Rules as "name protocol first last address; ...", protocols as "tcp", "udp" and "both"; a word
// after the address makes the rule a disabled one.
inline QList<Rule> RulesOf(const char* text) {
  QList<Rule> rules;
  for (const QString& rule : QString::fromUtf8(text).split(u';', Qt::SkipEmptyParts)) {
    const QStringList words = rule.split(u' ', Qt::SkipEmptyParts);
    const bool is_tcp = words[1] == QLatin1String("tcp");
    const bool is_udp = words[1] == QLatin1String("udp");
    rules.append({.name = words[0],
                  .protocol = is_tcp   ? Protocol::kTcp
                              : is_udp ? Protocol::kUdp
                                       : Protocol::kBoth,
                  .first = words[2].toInt(),
                  .last = words[3].toInt(),
                  .address = words[4],
                  .enabled = words.size() == 5});
  }
  return rules;
}

}  // namespace quayline::demo
