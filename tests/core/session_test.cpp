// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/router_session.h"
#include "core/settings.h"
#include "core/trusted_certificates.h"
#include "test_main.h"

namespace quayline {
namespace {

QString U(const char* text) { return QString::fromUtf8(text); }

TEST(Settings, BooleansOfEditedFiles) {
  const QTemporaryDir folder;
  Settings settings(folder.filePath(U("settings.ini")));
  EXPECT_TRUE(settings.Boolean(setting::kSilentMode, true));
  EXPECT_FALSE(settings.Boolean(setting::kSilentMode, false));
  const struct {
    const char* text;
    std::optional<bool> value = {};
  } rows[] = {{"True", true}, {"FALSE", false}, {"1", true}, {"-1", true}, {"0", false},
              {"0.5", true},  {"yes"},          {""},        {"nan"},      {"inf"},
              {"1x"},         {"0,0"},          {"Truely"}};
  for (const auto& row : rows) {
    EXPECT_TRUE(settings.SetValue(setting::kSilentMode, U(row.text)));
    for (const bool otherwise : {true, false}) {
      EXPECT_EQ(settings.Boolean(setting::kSilentMode, otherwise), row.value.value_or(otherwise))
          << row.text;
    }
  }
  EXPECT_TRUE(settings.SetBoolean(setting::kSilentMode, false));
  EXPECT_TRUE(settings.SetBoolean(setting::kScriptThrottle, true));
  EXPECT_EQ(testing::ReadBytes(settings.FileName()),
            "[main]\r\nsilentmode=False\r\nscriptthrottle=True\r\n");
}

TEST(TrustedCertificates, AnAnswerThatCannotBeStoredHoldsAndIsStoredLater) {
  using Verdict = TrustedCertificates::Verdict;
  const QTemporaryDir folder;
  const QString file = folder.filePath(U("certificates.ini"));
  TrustedCertificates certificates(file);
  const auto look = [&](const char* address, const char* sha256) {
    return certificates.Look(U(address), sha256);
  };
  EXPECT_FALSE(testing::OnFullDisk(0, [&] { return certificates.Trust(U("box:443"), "one"); }));
  EXPECT_EQ(look("box:443", "one"), Verdict::kTrusted);
  EXPECT_EQ(look("box:443", "other"), Verdict::kChanged);
  EXPECT_EQ(look("box:8443", "one"), Verdict::kUnknown);
  EXPECT_FALSE(testing::OnFullDisk(0, [&] { return certificates.StorePending(); }));
  const auto is_stored = [&file] {
    return TrustedCertificates(file).Look(U("box:443"), "one") == Verdict::kTrusted;
  };
  EXPECT_FALSE(is_stored());
  EXPECT_TRUE(certificates.Trust(U("[::1]:443"), "two"));
  EXPECT_TRUE(is_stored());
}

TEST(RouterSession, ASelectionReplacesAllButTheAddress) {
  RouterSession session{
      .router_ip = U("10.0.0.1"), .password = U("typed"), .update_script = {U("old")}};
  SelectRouter(session, {.id = 7,
                         .routername = U("Harbour"),
                         .routerpic = U("pics\\a\\b.jpg"),
                         .routerportpage = U("nav=a\r\n  \r\n  click b \nc\r\n\r\n\t")});
  EXPECT_EQ(session.router_ip, U("10.0.0.1"));
  EXPECT_EQ(session.password, QString());
  EXPECT_EQ(session.picture_path, U("pics/a/b.jpg"));
  EXPECT_EQ(session.update_script, QStringList());
  EXPECT_EQ(session.view_script, (QStringList{U("nav=a"), U("  click b "), U("c")}));
}

TEST(RouterSession, AddressesAsTyped) {
  const struct {
    const char *typed, *rest;
  } schemes[] = {{"http://a", "a"},         {"HTTPS://a", "a"},
                 {"http://https://a", "a"}, {"https://http://a", "http://a"},
                 {"http:/a", "http:/a"},    {" http://a", " http://a"},
                 {"http://", ""},           {"", ""}};
  for (const auto& row : schemes) {
    EXPECT_EQ(WithoutScheme(U(row.typed)), U(row.rest)) << row.typed;
  }
  const struct {
    const char *port, *host;
  } ports[] = {{"80", "a"}, {"8080", "a:8080"}, {"080", "a:080"}};
  for (const auto& row : ports) {
    EXPECT_EQ(RouterHost({.router_ip = U("a"), .http_port = U(row.port)}), U(row.host));
  }
}

}  // namespace
}  // namespace quayline
