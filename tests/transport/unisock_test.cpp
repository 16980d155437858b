// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/unisock.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>

#include <ctime>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::RunUntil;

const QString kLoopback = u"127.0.0.1"_s;

// What the socket emits, as text in its order.
class Events final : public QObject {
 public:
  void Record(UniSock& socket) {
    connect(&socket, &UniSock::StatusChange, this,
            [this](SockState state) { Note(u"status %1"_s.arg(static_cast<int>(state))); });
    connect(&socket, &UniSock::Connect, this, [this] { Note(u"connect"_s); });
    connect(&socket, &UniSock::Closing, this, [this] { Note(u"closing"_s); });
    connect(&socket, &UniSock::ConnectionRequest, this, [this](int id) {
      request_id = id;
      Note(u"request"_s);
    });
    connect(&socket, &UniSock::DataArrival, this,
            [this](int bytes) { Note(u"data %1"_s.arg(bytes)); });
    connect(&socket, &UniSock::TextArrival, this,
            [this](const QString& text, int format, bool flag) {
              Note(u"text %1 %2 %3"_s.arg(text).arg(format).arg(flag ? 1 : 0));
            });
    connect(&socket, &UniSock::SendProgress, this,
            [this](int sent, int left) { Note(u"progress %1 %2"_s.arg(sent).arg(left)); });
    connect(&socket, &UniSock::SendComplete, this, [this] { Note(u"complete"_s); });
    connect(&socket, &UniSock::Error, this,
            [this](int number, const QString& text, int code, const QString& source,
                   const QString& /*file*/, int /*context*/, bool* cancel) {
              *cancel = !shows_errors;
              Note(u"error %1 %2 %3"_s.arg(number).arg(source, code == number ? text : u"?"_s));
            });
    connect(&socket, &UniSock::ErrorBox, this, [this](const QString& title, const QString& text) {
      Note(u"box %1: %2"_s.arg(title, text));
    });
  }

  qsizetype Count(const QString& start) const {
    return std::ranges::count_if(list, [&](const QString& each) { return each.startsWith(start); });
  }
  bool Has(const QString& start) const { return Count(start) > 0; }
  QStringList Take() { return std::exchange(list, {}); }

  QStringList list;
  std::function<void(const QString& event)> handler;
  int request_id = 0;
  bool shows_errors = false;

 private:
  void Note(const QString& event) {
    list.append(event);
    if (handler) {
      const auto call = handler;
      call(event);
    }
  }
};

QByteArray BytesOf(UniSock& socket, qsizetype length = 0) {
  SockValue value = QByteArray();
  const auto result = socket.GetData(value, 0, length);
  return result ? std::get<QByteArray>(value) : QByteArray::number(result.error().number);
}

QString Refusal(const auto& result) {
  return result ? u"none"_s : u"%1 %2"_s.arg(result.error().number).arg(result.error().source);
}

void Idle(std::chrono::milliseconds time) {
  RunUntil([] { return false; }, time);
}

class UniSockTest : public ::testing::Test {
 protected:
  UniSockTest() {
    server_.listen(QHostAddress::LocalHost);
    events_.Record(*socket_);
  }

  // Connects to the server, whose side is peer_.
  void ConnectToServer(const QString& host = kLoopback) {
    ASSERT_TRUE(socket_->ConnectTo(host, server_.serverPort()));
    ASSERT_TRUE(RunUntil([this] { return peer_ != nullptr || TakePeer(); }));
    ASSERT_TRUE(RunUntil([this] { return events_.Has(u"connect"_s); }));
  }
  bool TakePeer() {
    peer_.reset(server_.nextPendingConnection());
    return peer_ != nullptr;
  }
  void ResetByPeer() {
    const linger none{.l_onoff = 1, .l_linger = 0};
    setsockopt(static_cast<int>(peer_->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
               sizeof none);
    peer_->abort();
  }

  QTcpServer server_;
  Events events_;
  std::unique_ptr<UniSock> socket_ = std::make_unique<UniSock>();
  std::unique_ptr<QTcpSocket> peer_;
};

TEST_F(UniSockTest, AConnectionByNameGoesThroughItsStatesUntilThePeerCloses) {
  ConnectToServer(u"localhost"_s);
  EXPECT_EQ(events_.Take(), (QStringList{u"status 4"_s, u"status 5"_s, u"status 6"_s, u"status 7"_s,
                                         u"connect"_s}));
  EXPECT_EQ(socket_->RemoteHostIP(), kLoopback);
  EXPECT_EQ(Refusal(socket_->SetRemotePort(1)), u"40020 UniSock.RemotePort"_s);
  EXPECT_EQ(Refusal(socket_->SetRemoteHost(u"x"_s)), u"40020 UniSock.RemotePort"_s);
  EXPECT_EQ(Refusal(socket_->SetProtocol(SockProtocol::kUdp)), u"40020 UniSock.Protocol"_s);
  EXPECT_EQ(Refusal(socket_->listen()), u"40020 UniSock.Listen"_s);
  socket_->ConnectTo(kLoopback, 1).value();
  EXPECT_EQ(events_.Take(), QStringList{u"status 9"_s}) << "a second connection begins";

  // What has come with the end can be taken in the event, and is gone after it.
  QByteArray rest;
  events_.handler = [&](const QString& event) {
    if (event == u"closing"_s) {
      rest = BytesOf(*socket_, 3);
    }
  };
  peer_->write("farewell");
  peer_->disconnectFromHost();
  ASSERT_TRUE(RunUntil([&] { return events_.Has(u"status 0"_s); }));
  EXPECT_EQ(events_.Take(), (QStringList{u"data 8"_s, u"closing"_s, u"status 8"_s, u"status 0"_s}));
  EXPECT_EQ(rest, "far");
  EXPECT_EQ(socket_->BytesReceived(), 0);
  EXPECT_EQ(socket_->SocketHandle(), -1);
  EXPECT_EQ(socket_->RemotePort(), server_.serverPort()) << "the peer is forgotten";
}

TEST_F(UniSockTest, DataThatDripsIsCollectedAndTakenInAnyPieces) {
  ConnectToServer();
  events_.Take();
  for (const char* drop : {"ab", "c", "defg"}) {
    const int before = socket_->BytesReceived();
    peer_->write(drop);
    peer_->flush();
    ASSERT_TRUE(RunUntil([&] { return socket_->BytesReceived() > before; }));
  }
  EXPECT_EQ(events_.Take(), (QStringList{u"data 2"_s, u"data 3"_s, u"data 7"_s}));
  SockValue value = QString();
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(socket_->PeekData(value, 0, 4));
    EXPECT_EQ(std::get<QString>(value), u"abcd"_s) << "looking takes it";
  }
  ASSERT_TRUE(socket_->GetData(value, sock_type::kInt16));
  EXPECT_EQ(std::get<qint16>(value), 0x6261);
  ASSERT_TRUE(socket_->GetData(value, sock_type::kArray | sock_type::kInt16));
  EXPECT_EQ(std::get<QList<qint16>>(value), (QList<qint16>{0x6463, 0x6665}));
  EXPECT_EQ(Refusal(socket_->GetData(value, 9)), u"40018 UniSock.GetData"_s);
  ASSERT_TRUE(socket_->GetData(value, sock_type::kInt32));
  EXPECT_EQ(std::get<qint32>(value), 'g') << "missing bytes are not 0";
  ASSERT_TRUE(socket_->GetData(value));
  EXPECT_EQ(std::get<qint32>(value), 'g') << "nothing to take, and yet a value";
  socket_->SetMode(1);
  EXPECT_EQ(Refusal(socket_->GetData(value)), u"40006 UniSock.GetData"_s);
}

TEST_F(UniSockTest, FailedAndBrokenConnectionsAreReportedOnceAndCostNoTime) {
  const quint16 port = server_.serverPort();
  server_.close();
  ASSERT_TRUE(socket_->ConnectTo(kLoopback, port));
  ASSERT_TRUE(RunUntil([&] { return events_.Has(u"error"_s); }));
  EXPECT_EQ(events_.Take(), (QStringList{u"status 6"_s, u"status 9"_s,
                                         u"error 10061 UniSock Connection refused."_s}));
  EXPECT_EQ(socket_->State(), SockState::kConnecting);
  EXPECT_EQ(Refusal(socket_->SendData(QByteArray("x"))), u"40006 UniSock.SendData"_s);
  socket_->closesocket();
  EXPECT_EQ(events_.Take(), (QStringList{u"status 8"_s, u"status 0"_s}));

  events_.shows_errors = true;
  ASSERT_TRUE(server_.listen(QHostAddress::LocalHost, port));
  ConnectToServer();
  events_.Take();
  ResetByPeer();
  ASSERT_TRUE(RunUntil([&] { return events_.Has(u"box"_s); }));
  const std::clock_t before = std::clock();
  Idle(600ms);
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC * 45 / 100)
      << "the broken socket keeps the loop busy";
  EXPECT_EQ(events_.Take(),
            (QStringList{u"status 9"_s, u"error 10054 UniSock Connection reset by peer."_s,
                         u"box UniSock: Connection reset by peer."_s}));
  EXPECT_EQ(socket_->State(), SockState::kConnected);
}

TEST_F(UniSockTest, NamesThatAreUnknownOrNotWaitedForConnectNothing) {
  ASSERT_TRUE(socket_->ConnectTo(u"a..b"_s, 80));
  ASSERT_TRUE(RunUntil([&] { return events_.Has(u"error"_s); }));
  EXPECT_EQ(events_.Take(),
            (QStringList{u"status 4"_s, u"status 9"_s, u"error 11001 UniSock Host not found."_s}));
  socket_->closesocket();
  // Closed, and connected elsewhere, while the answer is on its way.
  for (int turns = 0; turns < 20; ++turns) {
    ASSERT_TRUE(socket_->ConnectTo(u"localhost"_s, server_.serverPort()));
    for (int turn = 0; turn < turns && socket_->State() == SockState::kResolving; ++turn) {
      QCoreApplication::processEvents();
    }
    socket_->closesocket();
    events_.Take();
    Idle(5ms);
    EXPECT_EQ(events_.Take(), QStringList()) << turns;
  }
  ASSERT_TRUE(socket_->ConnectTo(u"localhost"_s, server_.serverPort()));
  socket_.reset();
  events_.Take();
  Idle(20ms);
  EXPECT_EQ(events_.Take(), QStringList());
}

TEST_F(UniSockTest, APeerThatStallsGetsTheRestAsItReads) {
  ConnectToServer();
  events_.Take();
  QByteArray sent(24 << 20, Qt::Uninitialized);
  for (qsizetype i = 0; i < sent.size(); ++i) {
    sent[i] = static_cast<char>(i * 7 >> 3);
  }
  peer_->setReadBufferSize(1 << 16);
  // More is added in the events of the first piece.
  const QByteArray end = "the end";
  events_.handler = [&](const QString& event) {
    if (event.startsWith(u"progress"_s)) {
      events_.handler = {};
      EXPECT_TRUE(socket_->SendData(end));
    }
  };
  ASSERT_TRUE(socket_->SendData(sent));
  Idle(100ms);
  EXPECT_FALSE(events_.Has(u"complete"_s));
  const qsizetype stalled = events_.list.size();
  Idle(100ms);
  EXPECT_EQ(events_.list.size(), stalled) << "progress without a reader";
  QByteArray received;
  peer_->setReadBufferSize(0);
  EXPECT_TRUE(RunUntil([&] {
    received += peer_->readAll();
    return received.size() >= sent.size() + end.size();
  }));
  EXPECT_TRUE(received == sent + end) << received.size();
  EXPECT_EQ(events_.Count(u"complete"_s), 1);
  EXPECT_EQ(events_.list.last(), u"complete"_s);
  EXPECT_TRUE(events_.list.at(events_.list.size() - 2).endsWith(u" 0"_s));
}

TEST_F(UniSockTest, ACallerIsTakenDuringTheEventOrHungUpOn) {
  ASSERT_TRUE(socket_->bind(0, kLoopback)) << "no port was asked for";
  EXPECT_EQ(socket_->State(), SockState::kClosed);
  socket_->closesocket();
  const quint16 port = server_.serverPort();
  server_.close();
  ASSERT_TRUE(socket_->bind(port, kLoopback));
  EXPECT_TRUE(socket_->bind(1, u"192.0.2.77"_s)) << "an open socket stays as it is";
  ASSERT_EQ(socket_->listen(), true);
  EXPECT_EQ(socket_->State(), SockState::kOpen);
  EXPECT_EQ(socket_->LocalIP(), kLoopback);
  EXPECT_EQ(socket_->LocalPort(), port);

  QTcpSocket refused;
  refused.connectToHost(kLoopback, port);
  ASSERT_TRUE(RunUntil([&] { return events_.Has(u"request"_s); }));
  EXPECT_TRUE(RunUntil([&] { return refused.state() == QTcpSocket::UnconnectedState; }));
  UniSock taker;
  EXPECT_EQ(Refusal(taker.accept(events_.request_id)), u"40014 UniSock.Accept"_s);
  EXPECT_EQ(Refusal(taker.accept(0)), u"40020 UniSock.Accept"_s);
  EXPECT_EQ(socket_->RequestPort(), 0);

  Events of_taker;
  of_taker.Record(taker);
  QString caller;
  events_.handler = [&](const QString& event) {
    if (event == u"request"_s) {
      caller = u"%1:%2"_s.arg(socket_->RequestIP()).arg(socket_->RequestPort());
      EXPECT_EQ(Refusal(socket_->accept(events_.request_id)), u"40020 UniSock.Accept"_s);
      EXPECT_TRUE(taker.accept(events_.request_id));
      EXPECT_EQ(socket_->RequestIP(), QString());
    }
  };
  QTcpSocket accepted;
  accepted.connectToHost(kLoopback, port);
  accepted.write("hello");
  ASSERT_TRUE(RunUntil([&] { return of_taker.Has(u"data"_s); }));
  EXPECT_EQ(of_taker.Take(),
            (QStringList{u"status 8"_s, u"status 0"_s, u"status 7"_s, u"connect"_s, u"data 5"_s}));
  EXPECT_EQ(BytesOf(taker), "hello");
  EXPECT_EQ(caller, u"127.0.0.1:%1"_s.arg(accepted.localPort()));
  EXPECT_EQ(taker.RemotePort(), accepted.localPort());
  ASSERT_TRUE(taker.SendData(u"back"_s));
  EXPECT_TRUE(RunUntil([&] { return accepted.bytesAvailable() == 4; }));

  // The port is lost with the socket: another one listens after that, in a state that says closed.
  events_.handler = {};
  socket_->closesocket();
  ASSERT_EQ(socket_->listen(), true);
  EXPECT_EQ(socket_->State(), SockState::kClosed);
  EXPECT_NE(socket_->LocalPort(), port);
  EXPECT_NE(socket_->LocalPort(), 0);
  EXPECT_TRUE(server_.listen(QHostAddress::LocalHost, port)) << "the port is not free";
}

TEST_F(UniSockTest, ACallerForWhomThereIsNoHandleWaits) {
  const quint16 port = server_.serverPort();
  server_.close();
  ASSERT_TRUE(socket_->bind(port, kLoopback));
  ASSERT_EQ(socket_->listen(), true);
  QTcpSocket caller;
  caller.connectToHost(kLoopback, port);
  ASSERT_TRUE(caller.waitForConnected(5000));
  rlimit limit = {};
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlimit none{.rlim_cur = 3, .rlim_max = limit.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  const std::clock_t before = std::clock();
  Idle(600ms);
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC * 45 / 100) << "the caller keeps the loop busy";
  setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_TRUE(events_.Has(u"error 10024 UniSock Too many open files."_s));
  EXPECT_TRUE(RunUntil([&] { return events_.Has(u"request"_s); }));
}

TEST_F(UniSockTest, PortsAndAddressesThatCannotBeUsedAreReported) {
  const struct {
    int port;
    QString address;
    QString event;
  } cases[] = {
      {server_.serverPort(), kLoopback,
       u"error 10048 UniSock.Private_Bind Address already in use."_s},
      {1, u"192.0.2.77"_s, u"error 10049 UniSock.Private_Bind Cannot assign requested address."_s},
  };
  for (const auto& c : cases) {
    EXPECT_FALSE(socket_->bind(c.port, c.address) && socket_->listen() == true);
    EXPECT_EQ(events_.Take(), (QStringList{u"status 9"_s, c.event}));
    EXPECT_EQ(socket_->State(), SockState::kClosed);
    socket_->closesocket();
    events_.Take();
  }
  EXPECT_EQ(Refusal(socket_->SetLocalPort(65536)), u"40014 UniSock.LocalPort"_s);
  EXPECT_EQ(Refusal(socket_->SetRemotePort(-1)), u"40014 UniSock.RemotePort"_s);
  EXPECT_EQ(Refusal(socket_->SetLineChange(4)), u"40014 UniSock.LineChange"_s);
  EXPECT_EQ(socket_->ConnectIP(0x0100007F), false) << "there is no socket";
  socket_->ConnectTo({}, 80).value();
  EXPECT_EQ(events_.Take(), (QStringList{u"status 9"_s, u"status 9"_s}));
}

TEST_F(UniSockTest, DatagramsGoBothWaysAndOneThatIsLeftIsDropped) {
  QUdpSocket other;
  ASSERT_TRUE(other.bind(QHostAddress::LocalHost));
  ASSERT_TRUE(socket_->SetProtocol(SockProtocol::kUdp));
  EXPECT_EQ(Refusal(socket_->SendData(u"x"_s)), u"40006 UniSock.SendData"_s);
  ASSERT_TRUE(socket_->ConnectTo(kLoopback, other.localPort()));
  EXPECT_EQ(events_.Take(), QStringList{u"status 0"_s});
  const quint16 port = server_.serverPort();  // free for UDP
  ASSERT_TRUE(socket_->bind(port, kLoopback));
  EXPECT_EQ(Refusal(socket_->SetLocalPort(5)), u"40020 UniSock.LocalPort"_s);
  ASSERT_TRUE(socket_->SendText(u"ping"_s, 0));
  ASSERT_TRUE(RunUntil([&] { return other.hasPendingDatagrams(); }));
  char text[10] = {};
  EXPECT_EQ(other.readDatagram(text, sizeof text), 6);
  EXPECT_STREQ(text, "ping\r\n");
  events_.Take();

  QByteArray taken;
  const auto send = [&](const QByteArray& bytes) {
    other.writeDatagram(bytes, QHostAddress::LocalHost, port);
    const qsizetype before = events_.Count(u"data"_s);
    return RunUntil([&] { return events_.Count(u"data"_s) > before; });
  };
  EXPECT_TRUE(send("left"));
  EXPECT_EQ(socket_->BytesReceived(), 0) << "what is not taken stays";
  events_.handler = [&](const QString& /*event*/) {
    SockValue value = QByteArray();
    EXPECT_TRUE(socket_->PeekData(value));
    taken = BytesOf(*socket_) + '=' + std::get<QByteArray>(value);
  };
  EXPECT_TRUE(send("taken"));
  EXPECT_EQ(taken, "taken=taken");
  EXPECT_EQ(events_.Take(), (QStringList{u"data 4"_s, u"data 5"_s}));
}

TEST_F(UniSockTest, LinesOfTextAreSplitAndDecoded) {
  const QByteArray wide(reinterpret_cast<const char*>(u"é1\n2\nrest"), 18);
  const struct {
    QByteArray bytes;
    QStringList events;
    int left;
  } cases[] = {
      {"no end", {}, 6},
      {"one\r\ntwo\nstill two\r\nrest", {u"text one 2 0"_s, u"text two\nstill two 2 0"_s}, 4},
      {"one\ntwo\r\n", {u"text one\ntwo 2 0"_s}, 0},
      {"a\rb\r", {u"text a 2 0"_s, u"text b 2 0"_s}, 0},
      {"\n", {u"text  2 1"_s}, 0},
      {"gr\xC3\xBC\xC3\x9F\n", {u"text grüß 2 0"_s}, 0},
      {"bad\xFCx\n", {u"text bad\uFFFDx 2 1"_s}, 0},
      {"\xBF\n", {u"text \uFFFD 2 1"_s}, 0},
      {"cut \xC3\n", {u"text cut \uFFFD 2 0"_s}, 0},
      {wide, {u"text é1 1 1"_s, u"text 2 1 1"_s}, 8},
  };
  for (const auto& c : cases) {
    ConnectToServer();
    socket_->SetMode(1);
    events_.Take();
    peer_->write(c.bytes);
    ASSERT_TRUE(RunUntil([&] { return socket_->BytesReceived() > 0 || !events_.list.isEmpty(); }));
    EXPECT_EQ(events_.Take(), c.events) << c.bytes.toStdString();
    EXPECT_EQ(socket_->BytesReceived(), c.left) << c.bytes.toStdString();
    socket_->closesocket();
    peer_.reset();
  }
}

TEST_F(UniSockTest, SentLinesHaveTheChosenFormatAndEnd) {
  ConnectToServer();
  const struct {
    int format;
    int line_change;
    QByteArray bytes;
  } cases[] = {{0, 1, "ü\r\n"}, {0, 2, "ü\n"}, {1, 3, "ü\r"}, {2, 0, QByteArray("\xFC\0\0\0", 4)}};
  for (const auto& c : cases) {
    ASSERT_TRUE(socket_->SetLineChange(c.line_change));
    ASSERT_TRUE(socket_->SendText(u"ü"_s, c.format));
    ASSERT_TRUE(RunUntil([&] { return peer_->bytesAvailable() >= c.bytes.size(); }));
    EXPECT_EQ(peer_->readAll(), c.bytes);
  }
}

// A handler ends the socket at the first, the second, ... event of a life with all events.
TEST_F(UniSockTest, AHandlerMayCloseOrDeleteTheSocketInAnyEvent) {
  const auto use_client = [this] {
    socket_->ConnectTo(u"localhost"_s, server_.serverPort()).value();
    const auto is_ended = [this] {
      return socket_ == nullptr || socket_->State() == SockState::kClosed;
    };
    bool is_used = false;
    const auto use = [&] {
      if (is_ended() || (peer_ == nullptr && !TakePeer()) ||
          socket_->State() != SockState::kConnected) {
        return is_ended();
      }
      if (!std::exchange(is_used, true)) {
        static_cast<void>(socket_->SendData(QByteArray(40'000, 'x')));
        peer_->write("a\nb\n");
        peer_->flush();
      } else if (events_.Has(u"data"_s)) {
        socket_->SetMode(1);
        peer_->write("c\nd\n");
        peer_->disconnectFromHost();
      }
      return is_ended();
    };
    RunUntil(use, 5s);
  };
  const auto use_broken = [this] {
    events_.shows_errors = true;
    socket_->ConnectTo(kLoopback, server_.serverPort()).value();
    RunUntil(
        [&] {
          if (peer_ == nullptr && TakePeer()) {
            ResetByPeer();
          }
          return socket_ == nullptr || events_.Has(u"box"_s) ||
                 socket_->State() == SockState::kClosed;
        },
        5s);
  };
  const quint16 port = server_.serverPort();
  const auto use_listener = [this, port] {
    server_.close();
    socket_->bind(port, kLoopback);
    static_cast<void>(socket_ == nullptr || socket_->listen());
    QTcpSocket caller;
    caller.connectToHost(kLoopback, port);
    RunUntil([&] { return caller.state() == QTcpSocket::UnconnectedState; }, 5s);
  };
  const auto use_datagram = [this, port] {
    socket_->SetProtocol(SockProtocol::kUdp).value();
    socket_->SetRemoteHost(kLoopback).value();
    socket_->bind(port, kLoopback);
    QUdpSocket other;
    for (int i = 0; i < 3; ++i) {
      other.writeDatagram("x", QHostAddress::LocalHost, port);
    }
    RunUntil([&] { return socket_ == nullptr || events_.Count(u"data"_s) > 2; }, 50ms);
  };
  const std::function<void()> lives[] = {use_client, use_broken, use_datagram, use_listener};
  QSet<QString> seen;
  for (const auto& live : lives) {
    for (const bool is_deleted : {false, true}) {
      for (qsizetype at = 0;; ++at) {
        events_.handler = {};
        socket_.reset();
        server_.close();  // and with it callers of the life before
        ASSERT_TRUE(server_.listen(QHostAddress::LocalHost, port));
        peer_.reset();
        events_.Take();
        events_.shows_errors = false;
        socket_ = std::make_unique<UniSock>();
        events_.Record(*socket_);
        events_.handler = [&, at](const QString& event) {
          if (events_.list.size() == at + 1) {
            seen.insert(event.section(u' ', 0, 0));
            is_deleted ? socket_.reset() : socket_->closesocket();
          }
        };
        live();
        const qsizetype count = events_.list.size();
        Idle(10ms);
        EXPECT_EQ(events_.list.size(), count) << "an event follows the end";
        if (count <= at) {
          break;  // a whole life
        }
        QStringList after = events_.list.mid(at + 1);
        if (!is_deleted) {  // what is being reported is reported to its end
          after.removeIf([](const QString& each) {
            return each.startsWith(u"error"_s) || each.startsWith(u"box"_s);
          });
        }
        const QStringList closed{u"status 8"_s, u"status 0"_s};
        const bool was_closing = events_.list[at] == u"status 8"_s;
        EXPECT_EQ(after, is_deleted    ? QStringList()
                         : was_closing ? closed.mid(1)
                                       : closed)
            << events_.list[at].toStdString();
        EXPECT_TRUE(socket_ == nullptr || socket_->State() == SockState::kClosed);
      }
    }
  }
  EXPECT_EQ(seen, (QSet<QString>{u"status"_s, u"connect"_s, u"closing"_s, u"request"_s, u"data"_s,
                                 u"text"_s, u"progress"_s, u"complete"_s, u"error"_s, u"box"_s}));
}

TEST(SockValueTest, EachTypeGoesOverTheWireAndBack) {
  const struct {
    SockValue value;
    QByteArray bytes;
  } cases[] = {
      {qint16{-2}, "\xFE\xFF"},
      {qint32{0x01020304}, "\x04\x03\x02\x01"},
      {1.5F, QByteArray("\0\0\xC0\x3F", 4)},
      {-2.0, QByteArray("\0\0\0\0\0\0\0\xC0", 8)},
      {SockCurrency{12'500}, QByteArray("\xD4\x30\0\0\0\0\0\0", 8)},
      {SockDate{1.0}, QByteArray("\0\0\0\0\0\0\xF0\x3F", 8)},
      {u"grün"_s, "gr\xC3\xBCn"},
      {true, "\xFF\xFF"},
      {quint8{200}, "\xC8"},
      {QByteArray("\0\1", 2), QByteArray("\0\1", 2)},
      {QList<qint32>{1, -1}, QByteArray("\1\0\0\0\xFF\xFF\xFF\xFF", 8)},
      {QList<bool>{false, true}, QByteArray("\0\0\xFF\xFF", 4)},
      {QStringList{u"a"_s, u"b"_s}, "a\r\nb"},
  };
  for (const auto& c : cases) {
    const int type = TypeOf(c.value);
    EXPECT_EQ(ToBytes(c.value), c.bytes) << type;
    EXPECT_TRUE(FromBytes(c.bytes, type) == c.value) << type;
  }
  const int texts = sock_type::kArray | sock_type::kText;
  EXPECT_EQ(std::get<QStringList>(FromBytes("a\nb\rc", texts)), (QStringList{u"a"_s, u"b\rc"_s}));
  EXPECT_EQ(std::get<QStringList>(FromBytes(QByteArray("a\0b", 3), texts)),
            (QStringList{u"a"_s, u"b"_s}));
  EXPECT_EQ(BytesOfType(sock_type::kArray | sock_type::kDouble, 23), 16);
  EXPECT_EQ(BytesOfType(sock_type::kDouble, 5), 5);
  EXPECT_EQ(BytesOfType(9, 5), std::nullopt);
}

}  // namespace
}  // namespace quayline
