// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/manifest.h"

#include <gtest/gtest.h>

#include "test_main.h"
#include "update/version.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

TEST(Version, PartsCompareInTheirOrderAndWithItsPeculiarity) {
  const struct {
    const char* server;
    std::optional<bool> is_up_to_date;
  } cases[] = {{"3.1.4", true},   {"3.1.5", false},  {"3.1.3", true},   {"3.2.0", false},
               {"3.0.9", true},   {"4.0.0", false},  {"2.9.0", false},  {"2.1.9", false},
               {"2.0.9", true},   {"3.10.0", false}, {"3.1.4.9", true}, {"003.01.04", true},
               {"", {}},          {"3", {}},         {"3.1", {}},       {"4", false},
               {"3.2", false},    {"x.1.1", {}},     {"3.1.-5", {}},    {"3.1.1234567890", {}},
               {"3.1./../x", {}}, {"4.0./../x", {}}};
  for (const auto& [server, expected] : cases) {
    EXPECT_EQ(IsUpToDate(QLatin1String(server), u"3.1.4"_s), expected) << server;
  }
}

const SigningKey kKey = MakeSigningKey(QByteArray(32, 'k'));
const QDate kToday(2026, 11, 22);

QByteArray Text(const QByteArray& more = {}) {
  const QByteArray digest(64, 'a');
  return "[update]\r\ncurrent=3.2.0\r\ndownload=https://site/setup.exe\r\nnote=Hello\r\n"
         "downloadsha256=" +
         digest + "\r\ndatabasessha256=" + digest + "\r\nserial=7\r\nexpires=2026-11-22\r\n" + more;
}

// The version that is read, or the error in brackets.
QByteArray Read(const QByteArray& bytes, const ManifestTrust& trust) {
  constexpr const char* kErrors[] = {"[too large]",  "[not signed]", "[wrong signature]",
                                     "[incomplete]", "[expired]",    "[older]"};
  const auto manifest = ReadManifest(bytes, trust);
  return manifest ? manifest->current.toUtf8()
                  : QByteArray(kErrors[static_cast<int>(manifest.error())]);
}

TEST(Manifest, WithoutAKeyItIsReadAsItIs) {
  const auto manifest = ReadManifest(Text(), {});
  ASSERT_TRUE(manifest);
  EXPECT_EQ(manifest->download, u"https://site/setup.exe"_s);
  EXPECT_EQ(manifest->note, u"Hello"_s);
  EXPECT_EQ(manifest->download_digest, QByteArray(32, '\xaa'));
  EXPECT_EQ(Read(SignManifest(Text(), kKey), {}), "3.2.0");
  for (const QByteArray& bytes : {QByteArray(), QByteArray("<html>"), QByteArray(1000, '\0'),
                                  QByteArray("[update]\ncurrent")}) {
    EXPECT_EQ(Read(bytes, {}), "");
  }
  EXPECT_EQ(Read(QByteArray(kMaxManifestBytes + 1, 'x'), {}), "[too large]");
}

TEST(Manifest, WithAKeyOnlyWhatItSignedCounts) {
  const ManifestTrust trust{.key = kKey.for_everybody, .least_serial = 7, .today = kToday};
  const QByteArray good = SignManifest(Text(), kKey);
  EXPECT_EQ(Read(good, trust), "3.2.0");
  QByteArray changed = good;
  changed.replace("3.2.0", "3.2.1");
  QByteArray moved = good;
  moved.replace("ed25519=", "ed25519=AAAA");
  QByteArray no_digest = Text();
  no_digest.replace("databasessha256", "other");
  QByteArray no_day = Text();
  no_day.replace("2026-11-22", "soon");
  const struct {
    const char* fault;
    QByteArray bytes;
    const char* expected;
  } cases[] = {
      {"unsigned", Text(), "[not signed]"},
      {"another key", SignManifest(Text(), MakeSigningKey(QByteArray(32, 'x'))),
       "[wrong signature]"},
      {"changed text", changed, "[wrong signature]"},
      {"changed signature", moved, "[wrong signature]"},
      {"a section after the signature", good + "[update]\ncurrent=9.9.9\n", "[wrong signature]"},
      {"a section in front", "[update]\ncurrent=9.9.9\n" + good, "[wrong signature]"},
      {"a second signature", SignManifest(good, MakeSigningKey(QByteArray(32, 'x'))),
       "[wrong signature]"},
      {"no digest", SignManifest(no_digest, kKey), "[incomplete]"},
      {"no last day", SignManifest(no_day, kKey), "[incomplete]"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Read(c.bytes, trust), c.expected) << c.fault;
  }
  EXPECT_EQ(Read(good, {trust.key, 8, kToday}), "[older]");
  EXPECT_EQ(Read(good, {trust.key, 7, kToday.addDays(1)}), "[expired]");
  EXPECT_EQ(Read(good, {QByteArray(32, 'x'), 0, kToday}), "[wrong signature]");
  EXPECT_EQ(Read(good, {"short", 0, kToday}), "[wrong signature]");
}

}  // namespace
}  // namespace quayline
