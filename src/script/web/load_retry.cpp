// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/load_retry.h"

#include <QSet>
#include <QWebEngineLoadingInfo>

#include <utility>

namespace quayline {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPause(500);
constexpr milliseconds kLongestAbsence(30000);
constexpr milliseconds kActMemory(60000);

// Whether nobody answers at the address, or somebody who asks to come again.
bool IsAway(const QWebEngineLoadingInfo& failed) {
  constexpr int kComeAgain = 503;
  constexpr int kEmptyAnswer = -324;
  // Closed, reset, refused, unreachable, silent.
  static const QSet<int> nobody{-100, -101, -102, -109, -118};
  switch (failed.errorDomain()) {
    case QWebEngineLoadingInfo::ConnectionErrorDomain:
      return nobody.contains(failed.errorCode());
    case QWebEngineLoadingInfo::HttpErrorDomain:
      return failed.errorCode() == kEmptyAnswer;
    case QWebEngineLoadingInfo::HttpStatusCodeDomain:
      return failed.errorCode() == kComeAgain;
    default:
      return false;
  }
}

bool IsShort(const QWebEngineLoadingInfo& failed) {
  constexpr int kLengthMismatch = -354;
  constexpr int kChunksBrokenOff = -355;
  return failed.errorDomain() == QWebEngineLoadingInfo::HttpErrorDomain &&
         (failed.errorCode() == kLengthMismatch || failed.errorCode() == kChunksBrokenOff);
}

bool IsWithin(const QElapsedTimer& since, milliseconds limit) {
  return since.isValid() && !since.hasExpired(limit.count());
}

}  // namespace

LoadRetry::LoadRetry(QObject* parent) : QObject(parent) {
  pause_.setSingleShot(true);
  connect(&pause_, &QTimer::timeout, this, [this] { Q_EMIT again(url_); });
}

void LoadRetry::NoteLoad(const QUrl& url) {
  url_ = url;
  was_short_ = false;
  pause_.stop();
  since_load_.start();
}

bool LoadRetry::TryAgain(const QWebEngineLoadingInfo& failed) {
  const bool is_first_short = IsShort(failed) && !std::exchange(was_short_, true);
  const bool is_away = IsWithin(since_act_, kActMemory) && IsAway(failed);
  if (!(is_away || is_first_short) || !IsWithin(since_load_, kLongestAbsence) ||
      !failed.url().matches(url_, QUrl::RemoveFragment)) {
    since_load_.invalidate();
    return false;
  }
  pause_.start(kPause);
  return true;
}

bool LoadRetry::Stop() {
  const bool was_waiting = pause_.isActive();
  pause_.stop();
  since_load_.invalidate();
  return was_waiting;
}

}  // namespace quayline
