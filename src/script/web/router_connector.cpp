// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/router_connector.h"

#include <QHostInfo>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace quayline {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kRoundPauses[] = {milliseconds(20), milliseconds(80), milliseconds(300)};

}  // namespace

RouterConnector::RouterConnector(TcpStream& stream) : stream_(stream) {
  pause_.setSingleShot(true);
  connect(&pause_, &QTimer::timeout, this, &RouterConnector::TryAddress);
}

void RouterConnector::Connect(const SiteOrigin& origin) {
  port_ = origin.port;
  const QHostAddress address(origin.host);
  if (!address.isNull()) {
    addresses_ = {address};
    TryAddress();
    return;
  }
  lookup_ = QHostInfo::lookupHost(origin.host, this, [this](const QHostInfo& info) {
    // The answer of a lookup that was cancelled may already be queued.
    if (info.lookupId() != lookup_) {
      return;
    }
    lookup_ = -1;
    addresses_ = info.addresses();
    // Routers are reached by IPv4; an IPv6 address without a route would hold the page up.
    std::ranges::stable_sort(addresses_, {}, [](const QHostAddress& found) {
      return found.protocol() == QAbstractSocket::IPv4Protocol ? 0 : 1;
    });
    if (addresses_.isEmpty()) {
      Q_EMIT nameNotFound();
    } else {
      TryAddress();
    }
  });
}

void RouterConnector::TryAddress() { stream_.ConnectTo(addresses_.at(next_address_), port_); }

bool RouterConnector::TryNextAddress() {
  if (next_address_ + 1 >= addresses_.size()) {
    return false;
  }
  ++next_address_;
  TryAddress();
  return true;
}

bool RouterConnector::TryAgain(int error, bool was_there) {
  const bool is_worth_it =
      error == 0 || error == ECONNRESET || (error == ECONNREFUSED && was_there);
  if (!is_worth_it || rounds_ >= std::ssize(kRoundPauses)) {
    return false;
  }
  next_address_ = 0;
  pause_.start(kRoundPauses[rounds_++]);
  return true;
}

void RouterConnector::Cancel() {
  pause_.stop();
  if (const int lookup = std::exchange(lookup_, -1); lookup >= 0) {
    QHostInfo::abortHostLookup(lookup);
  }
}

int NetErrorOfSocket(int error) {
  switch (error) {
    case ECONNREFUSED:
      return -102;
    case ETIMEDOUT:
      return -118;
    case ENETUNREACH:
    case EHOSTUNREACH:
    case EADDRNOTAVAIL:
      return -109;
    case ECONNRESET:
    case ECONNABORTED:
      return -101;
    default:
      return -104;
  }
}

}  // namespace quayline
