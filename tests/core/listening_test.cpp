// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/listening.h"

#include <gtest/gtest.h>

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

PortEntry Entry(const char* start, const char* end, const char* protocol,
                const char* to = "10.0.0.5(Desk)") {
  return {.app_name = u"Web"_s,
          .forwarded_to = QLatin1String(to),
          .start_port = QLatin1String(start),
          .end_port = QLatin1String(end),
          .protocol = QLatin1String(protocol),
          .description = {}};
}

Listener Tcp(int port, const char* address, const char* program = "sshd") {
  return {.port = port, .address = QLatin1String(address), .program = QLatin1String(program)};
}
Listener Udp(int port, const char* address) {
  return {.is_udp = true, .port = port, .address = QLatin1String(address), .program = u"game"_s};
}
Listener DualStack(int port) {
  return {.port = port, .address = u"::"_s, .takes_ipv4 = true, .program = u"node"_s};
}

TEST(Listening, SaysWhoWaitsForWhatTheRouterForwards) {
  const struct {
    PortEntry entry;
    QList<Listener> listeners;
    const char* text;
  } rows[] = {
      {Entry("80", "80", "TCP"), {}, "nothing listens on 80"},
      {Entry("80", "80", "TCP"), {Tcp(81, "0.0.0.0"), Udp(80, "0.0.0.0")}, "nothing listens on 80"},
      {Entry("80", "80", "TCP"), {Tcp(80, "0.0.0.0")}, "sshd listens"},
      {Entry("80", "80", "TCP"), {Tcp(80, "10.0.0.5", "")}, "a program listens"},
      {Entry("80", "80", "TCP"), {Tcp(80, "127.0.0.1")}, "listens on 127.0.0.1 only"},
      {Entry("80", "80", "TCP"),
       {Tcp(80, "::1"), Tcp(80, "127.0.0.1")},
       "listens on 127.0.0.1 only"},
      {Entry("80", "80", "TCP"),
       {Tcp(80, "127.0.0.1"), Tcp(80, "0.0.0.0", "nginx")},
       "nginx listens"},
      {Entry("80", "80", "TCP"), {Tcp(80, "10.0.0.6")}, "listens on 10.0.0.6 only"},
      {Entry("80", "80", "TCP"), {DualStack(80)}, "node listens"},
      {Entry("80", "80", "TCP"), {Tcp(80, "::")}, "listens on :: only"},
      {Entry("80", "80", "TCP/UDP"), {Tcp(80, "0.0.0.0")}, "sshd listens (TCP only)"},
      {Entry("80", "80", "TCP/UDP"), {Tcp(80, "0.0.0.0"), Udp(80, "0.0.0.0")}, "sshd listens"},
      {Entry("80", "80", "UDP"), {Udp(80, "0.0.0.0")}, "game listens"},
      {Entry("80", "90", "TCP"),
       {Tcp(79, "0.0.0.0"), Tcp(91, "0.0.0.0")},
       "nothing listens on 80-90"},
      {Entry("80", "90", "TCP"),
       {Tcp(80, "0.0.0.0"), Tcp(85, "0.0.0.0")},
       "sshd listens, not on 81-84, 86-90"},
      {Entry("80", "82", "TCP"),
       {Tcp(80, "0.0.0.0"), Tcp(81, "0.0.0.0"), Tcp(82, "0.0.0.0")},
       "sshd listens"},
      {Entry("1", "9", "TCP"),
       {Tcp(2, "0.0.0.0"), Tcp(4, "0.0.0.0"), Tcp(6, "0.0.0.0")},
       "sshd listens, not on 1, 3, 5, ..."},
      {Entry("80", "80", "TCP", "10.0.0.9(Other)"), {Tcp(80, "0.0.0.0")}, ""},
      {Entry("x", "80", "TCP"), {Tcp(80, "0.0.0.0")}, ""},
      {Entry("80", "70", "TCP"), {Tcp(80, "0.0.0.0")}, ""},
      {Entry("80", "70000", "TCP"), {Tcp(80, "0.0.0.0")}, ""},
  };
  const QStringList own{u"10.0.0.5"_s, u"10.0.0.6"_s};
  for (const auto& row : rows) {
    const auto listening = ListeningOf(row.entry, own, row.listeners);
    EXPECT_EQ(listening ? EnglishOf(ListeningText(*listening)) : QString(),
              QLatin1String(row.text));
  }
  EXPECT_EQ(EnglishOf(ListeningText(*ListeningOf(Entry("80", "80", "TCP"), own, std::nullopt))),
            u"unknown"_s);
}

}  // namespace
}  // namespace quayline
