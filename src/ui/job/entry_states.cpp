// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/entry_states.h"

#include <algorithm>
#include <functional>

#include "ui/job/result_texts.h"

namespace quayline {

namespace {

const Message& FieldText(RuleField field) {
  switch (field) {
    case RuleField::kPort:
      return message::kPortDiffers;
    case RuleField::kAddress:
      return message::kAddressDiffers;
    case RuleField::kProtocol:
      return message::kProtocolDiffers;
    case RuleField::kDisabled:
      break;
  }
  return message::kIsDisabled;
}

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
  const QString name = results_.at(index.row()).entry.app_name;
  if (role == Qt::AccessibleTextRole && index.column() == kEntry) {
    // A screen reader says the whole row.
    return QStringLiteral("%1: %2. %3")
        .arg(name, StateText(index.row()), ReasonText(index.row()))
        .trimmed();
  }
  switch (index.column()) {
    case kEntry:
      return name;
    case kState:
      return StateText(index.row());
    default:
      return ReasonText(index.row());
  }
}

QVariant EntryStates::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  const Message* const headings[] = {&message::kEntryColumn, &message::kStateColumn,
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
  switch (result.state) {
    case EntryState::kOnRouter:
      return Text(result.existed ? message::kOnRouterBefore : message::kOnRouter);
    case EntryState::kDifferent: {
      QStringList fields;
      for (const RuleField field : result.differs) {
        fields.append(Text(FieldText(field)));
      }
      return Text(message::kDifferent).arg(fields.join(QStringLiteral(", ")));
    }
    case EntryState::kMissing:
      return Text(message::kNotThere);
    case EntryState::kUnknown:
      return Text(message::kCannotTell);
    case EntryState::kToCheck:
      break;
  }
  return Text(message::kToBeChecked);
}

QString EntryStates::ReasonText(int row) const {
  if (!is_over_ || row >= entered_) {
    return {};
  }
  const EntryResult& result = results_.at(row);
  QStringList sentences = result.doubts;
  switch (result.state) {
    case EntryState::kOnRouter:
    case EntryState::kDifferent:
      return result.seen;
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
