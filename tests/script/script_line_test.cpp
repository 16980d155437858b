// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/script_line.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

TEST(ScriptLine, IsCutByPositionAlone) {
  const struct {
    const char* fault;
    const char* line;
    const char* name;
    const char* argument;
  } cases[] = {
      {"the plain form", "nav(\"index.htm\")", "nav", "index.htm"},
      {"parentheses and quotes end the argument", "call_javascript(\"f('(a)',\"b\")\")",
       "call_javascript", "f('(a)',\"b\")"},
      {"the argument loses its case", "Set_Name(\"RuleName,0\")", "set_name", "RuleName,0"},
      {"a leading blank is forgiven", " nav(\"a\")", " nav", "a"},
      {"other characters than quotes stay", "nav('index')", "nav", "index"},
      {"a text behind the end is dropped whole", "nav(\"index\") x", "nav", "index\")"},
      {"no parenthesis", "page_refresh", "page_refresh", ""},
      {"an empty argument", "nav(\"\")", "nav", ""},
      {"a missing quote eats the neighbour", "nav(abc)", "nav", "b"},
      {"shorter than what is cut", "nav(\"", "nav", ""},
      {"a lone parenthesis", "nav(", "nav", ""},
      {"three characters overlap", "nav(\")", "nav", ""},
      {"nothing in front", "(\"a\")", "", "a"},
      {"nothing at all", "", "", ""},
      {"blanks of the argument", "set_name(\" a , b \")", "set_name", " a , b "},
  };
  for (const auto& c : cases) {
    const ScriptLine line = ParseScriptLine(QString::fromUtf8(c.line));
    EXPECT_EQ(line.name, QLatin1String(c.name)) << c.fault;
    EXPECT_EQ(line.argument, QLatin1String(c.argument)) << c.fault;
  }
}

TEST(InsertAt, CountsFromTheEnd) {
  const struct {
    const char* fault;
    const char* position;
    const char* expected;
  } cases[] = {
      {"counted from the front", "2", "abcBde"},
      {"nothing behind", "0", "abcdeB"},
      {"all of it behind", "5", "Babcde"},
      {"beyond the front", "6", "abcde"},
      {"below zero", "-1", "abcde"},
      {"an empty position counts as 0", "", "abcde"},
      {"no number", "x", "abcde"},
      {"blanks around a number", " 2 ", "abcBde"},
      {"beyond 32 bits", "4294967298", "abcde"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(InsertAt(u"abcde"_s, QLatin1String(c.position), u"B"_s), QLatin1String(c.expected))
        << c.fault;
  }
  EXPECT_EQ(InsertAt(u"abcde"_s, u"2"_s, {}), u"abcde"_s) << "nothing to insert";
}

TEST(EntryLetter, ContinuesAfterZWithoutAWrap) {
  EXPECT_EQ(EntryLetter(1) + EntryLetter(26) + EntryLetter(27), u"AZ["_s);
}

TEST(TruthValue, TellsNoAnswerFromFalse) {
  const struct {
    const char* text;
    std::optional<bool> expected;
  } cases[] = {
      {"true", true},   {"TRUE", true}, {" True ", true},   {"-1", true},          {"1", true},
      {"false", false}, {"0", false},   {"", std::nullopt}, {"yes", std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TruthValue(QString::fromUtf8(c.text)), c.expected) << c.text;
  }
}

}  // namespace
}  // namespace quayline
