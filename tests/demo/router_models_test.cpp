// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "demo/certificate.h"
#include "demo/demo_router.h"
#include "demo/router_model.h"
#include "test_main.h"

namespace quayline::demo {
namespace {

// One model without a server in front of it.
struct Model {
  explicit Model(const char* name, int rows = 4)
      : table(rows),
        pages(FindModel(QLatin1String(name))
                  ->make(table, {.user = QStringLiteral("ad"), .password = QStringLiteral("pw")})) {
  }

  HttpResponse Get(const char* path, const QByteArray& cookie = {}) {
    return pages->Answer(
        {.method = "GET", .path = QLatin1String(path), .headers = {{"cookie", cookie}}});
  }
  HttpResponse Post(const char* path, const QByteArray& body, const QByteArray& referer = {}) {
    return pages->Answer({.method = "POST",
                          .path = QLatin1String(path),
                          .headers = {{"host", "router:81"}, {"referer", referer}},
                          .body = body});
  }

  RuleTable table;
  std::unique_ptr<RouterModel> pages;
};

QByteArray Cookie(const HttpResponse& response) {
  for (const auto& [name, value] : response.headers) {
    if (name == "Set-Cookie") {
      return value.split(';').first();
    }
  }
  return {};
}

TEST(RouterModels, EveryPageOfEveryModelIsThere) {
  for (const ModelInfo& info : RouterModels()) {
    Model model(info.name);
    EXPECT_EQ(model.Get("/no such page").status, info.realm ? 404 : 302) << info.name;
    EXPECT_NE(model.Get("/").status, 404) << info.name;
    const QByteArray home = model.Get("/").body;
    for (qsizetype at = home.indexOf("src=\"/"); at >= 0; at = home.indexOf("src=\"/", at + 1)) {
      const QByteArray path = home.mid(at + 5).split('"').first();
      EXPECT_EQ(model.Get(path.constData()).status, 200) << info.name << path.constData();
    }
  }
}

TEST(RouterModels, SelectlistAddsNoRuleTwiceAndChangesNoneThatIsNotThere) {
  Model model("selectlist");
  const QByteArray web =
      "vs_name=%3C/script%3E&vs_from=80&vs_to=&vs_proto=tcp&vs_ip=10.0.0.1&vs_list=";
  const struct {
    const char* fault;
    QByteArray form;
    const char* shown;
    int last_port;  // of the first rule; 0: there is none
  } rows[] = {
      {"change of nothing", web + "&btn_change=Change", "no rule of this name", 0},
      {"new", web + "&btn_add=Add", nullptr, 80},
      {"new again", web + "&btn_add=Add", "this name already", 80},
      {"change", QByteArray(web).replace("vs_to=", "vs_to=90") + "&btn_change=Change", nullptr, 90},
      {"change into a fault", QByteArray(web).replace("vs_to=", "vs_to=9") + "&btn_change=Change",
       "below the start port", 90},
      {"delete", web + "&btn_delete=Delete", nullptr, 0},
  };
  for (const auto& row : rows) {
    const HttpResponse answer = model.Post("/virtual_servers.asp", row.form);
    EXPECT_EQ(answer.status, row.shown ? 200 : 302) << row.fault;
    EXPECT_TRUE(!row.shown || answer.body.contains(row.shown)) << row.fault;
    const QList<Rule> rules = model.table.Rules();
    EXPECT_EQ(rules.isEmpty() ? 0 : rules.first().last, row.last_port) << row.fault;
    // The rule's name stands in the page's script as well.
    const QByteArray page = model.Get("/virtual_servers.asp").body;
    EXPECT_EQ(page.count("<script>"), page.count("</script>")) << row.fault;
  }
}

TEST(RouterModels, HiddenframeTakesRulesFromItsOwnPagesOnly) {
  Model model("hiddenframe");
  const QByteArray form =
      "rule[name]=a&rule[from]=1&rule[to]=1&rule[proto]=udp&rule[dest]=10.0.0.1";
  for (const char* referer : {"", "http://other/nat_rules.php", "http://other/?http://router:8"}) {
    EXPECT_EQ(model.Post("/nat_rules.php", form, referer).status, 403) << referer;
  }
  EXPECT_TRUE(model.table.Rules().isEmpty());
  EXPECT_EQ(model.Post("/nat_rules.php", form, "http://router:81/nat_rules.php").status, 200);
  EXPECT_EQ(model.table.Rules().size(), 1);
}

TEST(RouterModels, WebloginKnowsItsUserByTheLatestCookieAlone) {
  Model model("weblogin");
  EXPECT_EQ(model.Get("/pf_list.cgi").status, 302);
  EXPECT_EQ(model.Get("/pf_list.cgi", "session=").status, 302) << "nobody has logged in";
  EXPECT_TRUE(Cookie(model.Post("/login.html", "login_user=ad&login_word=p")).isEmpty());
  const QByteArray first = Cookie(model.Post("/login.html", "login_user=ad&login_word=pw"));
  EXPECT_EQ(model.Get("/pf_list.cgi", "a=b; " + first).status, 200);
  EXPECT_EQ(model.Get("/pf_list.cgi", first + "0").status, 302);
  const QByteArray second = Cookie(model.Post("/login.html", "login_user=ad&login_word=pw"));
  EXPECT_EQ(model.Get("/pf_list.cgi", first).status, 302);
  EXPECT_EQ(model.Get("/pf_list.cgi", second).status, 200);
}

TEST(ServerCertificate, FilesThatAreNoneAreNamed) {
  const QTemporaryDir folder;
  const QString text = folder.filePath(QStringLiteral("text.pem"));
  QFile file(text);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no certificate");
  file.close();
  for (const QString& name : {text, folder.filePath(QStringLiteral("missing.pem"))}) {
    const auto made = ServerCertificate(name, text);
    ASSERT_FALSE(made.has_value());
    EXPECT_TRUE(made.error().contains(name)) << made.error().toStdString();
  }
  DemoRouter router;
  EXPECT_FALSE(router
                   .Start(QStringLiteral("formback"),
                          {.https = true, .certificate_file = text, .key_file = text})
                   .has_value());
}

}  // namespace
}  // namespace quayline::demo
