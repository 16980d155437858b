// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/router_detection.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include "demo/demo_router.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::RunUntil;

const QStringList kNames{
    u"(((Please Choose A Router)))"_s, u"Harbour HB-100"_s,  u"Northline WR 54-G"_s,
    u"Northline WR54G v2"_s,           u"Northline XR900"_s, u"Oldfield OF-54"_s};

QByteArray AskForLogin(const char* realm) {
  return QByteArray("HTTP/1.0 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"") + realm +
         "\"\r\n\r\n";
}

// Answers each request with the pieces, one after the other, and closes unless told not to.
class PieceServer final : public QObject {
 public:
  PieceServer() {
    listener_.listen(QHostAddress::LocalHost);
    connect(&listener_, &QTcpServer::newConnection, this, [this] {
      QTcpSocket* client = listener_.nextPendingConnection();
      connect(client, &QTcpSocket::readyRead, this, [this, client] {
        requests.append(client->readAll());
        Send(client, 0);
      });
    });
  }
  int Port() const { return listener_.serverPort(); }

  QList<QByteArray> pieces;
  bool closes = true;
  QList<QByteArray> requests;

 private:
  void Send(QTcpSocket* client, qsizetype at) {
    if (at < pieces.size()) {
      client->write(pieces[at]);
      client->flush();
      QTimer::singleShot(60ms, client, [this, client, at] { Send(client, at + 1); });
    } else if (closes) {
      client->disconnectFromHost();
    }
  }

  QTcpServer listener_;
};

class RouterDetectionTest : public ::testing::Test {
 protected:
  RouterDetectionTest() {
    QObject::connect(&detection_, &RouterDetection::named, &detection_,
                     [this](int row) { events_.append(u"named %1"_s.arg(row)); });
    QObject::connect(&detection_, &RouterDetection::ended, &detection_,
                     [this](const QList<int>& nearest, bool names_nothing) {
                       QString text = names_nothing ? u"nothing:"_s : u"unknown:"_s;
                       for (const int row : nearest) {
                         text += u" %1"_s.arg(row);
                       }
                       events_.append(text);
                     });
  }

  // What is reported: as many reports as are expected, and what follows them within the time.
  QStringList Detect(int port, qsizetype expected = 1, std::chrono::milliseconds time = 100ms) {
    events_.clear();
    detection_.Start(u"127.0.0.1"_s, port, kNames);
    RunUntil([&] { return events_.size() >= expected; });
    RunUntil([] { return false; }, time);
    return events_;
  }

  RouterDetection detection_{{.connect = 300ms, .next_block = 300ms, .reply = 1s}};
  PieceServer server_;
  QStringList events_;
};

TEST_F(RouterDetectionTest, TheRequestHasTheHostAndThePathOfTheAddressOnly) {
  const struct {
    const char* address;
    QByteArray request;
  } cases[] = {
      {"127.0.0.1", "GET / HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n"},
      {"http://127.0.0.1/a/b?c=d", "GET /a/b?c=d HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n"},
      {"x://127.0.0.1:1/", "GET / HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n"},
  };
  for (const auto& c : cases) {
    server_.requests.clear();
    detection_.Start(QLatin1String(c.address), server_.Port(), kNames);
    ASSERT_TRUE(RunUntil([&] { return !server_.requests.isEmpty(); }));
    EXPECT_EQ(server_.requests.first(), c.request);
  }
  EXPECT_EQ(SplitWebAddress(u"host:80"_s).host, u"host:80"_s);
  detection_.Start(QString(), server_.Port(), kNames);
  EXPECT_TRUE(SplitWebAddress(u"http://"_s).host.isEmpty());
}

TEST_F(RouterDetectionTest, TheFirstNameThatContainsTheFirstQuotedTextIsTaken) {
  const QByteArray page = "HTTP/1.0 200 OK\r\n\r\n<title>zz</title>zz";
  const struct {
    const char* what;
    QList<QByteArray> pieces;
    QStringList events;
  } cases[] = {
      {"blanks and case", {AskForLogin(" north LINE ")}, {u"named 2"_s}},
      {"hyphens of a name", {AskForLogin("WR54G")}, {u"named 2"_s}},
      {"a later name", {AskForLogin("wr54g v2")}, {u"named 3"_s}},
      {"a hyphen of the realm", {AskForLogin("HB-100")}, {u"unknown: 1"_s}},
      {"an unknown realm", {AskForLogin("zz")}, {u"unknown:"_s}},
      {"an open quotation mark", {"HTTP/1.0 200 OK\r\nX: \"harbour"}, {u"named 1"_s}},
      {"no quotation mark", {page}, {u"nothing:"_s}},
      {"an empty quoted text", {AskForLogin("")}, {u"nothing:"_s}},
      {"a text of the placeholder", {AskForLogin("router")}, {u"nothing:"_s}},
      {"a second block with another router",
       {AskForLogin("harbour"), "<a href=\"xr900\">"},
       {u"named 1"_s, u"named 4"_s}},
      {"a second block without one", {AskForLogin("harbour"), "Denied"}, {u"named 1"_s}},
      {"a realm in two pieces", {"HTTP/1.0 401 X\r\nA: b=", "\"of54\"\r\n\r\n"}, {u"named 5"_s}},
      {"megabytes", {AskForLogin("zz") + QByteArray(4 << 20, 'z')}, {u"unknown:"_s}},
  };
  for (const auto& c : cases) {
    server_.pieces = c.pieces;
    EXPECT_EQ(Detect(server_.Port(), c.events.size()), c.events) << c.what;
  }
}

TEST_F(RouterDetectionTest, APageThatNamesNoRouterIsComparedWithTheList) {
  const QByteArray ok = "HTTP/1.0 200 OK\r\n";
  const struct {
    const char* what;
    QByteArray reply;
    QString events;
  } cases[] = {
      {"title", ok + "\r\n<html><TITLE>XR900 login</TITLE>", u"nothing: 4"_s},
      {"server", ok + "Server: Harbour/1.2\r\n\r\n", u"nothing: 1"_s},
      {"text", ok + "\r\n<b>Welcome to</b> <i>Northline</i> XR900", u"nothing: 4 2 3"_s},
      {"more in common", ok + "\r\n<title>Northline WR54G v2</title>", u"nothing: 3 2 4"_s},
      {"scripts are no text", ok + "\r\n<script>xr900</script><style>harbour</style>",
       u"nothing:"_s},
      {"attributes are no text", ok + "\r\n<p class=harbour>zz", u"nothing:"_s},
      {"a broken page", ok + "\r\n<title><script>a<b", u"nothing:"_s},
  };
  for (const auto& c : cases) {
    server_.pieces = {c.reply};
    EXPECT_EQ(Detect(server_.Port()), QStringList{c.events}) << c.what;
  }
  // Its login page is elsewhere on the router.
  server_.pieces = {"HTTP/1.1 302 Found\r\nLocation: /login.htm?a=1\r\n\r\n"};
  server_.requests.clear();
  Detect(server_.Port());
  ASSERT_EQ(server_.requests.size(), 3) << "redirects are followed without end";
  EXPECT_EQ(server_.requests[1], "GET /login.htm?a=1 HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n");
  EXPECT_EQ(RedirectPath("HTTP/1.1 302 Found\r\nLocation: http://other.lan/\r\n\r\n", u"a"_s),
            QString());
}

TEST_F(RouterDetectionTest, ASilentRouterAndAMissingOneAreNotWaitedForLong) {
  server_.closes = false;
  EXPECT_EQ(Detect(server_.Port(), 0, 1500ms), QStringList()) << "a reply that never comes";
  server_.pieces = {"HTTP/1.0 200 OK\r\n\r\n<title>Harbour"};
  EXPECT_EQ(Detect(server_.Port()), QStringList{u"nothing: 1"_s}) << "a reply that never ends";
  server_.pieces = QList<QByteArray>(1000, "drip ");
  EXPECT_EQ(Detect(server_.Port()), QStringList{u"nothing:"_s}) << "a reply that drips";
  EXPECT_EQ(Detect(1, 0, 800ms), QStringList());
  EXPECT_EQ(Detect(70'000, 0), QStringList());
}

TEST_F(RouterDetectionTest, TheDemoRouterIsFound) {
  demo::DemoRouter router;
  const auto port = router.Start(u"frameset"_s, {});
  ASSERT_TRUE(port);
  EXPECT_EQ(Detect(*port), QStringList{u"named 5"_s});
}

TEST_F(RouterDetectionTest, AReceiverMayStartAgainOrStop) {
  server_.pieces = {AskForLogin("harbour")};
  int count = 0;
  QObject::connect(&detection_, &RouterDetection::named, &detection_, [&] {
    if (++count < 3) {
      detection_.Start(u"127.0.0.1"_s, server_.Port(), kNames);
    } else {
      detection_.Cancel();
    }
  });
  Detect(server_.Port(), 3);
  EXPECT_EQ(events_, QStringList(3, u"named 1"_s));
}

}  // namespace
}  // namespace quayline
