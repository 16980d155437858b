// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/navigation_watch.h"

namespace quayline {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFrameGuard(8000);
constexpr milliseconds kFormGuard(20000);
constexpr milliseconds kMoveGuard(1000);

}  // namespace

NavigationWatch::NavigationWatch(QObject* parent) : QObject(parent) {
  guard_.setSingleShot(true);
  connect(&guard_, &QTimer::timeout, this, [this] {
    frames_.clear();
    if (within_page_) {
      asked_ = false;
    }
    Update(false);
  });
}

void NavigationWatch::LoadAsked(bool within_page) {
  asked_ = true;
  within_page_ = within_page;
  if (within_page) {
    guard_.start(kMoveGuard);
  }
  Update(true);
}

void NavigationWatch::LoadStarted() {
  asked_ = false;
  loading_ = true;
  frames_.clear();
  Update(true);
}

void NavigationWatch::LoadEnded() {
  asked_ = false;
  loading_ = false;
  Update(false);
}

void NavigationWatch::AddressChanged() {
  if (asked_ && within_page_) {
    asked_ = false;
    Update(false);
  }
}

void NavigationWatch::FrameAsked(const QUrl& url, FrameRequest kind) {
  if (loading_) {
    return;  // the end of the top page comes behind those of its frames
  }
  if (kind == FrameRequest::kRedirect && !frames_.isEmpty()) {
    frames_.last() = url;
    return;
  }
  frames_.append(url);
  const milliseconds guard = kind == FrameRequest::kForm ? kFormGuard : kFrameGuard;
  guard_.start(std::max(guard, guard_.remainingTimeAsDuration()));
  Update(true);
}

void NavigationWatch::FrameLoaded(const QUrl& url) {
  if (!frames_.removeOne(url) && !frames_.isEmpty()) {
    frames_.removeFirst();
  }
  Update(false);
}

void NavigationWatch::FrameEndedWithoutPage() {
  frames_.clear();
  Update(false);
}

void NavigationWatch::Update(bool begun) {
  const bool busy = asked_ || loading_ || !frames_.isEmpty();
  if (begun || busy != state_.busy) {
    state_.starts += begun ? 1 : 0;
    state_.busy = busy;
    Q_EMIT changed();
  }
}

}  // namespace quayline
