// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/job_outcome.h"

#include <algorithm>

namespace quayline {

namespace {

template <typename Fits>
QStringList Names(const QList<EntryResult>& results, Fits fits) {
  QStringList names;
  for (const EntryResult& result : results) {
    if (fits(result)) {
      names.append(result.entry.app_name);
    }
  }
  return names;
}

}  // namespace

QString JobOutcome::EndName() const {
  if (stopped) {
    return QStringLiteral("stopped");
  }
  return entries_failed > 0 ? QStringLiteral("error") : QStringLiteral("done");
}

bool JobOutcome::HasDoubts() const { return std::ranges::any_of(results, &EntryResult::IsUnclear); }

bool JobOutcome::HasWrong() const { return std::ranges::any_of(results, &EntryResult::IsWrong); }

// Others may be on the router, and would be there twice.
QList<qsizetype> JobOutcome::PlacesToTryAgain() const {
  QList<qsizetype> places;
  for (qsizetype place = 0; place < results.size() && kind == JobKind::kUpdate; ++place) {
    if (results[place].state == EntryState::kMissing || place >= entries) {
      places.append(place);
    }
  }
  return places;
}

QList<PortEntry> JobOutcome::ToTryAgain() const {
  QList<PortEntry> rows;
  for (const qsizetype place : PlacesToTryAgain()) {
    rows.append(results[place].entry);
  }
  return rows;
}

QStringList JobOutcome::ToCheck() const {
  return Names(results,
               [](const EntryResult& result) { return result.state == EntryState::kToCheck; });
}

QStringList JobOutcome::Unclear() const {
  return Names(results.first(std::min<qsizetype>(entries, results.size())),
               [](const EntryResult& result) { return result.IsUnclear(); });
}

QStringList JobOutcome::MaybeOld() const {
  return Names(results, [](const EntryResult& result) {
    return result.state == EntryState::kOnRouter && !result.existed && !result.is_new;
  });
}

}  // namespace quayline
