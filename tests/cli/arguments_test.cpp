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
      {"update --data d --list", "'--list'"},
      {"update --data d --list l --type https", "https://"},
      {"update --data d --list l --port 0", "\"0\""},
      {"update --data d --list l --port 65536", "65535"},
      {"update --data d --list l --port 8o", "\"8o\""},
      {"update --data d --list l --password secret", "--password-stdin"},
      {"update --data d --list l --password=secret", "--password-stdin"},
      {"update --data d --list l --password-stdin --password-file f", "once"},
      {"update --data d --list l extra", "\"extra\""},
      {"update --data d --list l --throttle=1", "'--throttle'"},
      {"update --data d --list l --timeout 0", "\"0\""},
      {"update --data d --list l --timeout 1s", "\"1s\""},
      {"update --data d --list l --allow-host http://r", "\"http://r\""},
      {"update --data d --list l --allow-host r:", "\"r:\""},
      {"update --data d --list l --allow-host r:0", "\"r:0\""},
      {"update --data d --list l --allow-host u@r", "\"u@r\""},
      {"routers", "--data"},
      {"routers --data d --all", "\"all\""},
      {"try", "ROUTERFILE"},
      {"try f", "--pages"},
      {"try f g --pages d", "one file"},
      {"try f --pages d --timeout 0", "\"0\""},
      {"try f --pages d --speed 1", "\"speed\""},
  };
  for (const auto& [line, named] : cases) {
    const auto parsed = ParseCliArguments(Words(line));
    ASSERT_FALSE(parsed) << line;
    EXPECT_TRUE(parsed.error().contains(QLatin1String(named)))
        << line << ": " << qPrintable(parsed.error());
    EXPECT_FALSE(parsed.error().contains(u"secret"_s)) << "the password is repeated";
  }
}

TEST(CliArguments, AnAllowedHostAllowsItsPortOnly) {
  const struct {
    const char* option;
    const char* address;
    bool is_allowed;
  } cases[] = {
      {"Router.Lan", "http://router.lan:80", true},
      {"router.lan", "https://router.lan:443", true},
      {"router.lan", "http://router.lan:8080", false},
      {"router.lan:8080", "http://router.lan:8080", true},
      {"router.lan:80", "https://router.lan:443", false},
      {"router.lan", "http://evil.router.lan:80", false},
      {"[fe80::1]:81", "http://[fe80::1]:81", true},
  };
  for (const auto& row : cases) {
    const auto parsed = ParseCliArguments(
        Words("update --data d --list l --allow-host x --allow-host") + Words(row.option));
    ASSERT_TRUE(parsed && parsed->update.allowed_hosts.size() == 2) << row.option;
    EXPECT_EQ(parsed->update.allowed_hosts[1].Holds(QLatin1String(row.address)), row.is_allowed)
        << row.option << " " << row.address;
  }
}

}  // namespace
}  // namespace quayline::testing
