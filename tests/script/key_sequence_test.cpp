// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/key_sequence.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// "S+C+A+" for the modifiers, then the typed text, or the key's number where it types nothing.
QString Shown(const QList<KeyStroke>& strokes) {
  QStringList shown;
  for (const KeyStroke& stroke : strokes) {
    QString one = stroke.text.isEmpty() ? u"#%1"_s.arg(stroke.key, 0, 16) : stroke.text;
    for (const auto& [modifier, sign] :
         {std::pair(Qt::AltModifier, u"A+"_s), std::pair(Qt::ControlModifier, u"C+"_s),
          std::pair(Qt::ShiftModifier, u"S+"_s)}) {
      one.prepend(stroke.modifiers.testFlag(modifier) ? sign : QString());
    }
    shown.append(one);
  }
  return shown.join(u' ');
}

TEST(KeySequence, ReadsTheClassicNotation) {
  const struct {
    const char* fault;
    const char* notation;
    const char* expected;
  } cases[] = {
      {"text", "aB9.", "a B 9 ."},
      {"letters beyond ASCII", "\xC3\xA4\xF0\x9F\x98\x80", "\xC3\xA4 \xF0\x9F\x98\x80"},
      {"the caret key types", "{RIGHT}", "#1000014"},
      {"names in another case", "{right}{Bksp}", "#1000014 #1000003"},
      {"Enter", "~{ENTER}", "\r \r"},
      {"a modifier for the next key only", "+ab", "S+A b"},
      {"a modified letter types", "^a%{F4}", "C+#41 A+#1000033"},
      {"modifiers in a row", "+^a", "S+C+#41"},
      {"a group", "+(ab)c", "S+A S+B c"},
      {"a modifier inside a group", "+(^ab)c", "S+C+#41 S+B c"},
      {"parentheses without a modifier", "(ab)", "a b"},
      {"special characters as themselves", "{+}{^}{%}{~}{(}{)}{{}{}}", "+ ^ % ~ ( ) { }"},
      {"a count", "{a 3}{TAB 2}", "a a a \t \t"},
      {"a count of nothing", "{a 0}b", "b"},
      {"a count below zero", "{a -2}b", "b"},
      {"a blank in braces", "{ }", " "},
      {"braces without a key", "{NOSUCHKEY}b", "b"},
      {"a brace that is left open", "a{b", "a b"},
      {"a closing brace and parenthesis alone", "a}b)c", "a b c"},
      {"nothing", "", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Shown(ParseKeys(QString::fromUtf8(c.notation))), QString::fromUtf8(c.expected))
        << c.fault;
  }
  EXPECT_LE(ParseKeys(u"{a 2000000000}"_s).size(), 1000) << "a huge count";
}

}  // namespace
}  // namespace quayline
