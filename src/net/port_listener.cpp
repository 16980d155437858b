// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/port_listener.h"

#include <QDateTime>
#include <QLocale>

namespace quayline {

namespace {

constexpr std::size_t kMaxCallers = 16;
constexpr int kMaxReports = 50;

constexpr Message kArrival{"Attempted connection from %1 on port %2 %3 at %4 %5",
                           "address, port, a number of the protocol, date and time"};

}  // namespace

PortListener::PortListener(SockProtocol protocol, int port, const QString& address,
                           const QByteArray& word, QObject* parent)
    : QObject(parent), word_(word) {
  connect(&socket_, &UniSock::ConnectionRequest, this, &PortListener::OnCaller);
  connect(&socket_, &UniSock::DataArrival, this, &PortListener::OnDatagram);
  // A port that cannot be opened leaves the socket closed, which is all that is looked at.
  std::ignore = socket_.SetProtocol(protocol);
  if (socket_.bind(port, address) && protocol == SockProtocol::kTcp && !socket_.listen()) {
    socket_.closesocket();
  }
}

PortListener::~PortListener() = default;

void PortListener::TakeAnything() {
  word_.clear();
  callers_.clear();
}

void PortListener::OnCaller(int request_id) {
  LogArrival();
  if (word_.isEmpty()) {
    Arrive();
    return;
  }
  // A stranger may keep silent, or call often: neither keeps the probe out.
  if (callers_.size() == kMaxCallers) {
    callers_.erase(callers_.begin());
  }
  UniSock* caller = callers_.emplace_back(std::make_unique<UniSock>()).get();
  connect(caller, &UniSock::DataArrival, this, [this, caller] { OnCallersBytes(*caller); });
  std::ignore = caller->accept(request_id);
}

void PortListener::OnCallersBytes(UniSock& caller) {
  SockValue bytes = QByteArray();
  std::ignore = caller.PeekData(bytes, 0, word_.size());
  const QByteArray said = std::get<QByteArray>(bytes);
  if (said == word_) {
    caller.closesocket();
    Arrive();
  } else if (!word_.startsWith(said)) {
    caller.closesocket();
  }
}

void PortListener::OnDatagram() {
  LogArrival();
  SockValue bytes = QByteArray();
  if (!word_.isEmpty()) {
    std::ignore = socket_.PeekData(bytes, 0, word_.size());
  }
  if (std::get<QByteArray>(bytes) == word_) {
    Arrive();
  }
}

// The sender is not known: nothing was accepted or read yet.
void PortListener::LogArrival() {
  if (reported_ == kMaxReports) {
    return;
  }
  ++reported_;
  const QDateTime now = QDateTime::currentDateTime();
  Q_EMIT heard({kArrival,
                {socket_.RemoteHostIP(), QString::number(socket_.LocalPort()),
                 QString::number(static_cast<int>(socket_.Protocol())),
                 QLocale().toString(now.date(), QLocale::ShortFormat),
                 QLocale().toString(now.time(), QLocale::LongFormat)}});
}

void PortListener::Arrive() {
  has_arrived_ = true;
  socket_.closesocket();
  Q_EMIT arrived();
}

}  // namespace quayline
