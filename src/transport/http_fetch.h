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

class CurlLoop;

enum class FetchError {
  kBadAddress,    // not an http or https address
  kNoConnection,  // the name is unknown, there is no answer, or the connection broke
  kTimeout,       // no full answer within the time given
  kHttpStatus,    // an answer other than 200
  kTooLarge,      // more bytes than allowed
};

struct FetchLimits {
  qint64 max_bytes = qint64{16} << 20;
  std::chrono::milliseconds timeout = std::chrono::seconds(20);
};

// Fetches web resources in the background, on the event loop. One object can run several fetches;
// destroying a fetch's task stops it, and destroying the object ends those under way with
// kNoConnection. Connects directly, without the proxy of the environment, keeps no cookies and
// trusts no certificate that the system does not trust.
class HttpFetch final {
 public:
  HttpFetch();
  ~HttpFetch();
  HttpFetch(const HttpFetch&) = delete;
  HttpFetch& operator=(const HttpFetch&) = delete;

  // The body of `address` after at most five redirects to http or https addresses. More redirects
  // are kHttpStatus, one to another kind of address is kBadAddress.
  Task<std::expected<QByteArray, FetchError>> Get(QUrl address, FetchLimits limits);

 private:
  // Shared with the fetches under way, which may outlive this object by a moment.
  std::shared_ptr<CurlLoop> loop_;
};

}  // namespace quayline
