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
QStringList Names(const QList<EntryResult>& results, Fits fits) {
  QStringList names;
  for (const EntryResult& result : results) {
    if (std::invoke(fits, result)) {
      names.append(result.entry.app_name);
    }
  }
  return names;
}

const StateTexts& TextsOf(JobKind kind) {
  switch (kind) {
    case JobKind::kUpdate:
      return message::kUpdateStates;
    case JobKind::kCheck:
      return message::kCheckStates;
    case JobKind::kTakeBack:
      break;
  }
  return message::kTakeBackStates;
}

}  // namespace

EntryStates::EntryStates(const Translator& translator, QObject* parent)
    : QAbstractTableModel(parent), translator_(translator) {}

void EntryStates::Begin(JobKind kind, const QList<PortEntry>& entries) {
  beginResetModel();
  kind_ = kind;
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

void EntryStates::SetRowDone() {
  if (running_ >= 0) {
    entered_ = running_ + 1;
    running_ = -1;
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
  }
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

bool EntryStates::IsAsWanted(const EntryResult& result) const {
  return result.state ==
         (kind_ == JobKind::kTakeBack ? EntryState::kMissing : EntryState::kOnRouter);
}

QModelIndex EntryStates::FirstToLookAt() const {
  for (int row = 0; row < rowCount(); ++row) {
    if (!IsAsWanted(results_.at(row))) {
      return index(row, 0);
    }
  }
  return {};
}

QString EntryStates::Summary() const {
  const auto is_as_wanted = [this](const EntryResult& result) { return IsAsWanted(result); };
  const auto wanted = std::ranges::count_if(results_, is_as_wanted);
  const QStringList others = Names(results_, std::not_fn(is_as_wanted));
  const QString other_names = others.join(QStringLiteral(", "));
  if (kind_ == JobKind::kTakeBack) {
    const QString removed =
        Text(message::kTakenBack).arg(QString::number(wanted), QString::number(results_.size()));
    return others.isEmpty() ? removed
                            : removed + QLatin1Char(' ') + Text(message::kLookAt).arg(other_names);
  }
  if (others.isEmpty()) {
    return wanted == 1 ? Text(message::kOneOnRouter) : Text(message::kAllOnRouter).arg(wanted);
  }
  if (std::ranges::any_of(results_, &EntryResult::IsWrong)) {
    return Text(message::kSomeWrong)
        .arg(QString::number(wanted), QString::number(results_.size()), other_names);
  }
  return Text(TextsOf(kind_).some_unknown).arg(other_names);
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
  if (column == kOutside) {
    return look.outside ? TextOf(look.outside->words, translator_) : QString();
  }
  QStringList words;
  if (look.listening) {
    words.append(TextOf(look.listening->words, translator_));
  }
  if (look.firewall && look.firewall->works != true) {
    words.append(TextOf(look.firewall->words, translator_));
  }
  return words.join(QStringLiteral(", "));
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
  const StateTexts& texts = TextsOf(kind_);
  if (row == running_) {
    return Text(texts.running);
  }
  if (row >= entered_) {
    return Text(is_over_ ? message::kSkipped : message::kWaiting);
  }
  if (!is_over_) {
    return Text(texts.passed);
  }
  const EntryResult& result = results_.at(row);
  if (kind_ == JobKind::kTakeBack && !result.IsUnclear()) {
    return Text(IsAsWanted(result) ? message::kRemoved : message::kNotRemoved);
  }
  return result.state == EntryState::kOnRouter && result.existed
             ? Text(message::kOnRouterBefore)
             : quayline::StateText(result.state, result.differs, translator_);
}

QString EntryStates::ReasonText(int row) const {
  if (!is_over_) {
    return {};
  }
  const StateTexts& texts = TextsOf(kind_);
  if (row >= entered_) {
    return Text(texts.skipped);
  }
  const EntryResult& result = results_.at(row);
  QStringList sentences = result.doubts;
  switch (result.state) {
    case EntryState::kOnRouter:
      return Text(texts.on_router).arg(result.seen);
    case EntryState::kDifferent:
      return Text(texts.different).arg(result.seen);
    case EntryState::kMissing:
      sentences.append(result.seen.isEmpty() || kind_ == JobKind::kTakeBack
                           ? Text(texts.missing)
                           : Text(message::kRuleOfOther).arg(result.seen));
      break;
    case EntryState::kUnknown:
    case EntryState::kToCheck:
      sentences.append(Text(texts.unknown));
      break;
  }
  sentences.removeAll(QString());
  return sentences.join(QLatin1Char(' '));
}

}  // namespace quayline
