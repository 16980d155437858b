// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_listeners.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>

#include <algorithm>
#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// "address program", for each socket on the port.
QStringList On(int port, bool is_udp) {
  const auto listeners = LinuxListeners().List();
  if (!listeners) {
    return {u"no answer"_s};
  }
  QStringList texts;
  for (const Listener& each : *listeners) {
    if (each.port == port && each.is_udp == is_udp) {
      texts.append(each.address + (each.takes_ipv4 ? u" and IPv4 "_s : u" "_s) + each.program);
    }
  }
  return texts;
}

TEST(LinuxListeners, FindsTheSocketsOfThisProgramByAddressAndProtocol) {
  const QString program = u"platform_tests"_s;
  const struct {
    QHostAddress address;
    const char* text;
  } rows[] = {
      {QHostAddress(QHostAddress::AnyIPv4), "0.0.0.0 "},
      {QHostAddress(QHostAddress::LocalHost), "127.0.0.1 "},
      {QHostAddress(QHostAddress::Any), ":: and IPv4 "},
      {QHostAddress(QHostAddress::AnyIPv6), ":: "},
      {QHostAddress(QHostAddress::LocalHostIPv6), "::1 "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    QTcpServer tcp;
    QUdpSocket udp;
    if (!tcp.listen(row.address) || !udp.bind(row.address)) {
      EXPECT_EQ(row.address.protocol(), QAbstractSocket::IPv6Protocol) << "a system without IPv6";
      continue;
    }
    EXPECT_EQ(On(tcp.serverPort(), false), QStringList(QLatin1String(row.text) + program));
    EXPECT_EQ(On(udp.localPort(), true), QStringList(QLatin1String(row.text) + program));
    if (tcp.serverPort() != udp.localPort()) {
      EXPECT_EQ(On(tcp.serverPort(), true), QStringList());
    }
    const quint16 port = tcp.serverPort();
    tcp.close();
    EXPECT_EQ(On(port, false), QStringList()) << "it does not listen any more";
  }
}

// A connection has a port of its own as well, on which no other peer is answered.
TEST(LinuxListeners, TakesNoConnectionForAListener) {
  QTcpServer server;
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  QTcpSocket client;
  client.connectToHost(QHostAddress::LocalHost, server.serverPort());
  ASSERT_TRUE(client.waitForConnected());
  EXPECT_EQ(On(client.localPort(), false), QStringList());
  QUdpSocket partner;
  partner.connectToHost(QHostAddress::LocalHost, server.serverPort());
  ASSERT_TRUE(partner.waitForConnected());
  EXPECT_EQ(On(partner.localPort(), true), QStringList());
}

}  // namespace
}  // namespace quayline
