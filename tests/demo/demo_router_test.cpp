// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/demo_router.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QTcpSocket>
#include <QUrlQuery>

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline::demo {
namespace {

using namespace std::chrono_literals;
using quayline::testing::RunUntil;

const QByteArray kLogin = "Authorization: Basic YWRtaW46YWRtaW4=\r\n";

struct Answer {
  int status = 0;
  QByteArray head;
  QByteArray body;
};

// Whole answers off one connection, in their order.
QList<Answer> Exchange(quint16 port, const QByteArray& bytes, qsizetype count) {
  QTcpSocket socket;
  socket.connectToHost(QHostAddress::LocalHost, port);
  socket.write(bytes);
  QByteArray received;
  QList<Answer> answers;
  const bool done = RunUntil(
      [&] {
        received += socket.readAll();
        const qsizetype end = received.indexOf("\r\n\r\n");
        if (end >= 0) {
          const QByteArray head = received.first(end);
          const qsizetype mark = head.indexOf("Content-Length: ");
          const qsizetype length = head.mid(mark + 16).split('\r').first().toLongLong();
          if (received.size() >= end + 4 + length) {
            answers.append({head.mid(9, 3).toInt(), head, received.mid(end + 4, length)});
            received.remove(0, end + 4 + length);
          }
        }
        return answers.size() == count;
      },
      10s);
  EXPECT_TRUE(done) << received.constData();
  answers.resize(count);
  return answers;
}

Answer Get(quint16 port, const QByteArray& path, const QByteArray& headers = kLogin) {
  return Exchange(port, "GET " + path + " HTTP/1.1\r\n" + headers + "\r\n", 1).first();
}

Answer Post(quint16 port, const QByteArray& path, const QByteArray& body,
            const QByteArray& headers = kLogin) {
  return Exchange(port,
                  "POST " + path + " HTTP/1.1\r\n" + headers +
                      "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body,
                  1)
      .first();
}

QByteArray RuleForm(const QByteArray& name, const QByteArray& first, const QByteArray& last,
                    const QByteArray& protocol, const QByteArray& address) {
  return "rule_name=" + name + "&start_port=" + first + "&end_port=" + last +
         "&protocol=" + protocol + "&server_ip=" + address;
}

class DemoRouterTest : public ::testing::Test {
 protected:
  void Start(const char* model, DemoOptions options = {}) {
    const auto started = router_.Start(QLatin1String(model), options);
    ASSERT_TRUE(started.has_value()) << started.error().toStdString();
    port_ = *started;
  }

  DemoRouter router_;
  quint16 port_ = 0;
};

TEST_F(DemoRouterTest, OnlyTheRightLoginOpensAPage) {
  Start("formback", {.user = QStringLiteral("ad"), .password = QStringLiteral("a:\u00e4")});
  const struct {
    const char* fault;
    QByteArray header;
    int status;
  } kRows[] = {
      {"none", "", 401},
      {"the right one", "Authorization: bAsIc " + QByteArray("ad:a:\xC3\xA4").toBase64(), 200},
      {"a wrong password", "Authorization: Basic " + QByteArray("ad:a").toBase64(), 401},
      {"a prefix of the password", "Authorization: Basic " + QByteArray("ad:a:").toBase64(), 401},
      {"another scheme", "Authorization: Bearer " + QByteArray("ad:a:\xC3\xA4").toBase64(), 401},
      {"not base64", "Authorization: Basic %%%", 401},
      {"no credentials", "Authorization: Basic", 401},
  };
  for (const auto& row : kRows) {
    const QByteArray header = row.header.isEmpty() ? QByteArray() : row.header + "\r\n";
    const Answer answer = Get(port_, "/forwarding.html", header);
    EXPECT_EQ(answer.status, row.status) << row.fault;
    EXPECT_EQ(answer.head.contains("WWW-Authenticate: Basic realm=\"HR100\""), row.status == 401)
        << row.fault;
  }
  EXPECT_EQ(
      Post(port_, "/forwarding_add.html", RuleForm("Web", "80", "80", "tcp", "192.168.1.2"), "")
          .status,
      401);
  EXPECT_TRUE(router_.Rules().isEmpty());
  EXPECT_EQ(router_.Requests(), 8);
}

TEST_F(DemoRouterTest, OnlyTheRightMethodTouchesTheSideDoors) {
  Start("formback");
  Post(port_, "/forwarding_add.html", RuleForm("Web", "80", "81", "both", "192.168.1.2"));
  EXPECT_EQ(Get(port_, "/__reset", "").status, 405);
  EXPECT_EQ(Post(port_, "/__state", "", "").status, 405);
  const auto state = ReadState(Get(port_, "/__state", "").body);
  ASSERT_TRUE(state.has_value());
  EXPECT_EQ(state->rules, router_.Rules());
  EXPECT_EQ(state->model, QStringLiteral("formback"));
  EXPECT_EQ(state->requests, 1);
  EXPECT_EQ(state->saves, 1);
  EXPECT_EQ(Post(port_, "/__reset", "", "").status, 200);
  EXPECT_TRUE(router_.Rules().isEmpty());
  EXPECT_EQ(router_.Requests() + router_.Saves(), 0);
}

TEST_F(DemoRouterTest, FormbackAddsARuleAndLeadsBackToTheList) {
  Start("formback");
  const Answer saved = Post(port_, "/forwarding_add.html",
                            RuleForm("A%26%3Cb%3E", "1000", "1010", "both", "192.168.1.9"));
  EXPECT_EQ(saved.status, 302);
  EXPECT_TRUE(saved.head.contains("Location: /forwarding.html\r\n"));
  const Rule expected{.name = QStringLiteral("A&<b>"),
                      .protocol = Protocol::kBoth,
                      .first = 1000,
                      .last = 1010,
                      .address = QStringLiteral("192.168.1.9"),
                      .enabled = true};
  EXPECT_EQ(router_.Rules(), QList<Rule>{expected});
  const QByteArray list = Get(port_, "/forwarding.html").body;
  EXPECT_TRUE(list.contains("A&amp;&lt;b&gt;"));
  EXPECT_FALSE(list.contains("<b>A") || list.contains("&<b>"));
  EXPECT_EQ(Post(port_, "/forwarding.html", "delete=1").status, 302);
  EXPECT_EQ(router_.Rules().size(), 1);
  Post(port_, "/forwarding.html", "delete=0");
  EXPECT_TRUE(router_.Rules().isEmpty());
}

TEST_F(DemoRouterTest, FormbackRefusesABadRuleAndKeepsWhatWasTyped) {
  Start("formback", {.entries = 2});
  Post(port_, "/forwarding_add.html", RuleForm("Web", "80", "90", "tcp", "192.168.1.2"));
  const struct {
    const char* fault;
    QByteArray form;
    RuleFault expected;
  } kRows[] = {
      {"no name", RuleForm("+", "1", "1", "tcp", "10.0.0.1"), RuleFault::kName},
      {"a long name", RuleForm(QByteArray(33, 'n'), "1", "1", "tcp", "10.0.0.1"), RuleFault::kName},
      {"a line break in the name", RuleForm("a%0Ab", "1", "1", "tcp", "10.0.0.1"),
       RuleFault::kName},
      {"port 0", RuleForm("x", "0", "1", "tcp", "10.0.0.1"), RuleFault::kPort},
      {"a port too high", RuleForm("x", "1", "65536", "tcp", "10.0.0.1"), RuleFault::kPort},
      {"a signed port", RuleForm("x", "%2B1", "1", "tcp", "10.0.0.1"), RuleFault::kPort},
      {"no port", RuleForm("x", "", "", "tcp", "10.0.0.1"), RuleFault::kPort},
      {"ports the wrong way", RuleForm("x", "9", "8", "tcp", "10.0.0.1"), RuleFault::kPortOrder},
      {"a strange protocol", RuleForm("x", "1", "1", "icmp", "10.0.0.1"), RuleFault::kProtocol},
      {"three parts", RuleForm("x", "1", "1", "tcp", "10.0.0"), RuleFault::kAddress},
      {"a part too high", RuleForm("x", "1", "1", "tcp", "10.0.0.256"), RuleFault::kAddress},
      {"a host name", RuleForm("x", "1", "1", "tcp", "frontdesk"), RuleFault::kAddress},
      {"the name again", RuleForm("wEB", "1", "1", "tcp", "10.0.0.1"), RuleFault::kSameName},
      {"the ports again", RuleForm("x", "90", "99", "both", "10.0.0.1"), RuleFault::kSamePorts},
  };
  for (const auto& row : kRows) {
    const Answer answer = Post(port_, "/forwarding_add.html", row.form);
    EXPECT_EQ(answer.status, 200) << row.fault;
    const QByteArray message = "<p class=\"fault\">" + FaultText(row.expected).toUtf8() + "</p>";
    EXPECT_TRUE(answer.body.contains(message)) << row.fault;
    EXPECT_EQ(router_.Rules().size(), 1) << row.fault;
  }
  const Answer shown =
      Post(port_, "/forwarding_add.html", RuleForm("%22%3Ex", "70000", "5", "udp", "10.0.0.1"));
  EXPECT_TRUE(shown.body.contains("name=\"rule_name\" value=\"&quot;&gt;x\""));
  EXPECT_TRUE(shown.body.contains("value=\"70000\""));
  EXPECT_TRUE(shown.body.contains("<option value=\"udp\" selected>"));
  // Other protocol, same ports: no conflict. Then the table is full.
  EXPECT_EQ(Post(port_, "/forwarding_add.html", RuleForm("u", "80", "", "udp", "10.0.0.1")).status,
            302);
  EXPECT_EQ(router_.Rules().last().last, 80);
  EXPECT_TRUE(Post(port_, "/forwarding_add.html", RuleForm("y", "5", "5", "tcp", "10.0.0.1"))
                  .body.contains(FaultText(RuleFault::kTableFull).toUtf8()));
  EXPECT_EQ(router_.Saves(), 2);
}

TEST_F(DemoRouterTest, RowtableKeepsEachRuleInItsRow) {
  Start("rowtable", {.entries = 3});
  const QByteArray row1 = "name_1=&start_1=0&end_1=0&proto_1=tcp&ip_1=0.0.0.0";
  const QByteArray row2 = "&name_2=Two&start_2=20&end_2=29&proto_2=both&ip_2=10.0.0.2&enable_2=1";
  const QByteArray row3 = "&name_3=Three&start_3=30&end_3=&proto_3=udp&ip_3=10.0.0.3";
  const Answer page = Post(port_, "/forward.htm", row1 + row2 + row3);
  EXPECT_EQ(page.status, 200);
  EXPECT_TRUE(page.body.contains("name=\"name_1\" value=\"\""));
  EXPECT_TRUE(page.body.contains("name=\"name_2\" value=\"Two\""));
  ASSERT_EQ(router_.Rules().size(), 2);
  EXPECT_EQ(router_.Rules().first().protocol, Protocol::kBoth);
  EXPECT_TRUE(router_.Rules().first().enabled);
  EXPECT_FALSE(router_.Rules().last().enabled);
  EXPECT_EQ(router_.Rules().last().last, 30);

  // Row 1 is filled behind the others: it stands in front of them, and none has moved.
  Post(port_, "/forward.htm",
       "name_1=One&start_1=1&end_1=1&proto_1=TCP&ip_1=10.0.0.1" + row2 + row3);
  EXPECT_EQ(router_.Rules().size(), 3);
  EXPECT_EQ(router_.Rules().first().name, QStringLiteral("One"));

  Post(port_, "/forward.htm", "name_2=&start_2=&end_2=&proto_2=tcp&ip_2=");
  ASSERT_EQ(router_.Rules().size(), 2) << "rows that were not posted must stay";
  EXPECT_EQ(router_.Rules().last().name, QStringLiteral("Three"));
}

TEST_F(DemoRouterTest, RowtableSavesAllRowsOrNone) {
  Start("rowtable", {.entries = 2});
  const QByteArray good = "name_1=One&start_1=1&end_1=1&proto_1=tcp&ip_1=10.0.0.1&enable_1=1";
  const struct {
    const char* fault;
    QByteArray second_row;
    RuleFault expected;
  } kRows[] = {
      {"ports without a name", "&name_2=&start_2=5&end_2=5&proto_2=tcp&ip_2=10.0.0.2",
       RuleFault::kName},
      {"a name without ports", "&name_2=Two&start_2=0&end_2=0&proto_2=tcp&ip_2=10.0.0.2",
       RuleFault::kPort},
      {"the same ports", "&name_2=Two&start_2=1&end_2=9&proto_2=tcp&ip_2=10.0.0.2",
       RuleFault::kSamePorts},
  };
  for (const auto& row : kRows) {
    const Answer answer = Post(port_, "/forward.htm", good + row.second_row);
    EXPECT_TRUE(answer.body.contains("Row 2: " + FaultText(row.expected).toUtf8())) << row.fault;
    EXPECT_TRUE(answer.body.contains("value=\"One\"")) << row.fault;
    EXPECT_TRUE(router_.Rules().isEmpty()) << row.fault;
  }
  EXPECT_EQ(router_.Saves(), 0);
}

TEST_F(DemoRouterTest, PipelinedRequestsAreAnsweredInTheirOrderAlsoUnderADelay) {
  Start("formback", {.delay = {1ms, 15ms}});
  const QByteArray get = " HTTP/1.1\r\n" + kLogin + "\r\n";
  const auto answers = Exchange(
      port_, "GET /none" + get + "GET /index.html" + get + "GET /forwarding.html" + get, 3);
  EXPECT_EQ(answers.at(0).status, 404);
  EXPECT_TRUE(answers.at(1).body.contains("<h1>Status</h1>"));
  EXPECT_TRUE(answers.at(2).body.contains("<h1>Port Forwarding</h1>"));
}

TEST_F(DemoRouterTest, ARefusalReachesAClientThatIsStillSending) {
  Start("formback");
  const QByteArray bytes =
      "POST / HTTP/1.1\r\nContent-Length: 99999999\r\n\r\n" + QByteArray(600'000, 'x');
  EXPECT_EQ(Exchange(port_, bytes, 1).first().status, 413);
  EXPECT_EQ(Get(port_, "/index.html").status, 200);
}

TEST_F(DemoRouterTest, ARequestWhoseClientLeftDuringTheDelayHasNoEffect) {
  Start("formback", {.delay = {150ms, 150ms}});
  const QByteArray body = RuleForm("Web", "80", "80", "tcp", "192.168.1.2");
  {
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port_);
    socket.write("POST /forwarding_add.html HTTP/1.1\r\n" + kLogin +
                 "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    ASSERT_TRUE(RunUntil([&] {
      return socket.state() == QTcpSocket::ConnectedState && socket.bytesToWrite() == 0;
    }));
    RunUntil([] { return false; }, 30ms);
  }
  // Answered only when the first request's time is over as well.
  EXPECT_EQ(Get(port_, "/index.html").status, 200);
  EXPECT_EQ(router_.Requests(), 1);
  EXPECT_TRUE(router_.Rules().isEmpty());
}

TEST_F(DemoRouterTest, ListensOnLoopbackAloneAndSaysWhyItCannot) {
  Start("formback");
  DemoRouter second;
  const auto taken = second.Start(QStringLiteral("formback"), {.port = port_});
  ASSERT_FALSE(taken.has_value());
  EXPECT_TRUE(taken.error().contains(QString::number(port_)));
  EXPECT_FALSE(second.Start(QStringLiteral("no such"), {}).has_value());
  for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
    if (address.isLoopback() || address.protocol() != QAbstractSocket::IPv4Protocol) {
      continue;
    }
    QTcpSocket socket;
    socket.connectToHost(address, port_);
    EXPECT_FALSE(RunUntil([&] { return socket.state() == QTcpSocket::ConnectedState; }, 100ms));
  }
}

TEST_F(DemoRouterTest, ThePageOfTheLongListNeverGrows) {
  Start("longlist", {.entries = 3});
  const auto RowsOf = [this] { return Get(port_, "/rules.html").body.count("name=\"mark_"); };
  EXPECT_EQ(RowsOf(), 3);
  const Answer saved =
      Post(port_, "/rules.html", RuleForm("Web", "80", "81", "both", "192.168.1.2") + "&enabled=1");
  EXPECT_EQ(saved.status, 302);
  EXPECT_TRUE(saved.head.contains("Location: /rules.html"));
  EXPECT_EQ(RowsOf(), 3);
  const Answer refused =
      Post(port_, "/rules.html", RuleForm("We<b", "x", "81", "both", "192.168.1.2"));
  EXPECT_EQ(refused.status, 200);
  EXPECT_TRUE(refused.body.contains("value=\"We&lt;b\"")) << "what was typed is gone";
  ASSERT_EQ(router_.Rules().size(), 1);
  EXPECT_TRUE(router_.Rules().first().enabled);
  Post(port_, "/rules.html", RuleForm("Off", "90", "90", "udp", "192.168.1.2"));
  ASSERT_EQ(router_.Rules().size(), 2);
  EXPECT_FALSE(router_.Rules().last().enabled) << "the box that is not checked counts";
}

}  // namespace
}  // namespace quayline::demo
