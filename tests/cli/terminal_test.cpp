// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/terminal.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

TEST(Terminal, AForeignTextNeverMovesTheCursorOrBeginsALine) {
  const std::pair<QString, QString> cases[] = {
      {u"Step 01. caf\u00e9 \u4e2d"_s, u"Step 01. caf\u00e9 \u4e2d"_s},
      {u"a\r\nb\r\n"_s, u"a\nb\n"_s},
      {u"a\nDONE!"_s, u"a\u240aDONE!"_s},
      {u"a\rDONE!"_s, u"a\u240dDONE!"_s},
      {u"\x1b[2J\x07\t\b\x7f"_s, u"\u241b[2J\u2407\u2409\u2408\u2421"_s},
      {u"a\u0085b\u009b2J"_s, u"a\ufffdb\ufffd2J"_s},
      {u"a\u202eb\u2028c\u2066"_s, u"a\ufffdb\ufffdc\ufffd"_s},
  };
  for (const auto& [text, shown] : cases) {
    EXPECT_EQ(LogForTerminal(text), shown);
  }
  EXPECT_EQ(WithoutControls(u"a\r\nb"_s), u"a\u240d\u240ab"_s) << "one sentence is one line";
}

}  // namespace
}  // namespace quayline::testing
