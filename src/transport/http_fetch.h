// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QUrl>
#include <chrono>
#include <expected>
#include <memory>

#include "async/task.h"

namespace quayline {

enum class FetchError {
  kBadAddress,    // not an http or https address
  kNoConnection,  // the name is unknown, nobody answers, or the connection broke
  kTimeout,       // no full answer within the time given
  kHttpStatus,    // an answer other than 200
  kTooLarge,      // more bytes than allowed
};

struct FetchLimits {
  qint64 max_bytes = qint64{16} << 20;
  std::chrono::milliseconds timeout = std::chrono::seconds(20);
};

// Fetches web resources in the background, on the event loop. One object can run several fetches;
// destroying a fetch's task stops it.
class HttpFetch final {
 public:
  HttpFetch();
  ~HttpFetch();
  HttpFetch(const HttpFetch&) = delete;
  HttpFetch& operator=(const HttpFetch&) = delete;

  // The body of `address` behind at most five redirects to http or https addresses.
  Task<std::expected<QByteArray, FetchError>> Get(QUrl address, FetchLimits limits);

 private:
  class Loop;
  std::unique_ptr<Loop> loop_;
};

}  // namespace quayline
