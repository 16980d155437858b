// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/page_folder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "core/files.h"
#include "stub/page_template.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

TEST(PageFolder, ServesItsOwnFilesAndNoOther) {
  QTemporaryDir outside;
  const QString root = outside.filePath(u"pages"_s);
  ASSERT_TRUE(QDir().mkpath(root + u"/sub"_s));
  for (const char* name :
       {"pages/index.html", "pages/sub/a b.asp", "pages/sub/x.js", "secret.txt",
        "pages/sub/y.js.txt", "pages/.hidden", "pages/answers.json", "pages/deep.html"}) {
    ASSERT_TRUE(testing::WriteBytes(outside.filePath(QLatin1String(name)), "text"));
  }
  ASSERT_TRUE(QFile::link(outside.filePath(u"secret.txt"_s), root + u"/link.txt"_s));
  ASSERT_TRUE(QFile::link(outside.path(), root + u"/up"_s));
  const auto folder = PageFolder::Open(root);
  ASSERT_TRUE(folder.has_value());
  const std::pair<const char*, const char*> cases[] = {
      {"/", "text/html; charset=utf-8"},
      {"/deep", "text/html; charset=utf-8"},
      {"/sub/a b.asp", "text/html; charset=utf-8"},
      {"/sub/x.js", "text/javascript; charset=utf-8"},
      {"/sub/y.js", "text/javascript; charset=utf-8"},
      {"/link", nullptr},
      {"/sub", nullptr},
      {"/sub/", nullptr},
      {"", nullptr},
      {"index.html", nullptr},
      {"/../secret.txt", nullptr},
      {"/sub/../../secret.txt", nullptr},
      {"/sub\\..\\..\\secret.txt", nullptr},
      {"//index.html", nullptr},
      {"/link.txt", nullptr},
      {"/up/secret.txt", nullptr},
      {"/.hidden", nullptr},
      {"/answers.json", nullptr},
  };
  for (const auto& [path, type] : cases) {
    const auto file = folder->Find(QLatin1String(path));
    ASSERT_EQ(file.has_value(), type != nullptr) << path;
    EXPECT_TRUE(!file || file->type == type) << path << ' ' << file->type.constData();
  }
  ASSERT_TRUE(QDir().mkpath(outside.filePath(u"like"_s)));
  auto like = PageFolder::Open(outside.filePath(u"like"_s));
  for (const auto& name : {u"gone"_s, u".."_s, u"pages/sub"_s, u"secret.txt"_s}) {
    EXPECT_FALSE(like->TakeTheRestFrom(name)) << name.toStdString();
  }
  ASSERT_TRUE(like->TakeTheRestFrom(u"pages"_s));
  EXPECT_TRUE(like->Find(u"/deep"_s));
  EXPECT_FALSE(like->Find(u"/link.txt"_s));
  EXPECT_FALSE(PageFolder::Open(outside.filePath(u"secret.txt"_s)).has_value());
  EXPECT_FALSE(PageFolder::Open(outside.filePath(u"gone"_s)).has_value());
}

TEST(PageTemplate, MarksAreFilledAsTheirPlaceNeeds) {
  const StubRule web{{u"name"_s, u"A&\"<b>'\\"_s},
                     {u"start"_s, u"80"_s},
                     {u"end"_s, u"90"_s},
                     {u"protocol"_s, u"UDP"_s}};
  const StubRule mail{{u"name"_s, u"Mail"_s}, {u"start"_s, u"25"_s}};
  HttpRequest request;
  request.query = "page=%3Cx%3E";
  const PageValues values{.rules = {web, mail},
                          .kept = {mail},
                          .token = u"t1"_s,
                          .session = u"s1"_s,
                          .request = RequestValues(request)};
  const struct {
    Escape escape;
    const char* text;
    const char* filled;  // nullptr: an error
  } cases[] = {
      {Escape::kHtml, "{{token}} {{session}} {{count}} {{request.page}} {{request.gone}}",
       "t1 s1 2 &lt;x&gt; "},
      {Escape::kHtml, "{{each rules}}{{number}}{{rule.ports}}{{between}},{{end}}.", "180-90,225."},
      {Escape::kHtml, "{{each kept}}{{index}}{{rule.name}}{{end}}", "0Mail"},
      {Escape::kHtml, "{{each rules to 3}}[{{rule.start}}]{{end}}", "[80][25][]"},
      {Escape::kHtml, "{{each rules}}{{rule.name}};{{end}}", "A&amp;&quot;&lt;b&gt;&#39;\\;Mail;"},
      {Escape::kHtml, "<script>'{{each rules}}{{rule.name}}{{between}}{{end}}'</script>",
       "<script>'A\\u0026\\u0022\\u003cb\\u003e\\u0027\\u005cMail'</script>"},
      {Escape::kHtml, "<script></script>{{each rules}}{{rule.name}}{{between}}{{end}}",
       "<script></script>A&amp;&quot;&lt;b&gt;&#39;\\Mail"},
      {Escape::kJson, "\"{{each rules}}{{rule.name}}{{end}}\"", "\"A&\\\"<b>'\\\\Mail\""},
      {Escape::kHtml, "{{each rules}}{{rule.protocol|TCP=1|UDP=2|=0}}{{end}}", "20"},
      {Escape::kHtml, "{{each rules}}{{rule.name:url}} {{end}}", "A%26%22%3Cb%3E%27%5C Mail "},
      {Escape::kHtml, "{{user.name}} {{ x }} {{}}", "{{user.name}} {{ x }} {{}}"},
      {Escape::kHtml, "{{rule.name}}", nullptr},
      {Escape::kHtml, "{{each rules}}", nullptr},
      {Escape::kHtml, "{{each roles}}{{end}}", nullptr},
      {Escape::kHtml, "{{token:upper}}", nullptr},
  };
  for (const auto& c : cases) {
    const auto filled = FillPage(QString::fromUtf8(c.text), c.escape, values);
    ASSERT_EQ(filled.has_value(), c.filled != nullptr) << c.text;
    EXPECT_EQ(filled.value_or(QString()), QLatin1String(c.filled)) << c.text;
  }
  PageValues none = values;
  none.rules.clear();
  EXPECT_EQ(FillPage(u"{{each rules}}x{{none}}no{{end}}"_s, Escape::kHtml, none), u"no"_s);
}

}  // namespace
}  // namespace quayline
