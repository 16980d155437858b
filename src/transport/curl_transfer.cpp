// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/curl_transfer.h"

#include <QHostAddress>
#include <QLoggingCategory>

#include <algorithm>
#include <utility>

#include "async/wait.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_transfer, "quayline.transport")

constexpr int kMostRedirects = 5;
constexpr qsizetype kMostHeaderBytes = 64 << 10;
constexpr long kReceiveBytes = 256 << 10;  // of one read from the network
constexpr qsizetype kReadAhead = 512 << 10;

bool IsOnThisComputer(const QUrl& url) {
  return url.host() == QLatin1String("localhost") || QHostAddress(url.host()).isLoopback();
}

bool IsRedirect(const QByteArray& status) {
  return status == "301" || status == "302" || status == "303" || status == "307" ||
         status == "308";
}

std::optional<QByteArray> FindHeader(const QByteArrayList& lines, const QByteArray& name) {
  for (qsizetype i = 1; i < lines.size(); ++i) {
    const qsizetype colon = lines.at(i).indexOf(':');
    if (colon > 0 && lines.at(i).left(colon).compare(name, Qt::CaseInsensitive) == 0) {
      return lines.at(i).mid(colon + 1).trimmed();
    }
  }
  return std::nullopt;
}

}  // namespace

bool IsSafeToFetch(const QUrl& url) {
  return url.isValid() && !url.host().isEmpty() &&
         (url.scheme() == QLatin1String("https") ||
          (url.scheme() == QLatin1String("http") && IsOnThisComputer(url)));
}

CurlTransfer::CurlTransfer(TransferLimits limits) : limits_(limits) {}

CurlTransfer::~CurlTransfer() { Cancel(); }

void CurlTransfer::Cancel() {
  if (curl_ != nullptr) {
    loop_.Remove(curl_);
    curl_easy_cleanup(std::exchange(curl_, nullptr));
  }
  curl_slist_free_all(std::exchange(headers_, nullptr));
  body_.clear();
  is_paused_ = false;
  if (state_ == State::kExecuting || state_ == State::kBody) {
    End(TransferError::kCutOff);
  }
}

void CurlTransfer::Execute(const QByteArray& extra_headers) {
  Cancel();
  for (const QByteArray& line : extra_headers.split('\n')) {
    if (!line.trimmed().isEmpty()) {
      headers_ = curl_slist_append(headers_, line.trimmed().constData());
    }
  }
  error_.reset();
  redirects_ = 0;
  wanted_ = 0;
  state_ = State::kExecuting;
  curl_ = curl_easy_init();
  Request(url_);
}

// The signals of a request that cannot begin come before Execute() returns: whoever waits looks at
// StillExecuting() first.
void CurlTransfer::Request(const QUrl& url) {
  current_ = url;
  redirect_.reset();
  received_headers_.clear();
  header_bytes_ = 0;
  if (!IsSafeToFetch(url)) {
    End(TransferError::kBadAddress);
    return;
  }
  SetOptions(url);
  if (!loop_.Add(curl_, [this](CURLcode result) { OnEnded(result); })) {
    End(TransferError::kNoConnection);
  }
}

void CurlTransfer::SetOptions(const QUrl& url) {
  curl_easy_reset(curl_);
  SetCommonOptions(curl_);
  curl_easy_setopt(curl_, CURLOPT_URL, url.toEncoded(QUrl::FullyEncoded).constData());
  curl_easy_setopt(curl_, CURLOPT_FOLLOWLOCATION, 0L);  // OnEnded() looks where it leads
  // The status line of a later version has other places.
  curl_easy_setopt(curl_, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
  curl_easy_setopt(curl_, CURLOPT_CONNECTTIMEOUT, static_cast<long>(limits_.connect.count()));
  curl_easy_setopt(curl_, CURLOPT_LOW_SPEED_TIME, static_cast<long>(limits_.silence.count()));
  curl_easy_setopt(curl_, CURLOPT_LOW_SPEED_LIMIT, limits_.least_rate);
  if (IsOnThisComputer(url)) {
    curl_easy_setopt(curl_, CURLOPT_PROXY, "");
  }
  curl_easy_setopt(curl_, CURLOPT_HTTPHEADER, headers_);
  curl_easy_setopt(curl_, CURLOPT_BUFFERSIZE, kReceiveBytes);
  curl_easy_setopt(curl_, CURLOPT_HEADERFUNCTION, &CurlTransfer::OnHeader);
  curl_easy_setopt(curl_, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(curl_, CURLOPT_WRITEFUNCTION, &CurlTransfer::OnBody);
  curl_easy_setopt(curl_, CURLOPT_WRITEDATA, this);
}

std::size_t CurlTransfer::OnHeader(char* data, std::size_t /*size*/, std::size_t count,
                                   void* self) {
  const QByteArray line(data, static_cast<qsizetype>(count));
  return static_cast<CurlTransfer*>(self)->TakeHeaderLine(line.trimmed()) ? count : 0;
}

bool CurlTransfer::TakeHeaderLine(const QByteArray& line) {
  if (state_ != State::kExecuting) {
    return true;  // after the body
  }
  if (line.startsWith("HTTP/")) {
    received_headers_.clear();  // those before were of an interim answer
  }
  header_bytes_ += line.size();
  if (line.isEmpty()) {
    TakeEndOfHeaders();
  } else {
    received_headers_.append(line);
  }
  return header_bytes_ <= kMostHeaderBytes;
}

void CurlTransfer::TakeEndOfHeaders() {
  const QByteArray status = received_headers_.value(0).mid(9, 3);
  if (status.startsWith('1')) {
    return;
  }
  const auto location = FindHeader(received_headers_, "Location");
  if (IsRedirect(status) && location) {
    redirect_ = current_.resolved(QUrl::fromEncoded(*location));
    return;
  }
  state_ = State::kBody;
  Q_EMIT changed();
}

std::size_t CurlTransfer::OnBody(char* data, std::size_t /*size*/, std::size_t count, void* self) {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  if (transfer.redirect_) {
    return CURL_WRITEFUNC_ERROR;  // the page of a redirect is not wanted
  }
  if (transfer.body_.size() >= (transfer.wanted_ > 0 ? kReadAhead + transfer.wanted_ : 0)) {
    transfer.is_paused_ = true;
    return CURL_WRITEFUNC_PAUSE;
  }
  transfer.body_.append(data, static_cast<qsizetype>(count));
  Q_EMIT transfer.changed();
  return count;
}

void CurlTransfer::OnEnded(CURLcode result) {
  if (redirect_ && state_ == State::kExecuting &&
      (result == CURLE_OK || result == CURLE_WRITE_ERROR)) {
    ++redirects_;
    if (redirects_ > kMostRedirects) {
      End(TransferError::kBadAddress);
    } else {
      Request(*redirect_);
    }
    return;
  }
  if (result == CURLE_OK) {
    End(std::nullopt);
    return;
  }
  // The query stays out: it may hold what is private.
  qCInfo(log_transfer) << "fetching" << current_.host() + current_.path()
                       << "failed:" << curl_easy_strerror(result);
  End(ErrorOf(result));
}

void CurlTransfer::End(std::optional<TransferError> error) {
  error_ = error;
  state_ = State::kEnded;
  Q_EMIT changed();
}

TransferError CurlTransfer::ErrorOf(CURLcode result) const {
  switch (result) {
    case CURLE_OPERATION_TIMEDOUT:
      return TransferError::kTimeout;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CONNECT_ERROR:
      return TransferError::kNotTrusted;
    case CURLE_PARTIAL_FILE:
      return TransferError::kCutOff;
    default:
      return state_ == State::kBody ? TransferError::kCutOff : TransferError::kNoConnection;
  }
}

std::expected<QByteArray, TransferError> CurlTransfer::GetHeader(const QByteArray& name) const {
  if (received_headers_.isEmpty()) {
    return std::unexpected(error_.value_or(TransferError::kNoConnection));
  }
  if (state_ == State::kEnded && error_) {
    return std::unexpected(*error_);
  }
  return name.isEmpty() ? received_headers_.first()
                        : FindHeader(received_headers_, name).value_or(QByteArray());
}

void CurlTransfer::Continue() {
  if (std::exchange(is_paused_, false)) {
    curl_easy_pause(curl_, CURLPAUSE_CONT);
  }
}

Task<std::expected<QByteArray, TransferError>> CurlTransfer::GetChunk(qsizetype size) {
  if (state_ == State::kIdle) {
    co_return std::unexpected(TransferError::kNoConnection);
  }
  wanted_ = size;
  if (body_.size() < size && state_ != State::kEnded) {
    Continue();
    co_await Until([this, size] {
      return body_.size() >= size || state_ == State::kEnded;
    }).WokenBy(this, &HttpTransfer::changed);
  }
  // A few bytes before a broken end are not a last chunk.
  if (body_.size() < size && error_) {
    co_return std::unexpected(*error_);
  }
  QByteArray chunk = body_.left(size);
  body_.remove(0, chunk.size());
  co_return chunk;
}

}  // namespace quayline
