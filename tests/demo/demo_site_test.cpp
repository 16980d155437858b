// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/demo_site.h"

#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUdpSocket>

#include <gtest/gtest.h>

#include "demo/port_probe.h"
#include "test_main.h"

namespace quayline::demo {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using quayline::testing::RunUntil;

class DemoSiteTest : public ::testing::Test {
 protected:
  void Start(SiteOptions options = {}) {
    const auto started = site_.Start(options);
    ASSERT_TRUE(started.has_value()) << qPrintable(started.error());
    port_ = *started;
  }

  // A whole answer: head and body.
  QByteArray Ask(const QByteArray& method, const QByteArray& path, const QByteArray& body = {},
                 const QByteArray& header = {}) {
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port_);
    socket.write(method + ' ' + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n" + header +
                 "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    QByteArray received;
    EXPECT_TRUE(RunUntil(
        [&] {
          received += socket.readAll();
          return socket.state() == QAbstractSocket::UnconnectedState;
        },
        10s));
    return received;
  }

  QByteArray Probe(const char* path, int port, const QByteArray& word = "w") {
    return Ask("POST", path, "port=" + QByteArray::number(port) + "&word=" + word);
  }

  DemoSite site_;
  quint16 port_ = 0;
};

TEST_F(DemoSiteTest, TheProbeArrivesWithItsWordBeforeTheResultPage) {
  Start();
  QTcpServer tcp;
  ASSERT_TRUE(tcp.listen(QHostAddress::LocalHost));
  QByteArray heard;
  QObject::connect(&tcp, &QTcpServer::newConnection, &tcp, [&] {
    QTcpSocket* caller = tcp.nextPendingConnection();
    QObject::connect(caller, &QTcpSocket::readyRead, caller, [&heard, caller] {
      heard += caller->readAll();
      caller->disconnectFromHost();
    });
  });
  EXPECT_TRUE(Probe("/port_test.php", tcp.serverPort(), "a1b2").contains("connection was made"));
  EXPECT_EQ(heard, "a1b2\n");

  QUdpSocket udp;
  ASSERT_TRUE(udp.bind(QHostAddress::LocalHost));
  EXPECT_TRUE(Probe("/port_test_udp.php", udp.localPort(), "c3d4").contains("200 OK"));
  QByteArray datagram(16, '\0');
  datagram.resize(udp.readDatagram(datagram.data(), datagram.size()));
  EXPECT_EQ(datagram, "c3d4");
}

TEST_F(DemoSiteTest, AClosedPortIsRefusedAndASilentListenerStillAnswers) {
  Start();
  QTcpServer tcp;
  ASSERT_TRUE(tcp.listen(QHostAddress::LocalHost));  // accepts, reads nothing
  EXPECT_TRUE(Probe("/port_test.php", tcp.serverPort()).contains("connection was made"));
  const quint16 closed = tcp.serverPort();
  tcp.close();
  EXPECT_TRUE(Probe("/port_test.php", closed).contains("refused"));
}

TEST_F(DemoSiteTest, WhatIsNoPortIsNotProbed) {
  Start();
  for (const char* port : {"0", "65536", "-1", "", "80;81", "0x50", "99999999999"}) {
    EXPECT_TRUE(Ask("POST", "/port_test.php", QByteArray("port=") + port).contains(" 400 "))
        << port;
  }
  EXPECT_TRUE(Probe("/port_test.php", 1, QByteArray(65, 'w')).contains(" 400 "));
}

TEST_F(DemoSiteTest, OnlyTheAskingAddressIsProbedAndOnlyAProxyNamesAnother) {
  const QByteArray header = "X-Forwarded-For: 198.51.100.7, 203.0.113.5\r\n";
  Start();
  EXPECT_TRUE(Ask("GET", "/my-address", {}, header).endsWith("127.0.0.1\n"));
  DemoSite behind_proxy;
  port_ = *behind_proxy.Start({.proxy = QHostAddress(QHostAddress::LocalHost)});
  EXPECT_TRUE(Ask("GET", "/my-address", {}, header).endsWith("203.0.113.5\n"));
  EXPECT_TRUE(
      Ask("POST", "/port_test.php", "port=80", "X-Forwarded-For: nobody\r\n").contains(" 429 "));
}

TEST_F(DemoSiteTest, AnAddressGetsSoManyTestsAMinute) {
  Start({.probes_a_minute = 2});
  EXPECT_TRUE(Probe("/port_test.php", 1).contains("refused"));
  EXPECT_TRUE(Probe("/port_test.php", 1).contains("refused"));
  EXPECT_TRUE(Probe("/port_test.php", 1).contains(" 429 "));

  ProbeLimit limit(1);
  const auto begin = ProbeLimit::Clock::now();
  EXPECT_TRUE(limit.Allow(QHostAddress(u"2001:db8:0:1::1"_s), begin));
  EXPECT_FALSE(limit.Allow(QHostAddress(u"2001:db8:0:1::2"_s), begin));  // the same customer
  EXPECT_TRUE(limit.Allow(QHostAddress(u"2001:db8:0:2::1"_s), begin));
  EXPECT_TRUE(limit.Allow(QHostAddress(u"2001:db8:0:1::1"_s), begin + 1min));
}

TEST_F(DemoSiteTest, ServesTheFilesOfItsFolderAndNothingElse) {
  QTemporaryDir folder;
  ASSERT_TRUE(QDir(folder.path()).mkpath(u"site/files/pics"_s));
  for (const QString& name : {u"site/files/pics/a.svg"_s, u"site/secret"_s, u"outside"_s}) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("<svg/>") > 0);
  }
  ASSERT_TRUE(QFile::link(folder.filePath(u"outside"_s), folder.filePath(u"site/files/link"_s)));
  Start({.folder = folder.filePath(u"site"_s)});
  EXPECT_TRUE(Ask("GET", "/files/pics/a.svg").contains("image/svg+xml"));
  for (const char* path : {"/files/../secret", "/files/%2e%2e/secret", "/secret", "/files/link",
                           "/files/pics", "/files/../../outside", "/updates/x", "/"}) {
    EXPECT_TRUE(Ask("GET", path).contains(" 404 ")) << path;
  }
}

TEST_F(DemoSiteTest, ADatabaseThatIsMissingIsNamed) {
  QTemporaryDir folder;
  const auto started = site_.Start({.databases = folder.path()});
  ASSERT_FALSE(started.has_value());
  EXPECT_TRUE(started.error().contains(u"routers.mdb"_s));
}

}  // namespace
}  // namespace quayline::demo
