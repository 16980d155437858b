// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/command_table.h"

#include <QFile>
#include <QHash>

#include "script/script_rig.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

// A router's script turns into comments where a name is lost or mistyped.
TEST(CommandTable, HoldsTheWholeLanguageInItsOrder) {
  QFile file(QStringLiteral(QUAYLINE_SOURCE_DIR "/tests/script/command_names.txt"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QStringList reference = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
  ASSERT_EQ(reference.size(), 179);
  QStringList names;
  for (const CommandRow& row : CommandTable()) {
    names.append(CommandName(row));
  }
  EXPECT_EQ(names, reference);
  EXPECT_EQ(AllCommands().size(), CommandTable().size() + ExtensionCommands().size());
}

TEST(CommandTable, EveryRowHasOneHandlerAndIsFoundByItsName) {
  for (const CommandRow& row : AllCommands()) {
    EXPECT_NE(row.ask == nullptr, row.flow == nullptr) << row.name;
    EXPECT_EQ(FindCommand(CommandName(row)), &row) << row.name << " is there twice";
  }
  for (const char* text : {"", " nav", "nav ", "navigate", "set_name_", "set_", "# set_name",
                           "click_button_first_only_", "timeout_not_last_only"}) {
    EXPECT_EQ(FindCommand(QString::fromUtf8(text)), nullptr) << '"' << text << '"';
  }
}

// An insertion needs a position, and a line has one.
TEST(CommandTable, FieldsFitTogether) {
  for (const CommandRow& row : AllCommands()) {
    EXPECT_TRUE(row.help.ends_with('.')) << row.name;
    int positions = 0;
    int targets = 0;
    for (const FieldSpec& field : row.fields) {
      EXPECT_TRUE(field.help.ends_with('.')) << row.name << ": " << field.name;
      EXPECT_TRUE(field.default_value.empty() || field.when_missing == WhenMissing::kUsesDefault);
      EXPECT_EQ(field.takes_rest && &field != &row.fields.back(), false) << row.name;
      positions += field.kept_as == KeptAs::kPosition ? 1 : 0;
      targets += field.inserted != Inserted::kNothing ? 1 : 0;
      EXPECT_FALSE(field.kind == FieldKind::kPosition && field.kept_as != KeptAs::kPosition);
    }
    EXPECT_LE(positions, 1) << row.name;
    EXPECT_LE(targets, positions) << row.name << " inserts at the position of another line";
  }
}

struct Place {
  bool first;
  bool last;
  bool in_combo;

  explicit Place(int mask)
      : first((mask & 1) != 0), last((mask & 2) != 0), in_combo((mask & 4) != 0) {}
};

// The family of a name, and whether its suffixes agree with its row.
std::pair<QString, bool> TakeSuffixes(QString name, const Place& place) {
  bool holds = true;
  const std::pair<QLatin1String, bool> suffixes[] = {
      {"_if_in_combo_true"_L1, place.in_combo},
      {"_if_in_combo_false"_L1, !place.in_combo},
      {"_first_only"_L1, place.first},
      {"_not_last_only"_L1, !place.last},
      {"_last_only"_L1, place.last},
  };
  for (const auto& [suffix, condition] : suffixes) {
    if (name.endsWith(suffix)) {
      name.chop(suffix.size());
      holds = holds && condition;
    }
  }
  return {name, holds};
}

bool SuffixHolds(QString name, const Place& place) {
  // These have a meaning of their own.
  const QHash<QString, bool> exceptions{
      {u"set_username"_s, place.first},
      {u"set_password"_s, place.first},
      {u"set_password_combine_value_to_name"_s, place.first},
      {u"click_button_last_only_if_in_combo_true"_s, place.in_combo},
      {u"click_button_last_only_if_in_combo_false"_s, !place.in_combo},
      {u"timeout_last_only"_s, !place.first},
      {u"timeout_if_in_combo_true"_s, !place.in_combo},
  };
  if (name != u"is_in_combo_special_1"_s) {
    name.remove(u"_special_1"_s);
  }
  return exceptions.value(name, TakeSuffixes(name, place).second);
}

bool Holds(const CommandRow& row, const Place& place) {
  return ConditionHolds(row.condition, {.is_first_entry = place.first, .is_last_entry = place.last},
                        place.in_combo);
}

TEST(CommandTable, EveryNameRunsWhenItsSuffixSays) {
  for (const CommandRow& row : AllCommands()) {
    for (int mask = 0; mask < 8; ++mask) {
      EXPECT_EQ(Holds(row, Place(mask)), SuffixHolds(CommandName(row), Place(mask)))
          << row.name << " where first, last, in combo are " << mask;
    }
  }
}

// The calls and results of one command where its condition holds.
QStringList Outcome(const CommandRow& row) {
  int mask = 0;
  while (mask < 7 && !Holds(row, Place(mask))) {
    ++mask;
  }
  ScriptRig rig;
  rig.entry.is_first_entry = Place(mask).first;
  rig.entry.is_last_entry = Place(mask).last;
  rig.flags.in_combo = Place(mask).in_combo;
  rig.flags.script_timer_ms = 1;
  rig.pages.Answer("PageContainsWords(word", {true});
  const std::string line = std::string(row.name) + "(\"word,1,value\")";
  rig.Run({"set_name_array(\"n|m\")", "set_next_name_array(\"\")", "set_type_choices(\"t|u|b\")",
           line.c_str()});
  return rig.pages.calls + rig.Results();
}

TEST(CommandTable, TheMembersOfAFamilyDifferInTheirConditionOnly) {
  const QStringList different = Lines({
      "click_button_ignore_page_loading_if_in_combo_false",  // insert the name
      "click_button_ignore_page_loading_if_in_combo_true",
      "set_2ndradiobutton_if_in_combo_false",  // use the first button
      "set_2ndradiobutton_if_in_combo_true",
  });
  int compared = 0;
  for (const CommandRow& row : CommandTable()) {
    const CommandRow* plain = FindCommand(TakeSuffixes(CommandName(row), Place(0)).first);
    if (plain != nullptr && plain != &row) {
      ++compared;
      EXPECT_EQ(Outcome(row) == Outcome(*plain), !different.contains(CommandName(row))) << row.name;
    }
  }
  EXPECT_GT(compared, 100);
}

}  // namespace
}  // namespace quayline::testing
