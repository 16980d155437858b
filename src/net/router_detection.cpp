// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/router_detection.h"

#include <QElapsedTimer>

#include "async/wait.h"
#include "transport/unisock.h"

namespace quayline {

namespace {

constexpr int kMostRedirects = 2;

}  // namespace

void RouterDetection::Start(const QString& address, int port, const QStringList& names) {
  names_ = RouterNames(names);
  is_named_ = false;
  is_first_block_ = true;
  flow_.Start(Run(address, port));
}

Task<> RouterDetection::Run(QString address, int port) {
  WebTarget target = SplitWebAddress(address);
  if (target.host.isEmpty()) {
    co_return;
  }
  QByteArray reply = co_await Ask(target, port);
  QList<int> nearest = is_named_ ? QList<int>() : names_.Nearest(reply);
  for (int i = 0; i < kMostRedirects && !is_named_ && nearest.isEmpty(); ++i) {
    target.path = RedirectPath(reply, target.host);
    if (target.path.isEmpty()) {
      break;
    }
    reply = co_await Ask(target, port);
    nearest = is_named_ ? QList<int>() : names_.Nearest(reply);
  }
  if (!is_named_ && !is_first_block_) {
    Q_EMIT ended(nearest, names_nothing_);
  }
}

// What the router answers, as far as it comes in time; empty without an answer.
Task<QByteArray> RouterDetection::Ask(WebTarget target, int port) {
  UniSock socket;
  QByteArray reply;
  bool is_connected = false;
  bool is_over = false;
  connect(&socket, &UniSock::Connect, this, [&] { is_connected = true; });
  connect(&socket, &UniSock::Closing, this, [&] { is_over = true; });
  connect(&socket, &UniSock::Error, this, [&] { is_over = true; });
  connect(&socket, &UniSock::DataArrival, this, [&] {
    SockValue block = QByteArray();
    if (!is_over && socket.GetData(block)) {
      reply += std::get<QByteArray>(block);
      is_over = reply.size() >= limits_.max_bytes;
      ReadBlock(std::get<QByteArray>(block));  // a receiver of its signal may end all this
    }
  });
  if (!socket.SetRemoteHost(target.host) || !socket.SetRemotePort(port) ||
      !socket.ConnectTo({}, 0)) {
    co_return reply;
  }
  const bool is_in_time = co_await Until([&] { return is_connected; })
                              .WokenBy(&socket, &UniSock::Connect)
                              .AtMost(limits_.connect);
  if (!is_in_time || !socket.SendData(DetectionRequest(target))) {
    co_return reply;
  }
  QElapsedTimer timer;
  timer.start();
  while (!is_over && !timer.hasExpired(limits_.reply.count())) {
    const qsizetype before = reply.size();
    const bool goes_on = co_await Until([&] { return is_over || reply.size() > before; })
                             .WokenBy(&socket, &UniSock::DataArrival)
                             .WokenBy(&socket, &UniSock::Closing)
                             .WokenBy(&socket, &UniSock::Error)
                             .AtMost(reply.isEmpty() ? limits_.reply : limits_.next_block);
    if (!goes_on) {
      break;
    }
  }
  co_return reply;
}

// The rest of a page without quoted text does not take back what was found before.
void RouterDetection::ReadBlock(const QByteArray& block) {
  const int row = names_.FindRealm(RealmOf(QString::fromLocal8Bit(block)));
  if (std::exchange(is_first_block_, false)) {
    names_nothing_ = row == 0;
  }
  if (row > 0) {
    is_named_ = true;
    Q_EMIT named(row);
  }
}

}  // namespace quayline
