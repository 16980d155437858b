// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QHostAddress>

#include <chrono>

namespace quayline::demo {

// How often an address may ask for a probe. Counts by the minute; so many addresses at once that
// they cannot be counted are refused.
class ProbeLimit final {
 public:
  using Clock = std::chrono::steady_clock;

  explicit ProbeLimit(int probes_a_minute) : probes_a_minute_(probes_a_minute) {}

  // Whether `address` may have one more probe; counts it if so. Of an IPv6 address the network
  // counts, since one customer has all the addresses of it.
  bool Allow(const QHostAddress& address, Clock::time_point now);

 private:
  int probes_a_minute_;
  Clock::time_point minute_begin_{};
  QHash<QByteArray, int> probes_;  // of this minute, by address
};

}  // namespace quayline::demo
