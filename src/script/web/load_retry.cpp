// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/load_retry.h"

#include <QSet>
#include <QWebEngineLoadingInfo>

#include <utility>

namespace quayline {

namespace {

bool IsAway(const QWebEngineLoadingInfo& failed, int net_error) {
  constexpr int kComeAgain = 503;
  // Refused, failed, no network, unreachable, not answered: the request reached no server.
  static const QSet<int> unreached{-102, -104, -106, -109, -118};
  return failed.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain
             ? failed.errorCode() == kComeAgain
             : unreached.contains(net_error);
}

bool IsShort(const QWebEngineLoadingInfo& failed) {
  constexpr int kLengthMismatch = -354;
  constexpr int kChunksBrokenOff = -355;
  return failed.errorDomain() == QWebEngineLoadingInfo::HttpErrorDomain &&
         (failed.errorCode() == kLengthMismatch || failed.errorCode() == kChunksBrokenOff);
}

}  // namespace

LoadRetry::LoadRetry(const WaitLimits& limits, QObject* parent) : QObject(parent), limits_(limits) {
  pause_.setSingleShot(true);
  connect(&pause_, &QTimer::timeout, this, [this] { Q_EMIT again(url_); });
}

void LoadRetry::NoteLoad(const QUrl& url) {
  url_ = url;
  was_short_ = false;
  tries_ = 0;
  pause_.stop();
  since_load_.start();
}

bool LoadRetry::TryAgain(const QWebEngineLoadingInfo& failed, int net_error) {
  if (!since_load_.isValid() || url_.hasQuery() || tries_ >= limits_.load_pauses.size() ||
      !failed.url().matches(url_, QUrl::RemoveFragment)) {
    NoteEnd();
    return false;
  }
  const WaitLimits::Time pause = limits_.load_pauses.at(tries_);
  const bool is_first_short = IsShort(failed) && !std::exchange(was_short_, true);
  const bool is_after_action =
      since_action_.isValid() && !since_action_.hasExpired(limits_.action_memory.count());
  const bool is_in_time = since_load_.elapsed() + pause.count() <= limits_.absence.count();
  if (!is_first_short && !(is_after_action && is_in_time && IsAway(failed, net_error))) {
    NoteEnd();
    return false;
  }
  ++tries_;
  pause_.start(pause);
  return true;
}

bool LoadRetry::Stop() {
  const bool was_waiting = pause_.isActive();
  pause_.stop();
  NoteEnd();
  return was_waiting;
}

}  // namespace quayline
