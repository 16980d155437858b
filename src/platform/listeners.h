// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace quayline {

// A socket of this computer that waits for others: a TCP socket that listens, or a UDP socket that
// takes packets from anybody.
struct Listener {
  bool is_udp = false;
  int port = 0;
  // Where it listens, "0.0.0.0" or "::" for everywhere. An IPv4 address in IPv6 form is given as
  // IPv4.
  QString address;
  // Of "::" only: IPv4 reaches it as well.
  bool takes_ipv4 = false;
  QString program;  // its name; empty where this user may not see it

  bool operator==(const Listener&) const = default;
};

// The sockets of the running system on which programs wait for others.
class Listeners {
 public:
  virtual ~Listeners() = default;

  // Every call asks the system again, which takes a few milliseconds. Nothing when the system gives
  // no answer.
  virtual std::optional<QList<Listener>> List() const = 0;
};

}  // namespace quayline
