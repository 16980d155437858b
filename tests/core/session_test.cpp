// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include "core/files.h"
#include "core/router_session.h"
#include "core/settings.h"

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
    std::optional<bool> value;
  } rows[] = {{"True", true}, {"FALSE", false}, {"1", true},   {"-1", true}, {"0", false},
              {"0.5", true},  {"yes", {}},      {"", {}},      {"nan", {}},  {"inf", {}},
              {"1x", {}},     {"0,0", {}},      {"Truely", {}}};
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

TEST(RouterSession, ASelectionReplacesAllButTheAddress) {
  RouterSession session;
  session.router_ip = U("10.0.0.1");
  session.password = U("typed");
  session.update_script = {U("old")};
  RouterRecord record;
  record.id = 7;
  record.routername = U("Harbour");
  record.routerpic = U("pics\\a\\b.jpg");
  record.routerportpage = U("nav=a\r\n  \r\n  click b \nc\r\n\r\n\t");
  SelectRouter(session, record);
  EXPECT_EQ(session.router_ip, U("10.0.0.1"));
  EXPECT_EQ(session.password, QString());
  EXPECT_EQ(session.picture_path, U("pics/a/b.jpg"));
  EXPECT_EQ(session.update_script, QStringList());
  EXPECT_EQ(session.view_script, (QStringList{U("nav=a"), U("  click b "), U("c")}));
}

TEST(RouterSession, AddressesAsTyped) {
  const struct {
    const char* typed;
    const char* rest;
  } schemes[] = {{"http://a", "a"},         {"HTTPS://a", "a"},
                 {"http://https://a", "a"}, {"https://http://a", "http://a"},
                 {"http:/a", "http:/a"},    {" http://a", " http://a"},
                 {"http://", ""},           {"", ""}};
  for (const auto& row : schemes) {
    EXPECT_EQ(WithoutScheme(U(row.typed)), U(row.rest)) << row.typed;
  }
  RouterSession session;
  session.router_ip = U("10.0.0.1");
  const struct {
    const char* port;
    const char* host;
  } ports[] = {{"80", "10.0.0.1"}, {"8080", "10.0.0.1:8080"}, {"080", "10.0.0.1:080"}};
  for (const auto& row : ports) {
    session.http_port = U(row.port);
    EXPECT_EQ(RouterHost(session), U(row.host));
  }
}

}  // namespace
}  // namespace quayline
