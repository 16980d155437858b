// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/outcome_text.h"

#include "ui/job/job_window_texts.h"

namespace quayline {

QString OutcomeText(const JobOutcome& outcome, bool stopped_by_user, bool verifies,
                    const EntryStates& states, const Translator& translator) {
  const bool is_check = outcome.kind == JobKind::kCheck;
  const bool takes_back = outcome.kind == JobKind::kTakeBack;
  if (stopped_by_user) {
    return translator.Text(takes_back ? message::kRemovalStopped : message::kStopped);
  }
  if (is_check && outcome.entries_failed > 0) {
    return translator.Text(message::kCannotLook);
  }
  if (outcome.stopped) {
    return translator.Text(message::kEndedEarly);
  }
  if (takes_back) {
    return outcome.has_looked ? states.Summary() : translator.Text(message::kRemovalUnknown);
  }
  if (outcome.entries_failed > 0) {
    return translator.Text(message::kFinishedWithErrors)
        .arg(QString::number(outcome.entries_failed), QString::number(outcome.entries));
  }
  if (is_check || verifies) {
    return states.Summary();
  }
  if (const QStringList names = outcome.ToCheck(); !names.isEmpty()) {
    return translator.Text(message::kFinishedToCheck).arg(names.join(QStringLiteral(", ")));
  }
  return translator.Text(message::kFinished);
}

QString RulesText(const QList<PortEntry>& rules) {
  QStringList lines;
  for (const PortEntry& rule : rules) {
    const QString ports = rule.start_port == rule.end_port
                              ? rule.start_port
                              : rule.start_port + QLatin1Char('-') + rule.end_port;
    lines.append(QStringLiteral("%1 (%2 %3)").arg(rule.app_name, rule.protocol, ports));
  }
  return lines.join(QLatin1Char('\n'));
}

}  // namespace quayline
