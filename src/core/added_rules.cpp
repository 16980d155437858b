// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/added_rules.h"

#include <algorithm>

#include "core/row_evidence.h"

namespace quayline {

namespace {

// Whether the page shows a row with the text of a verdict.
bool Shows(const PageRows& page, const QString& seen) {
  return std::ranges::any_of(page.rows, [&](const PageRow& row) { return row.Text() == seen; });
}

}  // namespace

QString RowTexts::Of(const PageRow& row) {
  PageRow compared = row;
  compared.cells.removeIf([this](const PageCell& cell) {
    const auto known = is_ignored_.constFind(cell.heading);
    return known != is_ignored_.constEnd()
               ? *known
               : *is_ignored_.insert(cell.heading, RoleOf(cell.heading) == ColumnRole::kIgnored);
  });
  return compared.Text();
}

void AddedRules::NoteEntering(const PortEntry& entry, const RuleVerdict& before) {
  const bool can_be_new =
      before.state == RuleState::kMissing || before.state == RuleState::kDifferent;
  if (rows_before_ && can_be_new) {
    unseen_.append({.entry = entry, .before = before});
  }
}

void AddedRules::NoteNotEntered(const PortEntry& entry) {
  if (!unseen_.isEmpty() && unseen_.last().entry == entry) {
    unseen_.removeLast();
  }
}

QList<PortEntry> AddedRules::Unseen() const {
  QList<PortEntry> entries;
  for (const UnseenRule& each : unseen_) {
    entries.append(each.entry);
  }
  return entries;
}

// What this look does not show may be added by the user later.
void AddedRules::TakeSeen(const PageRows& page) {
  const QList<PortEntry> entries = Unseen();
  const QList<RuleVerdict> verdicts = MatchRules(entries, page);
  for (qsizetype i = 0; i < verdicts.size(); ++i) {
    if (IsNew(unseen_.at(i).before, verdicts.at(i), page)) {
      entries_.append(entries.at(i));
    }
  }
  unseen_.clear();
}

// The rules that jobs have added stay the jobs' own.
void AddedRules::NoteBefore(const PageRows& page) {
  TakeSeen(page);
  QList<qsizetype> own;
  for (const RuleVerdict& verdict : MatchRules(entries_, page)) {
    own.append(verdict.rows);
  }
  QStringList rows = rows_before_.value_or(QStringList());
  RowTexts texts;
  for (qsizetype row = 0; row < page.rows.size(); ++row) {
    if (!own.contains(row)) {
      rows.append(texts.Of(page.rows.at(row)));
    }
  }
  rows.removeDuplicates();
  rows_before_ = rows;
}

void AddedRules::NoteAfter(const PageRows& page) {
  TakeSeen(page);
  RowTexts texts;
  for (const PageRow& row : page.rows) {
    rows_after_.append(texts.Of(row));
  }
}

// A row that was different before may have been changed into the rule: then it is the user's.
bool AddedRules::IsNew(const RuleVerdict& before, const RuleVerdict& after,
                       const PageRows& now) const {
  const bool was_missing = before.state == RuleState::kMissing ||
                           (before.state == RuleState::kDifferent && Shows(now, before.seen));
  return rows_before_ && was_missing && after.state == RuleState::kOnRouter &&
         !OwnRows(after, now).isEmpty();
}

QList<qsizetype> AddedRules::OwnRows(const RuleVerdict& verdict, const PageRows& page) const {
  QList<qsizetype> added;
  QList<qsizetype> seen_after;
  RowTexts texts;
  for (const qsizetype row : verdict.rows) {
    const QString text = texts.Of(page.rows.at(row));
    if (!rows_before_ || rows_before_->contains(text)) {
      continue;
    }
    added.append(row);
    if (rows_after_.contains(text)) {
      seen_after.append(row);
    }
  }
  return seen_after.isEmpty() ? added : seen_after;
}

QStringList AddedRules::RowsToKeep(const RuleVerdict& verdict, const PageRows& page) const {
  QStringList rows = rows_before_.value_or(QStringList());
  const QList<qsizetype> own = OwnRows(verdict, page);
  RowTexts texts;
  for (const qsizetype row : verdict.rows) {
    if (!own.contains(row)) {
      rows.append(texts.Of(page.rows.at(row)));
    }
  }
  return rows;
}

RuleVerdict AddedRules::AfterRemoval(const RuleVerdict& verdict, const PageRows& page) const {
  if (verdict.state == RuleState::kUnknown || !OwnRows(verdict, page).isEmpty()) {
    return verdict;
  }
  RowTexts texts;
  const bool is_of_user =
      verdict.state == RuleState::kOnRouter ||
      std::ranges::any_of(page.rows, [&](const PageRow& row) {
        return row.Text() == verdict.seen && rows_before_ && rows_before_->contains(texts.Of(row));
      });
  return is_of_user
             ? RuleVerdict{.state = RuleState::kMissing, .differs = {}, .seen = {}, .rows = {}}
             : verdict;
}

}  // namespace quayline
