// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "core/files.h"
#include "demo/certificate.h"
#include "demo/demo_router.h"
#include "demo/router_model.h"
#include "test_main.h"

namespace quayline::demo {
namespace {

using namespace Qt::StringLiterals;

// One model without a server in front of it.
struct Model {
  explicit Model(const char* name)
      : pages(FindModel(QLatin1String(name))->make(table, {.user = u"ad"_s, .password = u"pw"_s})) {
  }

  HttpResponse Get(const QByteArray& path, const QByteArray& cookie = {}) {
    return pages->Answer(
        {.method = "GET", .path = QString::fromUtf8(path), .headers = {{"cookie", cookie}}});
  }
  HttpResponse Post(const QString& path, const QByteArray& body, const QByteArray& referer = {}) {
    return pages->Answer({.method = "POST",
                          .path = path,
                          .headers = {{"host", "router:81"}, {"referer", referer}},
                          .body = body});
  }

  RuleTable table{4};
  std::unique_ptr<RouterModel> pages;
};

TEST(RouterModels, EveryPageOfEveryModelIsThere) {
  for (const ModelInfo& info : RouterModels()) {
    Model model(info.name);
    EXPECT_GE(model.Get("/no such page").status, 302) << info.name;
    EXPECT_NE(model.Get("/").status, 404) << info.name;
    const QByteArray home = model.Get("/").body;
    for (qsizetype at = home.indexOf("src=\"/"); at >= 0; at = home.indexOf("src=\"/", at + 1)) {
      const QByteArray path = home.mid(at + 5).split('"').first();
      EXPECT_EQ(model.Get(path).status, 200) << info.name << path.constData();
    }
  }
}

TEST(RouterModels, HiddenframeTakesRulesFromItsOwnPagesOnly) {
  Model model("hiddenframe");
  const auto post = [&](const QByteArray& referer) {
    return model.Post(u"/nat_rules.php"_s,
                      "rule[name]=a&rule[from]=1&rule[to]=1&rule[proto]=udp&rule[dest]=10.0.0.1",
                      referer);
  };
  for (const char* referer :
       {"", "http://other/nat_rules.php", "http://other/?http://router:8", "http://router:810/"}) {
    EXPECT_EQ(post(referer).status, 403) << referer;
  }
  EXPECT_TRUE(model.table.Rules().isEmpty());
  EXPECT_EQ(post("http://router:81/nat_rules.php").status, 200);
  EXPECT_EQ(model.table.Rules().size(), 1);
}

TEST(RouterModels, WebloginKnowsItsUserByTheLatestCookieAlone) {
  Model model("weblogin");
  const auto log_in = [&](const QByteArray& password) {
    QByteArray cookie;
    for (const auto& [name, value] :
         model.Post(u"/login.html"_s, "login_user=ad&login_word=" + password).headers) {
      cookie = name == "Set-Cookie" ? value.split(';').first() : cookie;
    }
    return cookie;
  };
  EXPECT_EQ(model.Get("/pf_list.cgi").status, 302);
  EXPECT_EQ(model.Get("/pf_list.cgi", "session=").status, 302) << "nobody has logged in";
  EXPECT_TRUE(log_in("p").isEmpty());
  const QByteArray first = log_in("pw");
  EXPECT_EQ(model.Get("/pf_list.cgi", "a=b; " + first).status, 200);
  EXPECT_EQ(model.Get("/pf_list.cgi", first + "0").status, 302);
  const QByteArray second = log_in("pw");
  EXPECT_EQ(model.Get("/pf_list.cgi", first).status, 302);
  EXPECT_EQ(model.Get("/pf_list.cgi", second).status, 200);
}

TEST(RouterModels, SinglepageTakesChangesFromItsUserAloneAndCommitsThemLater) {
  Model model("singlepage");
  const auto post = [&model](const char* path, const QByteArray& body, const QByteArray& token) {
    return model.pages->Answer({.method = "POST",
                                .path = QLatin1String(path),
                                .headers = {{"authorization", "Bearer " + token}},
                                .body = body});
  };
  const auto log_in = [&post](const QByteArray& word) {
    return post("/api/login", R"({"user":"ad","word":")" + word + "\"}", {}).body;
  };
  const QByteArray rule = R"({"name":"Web","first":"80","protocol":"udp","address":"10.0.0.1"})";
  EXPECT_TRUE(log_in("other").contains("fault"));
  EXPECT_EQ(post("/api/changes", rule, {}).status, 401);
  const QByteArray token = log_in("pw").split('"').value(3);
  EXPECT_TRUE(post("/api/changes", R"({"name":"Web"})", token).body.contains("fault"));
  EXPECT_EQ(post("/api/changes", rule, token).status, 200);
  EXPECT_EQ(post("/api/commit", {}, token + "0").status, 401);
  EXPECT_EQ(model.table.Rules(), QList<Rule>());
  post("/api/commit", {}, token);
  post("/api/commit", {}, token);
  EXPECT_EQ(model.table.Rules().size(), 1);
}

TEST(ServerCertificate, FilesThatAreNoneAreNamed) {
  const QTemporaryDir folder;
  const QString text = folder.filePath(u"text.pem"_s);
  ASSERT_TRUE(quayline::testing::WriteBytes(text, "no certificate"));
  for (const QString& name : {text, folder.filePath(u"missing.pem"_s)}) {
    const auto made = ServerCertificate(name, text);
    ASSERT_FALSE(made.has_value());
    EXPECT_TRUE(made.error().contains(name)) << qPrintable(made.error());
  }
  const DemoOptions options{.https = true, .certificate_file = text, .key_file = text};
  EXPECT_FALSE(DemoRouter().Start(u"formback"_s, options).has_value());
}

}  // namespace
}  // namespace quayline::demo
