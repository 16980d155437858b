// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QTcpSocket>

#include "script/web/exchange_watch.h"
#include "script/web/router_gate.h"
#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Then = Reply::Then;

// A browser's connection through the gate, asked for by name.
class Client final {
 public:
  Client(const QByteArray& host, quint16 port, const QByteArray& first_bytes) {
    QObject::connect(&socket_, &QTcpSocket::readyRead, &socket_,
                     [this] { heard_ += socket_.readAll(); });
    socket_.connectToHost(QHostAddress(QHostAddress::LocalHost), RouterGate::Reserve());
    QByteArray asked("\x05\x01\x00\x05\x01\x00\x03", 7);
    asked.append(static_cast<char>(host.size())).append(host);
    asked.append(static_cast<char>(port >> 8)).append(static_cast<char>(port & 0xff));
    socket_.write(asked + first_bytes);
  }

  void Send(const QByteArray& bytes) { socket_.write(bytes); }
  // What came after the handshake; empty where that was refused.
  QByteArray Answer() const {
    const QByteArray accepted("\x05\x00\x05\x00\x00\x01\0\0\0\0\0\0", 12);
    return heard_.startsWith(accepted) ? heard_.mid(accepted.size()) : QByteArray();
  }
  bool Hears(const QByteArray& part) {
    return RunUntil([&] { return Answer().contains(part); });
  }
  bool Ends() {
    return RunUntil([&] { return socket_.state() == QAbstractSocket::UnconnectedState; });
  }

 private:
  QTcpSocket socket_;
  QByteArray heard_;
};

class GateTest : public ::testing::Test {
 protected:
  GateTest() { gate.Admit(&owner, {Origin()}); }

  SiteOrigin Origin() const { return SiteOrigin::Of(server.Address({})); }
  quint16 Port() const { return Origin().port; }

  RouterGate& gate = RouterGate::Instance();
  QObject owner;
  ScriptedServer server;
};

constexpr char kGet[] = "GET /a HTTP/1.1\r\nHost: r\r\n\r\n";
constexpr char kHello[] = "\x16\x03\x01 hello\r\n\r\n";

TEST_F(GateTest, OnlyAnAdmittedOriginIsConnected) {
  QTcpServer neighbour;
  ASSERT_TRUE(neighbour.listen(QHostAddress(u"127.0.0.2"_s)));
  QTcpServer other;
  ASSERT_TRUE(other.listen(QHostAddress::LocalHost));
  const struct {
    const char* fault;
    const char* host;
    quint16 port;
    QByteArray bytes;
    bool is_admitted;
  } cases[] = {
      {"the router", "127.0.0.1", Port(), kGet, true},
      {"another port", "127.0.0.1", other.serverPort(), kGet, false},
      {"another host", "127.0.0.2", neighbour.serverPort(), kGet, false},
      {"another name", "localhost", Port(), kGet, false},
      {"a name within another", "127.0.0.1.example", Port(), kGet, false},
      {"TLS", "127.0.0.1", Port(), kHello, false},
      {"no name", "", Port(), kGet, false},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    server.requests.clear();
    Client client(row.host, row.port, row.bytes);
    EXPECT_TRUE(client.Ends());
    EXPECT_EQ(server.requests.size(), row.is_admitted ? 1 : 0);
    EXPECT_EQ(client.Answer().startsWith("HTTP/1.1 404"), row.is_admitted);
  }
  EXPECT_FALSE(other.hasPendingConnections() || neighbour.hasPendingConnections());
}

TEST_F(GateTest, NobodyIsAdmittedAfterTheOwnersEnd) {
  {
    const QObject brief;
    gate.Admit(const_cast<QObject*>(&brief), {SiteOrigin::Of(QUrl(u"http://brief/"_s))});
    EXPECT_TRUE(gate.IsAdmitted(SiteOrigin::Of(QUrl(u"ws://BRIEF:80/a"_s))));
    EXPECT_FALSE(gate.IsAdmitted(SiteOrigin::Of(QUrl(u"https://brief/"_s))));
  }
  EXPECT_FALSE(gate.IsAdmitted(SiteOrigin::Of(QUrl(u"http://brief/"_s))));
}

// What the gate reports is compared with the addresses of the engine's requests.
TEST(SiteOrigin, AnAddressIsWrittenAsTheEngineWritesIt) {
  for (const char* address : {"http://192.168.1.1", "https://box.lan", "http://box.lan:8080",
                              "https://[fe80::1]:80", "http://[::1]"}) {
    EXPECT_EQ(SiteOrigin::Of(QUrl(QLatin1String(address))).Address(), QUrl(QLatin1String(address)));
  }
}

// A server that keeps its connections gets one request on each.
TEST_F(GateTest, ASecondRequestIsNotPassedOn) {
  const struct {
    const char* answer;
    const char* last_part;
  } cases[] = {
      {"HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbody", "body"},
      {"HTTP/1.1 200 OK\nContent-Length: 4\n\nbody", "body"},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4;x=1\r\nbody\r\n0\r\na: b\r\n\r\n",
       "a: b\r\n\r\n"},
      {"HTTP/1.1 204 No Content\r\n\r\n", "\r\n\r\n"},
      {"HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok", "ok"},
      {"HTTP/1.1 200 OK\r\n\r\nuntil the end", "the end"},
      {"what is this\r\n\r\n", "this\r\n\r\n"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.answer);
    server.requests.clear();
    server.replies["/a"] = {row.answer, Then::kSilence};
    Client client("127.0.0.1", Port(), kGet);
    EXPECT_TRUE(client.Hears(row.last_part)) << client.Answer().toStdString();
    client.Send("POST /a HTTP/1.1\r\nHost: r\r\nContent-Length: 1\r\n\r\nx");
    EXPECT_TRUE(client.Ends());
    EXPECT_EQ(server.requests.size(), 1);
  }
}

TEST_F(GateTest, AWebSocketGoesOn) {
  server.replies["/a"] = {"HTTP/1.1 101 Switching\r\nUpgrade: websocket\r\n\r\n", Then::kSilence};
  Client client("127.0.0.1", Port(), kGet);
  EXPECT_TRUE(client.Hears("\r\n\r\n"));
  client.Send(kGet);
  EXPECT_TRUE(RunUntil([&] { return server.requests.size() == 2; }));
}

TEST_F(GateTest, AnExchangeIsReportedFromItsRequestToItsEnd) {
  QStringList heard;
  const QObject listener;
  QObject::connect(&gate, &RouterGate::exchangeStarted, &listener,
                   [&](quint64, const QByteArray& method, const QUrl& url) {
                     heard.append(QString::fromLatin1(method) + u' ' + url.toString());
                   });
  QObject::connect(
      &gate, &RouterGate::answered, &listener,
      [&](quint64, const QByteArray& method, const QUrl& url, int status) {
        heard.append(QString::fromLatin1(method) + url.path() + QString::number(status));
      });
  QObject::connect(&gate, &RouterGate::exchangeEnded, &listener,
                   [&](quint64) { heard.append(u"end"_s); });
  server.replies["/a?b=//c"] = {"HTTP/1.1 503 Busy\r\nContent-Length: 9\r\n\r\n", Then::kSilence};
  Client client("127.0.0.1", Port(),
                "POST /a?b=//c HTTP/1.1\r\nContent-Length: 4\r\n\r\nbody and more");
  EXPECT_TRUE(client.Hears("503"));
  EXPECT_EQ(heard,
            (QStringList{u"POST "_s + server.Address(u"/a?b=//c"_s).toString(), u"POST/a503"_s}));
  EXPECT_EQ(gate.ExchangesUnderWay(), 1);
  gate.disconnect(&listener);
}

// Each ends with a number of the engine's, and with the one that says why.
TEST_F(GateTest, ARouterThatCannotBeReachedIsToldFromOneThatEnds) {
  QTcpServer closed;
  ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
  QUrl refused = server.Address({});
  refused.setPort(closed.serverPort());
  closed.close();
  const QUrl nameless(u"http://router.invalid/"_s);
  gate.Admit(&owner, {Origin(), SiteOrigin::Of(refused), SiteOrigin::Of(nameless)});
  server.replies["/a"] = {"", Then::kReset};
  constexpr int kReset = -101;
  const struct {
    QUrl url;
    int error;
  } cases[] = {{server.Address({}), kReset}, {refused, -102}, {nameless, -105}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.url.toString().toStdString());
    Client client(row.url.host().toLatin1(), SiteOrigin::Of(row.url).port, kGet);
    EXPECT_TRUE(client.Ends());
    EXPECT_EQ(client.Answer(), "");
    EXPECT_EQ(gate.NetError(row.url, kReset), row.error);
    EXPECT_EQ(gate.NetError(row.url, -200), -200);
  }
}

TEST_F(GateTest, AChangeIsHeardOutWhenTheBrowserHasGone) {
  server.replies["/a"] = {"", Then::kSilence};
  for (const char* method : {"GET", "POST"}) {
    auto client = std::make_unique<Client>(
        "127.0.0.1", Port(), QByteArray(method) + " /a HTTP/1.1\r\nContent-Length: 0\r\n\r\n");
    ASSERT_TRUE(RunUntil([&] { return server.open_connections == 1; }));
    ASSERT_TRUE(RunUntil([&] { return gate.ExchangesUnderWay() == 1; }));
    client.reset();
    RunUntil([] { return false; }, 100ms);
    const bool is_kept = server.open_connections == 1;
    EXPECT_EQ(is_kept, QByteArray(method) == "POST");
  }
}

// Small routers serve a few connections, and close the next one without an answer.
TEST_F(GateTest, ARouterHasAFewConnectionsAtATime) {
  for (const Then then : {Then::kClose, Then::kSilence}) {
    server.replies["/a"] = Answer("200 OK", "done");
    server.replies["/a"].then = then;
    server.replies["/a"].delay = 20ms;
    server.requests.clear();
    int most = 0;
    server.special = [&](const QByteArray&) {
      most = std::max(most, server.open_connections);
      return std::optional<Reply>();
    };
    constexpr int kClients = 20;
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < kClients; ++i) {
      clients.push_back(std::make_unique<Client>("127.0.0.1", Port(), kGet));
    }
    for (const auto& client : clients) {
      EXPECT_TRUE(client->Hears("done"));
    }
    EXPECT_EQ(server.requests.size(), kClients);
    EXPECT_LE(most, ConnectionLimit::kPlaces);
    EXPECT_GT(most, 1);
  }
}

TEST_F(GateTest, ASaveDoesNotWaitForRequestsThatAreHeldOpen) {
  server.replies["/save"] = Answer("200 OK", "saved");
  const char* const held[] = {
      "",  // a long poll
      "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\n\r\ndata: 1\n\n",
      "HTTP/1.1 101 Switching\r\nUpgrade: websocket\r\n\r\n",
  };
  for (const char* answer : held) {
    for (const bool browser_stays : {true, false}) {
      SCOPED_TRACE(answer + std::string(browser_stays ? "" : ", the browser goes"));
      server.requests.clear();
      server.replies["/a"] = {answer, Then::kSilence};
      std::vector<std::unique_ptr<Client>> polls;
      for (int i = 0; i < ConnectionLimit::kPlaces; ++i) {
        polls.push_back(std::make_unique<Client>("127.0.0.1", Port(), kGet));
      }
      ASSERT_TRUE(RunUntil([&] { return std::ssize(server.requests) == std::ssize(polls); }));
      auto save = std::make_unique<Client>("127.0.0.1", Port(),
                                           "POST /save HTTP/1.1\r\nContent-Length: 1\r\n\r\nx");
      if (browser_stays) {
        EXPECT_TRUE(save->Hears("saved"));
      } else {
        RunUntil([&] { return server.requests.last().startsWith("POST"); }, 50ms);
        save.reset();
      }
      EXPECT_TRUE(RunUntil([&] { return server.requests.last().startsWith("POST"); }));
    }
  }
}

// Routers that start over, or that serve one connection at a time.
TEST_F(GateTest, ARouterThatRefusesForAMomentIsConnectedAgain) {
  QTcpServer router;
  ASSERT_TRUE(router.listen(QHostAddress::LocalHost));
  const quint16 port = router.serverPort();
  gate.Admit(&owner, {{.scheme = u"http"_s, .host = u"127.0.0.1"_s, .port = port}});
  const Client first("127.0.0.1", port, kGet);
  ASSERT_TRUE(RunUntil([&] { return router.hasPendingConnections(); }));
  delete router.nextPendingConnection();
  router.close();
  const Client second("127.0.0.1", port, kGet);
  RunUntil([] { return false; }, 30ms);
  ASSERT_TRUE(router.listen(QHostAddress::LocalHost, port));
  EXPECT_TRUE(RunUntil([&] { return router.hasPendingConnections(); }));
}

// The engine repeats a request by itself when a connection that it used before ends unanswered.
// Neither a server that keeps its connections nor TLS may lead to that.
class SavedOnceTest : public WebTest, public ::testing::WithParamInterface<const char*> {
 protected:
  // Serves by "http", or by https with the version of TLS that is named.
  void Serve(const QByteArray& kind) {
    if (kind != "http") {
      secure =
          std::make_unique<SecureServer>(kind == "TLS 1.2" ? QSsl::TlsV1_2 : QSsl::TlsV1_3OrLater);
      NextBrowser(&secure->certificates);
    }
  }

  std::unique_ptr<SecureServer> secure;
};

TEST_P(SavedOnceTest, ASaveThatIsNotAnsweredArrivesOnce) {
  Serve(GetParam());
  ScriptedServer* const router = secure == nullptr ? &server : &secure->server;
  const QString scheme = secure == nullptr ? u"http"_s : u"https"_s;
  const QUrl page = router->Address(u"/page"_s, scheme);
  host->SetLogin({.scheme = scheme, .host = page.host(), .port = page.port()});
  router->special = [](const QByteArray& request) -> std::optional<Reply> {
    return request.startsWith("POST") ? std::optional(Reply{}) : std::nullopt;
  };
  Reply kept = Html("<form id=f method=post action=/save?1><input name=a></form>");
  kept.then = Then::kSilence;
  router->replies["/page"] = kept;
  Reply small = Answer("200 OK", "ok");
  small.then = Then::kSilence;
  router->replies["/small"] = small;
  router->replies["/tiny"] = small;
  // The small answers before leave connections behind that were used. Of two requests for the same
  // address the browser may answer one with the other's.
  const char* const saves[] = {
      "f.submit()",
      "var r = new XMLHttpRequest; r.open('POST', '/save?2'); r.send('a=1')",
      "fetch('/save?3', {method: 'POST', body: 'a=1'})",
      "fetch('/save?4', {method: 'POST', body: 'a=1', keepalive: true})",
      "navigator.sendBeacon('/save?5', 'a=1')",
  };
  for (const char* save : saves) {
    SCOPED_TRACE(save);
    router->requests.clear();
    Open(page);
    RunInPage("Promise.all([fetch('/small'), fetch('/tiny')]).then(() => window.ready = 1)");
    ASSERT_TRUE(RunUntil([&] { return router->requests.size() >= 3; }))
        << router->requests.join('\n').toStdString() << Read("window.ready").toStdString();
    Pause();
    RunInPage(save);
    const auto saved = [&] {
      return std::ranges::count_if(router->requests,
                                   [](const auto& request) { return request.startsWith("POST"); });
    };
    EXPECT_TRUE(RunUntil([&] { return saved() > 0; }));
    Pause();
    Pause();
    EXPECT_EQ(saved(), 1);
    Settle();  // a failed load that ends late would take the next page away
  }
}

INSTANTIATE_TEST_SUITE_P(, SavedOnceTest, ::testing::Values("http", "TLS 1.2", "TLS 1.3"));

}  // namespace
}  // namespace quayline::testing
