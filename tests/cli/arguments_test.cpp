// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/arguments.h"

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

QStringList Words(const char* line) {
  return QString::fromLatin1(line).split(u' ', Qt::SkipEmptyParts);
}

TEST(CliArguments, WrongWordsAreNamed) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "--help"},
      {"upgrade", "\"upgrade\""},
      {"update --list l", "--data"},
      {"update --data d", "--list"},
      {"update --data d --list", "--list needs a value"},
      {"update --data d --list l --type https", "https://"},
      {"update --data d --list l --port 0", "\"0\""},
      {"update --data d --list l --port 65536", "65535"},
      {"update --data d --list l --port 8o", "\"8o\""},
      {"update --data d --list l --password secret", "--password-stdin"},
      {"update --data d --list l --password=secret", "--password-stdin"},
      {"update --data d --list l --password-stdin --password-file f", "once"},
      {"update --data d --list l extra", "\"extra\""},
  };
  for (const auto& [line, named] : cases) {
    const auto parsed = ParseCliArguments(Words(line));
    ASSERT_FALSE(parsed) << line;
    EXPECT_TRUE(parsed.error().contains(QLatin1String(named)))
        << line << ": " << qPrintable(parsed.error());
    EXPECT_FALSE(parsed.error().contains(u"secret"_s)) << "the password is repeated";
  }
}

TEST(CliArguments, ValuesMayStandBehindAnEqualsSign) {
  const auto parsed = ParseCliArguments(
      Words("update --data=d --list l=1.qyl --router=A=B --type https:// --throttle"));
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->update.data_folder, u"d"_s);
  EXPECT_EQ(parsed->update.list_file, u"l=1.qyl"_s);
  EXPECT_EQ(parsed->update.router, u"A=B"_s);
  EXPECT_TRUE(parsed->update.throttle);
  EXPECT_FALSE(parsed->update.user);
}

}  // namespace
}  // namespace quayline::testing
