// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/http_fetch.h"

#include <QLoggingCategory>

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>

#include "async/wait.h"
#include "transport/curl_loop.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_transport, "quayline.transport")

constexpr long kMostRedirects = 5;
constexpr long kOk = 200;

bool IsWebAddress(const QUrl& address) {
  return address.isValid() && !address.host().isEmpty() &&
         (address.scheme() == QStringLiteral("http") ||
          address.scheme() == QStringLiteral("https"));
}

// One transfer and what it has brought so far. Stops when it is destroyed.
class Transfer final {
 public:
  Transfer(std::shared_ptr<CurlLoop> loop, const QUrl& address, const FetchLimits& limits);
  ~Transfer();
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  bool Start(std::function<void(CURLcode)> ended) { return loop_->Add(curl_, std::move(ended)); }
  std::expected<QByteArray, FetchError> Outcome(CURLcode result);
  long Status() const;

 private:
  static std::size_t OnData(char* data, std::size_t size, std::size_t count, void* self);

  void SetOptions(const QUrl& address, const FetchLimits& limits);
  std::optional<FetchError> ErrorOf(CURLcode result) const;
  bool IsAtWebAddress() const;

  std::shared_ptr<CurlLoop> loop_;
  CURL* curl_;
  qint64 max_bytes_;
  QByteArray body_;
};

Transfer::Transfer(std::shared_ptr<CurlLoop> loop, const QUrl& address, const FetchLimits& limits)
    : loop_(std::move(loop)), curl_(curl_easy_init()), max_bytes_(limits.max_bytes) {
  if (curl_ != nullptr) {
    SetOptions(address, limits);
  }
}

Transfer::~Transfer() {
  loop_->Remove(curl_);
  curl_easy_cleanup(curl_);
}

void Transfer::SetOptions(const QUrl& address, const FetchLimits& limits) {
  const auto most_ms = static_cast<qint64>(std::numeric_limits<int>::max());
  const auto timeout_ms = static_cast<qint64>(limits.timeout.count());
  SetCommonOptions(curl_);
  curl_easy_setopt(curl_, CURLOPT_URL, address.toEncoded(QUrl::FullyEncoded).constData());
  curl_easy_setopt(curl_, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(curl_, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(curl_, CURLOPT_MAXREDIRS, kMostRedirects);
  curl_easy_setopt(curl_, CURLOPT_FAILONERROR, 1L);
  curl_easy_setopt(curl_, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(max_bytes_));
  // 0 would mean no time limit at all.
  curl_easy_setopt(curl_, CURLOPT_TIMEOUT_MS,
                   static_cast<long>(std::clamp(timeout_ms, qint64{1}, most_ms)));
  curl_easy_setopt(curl_, CURLOPT_PROXY, "");
  curl_easy_setopt(curl_, CURLOPT_WRITEFUNCTION, &Transfer::OnData);
  curl_easy_setopt(curl_, CURLOPT_WRITEDATA, this);
}

std::size_t Transfer::OnData(char* data, std::size_t /*size*/, std::size_t count, void* self) {
  auto* transfer = static_cast<Transfer*>(self);
  const auto length = static_cast<qint64>(count);  // of bytes: libcurl's size is always 1
  if (transfer->max_bytes_ - transfer->body_.size() < length) {
    return CURL_WRITEFUNC_ERROR;
  }
  transfer->body_.append(data, length);
  return count;
}

long Transfer::Status() const {
  long status = 0;
  curl_easy_getinfo(curl_, CURLINFO_RESPONSE_CODE, &status);
  return status;
}

bool Transfer::IsAtWebAddress() const {
  const char* address = nullptr;
  curl_easy_getinfo(curl_, CURLINFO_EFFECTIVE_URL, &address);
  return IsWebAddress(QUrl::fromEncoded(QByteArray(address)));
}

std::optional<FetchError> Transfer::ErrorOf(CURLcode result) const {
  switch (result) {
    case CURLE_OK:
      return Status() == kOk ? std::nullopt : std::optional(FetchError::kHttpStatus);
    case CURLE_HTTP_RETURNED_ERROR:
    case CURLE_TOO_MANY_REDIRECTS:
      return FetchError::kHttpStatus;
    case CURLE_OPERATION_TIMEDOUT:
      return FetchError::kTimeout;
    case CURLE_FILESIZE_EXCEEDED:
    case CURLE_WRITE_ERROR:  // from OnData()
      return Status() == kOk ? FetchError::kTooLarge : FetchError::kHttpStatus;
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_URL_MALFORMAT:
      // An answer that is no HTTP has the same code as an address that is no web address.
      return IsAtWebAddress() ? FetchError::kNoConnection : FetchError::kBadAddress;
    default:
      return FetchError::kNoConnection;
  }
}

std::expected<QByteArray, FetchError> Transfer::Outcome(CURLcode result) {
  const std::optional<FetchError> error = ErrorOf(result);
  if (!error) {
    return std::move(body_);
  }
  return std::unexpected(*error);
}

// Not a member: it may run for a moment after its HttpFetch was destroyed.
Task<std::expected<QByteArray, FetchError>> Fetch(std::shared_ptr<CurlLoop> loop, QUrl address,
                                                  FetchLimits limits) {
  if (!IsWebAddress(address)) {
    co_return std::unexpected(FetchError::kBadAddress);
  }
  Transfer transfer(std::move(loop), address, limits);
  OneShot<CURLcode> ended;
  if (!transfer.Start(ended.Callback())) {
    co_return std::unexpected(FetchError::kNoConnection);
  }
  const std::optional<CURLcode> answer = co_await ended;
  const CURLcode result = answer.value_or(CURLE_ABORTED_BY_CALLBACK);
  auto outcome = transfer.Outcome(result);
  if (!outcome) {
    // The query stays out: it may hold what the user typed.
    qCInfo(log_transport) << "fetching" << address.host() + address.path()
                          << "failed:" << curl_easy_strerror(result) << transfer.Status();
  }
  co_return outcome;
}

}  // namespace

HttpFetch::HttpFetch() : loop_(std::make_shared<CurlLoop>()) {}

HttpFetch::~HttpFetch() { loop_->Close(); }

Task<std::expected<QByteArray, FetchError>> HttpFetch::Get(QUrl address, FetchLimits limits) {
  return Fetch(loop_, std::move(address), limits);
}

}  // namespace quayline
