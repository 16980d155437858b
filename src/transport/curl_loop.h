// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <curl/curl.h>
#include <functional>
#include <map>

namespace quayline {

// Runs libcurl transfers on the Qt event loop: a notifier for each socket and one timer, no thread
// and no polling. The handles belong to the caller, who takes each out again before it is freed.
class CurlLoop final : public QObject {
  Q_OBJECT

 public:
  CurlLoop() = default;
  ~CurlLoop() override;

  // Starts the transfer. `ended` is called once, from the event loop, with libcurl's result; never
  // from inside this call, and never after Remove(). False when the transfer cannot be started.
  bool Add(CURL* transfer, std::function<void(CURLcode)> ended);

  // Stops the transfer, if it still runs.
  void Remove(CURL* transfer);

  // Ends all transfers with CURLE_ABORTED_BY_CALLBACK and refuses new ones.
  void Close();

 private:
  struct Notifiers {
    QSocketNotifier* read = nullptr;
    QSocketNotifier* write = nullptr;
  };

  bool Open();
  void Watch(curl_socket_t socket, int what);
  QSocketNotifier* MakeNotifier(curl_socket_t socket, QSocketNotifier::Type type, int event);
  void Act(curl_socket_t socket, int event);
  void ReportEnded();

  static int OnSocket(CURL* transfer, curl_socket_t socket, int what, void* self, void* unused);
  static int OnTimer(CURLM* multi, long milliseconds, void* self);

  CURLM* multi_ = nullptr;  // made by the first transfer: a run without one pays nothing
  bool is_closed_ = false;
  QTimer timer_;
  std::map<curl_socket_t, Notifiers> notifiers_;
  std::map<CURL*, std::function<void(CURLcode)>> transfers_;
};

// What all transfers have: only HTTP and HTTPS, certificates that are checked, the program's name.
void SetCommonOptions(CURL* transfer);

}  // namespace quayline
