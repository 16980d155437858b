// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/results.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

#include "core/text_bytes.h"

namespace quayline {

namespace {

// What the table says of an entry.
QString StateText(const EntryResult& result, JobKind kind) {
  const bool is_removal = kind == JobKind::kTakeBack;
  switch (result.state) {
    case EntryState::kOnRouter:
      if (is_removal) {
        return QStringLiteral("STILL THERE");
      }
      return result.existed ? QStringLiteral("on the router, as before")
                            : QStringLiteral("on the router");
    case EntryState::kDifferent: {
      QStringList fields;
      for (const RuleField field : result.differs) {
        fields.append(FieldName(field));
      }
      return QStringLiteral("DIFFERENT (%1)").arg(fields.join(QStringLiteral(", ")));
    }
    case EntryState::kMissing:
      return is_removal ? QStringLiteral("removed") : QStringLiteral("NOT THERE");
    case EntryState::kUnknown:
      return QStringLiteral("cannot tell");
    case EntryState::kToCheck:
      return QStringLiteral("to be checked");
  }
  return {};
}

// Empty for an entry that leads to another computer.
QString ListenText(const EntryResult& result) {
  return result.listening ? OnOneLine(EnglishOf(ListeningText(*result.listening))) : QString();
}

QString Line(const QJsonObject& object) {
  return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) +
         QLatin1Char('\n');
}

}  // namespace

QString ResultTable(const JobOutcome& outcome) {
  qsizetype widest_name = 0;
  qsizetype widest_state = 0;
  qsizetype widest_listening = 0;
  for (const EntryResult& result : outcome.results) {
    widest_name = std::max(widest_name, result.entry.app_name.size());
    widest_state = std::max(widest_state, StateText(result, outcome.kind).size());
    widest_listening = std::max(widest_listening, ListenText(result).size());
  }
  QString table;
  for (const EntryResult& result : outcome.results) {
    const QString why = result.seen.isEmpty() ? result.doubts.join(QLatin1Char(' ')) : result.seen;
    QString line =
        OnOneLine(result.entry.app_name).leftJustified(widest_name) + QStringLiteral("  ") +
        StateText(result, outcome.kind).leftJustified(widest_state) + QStringLiteral("  ");
    if (widest_listening > 0) {
      line += ListenText(result).leftJustified(widest_listening) + QStringLiteral("  ");
    }
    line += OnOneLine(why);
    table += line.trimmed() + QLatin1Char('\n');
  }
  return table;
}

QString ResultObjects(const JobOutcome& outcome, int exit_status) {
  QString lines;
  for (const EntryResult& result : outcome.results) {
    QJsonArray differs;
    for (const RuleField field : result.differs) {
      differs.append(FieldName(field));
    }
    QJsonObject object{{QStringLiteral("entry"), result.entry.app_name},
                       {QStringLiteral("state"), StateName(result.state)},
                       {QStringLiteral("differs"), differs},
                       {QStringLiteral("seen"), result.seen},
                       {QStringLiteral("existed"), result.existed}};
    if (result.listening) {
      object.insert(QStringLiteral("listens"), ListenText(result));
    }
    lines += Line(object);
  }
  return lines +
         Line({{QStringLiteral("job"), outcome.EndName()}, {QStringLiteral("exit"), exit_status}});
}

}  // namespace quayline
