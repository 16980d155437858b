// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/fuzzy_name.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

TEST(WildcardMatch, FindsThePiecesInTheirOrderAndTellsTheFirst) {
  const struct {
    const char16_t *text, *pattern;
    int start, place;
  } cases[] = {
      {u"abc", u"a*c", 1, 1}, {u"cba", u"a*c", 1, 0},  {u"xabyc", u"ab*c", 1, 2},
      {u"aa", u"a*a", 1, 1},  {u"a", u"a*a", 1, 0},  // a piece begins after the one before
      {u"abc", u"", 1, 1},    {u"", u"", 1, 1},        {u"abc", u"*c", 1, 1},
      {u"abc", u"c*", 1, 3},  {u"abc", u"a**c", 1, 1}, {u"abc", u"d", 1, 0},
      {u"abab", u"ab", 2, 3}, {u"abc", u"a", 2, 0},    {u"abc", u"a", -4, 1},
      {u"abc", u"", 9, 0},    {u"ABC", u"b", 1, 2},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(WildcardMatch(c.text, c.pattern, c.start), c.place)
        << QString::fromUtf16(c.text).toStdString() << " "
        << QString::fromUtf16(c.pattern).toStdString();
  }
  EXPECT_EQ(WildcardMatch(u"ABC", u"b", 1, Qt::CaseSensitive), 0);
}

FuzzyNames Names() {
  FuzzyNames names;
  for (const char* name : {"Alpha (1)", "Beta-2.5", "ALPHA +2", "Gamma beta"}) {
    names.Append(QString::fromLatin1(name));
  }
  return names;
}

TEST(FuzzyNames, PassesOverSignsAndCase) {
  const struct {
    const char* text;
    int index;
    bool anywhere = false;
    int from = 0;
  } cases[] = {{"alpha1", 0}, {"AL-PHA 2", 2}, {"beta2.5", 1},       {"beta", 1},
               {"a*2", 2},    {"1", -1},       {"1", 0, true},       {"mab", 3, true},
               {"", 0},       {"-+", 0},       {"alpha3", -1, true}, {"beta", 3, true, 2}};
  for (const auto& c : cases) {
    EXPECT_EQ(Names().FindByFuzzyName(QLatin1String(c.text), c.anywhere, c.from), c.index)
        << c.text;
  }
}

}  // namespace
}  // namespace quayline
