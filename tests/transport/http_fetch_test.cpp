// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/http_fetch.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <ctime>
#include <gtest/gtest.h>

#include "test_main.h"
#include "transport/scripted_server.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using testing::Answer;
using testing::RedirectTo;
using testing::Reply;
using testing::ScriptedServer;
using Then = Reply::Then;

// What a fetch came to: the body, or the error's name in brackets.
QByteArray Text(const std::expected<QByteArray, FetchError>& outcome) {
  if (outcome) {
    return *outcome;
  }
  switch (outcome.error()) {
    case FetchError::kBadAddress:
      return "[bad address]";
    case FetchError::kNoConnection:
      return "[no connection]";
    case FetchError::kTimeout:
      return "[timeout]";
    case FetchError::kHttpStatus:
      return "[status]";
    case FetchError::kTooLarge:
      return "[too large]";
  }
  return "[unknown]";
}

Task<> Write(Task<std::expected<QByteArray, FetchError>> fetch, QByteArray* out) {
  const auto outcome = co_await fetch;
  *out = Text(outcome);
}

QByteArray Fetched(HttpFetch* http, const QUrl& address, FetchLimits limits = {}) {
  QByteArray text = "[never ended]";
  testing::RunTask(Write(http->Get(address, limits), &text), 10s);
  return text;
}

TEST(HttpFetch, TellsEachKindOfAnswerApart) {
  const QByteArray ok = "HTTP/1.1 200 OK\r\n";
  const QByteArray large(3000, 'x');
  const struct {
    const char* fault;
    Reply reply;
    QByteArray expected;
  } cases[] = {
      {"a body is lost", Answer("200 OK", "hello"), "hello"},
      {"zero bytes end the body", Answer("200 OK", QByteArray("a\0b", 3)), QByteArray("a\0b", 3)},
      {"an empty body is a failure", Answer("200 OK", ""), ""},
      {"chunks are not put together",
       {ok + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"},
       "abcde"},
      {"a body without length is refused", {ok + "\r\nuntil the end"}, "until the end"},
      {"the text of an error page is taken for the answer", Answer("404 Not Found", "sorry"),
       "[status]"},
      {"an error page is judged by its size", Answer("500 Oops", large), "[status]"},
      {"a partial answer is judged by its size", Answer("206 Partial Content", large), "[status]"},
      {"half a success counts", Answer("206 Partial Content", "par"), "[status]"},
      {"an empty success counts", {"HTTP/1.1 204 No Content\r\n\r\n"}, "[status]"},
      {"a redirect to nowhere counts", Answer("302 Found", "x"), "[status]"},
      {"local files can be fetched", RedirectTo("file:///etc/hostname"), "[bad address]"},
      {"other protocols can be fetched", RedirectTo("ftp://127.0.0.1/"), "[bad address]"},
      {"a body of the largest size is refused", Answer("200 OK", large.left(2000)),
       large.left(2000)},
      {"a body that says it is too large is fetched", Answer("200 OK", large), "[too large]"},
      {"a body that does not say it is too large is fetched", {ok + "\r\n" + large}, "[too large]"},
      {"chunks are not counted",
       {ok + "Transfer-Encoding: chunked\r\n\r\nbb8\r\n" + large + "\r\n0\r\n\r\n"},
       "[too large]"},
      {"silence is waited out for ever", {"", Then::kSilence}, "[timeout]"},
      {"silence behind the headers is waited out for ever",
       {ok + "Content-Length: 5\r\n\r\nab", Then::kSilence},
       "[timeout]"},
      {"half a body counts", {ok + "Content-Length: 5\r\n\r\nab"}, "[no connection]"},
      {"half a body with a reset counts",
       {ok + "Content-Length: 5\r\n\r\nab", Then::kReset},
       "[no connection]"},
      {"half the chunks count",
       {ok + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n"},
       "[no connection]"},
      {"no answer at all counts", {""}, "[no connection]"},
      {"words that are no HTTP count", {"SSH-2.0-dropbear\r\n"}, "[no connection]"},
      {"a broken length counts", {ok + "Content-Length: many\r\n\r\nab"}, "[no connection]"},
  };
  ScriptedServer server;
  HttpFetch http;
  for (const auto& c : cases) {
    server.replies["/page"] = c.reply;
    const FetchLimits limits{.max_bytes = 2000, .timeout = 300ms};
    EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/page")), limits), c.expected)
        << c.fault;
  }
}

TEST(HttpFetch, FollowsFiveRedirectsAndNoMore) {
  ScriptedServer server;
  server.replies["/0"] = Answer("200 OK", "there");
  for (int hop = 1; hop <= 6; ++hop) {
    server.replies["/" + QByteArray::number(hop)] = RedirectTo("/" + QByteArray::number(hop - 1));
  }
  server.replies["/circle"] = RedirectTo("/circle");
  HttpFetch http;
  EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/5"))), "there");
  EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/6"))), "[status]");
  EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/circle"))), "[status]");
}

TEST(HttpFetch, RefusesAddressesOffTheWebWithoutAskingAnyone) {
  QFile file(QDir::tempPath() + QStringLiteral("/quayline-http-fetch-test"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  HttpFetch http;
  for (const QUrl& address :
       {QUrl(), QUrl(QStringLiteral("page.html")), QUrl(QStringLiteral("http://")),
        QUrl(QStringLiteral("ftp://127.0.0.1/x")), QUrl(QStringLiteral("gopher://127.0.0.1/")),
        QUrl::fromLocalFile(file.fileName())}) {
    EXPECT_EQ(Fetched(&http, address), "[bad address]") << address.toString().toStdString();
  }
  file.remove();
}

TEST(HttpFetch, NobodyListens) {
  QUrl address;
  {
    ScriptedServer server;
    address = server.Address(QStringLiteral("/"));
  }
  HttpFetch http;
  EXPECT_EQ(Fetched(&http, address), "[no connection]");
}

TEST(HttpFetch, GoesRoundTheProxyOfTheEnvironmentAndKeepsNoCookies) {
  ScriptedServer server;
  server.replies["/a%20b?c=%26"] = Answer("200 OK", "direct", "Set-Cookie: id=7; Path=/\r\n");
  qputenv("http_proxy", "http://127.0.0.1:1");
  qputenv("all_proxy", "http://127.0.0.1:1");
  HttpFetch http;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/a b?c=%26"))), "direct");
  }
  qunsetenv("http_proxy");
  qunsetenv("all_proxy");
  ASSERT_EQ(server.requests.size(), 2);
  EXPECT_FALSE(server.requests[1].contains("Cookie")) << server.requests[1].toStdString();
}

TEST(HttpFetch, ACertificateThatNobodyVouchesForIsRefused) {
  const QTemporaryDir folder;
  const QString key_file = folder.filePath(QStringLiteral("key.pem"));
  const QString certificate_file = folder.filePath(QStringLiteral("certificate.pem"));
  const QStringList arguments{QStringLiteral("req"),
                              QStringLiteral("-x509"),
                              QStringLiteral("-nodes"),
                              QStringLiteral("-subj"),
                              QStringLiteral("/CN=127.0.0.1"),
                              QStringLiteral("-addext"),
                              QStringLiteral("subjectAltName=IP:127.0.0.1"),
                              QStringLiteral("-keyout"),
                              key_file,
                              QStringLiteral("-out"),
                              certificate_file};
  QProcess openssl;
  openssl.start(QStringLiteral("openssl"), arguments);
  if (!openssl.waitForFinished() || openssl.exitCode() != 0) {
    GTEST_SKIP() << "needs the program openssl to make a certificate";
  }
  QFile key(key_file);
  ASSERT_TRUE(key.open(QIODevice::ReadOnly));
  QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
  tls.setLocalCertificateChain(QSslCertificate::fromPath(certificate_file));
  tls.setPrivateKey(QSslKey(&key, QSsl::Rsa));
  auto listener = std::make_unique<QSslServer>();
  listener->setSslConfiguration(tls);
  bool is_handshake_begun = false;
  QObject::connect(listener.get(), &QSslServer::startedEncryptionHandshake, listener.get(),
                   [&](QSslSocket*) { is_handshake_begun = true; });
  ScriptedServer server(std::move(listener));
  server.replies["/"] = Answer("200 OK", "trust me");
  HttpFetch http;
  EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/"), QStringLiteral("https"))),
            "[no connection]");
  EXPECT_TRUE(is_handshake_begun);
  EXPECT_TRUE(server.requests.isEmpty());
}

TEST(HttpFetch, ADestroyedTaskHangsUpAndLeavesTheOthersAlone) {
  ScriptedServer server;
  server.replies["/half"] = {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", Then::kSilence};
  server.replies["/whole"] = Answer("200 OK", "whole");
  HttpFetch http;
  QByteArray stopped = "untouched";
  QByteArray other = "untouched";
  Flow first;
  Flow second;
  first.Start(Write(http.Get(server.Address(QStringLiteral("/half")), {}), &stopped));
  second.Start(Write(http.Get(server.Address(QStringLiteral("/half")), {}), &other));
  ASSERT_TRUE(testing::RunUntil([&] { return server.requests.size() == 2; }, 5s));
  first.Cancel();
  EXPECT_TRUE(testing::RunUntil([&] { return server.open_connections == 1; }, 5s));
  EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/whole"))), "whole");
  EXPECT_TRUE(second.IsRunning());
  EXPECT_EQ(stopped, "untouched");
}

TEST(HttpFetch, ATaskDestroyedBetweenItsEndAndItsResumptionStaysDead) {
  ScriptedServer server;
  server.replies["/"] = Answer("200 OK", "late");
  HttpFetch http;
  // Cancelled in each of the first turns of the event loop, one of which is that moment.
  for (int turns = 0; turns < 40; ++turns) {
    QByteArray text = "untouched";
    Flow flow;
    flow.Start(Write(http.Get(server.Address(QStringLiteral("/")), {}), &text));
    for (int turn = 0; turn < turns; ++turn) {
      QCoreApplication::processEvents();
    }
    const QByteArray before = text;
    flow.Cancel();
    QCoreApplication::processEvents();
    EXPECT_EQ(text, before) << turns;
  }
  EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/"))), "late");
}

TEST(HttpFetch, AnObjectDestroyedFirstEndsItsFetches) {
  ScriptedServer server;
  server.replies["/"] = {"", Then::kSilence};
  auto http = std::make_unique<HttpFetch>();
  QByteArray under_way = "[never ended]";
  QByteArray not_begun = "[never ended]";
  Flow flow;
  flow.Start(Write(http->Get(server.Address(QStringLiteral("/")), {}), &under_way));
  Task<> later = Write(http->Get(server.Address(QStringLiteral("/")), {}), &not_begun);
  ASSERT_TRUE(testing::RunUntil([&] { return server.requests.size() == 1; }, 5s));
  http.reset();
  EXPECT_TRUE(testing::RunUntil([&] { return !flow.IsRunning(); }, 2s));
  EXPECT_TRUE(testing::RunTask(std::move(later), 2s));
  EXPECT_EQ(under_way, "[no connection]");
  EXPECT_EQ(not_begun, "[no connection]");
  EXPECT_TRUE(testing::RunUntil([&] { return server.open_connections == 0; }, 2s));
}

TEST(HttpFetch, WaitingForASilentServerCostsNoTime) {
  ScriptedServer server;
  server.replies["/"] = {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", Then::kSilence};
  HttpFetch http;
  const std::clock_t before = std::clock();
  EXPECT_EQ(Fetched(&http, server.Address(QStringLiteral("/")), {.timeout = 800ms}), "[timeout]");
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC * 4 / 10);
}

TEST(HttpFetch, ThirtyFetchesAtOnceEachGetTheirOwnBody) {
  ScriptedServer server;
  HttpFetch http;
  std::array<QByteArray, 30> bodies;
  std::array<Flow, 30> flows;
  const auto body_of = [](std::size_t i) {
    return QByteArray::number(static_cast<qulonglong>(i)).repeated(40'000);
  };
  for (std::size_t i = 0; i < flows.size(); ++i) {
    const QString path = QStringLiteral("/%1").arg(i);
    server.replies[path.toLatin1()] = Answer("200 OK", body_of(i));
    flows[i].Start(Write(http.Get(server.Address(path), {}), &bodies[i]));
  }
  EXPECT_TRUE(testing::RunUntil([&] {
    return std::ranges::none_of(flows, [](const Flow& flow) { return flow.IsRunning(); });
  }));
  for (std::size_t i = 0; i < flows.size(); ++i) {
    EXPECT_TRUE(bodies[i] == body_of(i)) << i << ": " << bodies[i].size() << " bytes";
  }
}

}  // namespace
}  // namespace quayline
