// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QWebEnginePage>

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr char kAsked[] = "WWW-Authenticate: Basic realm=\"router\"\r\n";

// The router asks for admin and "s:cr@t/#?", and counts the tries.
class LoginTest : public WebTest {
 protected:
  LoginTest() {
    server.special = [this](const QByteArray& request) { return AskForLogin(request); };
    elsewhere.special = server.special;
  }

  std::optional<Reply> AskForLogin(const QByteArray& request) {
    for (const QByteArray& line : request.split('\n')) {
      if (line.toLower().startsWith("authorization:")) {
        tries.append(QByteArray::fromBase64(line.trimmed().split(' ').last()));
      }
    }
    const bool is_right = request.contains(QByteArray("admin:s:cr@t/#?").toBase64());
    const bool is_free = request.startsWith("GET /free");
    return is_right || is_free ? std::nullopt
                               : std::optional(Answer("401 Unauthorized", "who are you?", kAsked));
  }

  void GiveLogin(const QString& username, const QString& password) {
    const QUrl address = server.Address({});
    host->SetLogin({.scheme = address.scheme(),
                    .host = address.host(),
                    .port = address.port(),
                    .username = username,
                    .password = password});
  }

  ScriptedServer elsewhere;
  QList<QByteArray> tries;  // the logins sent, to whichever server
};

TEST_F(LoginTest, TheRightLoginIsSentOnceAndShownNowhere) {
  server.replies["/"] = Html("<title>rules</title>welcome");
  server.replies["/more"] = Html("more");
  GiveLogin(u"admin"_s, u"s:cr@t/#?"_s);
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

TEST_F(LoginTest, AWrongLoginIsTriedTwiceInAWholeJob) {
  GiveLogin(u"admin"_s, u"wrong"_s);
  for (int page = 0; page < 4; ++page) {
    Open("/");
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].startsWith(u"401 "_s)) << errors[0].toStdString();
    EXPECT_EQ(Read("document.body.innerText"), u"who are you?"_s);
  }
  EXPECT_EQ(tries.size(), 2);
  EXPECT_EQ(completed, 0);
}

TEST_F(LoginTest, ASecondTryMendsBlanksThatAreMeant) {
  server.special = [this](const QByteArray& request) {
    AskForLogin(request);
    return request.contains(QByteArray(" admin:pass ").toBase64())
               ? std::nullopt
               : std::optional(Answer("401 Unauthorized", "no", kAsked));
  };
  server.replies["/"] = Html("welcome");
  GiveLogin(u" admin"_s, u"pass "_s);
  Open("/");
  EXPECT_EQ(tries, (QList<QByteArray>{"admin:pass", " admin:pass "}));
  EXPECT_EQ(errors, QStringList());
}

TEST_F(LoginTest, WithoutALoginNoneIsSent) {
  GiveLogin({}, {});
  Open("/");
  EXPECT_EQ(tries.size(), 0);
  ASSERT_EQ(errors.size(), 1);
  EXPECT_TRUE(errors[0].startsWith(u"401 "_s));
}

TEST_F(LoginTest, NoOtherServerGetsTheLogin) {
  const QByteArray other = elsewhere.Address(u"/secret"_s).toEncoded();
  QByteArray other_name = server.Address(u"/secret"_s).toEncoded();
  other_name.replace("127.0.0.1", "localhost");
  GiveLogin(u"admin"_s, u"s:cr@t/#?"_s);
  server.replies["/free/frame"] = Html("<iframe src='" + other + "'></iframe>");
  server.replies["/free/picture"] = Html("<img src='" + other + "'>");
  server.replies["/free/name"] = Html("<iframe src='" + other_name + "'></iframe>");
  server.replies["/free/redirect"] = RedirectTo(other);
  for (const char* path : {"/free/frame", "/free/picture", "/free/name", "/free/redirect"}) {
    SCOPED_TRACE(path);
    Open(path);
    RunUntil([] { return false; }, 50ms);
    EXPECT_EQ(tries.size(), 0);
  }
  EXPECT_GE(elsewhere.requests.size(), 3);
  EXPECT_TRUE(errors.first().startsWith(u"401 "_s)) << "of the redirect's target";
}

TEST_F(LoginTest, APictureOfTheRouterGetsTheLoginOfItsPage) {
  server.replies["/free/page"] = Html("<img src=/picture>");
  server.replies["/picture"] = Answer("200 OK", "GIF89a", "Content-Type: image/gif\r\n");
  GiveLogin(u"admin"_s, u"s:cr@t/#?"_s);
  Open("/free/page");
  EXPECT_EQ(tries.size(), 1);
}

TEST_F(LoginTest, AnotherLoginHasTriesOfItsOwn) {
  server.replies["/"] = Html("welcome");
  GiveLogin(u"admin"_s, u"wrong"_s);
  Open("/");
  GiveLogin(u"admin"_s, u"wrong"_s);
  Open("/");
  EXPECT_EQ(tries.size(), 2) << "the same login was counted anew";
  GiveLogin(u"admin"_s, u"s:cr@t/#?"_s);
  Open("/");
  EXPECT_EQ(tries.size(), 3);
  EXPECT_EQ(errors, QStringList());
}

}  // namespace
}  // namespace quayline::testing
