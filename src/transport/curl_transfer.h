// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

#include "transport/curl_loop.h"
#include "transport/http_transfer.h"

namespace quayline {

struct TransferLimits {
  std::chrono::seconds connect{20};
  std::chrono::seconds silence{30};  // a rate below `least_rate` for this long ends a request
  long least_rate = 64;              // bytes per second
};

// HttpTransfer by libcurl. The body is taken from the network as it is read: the rest
// stays with the server.
//
// Addresses are https, whose certificates are checked, or http on this computer. At most five
// redirects are followed, to such addresses only.
class CurlTransfer final : public HttpTransfer {
  Q_OBJECT

 public:
  explicit CurlTransfer(TransferLimits limits = {});
  ~CurlTransfer() override;

  void SetUrl(const QUrl& url) override { url_ = url; }
  void Execute(const QByteArray& extra_headers) override;
  bool StillExecuting() const override { return state_ == State::kExecuting; }
  std::expected<QByteArray, TransferError> GetHeader(const QByteArray& name) const override;
  Task<std::expected<QByteArray, TransferError>> GetChunk(qsizetype size) override;
  void Cancel() override;

 private:
  enum class State { kIdle, kExecuting, kBody, kEnded };

  static std::size_t OnHeader(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* self);

  void Request(const QUrl& url);
  void SetOptions(const QUrl& url);
  bool TakeHeaderLine(const QByteArray& line);
  void TakeEndOfHeaders();
  void OnEnded(CURLcode result);
  void End(std::optional<TransferError> error);
  void Continue();
  TransferError ErrorOf(CURLcode result) const;

  TransferLimits limits_;
  CurlLoop loop_;
  CURL* curl_ = nullptr;
  curl_slist* headers_ = nullptr;  // that are sent
  QUrl url_;                       // of the next request
  QUrl current_;                   // of the request that runs
  int redirects_ = 0;
  std::optional<QUrl> redirect_;  // that the headers ask for
  State state_ = State::kIdle;
  std::optional<TransferError> error_;
  QByteArrayList received_headers_;  // the status line first
  qsizetype header_bytes_ = 0;
  QByteArray body_;  // that was not read yet
  qsizetype wanted_ = 0;
  bool is_paused_ = false;
};

// Whether an address may be fetched: https, or http on this computer.
bool IsSafeToFetch(const QUrl& url);

}  // namespace quayline
