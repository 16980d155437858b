// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/port_check.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using quayline::testing::RunUntil;

// A page whose site does what the test wants when the form is sent.
class FakePage final : public TestPage {
 public:
  void Open(const QUrl& url) override {
    opened.append(url.path());
    while_loading();
    End(first_page);
  }
  void Fill(const QString& field, const QString& value, std::function<void(bool)> done) override {
    fields[field] = value;
    done(field != u"word"_s || has_word);
  }
  void Press(const QString& button, std::function<void(bool)> done) override {
    const bool has_button = button == u"Check Port"_s && is_test_page;
    if (has_button) {
      probe(fields[u"port"_s].toUShort(), fields[u"word"_s].toLatin1());
      End(result_page);
    }
    done(has_button);
  }

  enum class Load { kCompletes, kFails, kNever };
  Load first_page = Load::kCompletes;
  Load result_page = Load::kCompletes;
  bool is_test_page = true;
  bool has_word = true;
  std::function<void(quint16 port, const QByteArray& word)> probe = [](quint16, auto&) {};
  std::function<void()> while_loading = [] {};
  QStringList opened;
  QMap<QString, QString> fields;

 private:
  void End(Load load) {
    if (load == Load::kCompletes) {
      Q_EMIT completed();
    } else if (load == Load::kFails) {
      Q_EMIT failed();
    }
  }
};

// Calls a port of this computer and says something; waits until it was heard.
void CallTcp(quint16 port, const QByteArray& said) {
  QTcpSocket socket;
  socket.connectToHost(QHostAddress::LocalHost, port);
  socket.write(said);
  RunUntil([&] { return socket.state() == QAbstractSocket::UnconnectedState; }, 300ms);
}

void SendUdp(quint16 port, const QByteArray& said) {
  QUdpSocket().writeDatagram(said, QHostAddress::LocalHost, port);
  RunUntil([] { return false; }, 50ms);
}

quint16 FreePort() {
  QTcpServer server;
  server.listen(QHostAddress::LocalHost);
  return server.serverPort();
}

class PortCheckTest : public ::testing::Test {
 protected:
  PortTestState Test(SockProtocol protocol) {
    const quint16 port = FreePort();
    page_.while_loading = [&] { while_loading_(port); };
    PortCheck check(page_, site_);
    QObject::connect(&check, &PortCheck::heard,
                     [&](const Sentence& line) { heard_.append(EnglishOf(line)); });
    check.tests = {{.port = QString::number(port), .protocol = protocol}};
    check.Begin(u"127.0.0.1"_s);
    EXPECT_TRUE(RunUntil([&] { return !check.IsRunning(); }));
    return check.tests[0].state;
  }

  FakePage page_;
  MakerSite site_{.test_site = u"http://site.test"_s};
  QStringList heard_;
  std::function<void(quint16 port)> while_loading_ = [](quint16) {};
};

TEST_F(PortCheckTest, APortIsOpenOnlyIfTheProbeArrived) {
  using Probe = std::function<void(quint16, const QByteArray&)>;
  const Probe tcp = [](quint16 port, const QByteArray& word) { CallTcp(port, word + '\n'); };
  const Probe udp = [](quint16 port, const QByteArray& word) { SendUdp(port, word); };
  const Probe nothing = [](quint16, const QByteArray&) {};
  const Probe tcp_stranger = [](quint16 port, const QByteArray&) { CallTcp(port, "GET / HTTP/1"); };
  const Probe udp_stranger = [](quint16 port, const QByteArray&) { SendUdp(port, "hello"); };
  const struct {
    const char* fault;
    SockProtocol protocol;
    Probe probe;
    PortTestState expected;
    bool has_word = true;
  } cases[] = {
      {"a probe is not heard", SockProtocol::kTcp, tcp, PortTestState::kOpen},
      {"a datagram is not heard", SockProtocol::kUdp, udp, PortTestState::kOpen},
      {"open without a probe", SockProtocol::kTcp, nothing, PortTestState::kClosed},
      {"open without a datagram", SockProtocol::kUdp, nothing, PortTestState::kClosed},
      {"a stranger counts", SockProtocol::kTcp, tcp_stranger, PortTestState::kClosed},
      {"a stranger's datagram counts", SockProtocol::kUdp, udp_stranger, PortTestState::kClosed},
      {"a stranger keeps the probe out", SockProtocol::kTcp,
       [&](quint16 port, const QByteArray& word) {
         QTcpSocket silent;
         silent.connectToHost(QHostAddress::LocalHost, port);
         tcp_stranger(port, word);
         tcp(port, word);
       },
       PortTestState::kOpen},
      {"a stranger's datagram keeps the probe out", SockProtocol::kUdp,
       [&](quint16 port, const QByteArray& word) {
         udp_stranger(port, word);
         udp(port, word);
       },
       PortTestState::kOpen},
      {"a site without words is not understood", SockProtocol::kTcp, tcp_stranger,
       PortTestState::kOpen, false},
      {"its datagram is not understood", SockProtocol::kUdp, udp_stranger, PortTestState::kOpen,
       false},
  };
  for (const auto& row : cases) {
    page_.probe = row.probe;
    page_.has_word = row.has_word;
    heard_.clear();
    EXPECT_EQ(Test(row.protocol), row.expected) << row.fault;
    EXPECT_EQ(page_.opened.last().contains(u"udp"_s), row.protocol == SockProtocol::kUdp);
    if (row.expected == PortTestState::kOpen) {
      EXPECT_TRUE(heard_.value(0).startsWith(u"Attempted connection from 0.0.0.0 on port "_s))
          << row.fault;
    }
  }
}

TEST_F(PortCheckTest, AStrangerBeforeThePageHasLoadedIsNoProbe) {
  for (const bool has_word : {true, false}) {
    page_.has_word = has_word;
    while_loading_ = [](quint16 port) { CallTcp(port, "GET / HTTP/1"); };
    EXPECT_EQ(Test(SockProtocol::kTcp), PortTestState::kClosed) << has_word;
    while_loading_ = [](quint16 port) { SendUdp(port, "hello"); };
    EXPECT_EQ(Test(SockProtocol::kUdp), PortTestState::kClosed) << has_word;
  }
}

TEST_F(PortCheckTest, WithoutTheSitesAnswerNothingIsSaidOfThePort) {
  page_.first_page = FakePage::Load::kFails;
  EXPECT_EQ(Test(SockProtocol::kTcp), PortTestState::kNotTested);
  page_.first_page = FakePage::Load::kCompletes;
  page_.result_page = FakePage::Load::kFails;
  EXPECT_EQ(Test(SockProtocol::kTcp), PortTestState::kNotTested);
  page_.probe = [](quint16 port, const QByteArray& word) { CallTcp(port, word); };
  EXPECT_EQ(Test(SockProtocol::kTcp), PortTestState::kOpen);  // seen is seen
  page_.is_test_page = false;                                 // a hotel's login page, for example
  EXPECT_EQ(Test(SockProtocol::kTcp), PortTestState::kNotTested);
}

TEST_F(PortCheckTest, APortInUseIsReportedAndTheNextOneIsTested) {
  QTcpServer other;
  ASSERT_TRUE(other.listen(QHostAddress::LocalHost));
  page_.probe = [](quint16 port, const QByteArray& word) { CallTcp(port, word); };
  PortCheck check(page_, site_);
  check.tests = {{.port = QString::number(other.serverPort())},
                 {.port = u"70000"_s},
                 {.port = QString::number(FreePort())}};
  check.Begin(u"127.0.0.1"_s);
  ASSERT_TRUE(RunUntil([&] { return !check.IsRunning(); }));
  EXPECT_EQ(check.tests[0].state, PortTestState::kInUse);
  EXPECT_EQ(check.tests[1].state, PortTestState::kInUse);
  EXPECT_EQ(check.tests[2].state, PortTestState::kOpen);
  EXPECT_EQ(page_.opened.size(), 1);  // the site is not asked about ports that are in use
}

TEST_F(PortCheckTest, APageThatNeverCompletesHoldsTheCheckUntilItIsLeft) {
  page_.result_page = FakePage::Load::kNever;
  const quint16 port = FreePort();
  auto check = std::make_unique<PortCheck>(page_, site_);
  check->tests = {{.port = QString::number(port)}};
  check->Begin(u"127.0.0.1"_s);
  EXPECT_FALSE(RunUntil([&] { return !check->IsRunning(); }, 200ms));
  check.reset();
  QTcpServer next;
  EXPECT_TRUE(next.listen(QHostAddress::LocalHost, port));  // the port is closed
}

TEST(PortTests, EachRowOfTheListGivesOneTestOfItsStartPort) {
  const auto entry = [](const QString& protocol) {
    return PortEntry{.start_port = u"80"_s, .end_port = u"90"_s, .protocol = protocol};
  };
  const QList<PortTest> tests =
      TestsOf({entry(u"TCP"_s), entry(u"UDP"_s), entry(u"tcp/UDP"_s), entry(u"any"_s)});
  ASSERT_EQ(tests.size(), 3);
  EXPECT_EQ(tests[0].port, u"80"_s);
  EXPECT_EQ(tests[1].protocol, SockProtocol::kUdp);
  EXPECT_EQ(tests[2].protocol, SockProtocol::kTcp);
}

}  // namespace
}  // namespace quayline
