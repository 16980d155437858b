// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "demo/probe_limit.h"

namespace quayline::demo {

namespace {

constexpr qsizetype kMaxAddresses = 10'000;

QByteArray CountedAddress(const QHostAddress& address) {
  bool is_v4 = false;
  if (const quint32 v4 = address.toIPv4Address(&is_v4); is_v4) {
    return QByteArray::number(v4, 16);
  }
  constexpr int kNetworkBytes = 8;
  const Q_IPV6ADDR v6 = address.toIPv6Address();
  return QByteArray(reinterpret_cast<const char*>(v6.c), kNetworkBytes);
}

}  // namespace

bool ProbeLimit::Allow(const QHostAddress& address, Clock::time_point now) {
  if (now - minute_begin_ >= std::chrono::minutes(1)) {
    minute_begin_ = now;
    probes_.clear();
  }
  const QByteArray counted = CountedAddress(address);
  if (!probes_.contains(counted) && probes_.size() >= kMaxAddresses) {
    return false;
  }
  int& probes = probes_[counted];
  if (probes >= probes_a_minute_) {
    return false;
  }
  ++probes;
  return true;
}

}  // namespace quayline::demo
