// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/demo_router.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include "demo/rules.h"
#include "test_main.h"

namespace quayline::demo {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
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

// What a browser posts of `fields`, which have commas between them.
QByteArray Form(const QByteArrayList& names, const QByteArray& fields) {
  const QByteArrayList values = fields.split(',');
  QByteArrayList form;
  for (qsizetype i = 0; i < names.size(); ++i) {
    form += names[i] + '=' + values[i];
  }
  return form.join('&');
}

QByteArray RuleForm(const QByteArray& fields) {
  return Form({"rule_name", "start_port", "end_port", "protocol", "server_ip"}, fields);
}

QByteArray RowForm(const QByteArray& row, const QByteArray& fields) {
  return Form({"name_" + row, "start_" + row, "end_" + row, "proto_" + row, "ip_" + row}, fields) +
         '&';
}

class DemoRouterTest : public ::testing::Test {
 protected:
  void Start(const QString& model, DemoOptions options = {}) {
    const auto started = router_.Start(model, options);
    ASSERT_TRUE(started.has_value()) << qPrintable(started.error());
    port_ = *started;
  }

  Answer Get(const QByteArray& path, const QByteArray& headers = kLogin) {
    return Exchange(port_, "GET " + path + " HTTP/1.1\r\n" + headers + "\r\n", 1).first();
  }
  static QByteArray PostBytes(const QByteArray& path, const QByteArray& body,
                              const QByteArray& headers = kLogin) {
    return "POST " + path + " HTTP/1.1\r\n" + headers +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
  }
  Answer Post(const QByteArray& path, const QByteArray& body, const QByteArray& headers = kLogin) {
    return Exchange(port_, PostBytes(path, body, headers), 1).first();
  }
  Answer Add(const QByteArray& fields) { return Post("/forwarding_add.html", RuleForm(fields)); }

  DemoRouter router_;
  quint16 port_ = 0;
};

TEST_F(DemoRouterTest, OnlyTheRightLoginOpensAPage) {
  Start(u"formback"_s, {.user = u"ad"_s, .password = u"a:ä"_s});
  const QByteArray right = QByteArray("ad:a:\xC3\xA4").toBase64();
  const struct {
    const char* fault;
    QByteArray header;
    int status = 401;
  } kRows[] = {
      {"none", ""},
      {"the right one", "Authorization: bAsIc " + right + "\r\n", 200},
      {"a wrong password", "Authorization: Basic " + QByteArray("ad:a").toBase64() + "\r\n"},
      {"a prefix of it", "Authorization: Basic " + QByteArray("ad:a:").toBase64() + "\r\n"},
      {"another scheme", "Authorization: Bearer " + right + "\r\n"},
      {"not base64", "Authorization: Basic %%%\r\n"},
      {"no credentials", "Authorization: Basic\r\n"},
  };
  for (const auto& row : kRows) {
    const Answer answer = Get("/forwarding.html", row.header);
    EXPECT_EQ(answer.status, row.status) << row.fault;
    EXPECT_EQ(answer.head.contains("WWW-Authenticate: Basic realm=\"HR100\""), row.status == 401)
        << row.fault;
  }
  const QByteArray rule = RuleForm("Web,80,80,tcp,192.168.1.2");
  EXPECT_EQ(Post("/forwarding_add.html", rule, "").status, 401);
  EXPECT_TRUE(router_.Rules().isEmpty());
  EXPECT_EQ(router_.Requests(), 8);
}

TEST_F(DemoRouterTest, OnlyTheRightMethodTouchesTheSideDoors) {
  Start(u"formback"_s);
  Add("Web,80,81,both,192.168.1.2");
  EXPECT_EQ(Get("/__reset", "").status, 405);
  EXPECT_EQ(Post("/__state", "", "").status, 405);
  const auto state = ReadState(Get("/__state", "").body);
  ASSERT_TRUE(state.has_value());
  EXPECT_EQ(state->rules, RulesOf("Web both 80 81 192.168.1.2"));
  EXPECT_EQ(state->model, u"formback"_s);
  EXPECT_EQ(state->requests, 1);
  EXPECT_EQ(state->saves, 1);
  EXPECT_EQ(Post("/__reset", "", "").status, 200);
  EXPECT_TRUE(router_.Rules().isEmpty());
  EXPECT_EQ(router_.Requests() + router_.Saves(), 0);
}

TEST_F(DemoRouterTest, FormbackAddsARuleAndLeadsBackToTheList) {
  Start(u"formback"_s);
  const Answer saved = Add("A%26%3Cb%3E,1000,1010,both,192.168.1.9");
  EXPECT_EQ(saved.status, 302);
  EXPECT_TRUE(saved.head.contains("Location: /forwarding.html\r\n"));
  EXPECT_EQ(router_.Rules(), RulesOf("A&<b> both 1000 1010 192.168.1.9"));
  const QByteArray list = Get("/forwarding.html").body;
  EXPECT_TRUE(list.contains("A&amp;&lt;b&gt;"));
  EXPECT_FALSE(list.contains("<b>A") || list.contains("&<b>"));
  EXPECT_EQ(Post("/forwarding.html", "delete=1").status, 302);
  EXPECT_EQ(router_.Rules().size(), 1);
  Post("/forwarding.html", "delete=0");
  EXPECT_TRUE(router_.Rules().isEmpty());
}

TEST_F(DemoRouterTest, FormbackRefusesABadRuleAndKeepsWhatWasTyped) {
  Start(u"formback"_s, {.entries = 2});
  Add("Web,80,90,tcp,192.168.1.2");
  const struct {
    const char* fault;
    QByteArray rule;
    RuleFault expected;
  } kRows[] = {
      {"no name", "+,1,1,tcp,10.0.0.1", RuleFault::kName},
      {"a long name", QByteArray(33, 'n') + ",1,1,tcp,10.0.0.1", RuleFault::kName},
      {"a line break in the name", "a%0Ab,1,1,tcp,10.0.0.1", RuleFault::kName},
      {"port 0", "x,0,1,tcp,10.0.0.1", RuleFault::kPort},
      {"a port too high", "x,1,65536,tcp,10.0.0.1", RuleFault::kPort},
      {"a signed port", "x,%2B1,1,tcp,10.0.0.1", RuleFault::kPort},
      {"no port", "x,,,tcp,10.0.0.1", RuleFault::kPort},
      {"ports the wrong way", "x,9,8,tcp,10.0.0.1", RuleFault::kPortOrder},
      {"a strange protocol", "x,1,1,icmp,10.0.0.1", RuleFault::kProtocol},
      {"three parts", "x,1,1,tcp,10.0.0", RuleFault::kAddress},
      {"a part too high", "x,1,1,tcp,10.0.0.256", RuleFault::kAddress},
      {"a host name", "x,1,1,tcp,frontdesk", RuleFault::kAddress},
      {"the name again", "wEB,1,1,tcp,10.0.0.1", RuleFault::kSameName},
      {"the ports again", "x,90,99,both,10.0.0.1", RuleFault::kSamePorts},
  };
  for (const auto& row : kRows) {
    const Answer answer = Add(row.rule);
    EXPECT_EQ(answer.status, 200) << row.fault;
    const QByteArray message = "<p class=\"fault\">" + FaultText(row.expected).toUtf8() + "</p>";
    EXPECT_TRUE(answer.body.contains(message)) << row.fault;
    EXPECT_EQ(router_.Rules().size(), 1) << row.fault;
  }
  const Answer shown = Add("%22%3Ex,70000,5,udp,10.0.0.1");
  EXPECT_TRUE(shown.body.contains("name=\"rule_name\" value=\"&quot;&gt;x\""));
  EXPECT_TRUE(shown.body.contains("value=\"70000\""));
  EXPECT_TRUE(shown.body.contains("<option value=\"udp\" selected>"));
  // Other protocol, same ports: no conflict. Then the table is full.
  EXPECT_EQ(Add("u,80,,udp,10.0.0.1").status, 302);
  EXPECT_EQ(router_.Rules().last().last, 80);
  EXPECT_TRUE(Add("y,5,5,tcp,10.0.0.1").body.contains(FaultText(RuleFault::kTableFull).toUtf8()));
  EXPECT_EQ(router_.Saves(), 2);
}

TEST_F(DemoRouterTest, RowtableSavesAllRowsOrNone) {
  Start(u"rowtable"_s, {.entries = 2});
  const struct {
    const char* fault;
    const char* second_row;
    RuleFault expected;
  } kRows[] = {
      {"ports without a name", ",5,5,tcp,10.0.0.2", RuleFault::kName},
      {"a name without ports", "Two,0,0,tcp,10.0.0.2", RuleFault::kPort},
      {"the same ports", "Two,1,9,tcp,10.0.0.2", RuleFault::kSamePorts},
  };
  for (const auto& row : kRows) {
    const QByteArray form =
        RowForm("1", "One,1,1,tcp,10.0.0.1") + "enable_1=1&" + RowForm("2", row.second_row);
    const Answer answer = Post("/forward.htm", form);
    EXPECT_TRUE(answer.body.contains("Row 2: " + FaultText(row.expected).toUtf8())) << row.fault;
    EXPECT_TRUE(answer.body.contains("value=\"One\"")) << row.fault;
    EXPECT_TRUE(router_.Rules().isEmpty()) << row.fault;
  }
  EXPECT_EQ(router_.Saves(), 0);
}

TEST_F(DemoRouterTest, PipelinedRequestsAreAnsweredInTheirOrderAlsoUnderADelay) {
  Start(u"formback"_s, {.delay = {1ms, 15ms}});
  const QByteArray get = " HTTP/1.1\r\n" + kLogin + "\r\n";
  const auto answers = Exchange(
      port_, "GET /none" + get + "GET /index.html" + get + "GET /forwarding.html" + get, 3);
  EXPECT_EQ(answers[0].status, 404);
  EXPECT_TRUE(answers[1].body.contains("<h1>Status</h1>"));
  EXPECT_TRUE(answers[2].body.contains("<h1>Port Forwarding</h1>"));
}

TEST_F(DemoRouterTest, ARefusalReachesAClientThatIsStillSending) {
  Start(u"formback"_s);
  const QByteArray bytes =
      "POST / HTTP/1.1\r\nContent-Length: 99999999\r\n\r\n" + QByteArray(600'000, 'x');
  EXPECT_EQ(Exchange(port_, bytes, 1).first().status, 413);
  EXPECT_EQ(Get("/index.html").status, 200);
}

TEST_F(DemoRouterTest, ARequestWhoseClientLeftDuringTheDelayHasNoEffect) {
  Start(u"formback"_s, {.delay = {150ms, 150ms}});
  {
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port_);
    socket.write(PostBytes("/forwarding_add.html", RuleForm("Web,80,80,tcp,192.168.1.2")));
    ASSERT_TRUE(RunUntil([&] {
      return socket.state() == QTcpSocket::ConnectedState && socket.bytesToWrite() == 0;
    }));
    RunUntil([] { return false; }, 30ms);
  }
  // Answered only when the first request's time is over as well.
  EXPECT_EQ(Get("/index.html").status, 200);
  EXPECT_EQ(router_.Requests(), 1);
  EXPECT_TRUE(router_.Rules().isEmpty());
}

TEST_F(DemoRouterTest, ListensOnLoopbackAloneAndSaysWhyItCannot) {
  Start(u"formback"_s);
  DemoRouter second;
  const auto taken = second.Start(u"formback"_s, {.port = port_});
  ASSERT_FALSE(taken.has_value());
  EXPECT_TRUE(taken.error().contains(QString::number(port_)));
  EXPECT_FALSE(second.Start(u"no such"_s, {}).has_value());
  for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
    if (address.isLoopback() || address.protocol() != QAbstractSocket::IPv4Protocol) {
      continue;
    }
    QTcpSocket socket;
    socket.connectToHost(address, port_);
    EXPECT_FALSE(RunUntil([&] { return socket.state() == QTcpSocket::ConnectedState; }, 100ms));
  }
}

}  // namespace
}  // namespace quayline::demo
