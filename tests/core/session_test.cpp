// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/router_address.h"
#include "core/settings.h"
#include "core/trusted_certificates.h"
#include "test_main.h"

namespace quayline {
namespace {

QString U(const char* text) { return QString::fromUtf8(text); }

TEST(Settings, BooleansOfEditedFiles) {
  const QTemporaryDir folder;
  Settings settings(folder.filePath(U("settings.ini")));
  constexpr Setting kOn{"flag", "True"};
  constexpr Setting kOff{"flag", "0"};
  EXPECT_TRUE(settings.Boolean(kOn));
  EXPECT_FALSE(settings.Boolean(kOff));
  const struct {
    const char* text;
    std::optional<bool> value = {};
  } rows[] = {{"True", true}, {"FALSE", false}, {"1", true}, {"-1", true}, {"0", false},
              {"0.5", true},  {"yes"},          {""},        {"nan"},      {"inf"},
              {"1x"},         {"0,0"},          {"Truely"}};
  for (const auto& row : rows) {
    EXPECT_TRUE(settings.SetValue(kOn, U(row.text)));
    EXPECT_EQ(settings.Boolean(kOn), row.value.value_or(true)) << row.text;
    EXPECT_EQ(settings.Boolean(kOff), row.value.value_or(false)) << row.text;
  }
  QFile::remove(settings.FileName());
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

// What a full disk refused is written with the next value, and when there is room again.
TEST(Settings, WhatCannotBeStoredIsReportedOnceAndStoredLater) {
  const QTemporaryDir folder;
  Settings settings(folder.filePath(U("settings.ini")));
  int failures = 0;
  QObject::connect(&settings, &Settings::writeFailed, [&failures] { ++failures; });
  testing::OnFullDisk(0, [&] {
    EXPECT_FALSE(settings.SetValue(setting::kRouter, U("A")));
    EXPECT_FALSE(settings.SetValue(setting::kWindowSize, U("1,2")));
    return true;
  });
  EXPECT_EQ(settings.Value(setting::kRouter), U("A"));
  EXPECT_EQ(failures, 1);
  EXPECT_TRUE(testing::RunUntil(
      [&] {
        return testing::ReadBytes(settings.FileName()).contains("windowsize=\"1,2\"") ||
               testing::ReadBytes(settings.FileName()).contains("windowsize=1,2");
      },
      std::chrono::seconds(30)));
}

TEST(RouterAddress, AnAddressMayBePastedWhole) {
  const struct {
    const char *typed, *host, *type = "", *port = "";
  } rows[] = {{"192.168.1.1", "192.168.1.1"},
              {"http://a", "a", "http://"},
              {" HTTPS://a ", "a", "https://"},
              {"http://https://a", "a", "https://"},
              {"http://192.168.1.1:8080/index.html", "192.168.1.1", "http://", "8080"},
              {"\thttps://me:pw@router.lan:443?x=1#top\n", "router.lan", "https://", "443"},
              {"a:81", "a", "", "81"},
              {"a:", "a:"},
              {"a:70000", "a:70000"},
              {"fe80::1", "fe80::1"},
              {"http://[fe80::1]:81/", "[fe80::1]", "http://", "81"},
              {"http:/a", "http:"},
              {"http://", "", "http://"},
              {"", ""}};
  for (const auto& row : rows) {
    const RouterAddress address = ParseRouterAddress(U(row.typed));
    EXPECT_EQ(address.host, U(row.host)) << row.typed;
    EXPECT_EQ(address.http_type, U(row.type)) << row.typed;
    EXPECT_EQ(address.http_port, U(row.port)) << row.typed;
  }
}

TEST(RouterAddress, WhatIsNamedReplacesTheFieldsAndAWholeAddressHasThePortOfItsScheme) {
  const struct {
    const char *typed, *type, *port;
  } rows[] = {{"b", "https://", "8443"},         {"b:1", "https://", "1"},
              {"http://", "http://", "8443"},    {"http://b/", "http://", "80"},
              {"https://b/", "https://", "443"}, {"http://b:2/", "http://", "2"}};
  for (const auto& row : rows) {
    RouterSession session{.router_ip = U("a"), .http_port = U("8443"), .http_type = U("https://")};
    SetAddress(session, U(row.typed));
    EXPECT_EQ(session.http_type, U(row.type)) << row.typed;
    EXPECT_EQ(session.http_port, U(row.port)) << row.typed;
  }
}

TEST(RouterSession, HostsForUrls) {
  const struct {
    const char *port, *host;
  } ports[] = {{"80", "a"}, {"8080", "a:8080"}, {"080", "a:080"}};
  for (const auto& row : ports) {
    EXPECT_EQ(RouterHost({.router_ip = U("a"), .http_port = U(row.port)}), U(row.host));
  }
}

}  // namespace
}  // namespace quayline
