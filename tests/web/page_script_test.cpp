// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QJsonObject>

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;
using namespace std::chrono_literals;

class PageScriptTest : public WebTest {
 protected:
  // What the code fails with.
  QString Run(const char* code) {
    std::optional<QString> error;
    host->RunInPage({.code = QString::fromUtf8(code),
                     .entry = {{u"name"_s, u"O'Neil\u2028</script>\"%1"_s}, {u"ip"_s, u"1.2"_s}}},
                    [&error](const QString& text) { error = text; });
    return RunUntil([&] { return error.has_value(); }) ? *error : u"[no answer]"_s;
  }
};

TEST_F(PageScriptTest, FindsTheEntryThatNoOtherScriptSees) {
  Show("<script>var quayline = {name: 'spoofed'}; var seen = []</script>");
  const std::pair<const char*, const char*> cases[] = {
      {"seen.push(quayline.name)", "O'Neil\u2028</script>\"%1"},
      {"seen.push(Object.isFrozen(quayline))", "true"},
      {"quayline.name = 'x'; seen.push(quayline.ip) // a comment", "1.2"},
      {"seen.push(window.quayline.name)", "spoofed"},
      {"var kept = 5; function later() { return kept }", ""},
      {"seen.push(window.kept + later())", "10"},
      {"let once = 1; const twice = 2; seen.push(once)", "1"},
      {"let once = 3; seen.push(once)", "3"},
  };
  for (const auto& [code, seen] : cases) {
    EXPECT_EQ(Run(code), QString()) << code;
    EXPECT_EQ(Read("seen.splice(0)").toStdString(), seen) << code;
  }
}

TEST_F(PageScriptTest, SaysWhatItFailsWith) {
  Show("<script>function breaks() { throw new TypeError('no\\nway') }</script>");
  EXPECT_EQ(Run("missing()"), u"ReferenceError: missing is not defined"_s);
  EXPECT_EQ(Run("breaks()"), u"TypeError: no way"_s);
  EXPECT_EQ(Run("throw {toString() { throw 1 }}"), u"?"_s);
  EXPECT_TRUE(Run("f(").startsWith(u"SyntaxError: "_s));
  EXPECT_EQ(Run("1"), QString()) << "the error of another script";
  EXPECT_EQ(Run("document.title = 'x'; ({a: 1})"), QString());
  EXPECT_TRUE(script_errors.value(0).contains(u"missing"_s))
      << "hidden from the page's own handlers";
}

TEST_F(PageScriptTest, APageIsUnchangedUntilSomethingIsDoneToIt) {
  server.replies["/list"] = Html("<form method=post action=/save><input name=a></form>");
  server.replies["/save"] = Answer("303 See Other", "", "Location: /list\r\n");
  server.replies["/kept"] = Answer("307 Temporary Redirect", "", "Location: /list\r\n");
  const QString list = QString::fromUtf8(server.Address(u"/list"_s).toEncoded());
  const auto submit = [&](const char* code) {
    const quint64 before = host->Navigation().starts;
    RunInPage(code);
    ASSERT_TRUE(RunUntil([&] { return host->Navigation().starts != before; })) << code;
    Settle();
  };
  Open("/list");
  EXPECT_TRUE(host->ShowsUnchanged(list));
  EXPECT_FALSE(host->ShowsUnchanged(list + u"?a"_s));
  Ask(GetElementValue(u"a"_s));
  EXPECT_TRUE(host->ShowsUnchanged(list)) << "a question changes nothing";
  Ask(SetElementValue(u"a"_s, u"1"_s));
  EXPECT_FALSE(host->ShowsUnchanged(list)) << "the box may have saved by itself";
  submit("document.forms[0].submit()");
  EXPECT_TRUE(host->ShowsUnchanged(list)) << "the redirect after a save";
  submit("document.forms[0].action = '/kept'; document.forms[0].submit()");
  EXPECT_FALSE(host->ShowsUnchanged(list)) << "the answer to a POST";
  Open("/list");
  EXPECT_TRUE(host->ShowsUnchanged(list));
  RunInPage("history.pushState(null, '', '/other')");
  Open("/gone");
  EXPECT_FALSE(host->ShowsUnchanged(list));
}

}  // namespace
}  // namespace quayline::testing
