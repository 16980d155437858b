// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/navigation_watch.h"

#include <utility>

namespace quayline {

NavigationWatch::NavigationWatch(const WaitLimits& limits, QObject* parent)
    : QObject(parent), limits_(limits) {
  frame_guard_.setSingleShot(true);
  start_guard_.setSingleShot(true);
  connect(&frame_guard_, &QTimer::timeout, this, &NavigationWatch::FrameEndedWithoutPage);
  connect(&start_guard_, &QTimer::timeout, this, [this] {
    asked_ = false;
    Update(false);
    if (!within_page_) {
      Q_EMIT neverStarted();
    }
  });
}

void NavigationWatch::LoadAsked(bool within_page) {
  asked_ = true;
  within_page_ = within_page;
  if (!loading_) {  // a load that takes the place of another one has no start of its own
    start_guard_.start(within_page ? limits_.move_in_page : limits_.load_start);
  }
  Update(true);
}

void NavigationWatch::LoadStarted() {
  start_guard_.stop();
  asked_ = false;
  loading_ = true;
  frames_.clear();
  frames_of_load_.clear();
  Update(true);
}

void NavigationWatch::LoadEnded() {
  start_guard_.stop();
  asked_ = false;
  loading_ = false;
  frames_of_load_.clear();
  Update(false);
}

void NavigationWatch::LoadPostponed() {
  start_guard_.stop();
  asked_ = true;
  within_page_ = false;
  loading_ = false;
  Update(false);
}

void NavigationWatch::AddressChanged() {
  if (asked_ && within_page_) {
    start_guard_.stop();
    asked_ = false;
    Update(false);
  }
}

void NavigationWatch::FrameAsked(const QUrl& url, FrameRequest kind) {
  QList<QUrl>& frames = loading_ ? frames_of_load_ : frames_;
  if (kind == FrameRequest::kRedirect && !frames.isEmpty()) {
    frames.last() = url;
    return;
  }
  if (loading_) {
    frames_of_load_.append(url);
    return;
  }
  frame_is_form_ = kind == FrameRequest::kForm || (frame_is_form_ && !frames_.isEmpty());
  any_answered_ = false;
  any_created_ = false;
  frames_.append(url);
  GuardFrames();
  Update(true);
}

void NavigationWatch::FrameCreated() {
  any_created_ = true;
  GuardFrames();
}

QUrl NavigationWatch::FrameLoaded(const QUrl& url) {
  QUrl asked = url;
  QList<QUrl>& frames = loading_ ? frames_of_load_ : frames_;
  if (!frames.removeOne(url) && !frames.isEmpty()) {
    asked = frames.takeFirst();
  }
  Update(false);
  return asked;
}

void NavigationWatch::FrameEndedWithoutPage() {
  frames_.clear();
  Update(false);
}

void NavigationWatch::AnsweredEmpty(const QUrl& url) {
  if (frames_.removeOne(url)) {
    Update(false);
  }
}

void NavigationWatch::RequestsUnderWay(bool any) {
  any_answered_ = any_answered_ || (any_under_way_ && !any);
  any_under_way_ = any;
  GuardFrames();
}

void NavigationWatch::GuardFrames() {
  if (frames_.isEmpty() || any_under_way_) {
    frame_guard_.stop();
  } else {
    frame_guard_.start(any_answered_ && !any_created_ ? limits_.answered_frame
                       : frame_is_form_               ? limits_.form_in_frame
                                                      : limits_.frame);
  }
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
