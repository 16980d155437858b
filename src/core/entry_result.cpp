// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/entry_result.h"

namespace quayline {

EntryResult ResultOf(const PortEntry& entry, const RuleVerdict& verdict, bool existed,
                     const QStringList& doubts) {
  EntryResult result{.entry = entry,
                     .state = EntryState::kUnknown,
                     .differs = verdict.differs,
                     .seen = verdict.seen,
                     .existed = existed,
                     .is_new = false,
                     .doubts = doubts,
                     .listening = {}};
  switch (verdict.state) {
    case RuleState::kOnRouter:
      result.state = EntryState::kOnRouter;
      break;
    case RuleState::kDifferent:
      result.state = EntryState::kDifferent;
      break;
    case RuleState::kMissing:
      result.state = EntryState::kMissing;
      break;
    case RuleState::kUnknown:
      result.state = doubts.isEmpty() ? EntryState::kUnknown : EntryState::kToCheck;
      break;
  }
  return result;
}

QString StateName(EntryState state) {
  switch (state) {
    case EntryState::kOnRouter:
      return QStringLiteral("on-router");
    case EntryState::kDifferent:
      return QStringLiteral("different");
    case EntryState::kMissing:
      return QStringLiteral("missing");
    case EntryState::kUnknown:
      return QStringLiteral("unknown");
    case EntryState::kToCheck:
      return QStringLiteral("to-check");
  }
  return {};
}

QString FieldName(RuleField field) {
  switch (field) {
    case RuleField::kPort:
      return QStringLiteral("port");
    case RuleField::kAddress:
      return QStringLiteral("address");
    case RuleField::kProtocol:
      return QStringLiteral("protocol");
    case RuleField::kDisabled:
      return QStringLiteral("disabled");
  }
  return {};
}

}  // namespace quayline
