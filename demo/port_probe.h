// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHostAddress>
#include <QObject>
#include <QTimer>

#include <functional>

namespace quayline::demo {

struct ProbeTarget {
  QHostAddress address;
  quint16 port = 0;
  bool udp = false;
  // Sent to the port, so that who listens there knows this probe from a stranger's packet.
  QByteArray word;
};

// One probe of a port from the outside. TCP: a connection, on which the word is sent and the other
// side is given a second to read it. UDP: the word in a datagram, three times, since one may be
// lost. A probe reads nothing. It deletes itself after `done` was called.
class PortProbe final : public QObject {
 public:
  enum class Outcome {
    kConnected,  // TCP
    kRefused,    // TCP: something answered that nothing listens there
    kNoAnswer,   // TCP
    kSent,       // UDP, where the sender learns nothing
  };

  PortProbe(ProbeTarget target, std::function<void(Outcome)> done, QObject* parent);

 private:
  void ProbeTcp();
  void ProbeUdp();
  void End(Outcome outcome);

  ProbeTarget target_;
  std::function<void(Outcome)> done_;
  QTimer limit_;
};

}  // namespace quayline::demo
