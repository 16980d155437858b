// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "demo/port_probe.h"

#include <QTcpSocket>
#include <QUdpSocket>

#include <chrono>
#include <utility>

namespace quayline::demo {

namespace {

using namespace std::chrono_literals;

constexpr auto kConnectTime = 5s;
constexpr auto kReadTime = 1s;
constexpr int kDatagrams = 3;
constexpr auto kDatagramInterval = 150ms;

}  // namespace

PortProbe::PortProbe(ProbeTarget target, std::function<void(Outcome)> done, QObject* parent)
    : QObject(parent), target_(std::move(target)), done_(std::move(done)) {
  limit_.setSingleShot(true);
  if (target_.udp) {
    ProbeUdp();
  } else {
    ProbeTcp();
  }
}

void PortProbe::ProbeTcp() {
  auto* socket = new QTcpSocket(this);
  connect(&limit_, &QTimer::timeout, this, [this] { End(Outcome::kNoAnswer); });
  limit_.start(kConnectTime);
  connect(socket, &QTcpSocket::connected, this, [this, socket] {
    socket->write(target_.word + '\n');
    limit_.disconnect(this);
    connect(&limit_, &QTimer::timeout, this, [this] { End(Outcome::kConnected); });
    connect(socket, &QTcpSocket::disconnected, this, [this] { End(Outcome::kConnected); });
    limit_.start(kReadTime);
  });
  connect(socket, &QTcpSocket::errorOccurred, this,
          [this, socket](QAbstractSocket::SocketError error) {
            if (socket->state() != QAbstractSocket::ConnectedState &&
                error != QAbstractSocket::RemoteHostClosedError) {
              End(error == QAbstractSocket::ConnectionRefusedError ? Outcome::kRefused
                                                                   : Outcome::kNoAnswer);
            }
          });
  socket->connectToHost(target_.address, target_.port);
}

void PortProbe::ProbeUdp() {
  auto* socket = new QUdpSocket(this);
  connect(&limit_, &QTimer::timeout, this, [this, socket, sent = 0]() mutable {
    if (sent == kDatagrams) {
      End(Outcome::kSent);
      return;
    }
    ++sent;
    socket->writeDatagram(target_.word, target_.address, target_.port);
    limit_.start(kDatagramInterval);
  });
  limit_.start(0ms);
}

void PortProbe::End(Outcome outcome) {
  limit_.stop();
  if (const auto done = std::exchange(done_, {})) {
    done(outcome);
    deleteLater();
  }
}

}  // namespace quayline::demo
