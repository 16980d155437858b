// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_table.h"

#include <QFile>
#include <QHash>

#include <gtest/gtest.h>

#include "script/script_rig.h"
#include "test_main.h"

namespace quayline {
namespace {

using testing::ScriptRig;

QStringList NamesOfTheReference() {
  QFile file(QStringLiteral(QUAYLINE_SOURCE_DIR "/tests/script/command_names.txt"));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString NameOf(const CommandRow& row) {
  return QString::fromLatin1(row.name.data(), static_cast<qsizetype>(row.name.size()));
}

TEST(CommandTable, HoldsTheWholeLanguageInItsOrder) {
  const QStringList reference = NamesOfTheReference();
  ASSERT_EQ(reference.size(), 179);
  QStringList names;
  for (const CommandRow& row : CommandTable()) {
    names.append(NameOf(row));
  }
  EXPECT_EQ(names, reference);
}

TEST(CommandTable, EveryRowHasOneHandlerAndIsFoundByItsName) {
  for (const CommandRow& row : CommandTable()) {
    EXPECT_NE(row.ask == nullptr, row.flow == nullptr) << row.name;
    EXPECT_FALSE(row.awaits_page && row.ask == nullptr) << row.name << " waits on its own";
    EXPECT_EQ(FindCommand(NameOf(row)), &row) << row.name << " stands there twice";
  }
}

TEST(CommandTable, AnythingElseIsNoCommand) {
  for (const char* text : {"", " nav", "nav ", "navigate", "set_name_", "set_", "# set_name",
                           "click_button_first_only_", "timeout_not_last_only"}) {
    EXPECT_EQ(FindCommand(QString::fromUtf8(text)), nullptr) << '"' << text << '"';
  }
}

// What a name's suffix says, read off the name.
bool SuffixHolds(QString name, bool first, bool last, bool in_combo) {
  // These have a meaning of their own.
  const QHash<QString, bool> exceptions{
      {QStringLiteral("set_username"), first},
      {QStringLiteral("set_password"), first},
      {QStringLiteral("set_password_combine_value_to_name"), first},
      {QStringLiteral("click_button_last_only_if_in_combo_true"), in_combo},
      {QStringLiteral("click_button_last_only_if_in_combo_false"), !in_combo},
      {QStringLiteral("timeout_last_only"), !first},
      {QStringLiteral("timeout_if_in_combo_true"), !in_combo},
  };
  if (exceptions.contains(name)) {
    return exceptions[name];
  }
  if (name != QStringLiteral("is_in_combo_special_1")) {
    name.remove(QStringLiteral("_special_1"));
  }
  bool holds = true;
  const auto TakeSuffix = [&name, &holds](const char* suffix, bool condition) {
    if (name.endsWith(QLatin1String(suffix))) {
      name.chop(static_cast<qsizetype>(qstrlen(suffix)));
      holds = holds && condition;
    }
  };
  TakeSuffix("_if_in_combo_true", in_combo);
  TakeSuffix("_if_in_combo_false", !in_combo);
  TakeSuffix("_first_only", first);
  TakeSuffix("_not_last_only", !last);
  TakeSuffix("_last_only", last);
  return holds;
}

TEST(CommandTable, EveryNameRunsWhenItsSuffixSays) {
  for (const CommandRow& row : CommandTable()) {
    for (int mask = 0; mask < 8; ++mask) {
      const bool first = (mask & 1) != 0;
      const bool last = (mask & 2) != 0;
      const bool in_combo = (mask & 4) != 0;
      const RunArguments arguments{.is_first_entry = first, .is_last_entry = last};
      EXPECT_EQ(ConditionHolds(row.condition, arguments, in_combo),
                SuffixHolds(NameOf(row), first, last, in_combo))
          << row.name << " first " << first << " last " << last << " in combo " << in_combo;
    }
  }
}

QString WithoutSuffixes(QString name) {
  for (const char* suffix :
       {"_if_in_combo_true", "_if_in_combo_false", "_first_only", "_not_last_only", "_last_only"}) {
    if (name.endsWith(QLatin1String(suffix))) {
      name.chop(static_cast<qsizetype>(qstrlen(suffix)));
    }
  }
  return name;
}

// The calls and results of one command where its condition holds.
QString Outcome(const CommandRow& row) {
  ScriptRig rig;
  for (int mask = 0; mask < 8; ++mask) {
    rig.entry.is_first_entry = (mask & 1) != 0;
    rig.entry.is_last_entry = (mask & 2) != 0;
    rig.flags.in_combo = (mask & 4) != 0;
    if (ConditionHolds(row.condition, rig.entry, rig.flags.in_combo)) {
      break;
    }
  }
  rig.flags.script_timer_ms = 1;
  rig.pages.Answer(QStringLiteral("PageContainsWords(word"), {true});
  rig.Run({QStringLiteral("set_name_array(\"n|m\")"), QStringLiteral("set_next_name_array(\"\")"),
           QStringLiteral("set_type_choices(\"t|u|b\")"),
           NameOf(row) + QStringLiteral("(\"word,1,value\")")});
  return rig.pages.calls.join(QLatin1Char('\n')) + QStringLiteral("\n--\n") +
         rig.Results().join(QLatin1Char('\n'));
}

TEST(CommandTable, TheMembersOfAFamilyDifferInTheirConditionOnly) {
  const QStringList different{
      QStringLiteral("click_button_ignore_page_loading_if_in_combo_false"),  // insert the name
      QStringLiteral("click_button_ignore_page_loading_if_in_combo_true"),
      QStringLiteral("set_2ndradiobutton_if_in_combo_false"),  // act on the first button
      QStringLiteral("set_2ndradiobutton_if_in_combo_true"),
  };
  int compared = 0;
  for (const CommandRow& row : CommandTable()) {
    const QString name = NameOf(row);
    const CommandRow* plain = FindCommand(WithoutSuffixes(name));
    if (plain == nullptr || plain == &row) {
      continue;
    }
    ++compared;
    EXPECT_EQ(Outcome(row) == Outcome(*plain), !different.contains(name)) << row.name;
  }
  EXPECT_GT(compared, 100);
}

}  // namespace
}  // namespace quayline
