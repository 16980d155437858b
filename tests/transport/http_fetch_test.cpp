// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/http_fetch.h"

#include <QSslServer>

#include <algorithm>
#include <array>
#include <ctime>
#include <gtest/gtest.h>

#include "test_main.h"
#include "transport/scripted_server.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::Answer;
using testing::RedirectTo;
using testing::Reply;
using testing::RunUntil;
using testing::ScriptedServer;
using Then = Reply::Then;

const QByteArray kOk = "HTTP/1.1 200 OK\r\n";
const Reply kHalf = {kOk + "Content-Length: 5\r\n\r\nab", Then::kSilence};

using Fetch = Task<std::expected<QByteArray, FetchError>>;

// The result of a fetch: the body, or the error's name in brackets.
Task<> Write(Fetch fetch, QByteArray* out) {
  constexpr const char* kErrors[] = {"[bad address]", "[no connection]", "[timeout]", "[status]",
                                     "[too large]"};
  const auto outcome = co_await fetch;
  *out = outcome ? *outcome : QByteArray(kErrors[static_cast<int>(outcome.error())]);
}

QByteArray Fetched(Fetch fetch) {
  QByteArray text = "[never ended]";
  testing::RunTask(Write(std::move(fetch), &text), 10s);
  return text;
}

class HttpFetchTest : public ::testing::Test {
 protected:
  Fetch Get(const QString& path, FetchLimits limits = {}) {
    return http_->Get(server_.Address(path), limits);
  }

  ScriptedServer server_;
  std::unique_ptr<HttpFetch> http_ = std::make_unique<HttpFetch>();
};

TEST_F(HttpFetchTest, TellsEachKindOfAnswerApart) {
  const QByteArray chunked = kOk + "Transfer-Encoding: chunked\r\n\r\n";
  const QByteArray large(3000, 'x');
  const struct {
    const char* fault;
    Reply reply;
    QByteArray expected;
  } cases[] = {
      {"a body is lost", Answer("200 OK", "hello"), "hello"},
      {"zero bytes end the body", Answer("200 OK", QByteArray("a\0b", 3)), QByteArray("a\0b", 3)},
      {"an empty body is a failure", Answer("200 OK", ""), ""},
      {"chunks are not put together", {chunked + "3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"}, "abcde"},
      {"a body without length is refused", {kOk + "\r\nuntil the end"}, "until the end"},
      {"an error page's text counts", Answer("404 Not Found", "sorry"), "[status]"},
      {"an error page is judged by its size", Answer("500 Oops", large), "[status]"},
      {"a partial answer is judged by its size", Answer("206 Partial Content", large), "[status]"},
      {"half a success counts", Answer("206 Partial Content", "par"), "[status]"},
      {"an empty success counts", {"HTTP/1.1 204 No Content\r\n\r\n"}, "[status]"},
      {"a redirect to nowhere counts", Answer("302 Found", "x"), "[status]"},
      {"local files can be fetched", RedirectTo("file:///etc/hostname"), "[bad address]"},
      {"other protocols can be fetched", RedirectTo("ftp://127.0.0.1/"), "[bad address]"},
      {"the largest body is refused", Answer("200 OK", large.left(2000)), large.left(2000)},
      {"a body that says it is too large is fetched", Answer("200 OK", large), "[too large]"},
      {"a body that does not say so is fetched", {kOk + "\r\n" + large}, "[too large]"},
      {"chunks are not counted", {chunked + "bb8\r\n" + large + "\r\n0\r\n\r\n"}, "[too large]"},
      {"silence is waited out for ever", {"", Then::kSilence}, "[timeout]"},
      {"silence behind the headers is waited out for ever", kHalf, "[timeout]"},
      {"half a body counts", {kHalf.bytes}, "[no connection]"},
      {"half a body with a reset counts", {kHalf.bytes, Then::kReset}, "[no connection]"},
      {"half the chunks count", {chunked + "3\r\nabc\r\n"}, "[no connection]"},
      {"no answer at all counts", {""}, "[no connection]"},
      {"words that are no HTTP count", {"SSH-2.0-dropbear\r\n"}, "[no connection]"},
      {"a broken length counts", {kOk + "Content-Length: many\r\n\r\nab"}, "[no connection]"},
  };
  for (const auto& c : cases) {
    server_.replies["/"] = c.reply;
    EXPECT_EQ(Fetched(Get(u"/"_s, {.max_bytes = 2000, .timeout = 300ms})), c.expected) << c.fault;
  }
}

TEST_F(HttpFetchTest, FollowsFiveRedirectsAndNoMore) {
  server_.replies["/0"] = Answer("200 OK", "there");
  for (int hop = 1; hop <= 6; ++hop) {
    server_.replies["/" + QByteArray::number(hop)] = RedirectTo("/" + QByteArray::number(hop - 1));
  }
  server_.replies["/circle"] = RedirectTo("/circle");
  EXPECT_EQ(Fetched(Get(u"/5"_s)), "there");
  EXPECT_EQ(Fetched(Get(u"/6"_s)), "[status]");
  EXPECT_EQ(Fetched(Get(u"/circle"_s)), "[status]");
}

TEST_F(HttpFetchTest, RefusesAddressesOffTheWebAndTellsThatNobodyListens) {
  const QUrl local = QUrl::fromLocalFile(QStringLiteral(QUAYLINE_SOURCE_DIR "/README.md"));
  for (const QUrl& address : {QUrl(), QUrl(u"page.html"_s), QUrl(u"http://"_s), local,
                              QUrl(u"ftp://127.0.0.1/x"_s), QUrl(u"gopher://127.0.0.1/"_s)}) {
    EXPECT_EQ(Fetched(http_->Get(address, {})), "[bad address]")
        << address.toString().toStdString();
  }
  const QUrl closed = ScriptedServer().Address(u"/"_s);
  EXPECT_EQ(Fetched(http_->Get(closed, {})), "[no connection]");
}

TEST_F(HttpFetchTest, GoesRoundTheProxyOfTheEnvironmentAndKeepsNoCookies) {
  server_.replies["/a%20b?c=%26"] = Answer("200 OK", "direct", "Set-Cookie: id=7; Path=/\r\n");
  qputenv("http_proxy", "http://127.0.0.1:1");
  qputenv("all_proxy", "http://127.0.0.1:1");
  EXPECT_EQ(Fetched(Get(u"/a b?c=%26"_s)), "direct");
  EXPECT_EQ(Fetched(Get(u"/a b?c=%26"_s)), "direct");
  qunsetenv("http_proxy");
  qunsetenv("all_proxy");
  ASSERT_EQ(server_.requests.size(), 2);
  EXPECT_FALSE(server_.requests[1].contains("Cookie")) << server_.requests[1].toStdString();
}

TEST_F(HttpFetchTest, ACertificateThatNobodyVouchesForIsRefused) {
  auto listener = testing::SelfSignedListener();
  if (!listener) {
    GTEST_SKIP() << "needs the program openssl to make a certificate";
  }
  bool is_handshake_begun = false;
  QObject::connect(listener.get(), &QSslServer::startedEncryptionHandshake, listener.get(),
                   [&](QSslSocket*) { is_handshake_begun = true; });
  ScriptedServer secure(std::move(listener));
  secure.replies["/"] = Answer("200 OK", "trust me");
  EXPECT_EQ(Fetched(http_->Get(secure.Address(u"/"_s, u"https"_s), {})), "[no connection]");
  EXPECT_TRUE(is_handshake_begun);
  EXPECT_TRUE(secure.requests.isEmpty());
}

TEST_F(HttpFetchTest, ADestroyedTaskHangsUpAndLeavesTheOthersAlone) {
  server_.replies["/half"] = kHalf;
  server_.replies["/whole"] = Answer("200 OK", "whole");
  QByteArray stopped = "untouched";
  QByteArray other;
  Flow first;
  Flow second;
  first.Start(Write(Get(u"/half"_s), &stopped));
  second.Start(Write(Get(u"/half"_s), &other));
  ASSERT_TRUE(RunUntil([&] { return server_.requests.size() == 2; }));
  first.Cancel();
  EXPECT_TRUE(RunUntil([&] { return server_.open_connections == 1; }));
  EXPECT_EQ(Fetched(Get(u"/whole"_s)), "whole");
  EXPECT_TRUE(second.IsRunning());
  EXPECT_EQ(stopped, "untouched");
}

TEST_F(HttpFetchTest, ATaskDestroyedBetweenItsEndAndItsResumptionStaysDead) {
  server_.replies["/"] = Answer("200 OK", "late");
  // Cancelled in each of the first turns of the event loop, one of which is that moment.
  for (int turns = 0; turns < 40; ++turns) {
    QByteArray text = "untouched";
    Flow flow;
    flow.Start(Write(Get(u"/"_s), &text));
    for (int turn = 0; turn < turns; ++turn) {
      QCoreApplication::processEvents();
    }
    const QByteArray before = text;
    flow.Cancel();
    QCoreApplication::processEvents();
    EXPECT_EQ(text, before) << turns;
  }
  EXPECT_EQ(Fetched(Get(u"/"_s)), "late");
}

TEST_F(HttpFetchTest, AnObjectDestroyedFirstEndsItsFetches) {
  server_.replies["/"] = {"", Then::kSilence};
  QByteArray under_way;
  QByteArray not_begun;
  Flow flow;
  flow.Start(Write(Get(u"/"_s), &under_way));
  Task<> later = Write(Get(u"/"_s), &not_begun);
  ASSERT_TRUE(RunUntil([&] { return server_.requests.size() == 1; }));
  http_.reset();
  EXPECT_TRUE(RunUntil([&] { return !flow.IsRunning(); }));
  EXPECT_TRUE(testing::RunTask(std::move(later)));
  EXPECT_EQ(under_way, "[no connection]");
  EXPECT_EQ(not_begun, "[no connection]");
  EXPECT_TRUE(RunUntil([&] { return server_.open_connections == 0; }));
}

TEST_F(HttpFetchTest, WaitingForASilentServerCostsNoTime) {
  server_.replies["/"] = kHalf;
  const std::clock_t before = std::clock();
  EXPECT_EQ(Fetched(Get(u"/"_s, {.timeout = 800ms})), "[timeout]");
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC * 6 / 10);
}

TEST_F(HttpFetchTest, ThirtyFetchesAtOnceEachGetTheirOwnBody) {
  std::array<QByteArray, 30> bodies;
  std::array<Flow, 30> flows;
  const auto body_of = [](int i) { return QByteArray::number(i).repeated(40'000); };
  for (int i = 0; i < 30; ++i) {
    const QString path = u"/%1"_s.arg(i);
    server_.replies[path.toLatin1()] = Answer("200 OK", body_of(i));
    flows.at(i).Start(Write(Get(path), &bodies.at(i)));
  }
  EXPECT_TRUE(RunUntil([&] { return std::ranges::none_of(flows, &Flow::IsRunning); }));
  for (int i = 0; i < 30; ++i) {
    EXPECT_TRUE(bodies.at(i) == body_of(i)) << i << ": " << bodies.at(i).size() << " bytes";
  }
}

}  // namespace
}  // namespace quayline
