// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/entry_states.h"

#include <algorithm>
#include <functional>

#include "core/entry_look.h"
#include "ui/job/result_texts.h"

namespace quayline {

namespace {

template <typename Fits>
QString Names(const QList<EntryResult>& results, Fits fits) {
  QStringList names;
  for (const EntryResult& result : results) {
    if (std::invoke(fits, result)) {
      names.append(result.entry.app_name);
    }
  }
  return names.join(QStringLiteral(", "));
}

bool IsNotSeen(const EntryResult& result) { return result.state != EntryState::kOnRouter; }

}  // namespace

EntryStates::EntryStates(const Translator& translator, QObject* parent)
    : QAbstractTableModel(parent), translator_(translator) {}

void EntryStates::Begin(const QList<PortEntry>& entries) {
  beginResetModel();
  results_.clear();
  for (const PortEntry& entry : entries) {
    results_.append({.entry = entry});
  }
  looks_.clear();
  running_ = -1;
  entered_ = 0;
  is_over_ = false;
  endResetModel();
}

void EntryStates::SetRunning(int row) {
  running_ = row;
  entered_ = row;
  Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
}

void EntryStates::SetResults(const QList<EntryResult>& results, int entered) {
  beginResetModel();
  if (!results.isEmpty()) {
    results_ = results;
  }
  running_ = -1;
  entered_ = entered;
  is_over_ = true;
  endResetModel();
}

QList<PortEntry> EntryStates::Entries() const {
  QList<PortEntry> entries;
  for (const EntryResult& result : results_) {
    entries.append(result.entry);
  }
  return entries;
}

void EntryStates::SetLooks(QList<EntryLook> looks) {
  looks_ = std::move(looks);
  if (rowCount() > 0) {
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
  }
}

bool EntryStates::IsFilled(Column column) const {
  for (int row = 0; row < rowCount(); ++row) {
    if (!CellText(row, column).isEmpty()) {
      return true;
    }
  }
  return false;
}

QModelIndex EntryStates::FirstToLookAt() const {
  const auto found = std::ranges::find_if(results_, IsNotSeen);
  return found == results_.end() ? QModelIndex()
                                 : index(static_cast<int>(found - results_.begin()), 0);
}

QString EntryStates::Summary() const {
  const auto seen = std::ranges::count_if(results_, std::not_fn(IsNotSeen));
  if (seen == results_.size()) {
    return seen == 1 ? Text(message::kOneOnRouter) : Text(message::kAllOnRouter).arg(seen);
  }
  if (std::ranges::any_of(results_, &EntryResult::IsWrong)) {
    return Text(message::kSomeWrong)
        .arg(QString::number(seen), QString::number(results_.size()), Names(results_, IsNotSeen));
  }
  return Text(message::kSomeUnknown).arg(Names(results_, &EntryResult::IsUnclear));
}

int EntryStates::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(results_.size());
}

int EntryStates::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant EntryStates::data(const QModelIndex& index, int role) const {
  if (!index.isValid() ||
      (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)) {
    return {};
  }
  const int row = index.row();
  if (role == Qt::AccessibleTextRole && index.column() == kEntry) {
    // A screen reader says the whole row.
    QStringList others{ReachText(row, kListening), ReachText(row, kOutside), ReasonText(row)};
    others.removeAll(QString());
    return QStringLiteral("%1: %2. %3")
        .arg(CellText(row, kEntry), StateText(row), others.join(QStringLiteral(". ")))
        .trimmed();
  }
  return CellText(row, index.column());
}

QString EntryStates::CellText(int row, int column) const {
  switch (column) {
    case kEntry:
      return results_.at(row).entry.app_name;
    case kState:
      return StateText(row);
    case kListening:
    case kOutside:
      return ReachText(row, static_cast<Column>(column));
    default:
      return ReasonText(row);
  }
}

QString EntryStates::ReachText(int row, Column column) const {
  const EntryLook look = looks_.value(row);
  const std::optional<ReachVerdict>& verdict = column == kListening ? look.listening : look.outside;
  return verdict ? verdict->words : QString();
}

QVariant EntryStates::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  const Message* const headings[] = {&message::kEntryColumn, &message::kStateColumn,
                                     &message::kListeningColumn, &message::kOutsideColumn,
                                     &message::kReasonColumn};
  return Text(*headings[section]);
}

QString EntryStates::StateText(int row) const {
  if (row == running_) {
    return Text(message::kBeingEntered);
  }
  if (row >= entered_) {
    return Text(is_over_ ? message::kSkipped : message::kWaiting);
  }
  if (!is_over_) {
    return Text(message::kEntered);
  }
  const EntryResult& result = results_.at(row);
  return result.state == EntryState::kOnRouter && result.existed
             ? Text(message::kOnRouterBefore)
             : quayline::StateText(result.state, result.differs, translator_);
}

QString EntryStates::ReasonText(int row) const {
  if (!is_over_) {
    return {};
  }
  if (row >= entered_) {
    return Text(message::kTrySkipped);
  }
  const EntryResult& result = results_.at(row);
  QStringList sentences = result.doubts;
  switch (result.state) {
    case EntryState::kOnRouter:
      return result.seen;
    case EntryState::kDifferent:
      return Text(message::kTryDifferent).arg(result.seen);
    case EntryState::kMissing:
      sentences.append(result.seen.isEmpty() ? Text(message::kTryMissing)
                                             : Text(message::kRuleOfOther).arg(result.seen));
      break;
    case EntryState::kUnknown:
    case EntryState::kToCheck:
      sentences.append(Text(message::kTryUnknown));
      break;
  }
  return sentences.join(QLatin1Char(' '));
}

}  // namespace quayline
