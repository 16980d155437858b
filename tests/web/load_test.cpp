// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QSslServer>
#include <QWebEnginePage>

#include <csignal>

#include "demo/certificate.h"
#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;
using namespace std::chrono_literals;
using Then = Reply::Then;

TEST_F(WebTest, EveryEndOfALoadIsToldOnce) {
  const QByteArray ok = "HTTP/1.1 200 OK\r\n";
  const struct {
    const char* fault;
    Reply reply;
    const char* status;  // nullptr: the page is complete, without an error
  } cases[] = {
      {"a page", Answer("200 OK", "page"), nullptr},
      {"an empty page", Answer("200 OK", ""), nullptr},
      {"no page at all", {"HTTP/1.1 204 No Content\r\n\r\n"}, nullptr},
      {"a file", Answer("200 OK", "x", "Content-Disposition: attachment\r\n"), nullptr},
      {"a login without a login", Answer("401 Unauthorized", "no"), "DENIED(401)"},
      {"forbidden", Answer("403 Forbidden", "no"), "FORBIDDEN(403)"},
      {"not found", Answer("404 Not Found", "no"), "NOT_FOUND(404)"},
      {"not found, without a word", Answer("404 Not Found", ""), "NOT_FOUND(404)"},
      {"a router's own failure", Answer("500 Oops", "no"), "SERVER_ERROR(500)"},
      {"a router's own failure, without a word", Answer("503 Oops", ""), "SERVICE_UNAVAIL(503)"},
      {"a reset", {"", Then::kReset}, "CANNOT_CONNECT(-2146697212)"},
      {"a closed door", {""}, "DATA_NOT_AVAILABLE(-2146697209)"},
      {"garbage", {"\x16\x03\x01 what is this\r\n\r\n"}, "DATA_NOT_AVAILABLE(-2146697209)"},
      {"half a page", {ok + "Content-Length: 99\r\n\r\nhalf"}, "DOWNLOAD_FAILURE(-2146697208)"},
      {"a circle", RedirectTo("/page"), "REDIRECTING(-2146697196)"},
  };
  for (const bool silent : {true, false}) {
    options.silent_mode = silent;
    for (const auto& row : cases) {
      SCOPED_TRACE(row.fault);
      server.replies["/page"] = row.reply;
      Open("/page");
      ASSERT_EQ(errors.size(), row.status == nullptr ? 0 : 1) << errors.join(u'\n').toStdString();
      EXPECT_EQ(completed, row.status == nullptr ? 1 : 0);
      if (row.status != nullptr) {
        EXPECT_EQ(FirstError(), QLatin1String(row.status));
        EXPECT_EQ(errors[0].section(u' ', 1), server.Address(u"/page"_s).toString());
      }
    }
  }
}

TEST_F(WebTest, AddressesThatLeadNowhereAreTold) {
  QTcpServer closed;
  ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
  const QString closed_door = u"http://127.0.0.1:%1/"_s.arg(closed.serverPort());
  closed.close();
  std::vector<std::pair<QString, const char*>> cases{
      {closed_door, "CANNOT_CONNECT(-2146697212)"},
      {u"http://router.invalid/"_s, "RESOURCE_NOT_FOUND(-2146697211)"},
      {u"http://127.0.0.1:1/"_s, "SECURITY_PROBLEM(-2146697202)"},
  };
  for (const char* invalid :
       {"http://", "http://1.2.3.999/", "", "no address", "http://a b/", "http://a%2fb/",
        "http://[::1/", "http://127.0.0.1:99999/", "http://0x1ffffffff/", "http://1.2.3.4.5/",
        "http://admin:p/w@127.0.0.1/"}) {
    cases.emplace_back(QLatin1String(invalid), "INVALID_URL(-2146697214)");
  }
  for (const auto& [address, error] : cases) {
    SCOPED_TRACE(address.toStdString());
    errors.clear();
    host->Navigate2(address, {});
    EXPECT_TRUE(RunUntil([&] { return !errors.isEmpty(); }));
    Settle();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(FirstError(), QLatin1String(error));
    EXPECT_FALSE(errors[0].contains(u"admin"_s)) << "a login is shown: " << errors[0].toStdString();
  }
}

TEST_F(WebTest, AFailedLoadLeavesThePageInSilentMode) {
  for (const bool silent : {true, false}) {
    options.silent_mode = silent;
    Show("<input name=a value=1>");
    server.replies["/gone"] = {"", Then::kReset};
    Open("/gone");
    EXPECT_EQ(Ask(GetElementValue(u"a"_s)), silent ? u"1"_s : u""_s);
  }
}

TEST_F(WebTest, ALoadIsStopped) {
  server.replies["/slow"] = {"", Then::kSilence};
  host->Navigate2(server.Address(u"/slow"_s).toString(), {});
  ASSERT_TRUE(RunUntil([&] { return server.requests.size() == 1; }, 5s));
  EXPECT_TRUE(host->Navigation().busy);
  host->StopNavigation();
  Settle();
  EXPECT_EQ(errors, QStringList());
  Show("<input name=a value=1>");
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"1"_s);
}

TEST_F(WebTest, ACertificateThatNobodyVouchesForIsRefused) {
  const auto tls = demo::ServerCertificate({}, {});
  if (!tls) {
    GTEST_SKIP() << tls.error().toStdString();
  }
  auto listener = std::make_unique<QSslServer>();
  listener->setSslConfiguration(*tls);
  ScriptedServer secure(std::move(listener));
  secure.replies["/"] = Answer("200 OK", "trust me");
  Open(secure.Address(u"/"_s, u"https"_s));
  ASSERT_EQ(errors.size(), 1);
  EXPECT_EQ(FirstError(), u"INVALID_CERTIFICATE(-2146697191)"_s);
  EXPECT_TRUE(secure.requests.isEmpty());
  EXPECT_TRUE(IsTold("certificate"));
}

TEST_F(WebTest, ADeadPageAnswersItsQuestionsAndTheNextLoadWorks) {
  Show("<input name=a value=1>");
  QStringList order;
  const auto Note = [&order](const char* what) {
    return [&order, what](const PageAnswer& answer) {
      order.append(QString::fromLatin1(what) + (answer.answered ? u" answered"_s : u""_s));
    };
  };
  host->RunInPage(u"for (;;) {}"_s, [&order] { order.append(u"endless"_s); });
  host->Call(GetElementValue(u"a"_s), Note("first"));
  host->Call(GetElementValue(u"a"_s), Note("second"));
  Pause();
  EXPECT_EQ(order, QStringList());
  kill(static_cast<pid_t>(EnginePage()->renderProcessPid()), SIGKILL);
  EXPECT_TRUE(RunUntil([&] { return errors.size() == 1; }, 5s));
  host->Call(GetElementValue(u"a"_s), Note("late"));
  EXPECT_TRUE(RunUntil([&] { return order.size() == 4; }, 5s));
  EXPECT_EQ(order, (QStringList{u"endless"_s, u"first"_s, u"second"_s, u"late"_s}));
  EXPECT_EQ(FirstError(), u"CANNOT_LOAD_DATA(-2146697201)"_s);
  Show("<input name=a value=2>");
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"2"_s);
  kill(static_cast<pid_t>(EnginePage()->renderProcessPid()), SIGKILL);
  EXPECT_TRUE(RunUntil([&] { return errors.size() == 1; }, 5s));
  host->Refresh2();
  Settle();
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"2"_s) << "the page is not fetched again";
}

TEST_F(WebTest, AQuestionIsAnsweredThoughThePageMovesToAnotherHost) {
  QUrl other = server.Address(u"/page"_s);
  other.setHost(u"localhost"_s);
  Show("<a href='" + other.toEncoded() + "'>go</a><input name=a value=1>");
  int answers = 0;
  const auto Count = [&answers](const PageAnswer&) { ++answers; };
  host->Call(ClickLinkByHref(u"localhost"_s), Count);
  constexpr int kMore = 200;
  for (int i = 0; i < kMore; ++i) {
    RunUntil([] { return false; }, 1ms);
    host->Call(GetElementValue(u"a"_s), Count);
  }
  EXPECT_TRUE(RunUntil([&] { return answers == kMore + 1; }, 5s)) << answers;
  EXPECT_EQ(Read("location.hostname"), u"localhost"_s);
}

TEST_F(WebTest, NoAnswerComesBehindTheEndOfTheHost) {
  Show("<input name=a value=1>");
  bool answered = false;
  host->Call(GetElementValue(u"a"_s), [&answered](const PageAnswer&) { answered = true; });
  host.reset();
  Pause();
  EXPECT_FALSE(answered);
}

}  // namespace
}  // namespace quayline::testing
