// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QTimer>
#include <QWebEnginePage>

#include "script/web/web_page_host.h"
#include "script/web/web_profile.h"
#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// The router asks for admin and "s:cr@t/#?", and counts the tries.
class LoginTest : public WebTest {
 protected:
  LoginTest() {
    server.special = [this](const QByteArray& request) { return AskForLogin(request); };
    elsewhere.special = server.special;
    server.replies["/"] = Html("<title>rules</title>welcome");
  }

  std::optional<Reply> AskForLogin(const QByteArray& request) {
    for (const QByteArray& line : request.split('\n')) {
      if (line.toLower().startsWith("authorization:")) {
        tries.append(QByteArray::fromBase64(line.trimmed().split(' ').last()));
      }
    }
    const bool is_right = request.contains(QByteArray("admin:s:cr@t/#?").toBase64());
    const bool is_free = request.startsWith("GET /free");
    return is_right || is_free ? std::nullopt : std::optional(LoginNeeded());
  }

  // The same server under another name is another host to the browser.
  QByteArray UnderAnotherName(const char* path) {
    QUrl address = server.Address(QLatin1String(path));
    address.setHost(u"localhost"_s);
    return address.toEncoded();
  }

  const QString right = u"s:cr@t/#?"_s;
  ScriptedServer elsewhere;
  QList<QByteArray> tries;  // the logins sent, to whichever server
};

TEST_F(LoginTest, TheRightLoginIsSentOnceAndShownNowhere) {
  server.replies["/more"] = Html("more");
  GiveLogin(u"admin"_s, right);
  Open("/");
  EXPECT_EQ(tries, QList<QByteArray>{"admin:s:cr@t/#?"});
  EXPECT_EQ(errors, QStringList());
  EXPECT_EQ(completed, 1);
  const QString shown = told.join(u'\n') + Read("location.href + document.title + document.URL") +
                        EnginePage()->url().toString() + EnginePage()->title();
  EXPECT_FALSE(shown.contains(u"s:cr"_s) || shown.contains(u"admin"_s)) << shown.toStdString();
  Open("/more");
  EXPECT_EQ(Read("document.body.innerText"), u"more"_s);
  EXPECT_EQ(server.requests.size(), 3) << "the login is asked for again at every page";
}

TEST_F(LoginTest, AWrongLoginIsTriedTwiceInAWholeJobAndANewOneHasTriesOfItsOwn) {
  for (int page = 0; page < 4; ++page) {
    GiveLogin(u"admin"_s, u"wrong"_s);
    Open("/");
    EXPECT_EQ(FirstError(), u"DENIED(401)"_s);
    EXPECT_EQ(errors.size(), 1);
    EXPECT_EQ(Read("document.body.innerText"), u"who are you?"_s);
    EXPECT_EQ(completed, 0);
  }
  EXPECT_EQ(tries.size(), 2);
  GiveLogin(u"admin"_s, right);
  Open("/");
  EXPECT_EQ(tries.size(), 3);
  EXPECT_EQ(errors, QStringList());
}

TEST_F(LoginTest, AnAcceptedLoginIsGivenAsOftenAsTheRouterAsks) {
  GiveLogin(u"admin"_s, right);
  for (int page = 0; page < 7; ++page) {
    SCOPED_TRACE(page);
    int refusals = 1;  // the session ends with each page, and each realm is another one
    server.special = [&](const QByteArray& request) -> std::optional<Reply> {
      AskForLogin(request);
      const QByteArray realm =
          "WWW-Authenticate: Basic realm=\"" + QByteArray::number(page % 3) + "\"\r\n";
      return !request.contains("uthorization") || refusals-- > 0
                 ? std::optional(Answer("401 Unauthorized", "no", realm))
                 : std::nullopt;
    };
    Open("/");
    EXPECT_EQ(errors, QStringList());
    EXPECT_EQ(Read("document.body.innerText"), u"welcome"_s);
  }
}

TEST_F(LoginTest, AnUntriedLoginGoesOutWithOneRequestAtATime) {
  QByteArray images;
  QByteArray frames;
  const QByteArray begin = "<script>let missing = 20; const ask = (i) => fetch('/image' + i + ";
  const QByteArray scripts =
      begin +
      "'').then((answer) => { missing -= answer.ok; }); for (let i = 0; i < 20; ++i) ask(i)";
  const QByteArray poll =
      begin +
      "'?' + Math.random()).then((answer) => { missing = answer.status == 401 ? 1 : 0; });"
      "setInterval(() => { ask(1); ask(2); }, 20)";
  for (int i = 0; i < 20; ++i) {
    images += "<img src=/image" + QByteArray::number(i) + ">";
    frames += i < 4 ? "<iframe src=/frame" + QByteArray::number(i) + "></iframe>" : QByteArray();
    server.replies["/image" + QByteArray::number(i)] =
        Answer("200 OK", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>",
               "Content-Type: image/svg+xml\r\n");
    server.replies["/frame" + QByteArray::number(i)] = Html("<p>frame");
  }
  server.replies["/free"] = Html("free");
  server.replies["/free/images"] = Html(images);
  server.replies["/free/frames"] = Html(frames);
  server.replies["/free/scripts"] = Html(scripts + "</script>");
  server.replies["/free/poll"] = Html(poll + "</script>");
  for (const char* path : {"/free/images", "/free/frames", "/free/scripts", "/free/poll"}) {
    SCOPED_TRACE(path);
    NextBrowser();
    GiveLogin(u"admin"_s, u"wrong"_s);
    tries.clear();
    Open(path);
    Open(path);
    RunUntil([this] { return tries.size() > 2; }, 500ms);
    EXPECT_LE(tries.size(), 2) << "a router locks its login";
    Open("/free");
    GiveLogin(u"admin"_s, right);
    Open(path);
    EXPECT_EQ(Read("[...document.images].filter(i => !i.naturalWidth).length + '/' + "
                   "[...document.querySelectorAll('iframe')]"
                   ".filter(f => !f.contentDocument.querySelector('p')).length"),
              u"0/0"_s);
    EXPECT_TRUE(RunUntil(
        [this] { return Read("typeof missing == 'undefined' || missing <= 0") == u"true"_s; }));
  }
}

TEST_F(LoginTest, AnotherBrowserWithTheRightLoginGivesNoTries) {
  QByteArray images;
  for (int i = 0; i < 20; ++i) {
    images += "fetch('/image" + QByteArray::number(i) + "');";
  }
  server.replies["/free"] = Html("<script>" + images + "</script>");
  GiveLogin(u"admin"_s, right);
  Open("/");
  Open("/free");
  const std::unique_ptr<PageHost> former = std::move(host);
  NextBrowser();
  GiveLogin(u"admin"_s, u"wrong"_s);
  tries.clear();
  Open("/free");
  RunUntil([this] { return tries.count("admin:wrong") > 2; }, 1s);
  EXPECT_LE(tries.count("admin:wrong"), 2);
}

TEST_F(LoginTest, ASecondTryMendsBlanksThatAreMeant) {
  server.special = [this](const QByteArray& request) {
    AskForLogin(request);
    return request.contains(QByteArray(" admin:pass ").toBase64()) ? std::nullopt
                                                                   : std::optional(LoginNeeded());
  };
  GiveLogin(u" admin"_s, u"pass "_s);
  Open("/");
  EXPECT_EQ(tries, (QList<QByteArray>{"admin:pass", " admin:pass "}));
  EXPECT_EQ(errors, QStringList());
}

TEST_F(LoginTest, AServerThatTheUserAllowedIsAskedWithoutTheLogin) {
  const auto profile = std::make_shared<WebProfile>(options, translator, nullptr);
  host = std::make_unique<WebPageHost>(profile, questions, nullptr);
  GiveLogin(u"admin"_s, right);
  const QByteArray port = elsewhere.Address(u"/secret"_s).toEncoded();
  const QByteArray name = UnderAnotherName("/secret");
  profile->Allow(QUrl::fromEncoded(port));
  profile->Allow(QUrl::fromEncoded(name));
  server.replies["/free/frame"] = Html("<iframe src='" + port + "'></iframe>");
  server.replies["/free/picture"] = Html("<img src='" + port + "'>");
  server.replies["/free/name"] = Html("<iframe src='" + name + "'></iframe>");
  server.replies["/free/redirect"] = RedirectTo(port);
  for (const char* path : {"/free/frame", "/free/picture", "/free/name", "/free/redirect"}) {
    SCOPED_TRACE(path);
    server.requests.clear();
    elsewhere.requests.clear();
    Open(path);
    EXPECT_TRUE(RunUntil([&] { return server.requests.size() + elsewhere.requests.size() > 1; }));
    Pause();
    EXPECT_EQ(tries.size(), 0);
  }
  server.replies["/free/own"] = Html("<img src=/picture>");
  server.replies["/picture"] = Answer("200 OK", "GIF89a", "Content-Type: image/gif\r\n");
  Open("/free/own");
  EXPECT_EQ(Read("document.images[0].complete"), u"true"_s);
  EXPECT_GE(tries.size(), 1) << "a picture of the router gets the login of its page";
  EXPECT_TRUE(elsewhere.requests.join().indexOf("uthorization") < 0);
}

TEST_F(LoginTest, NothingIsAskedOfAnotherHost) {
  GiveLogin(u"admin"_s, right);
  server.replies["/seen"] = Html("seen");
  const QByteArray seen = UnderAnotherName("/seen");
  const QByteArray markups[] = {
      "<img src='" + seen + "'>",
      "<iframe src='" + seen + "'></iframe>",
      "<script src='" + seen + "'></script>",
      "<script>var r=new XMLHttpRequest;r.open('GET','" + seen + "');r.send()</script>",
      "<script>location='" + seen + "'</script>",
      "<form method=post action='" + seen + "'></form><script>document.forms[0].submit()</script>",
      "<meta http-equiv=refresh content='0;url=" + seen + "'>",
  };
  QStringList all_told;
  for (const QByteArray& markup : markups) {
    SCOPED_TRACE(markup.toStdString());
    server.requests.clear();
    server.replies["/free/page"] = Html(markup);
    Open("/free/page");
    Settle();
    EXPECT_FALSE(server.requests.isEmpty());
    EXPECT_FALSE(server.requests.join().contains("/seen"));
    all_told += told;
  }
  EXPECT_EQ(all_told.filter(u"localhost"_s).filter(u"Blocked"_s).size(), 1)
      << "each host is told once";
}

TEST_F(LoginTest, WithoutALoginTheUserIsAskedWhereSilentModeIsOff) {
  const TypedLogin typed{u"admin"_s, right};
  const TypedLogin mistyped{u"admin"_s, u"s:cr@t"_s};
  const struct {
    bool silent;
    QList<std::optional<TypedLogin>> typed;
    int questions;
    int tries;
    const char* page;
  } cases[] = {
      {true, {typed}, 0, 0, "who are you?"},
      {false, {std::nullopt}, 1, 0, "who are you?"},
      {false, {mistyped, std::nullopt}, 2, 2, "who are you?"},
      {false, {mistyped, typed}, 2, 3, "welcome"},
  };
  for (const auto& row : cases) {
    NextBrowser();
    tries.clear();
    errors.clear();
    GiveLogin({}, {});
    questions.asked.clear();
    questions.logins = row.typed;
    QList<bool> busy;
    QObject::connect(host.get(), &PageHost::navigationChanged, host.get(),
                     [&] { busy.append(host->Navigation().busy); });
    options.silent_mode = row.silent;
    host->Navigate2(server.Address(u"/"_s).toString(), {});
    Settle();
    EXPECT_EQ(busy.count(false), 1) << "who waits for the page would go on without it";
    EXPECT_EQ(questions.asked.size(), row.questions);
    EXPECT_EQ(tries.size(), row.tries);
    EXPECT_EQ(errors.size(), QLatin1String(row.page) == u"welcome"_s ? 0 : 1);
    EXPECT_EQ(Read("document.body.innerText"), QLatin1String(row.page));
  }
}

}  // namespace
}  // namespace quayline::testing
