// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_table.h"

#include <QHash>

#include <vector>

#include "script/script_line.h"

namespace quayline {

namespace {

struct Table {
  std::vector<CommandRow> rows;
  size_t extensions = 0;  // at the end
};

const Table& WholeTable() {
  static const Table table = [] {
    Table all;
    for (const auto part :
         {NavigationCommands(), TypingCommands(), NameArrayCommands(), LoginCommands(),
          FreeRowCommands(), TypeChoiceCommands(), ClickCommands(), NameBoxCommands(),
          ToggleCommands(), ComboCommands(), PortBoxCommands(), ComboTestCommands(),
          JavaScriptCommands(), FirmwareCommands(), TimeoutCommands()}) {
      all.rows.insert(all.rows.end(), part.begin(), part.end());
    }
    for (const auto part : {NavigationExtensions(), EntryRowExtensions(), PageElementExtensions(),
                            JavaScriptExtensions()}) {
      all.rows.insert(all.rows.end(), part.begin(), part.end());
      all.extensions += part.size();
    }
    return all;
  }();
  return table;
}

}  // namespace

std::span<const CommandRow> AllCommands() { return WholeTable().rows; }

std::span<const CommandRow> CommandTable() {
  return AllCommands().first(AllCommands().size() - WholeTable().extensions);
}

std::span<const CommandRow> ExtensionCommands() {
  return AllCommands().last(WholeTable().extensions);
}

const CommandRow* FindCommand(QStringView name) {
  static const QHash<QString, const CommandRow*> by_name = [] {
    QHash<QString, const CommandRow*> rows;
    for (const CommandRow& row : AllCommands()) {
      rows.insert(CommandName(row), &row);
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

QString CommandName(const CommandRow& row) { return FromAscii(row.name); }

QString CommandUsage(const CommandRow& row) {
  QStringList names;
  for (const FieldSpec& field : row.fields) {
    names.append(FromAscii(field.name));
  }
  return names.join(QLatin1Char(row.separator));
}

QString CommandShape(const CommandRow& row) {
  return CommandName(row) + QLatin1String("(\"") + CommandUsage(row) + QLatin1String("\")");
}

namespace {

QStringList SplitFields(const CommandRow& row, const QString& argument) {
  const auto count = static_cast<qsizetype>(row.fields.size());
  if (count < 2) {
    return {argument};
  }
  const QLatin1Char separator(row.separator);
  QStringList fields = argument.split(separator);
  if (row.fields.back().takes_rest && fields.size() > count) {
    const QString rest = fields.mid(count - 1).join(separator);
    fields.resize(count - 1);
    fields.append(rest);
  }
  return fields;
}

QString TextToInsert(Inserted inserted, const ScriptRun& run) {
  return inserted == Inserted::kLetter ? EntryLetter(run.given.entry_index) : run.current_name;
}

}  // namespace

void ReadArgument(const CommandRow& row, ScriptRun& run) {
  run.fields = SplitFields(row, run.argument);
  const auto count = static_cast<qsizetype>(row.fields.size());
  for (qsizetype i = 0; i < std::min(count, run.fields.size()); ++i) {
    switch (row.fields[static_cast<size_t>(i)].kept_as) {
      case KeptAs::kNothing:
        break;
      case KeptAs::kPosition:
        run.position = run.fields[i];
        break;
      case KeptAs::kExtraField:
        run.extra_field = run.fields[i];
        break;
    }
  }
  for (qsizetype i = 0; i < count; ++i) {
    const Inserted inserted = row.fields[static_cast<size_t>(i)].inserted;
    if (inserted == Inserted::kCurrentName || inserted == Inserted::kLetter) {
      run.fields.resize(std::max(run.fields.size(), i + 1));
      run.fields[i] = InsertAt(run.fields[i], run.position, TextToInsert(inserted, run));
    }
  }
  run.argument = run.fields.first();
}

}  // namespace quayline
