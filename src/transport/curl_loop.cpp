// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/curl_loop.h"

#include <utility>

namespace quayline {

CurlLoop::~CurlLoop() {
  Close();
  if (multi_ != nullptr) {
    curl_multi_cleanup(multi_);
    curl_global_cleanup();
  }
}

bool CurlLoop::Open() {
  if (multi_ != nullptr) {
    return true;
  }
  if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
    return false;
  }
  multi_ = curl_multi_init();
  if (multi_ == nullptr) {
    curl_global_cleanup();
    return false;
  }
  curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, &CurlLoop::OnSocket);
  curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, &CurlLoop::OnTimer);
  curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, [this] { Act(CURL_SOCKET_TIMEOUT, 0); });
  return true;
}

bool CurlLoop::Add(CURL* transfer, std::function<void(CURLcode)> ended) {
  if (is_closed_ || transfer == nullptr || !Open()) {
    return false;
  }
  transfers_[transfer] = std::move(ended);
  if (curl_multi_add_handle(multi_, transfer) != CURLM_OK) {
    transfers_.erase(transfer);
    return false;
  }
  return true;
}

void CurlLoop::Remove(CURL* transfer) {
  if (transfers_.erase(transfer) > 0) {
    curl_multi_remove_handle(multi_, transfer);
  }
}

void CurlLoop::Close() {
  is_closed_ = true;
  for (const auto& [transfer, ended] : std::exchange(transfers_, {})) {
    curl_multi_remove_handle(multi_, transfer);
    ended(CURLE_ABORTED_BY_CALLBACK);
  }
}

int CurlLoop::OnTimer(CURLM* /*multi*/, long milliseconds, void* self) {
  QTimer& timer = static_cast<CurlLoop*>(self)->timer_;
  if (milliseconds < 0) {
    timer.stop();
  } else {
    timer.start(std::chrono::milliseconds(milliseconds));
  }
  return 0;
}

int CurlLoop::OnSocket(CURL* /*transfer*/, curl_socket_t socket, int what, void* self,
                       void* /*unused*/) {
  static_cast<CurlLoop*>(self)->Watch(socket, what);
  return 0;
}

void CurlLoop::Watch(curl_socket_t socket, int what) {
  if (what == CURL_POLL_REMOVE) {
    // Deleted later: this may run inside the signal of one of them. Disabled at once: libcurl
    // closes the socket next, and its number may be given to another.
    const Notifiers old = std::exchange(notifiers_[socket], {});
    notifiers_.erase(socket);
    for (QSocketNotifier* each : {old.read, old.write}) {
      each->setEnabled(false);
      each->deleteLater();
    }
    return;
  }
  Notifiers& notifiers = notifiers_[socket];
  if (notifiers.read == nullptr) {
    notifiers.read = MakeNotifier(socket, QSocketNotifier::Read, CURL_CSELECT_IN);
    notifiers.write = MakeNotifier(socket, QSocketNotifier::Write, CURL_CSELECT_OUT);
  }
  notifiers.read->setEnabled((what & CURL_POLL_IN) != 0);
  notifiers.write->setEnabled((what & CURL_POLL_OUT) != 0);
}

QSocketNotifier* CurlLoop::MakeNotifier(curl_socket_t socket, QSocketNotifier::Type type,
                                        int event) {
  auto* notifier = new QSocketNotifier(socket, type, this);
  connect(notifier, &QSocketNotifier::activated, this,
          [this, socket, event] { Act(socket, event); });
  return notifier;
}

void CurlLoop::Act(curl_socket_t socket, int event) {
  int running = 0;
  curl_multi_socket_action(multi_, socket, event, &running);
  ReportEnded();
}

void CurlLoop::ReportEnded() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
    const auto found = transfers_.find(message->easy_handle);
    if (message->msg != CURLMSG_DONE || found == transfers_.end()) {
      continue;
    }
    const CURLcode result = message->data.result;
    const auto ended = std::move(found->second);
    transfers_.erase(found);
    curl_multi_remove_handle(multi_, message->easy_handle);
    ended(result);
  }
}

void SetCommonOptions(CURL* transfer) {
  curl_easy_setopt(transfer, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(transfer, CURLOPT_NOSIGNAL, 1L);
  // Without it, stopping waits up to ten seconds for a name server that does not answer.
  curl_easy_setopt(transfer, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(transfer, CURLOPT_USERAGENT, "Quayline");
}

}  // namespace quayline
