// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_table.h"

#include <QHash>

namespace quayline {

const std::vector<CommandRow>& CommandTable() {
  static const std::vector<CommandRow> table = [] {
    std::vector<CommandRow> rows;
    for (const auto part :
         {NavigationCommands(), TypingCommands(), NameArrayCommands(), LoginCommands(),
          FreeRowCommands(), TypeChoiceCommands(), ClickCommands(), FieldCommands(),
          ComboTestCommands(), JavaScriptCommands(), FirmwareCommands(), TimeoutCommands()}) {
      rows.insert(rows.end(), part.begin(), part.end());
    }
    return rows;
  }();
  return table;
}

const CommandRow* FindCommand(QStringView name) {
  static const QHash<QString, const CommandRow*> by_name = [] {
    QHash<QString, const CommandRow*> rows;
    for (const CommandRow& row : CommandTable()) {
      rows.insert(QString::fromLatin1(row.name.data(), static_cast<qsizetype>(row.name.size())),
                  &row);
    }
    return rows;
  }();
  return by_name.value(name.toString(), nullptr);
}

bool ConditionHolds(Condition condition, const RunArguments& arguments, bool in_combo) {
  switch (condition) {
    case Condition::kAlways:
      return true;
    case Condition::kFirst:
      return arguments.is_first_entry;
    case Condition::kNotFirst:
      return !arguments.is_first_entry;
    case Condition::kLast:
      return arguments.is_last_entry;
    case Condition::kNotLast:
      return !arguments.is_last_entry;
    case Condition::kInCombo:
      return in_combo;
    case Condition::kNotInCombo:
      return !in_combo;
    case Condition::kFirstInCombo:
      return arguments.is_first_entry && in_combo;
    case Condition::kFirstNotInCombo:
      return arguments.is_first_entry && !in_combo;
  }
  return false;
}

}  // namespace quayline
