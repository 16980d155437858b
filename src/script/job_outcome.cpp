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
QList<PortEntry> JobOutcome::ToTryAgain() const {
  QList<PortEntry> rows;
  for (qsizetype row = 0; row < results.size() && kind == JobKind::kUpdate; ++row) {
    if (results[row].state == EntryState::kMissing || row >= entries) {
      rows.append(results[row].entry);
    }
  }
  return rows;
}

bool JobOutcome::HasBegun(const PortEntry& entry) const {
  const QList<EntryResult> begun = results.first(std::min<qsizetype>(entries, results.size()));
  return std::ranges::any_of(begun,
                             [&](const EntryResult& result) { return result.entry == entry; });
}

QStringList JobOutcome::ToCheck() const {
  return Names(results,
               [](const EntryResult& result) { return result.state == EntryState::kToCheck; });
}

QStringList JobOutcome::MaybeOld() const {
  return Names(results, [](const EntryResult& result) {
    return result.state == EntryState::kOnRouter && !result.existed && !result.is_new;
  });
}

}  // namespace quayline
