// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include "script/page_host.h"
#include "script/wait_limits.h"

namespace quayline {

// Why a frame navigates.
enum class FrameRequest { kPage, kForm, kRedirect };

// Knows whether a page or one of its frames navigates.
//
// The engine reports each start and end of the top page. Of a frame it reports the start only; the
// end is reported by the agent in the frame's new document. A frame whose answer is no document
// (204, a download) never has one, so a frame is given up when nothing has been requested from the
// router for a time. As long as a request is under way, it is waited for like the top page.
class NavigationWatch final : public QObject {
  Q_OBJECT

 public:
  explicit NavigationWatch(const WaitLimits& limits, QObject* parent = nullptr);

  NavigationState State() const { return state_; }
  bool IsLoading() const { return loading_; }
  // How many frames were asked for and have not arrived.
  qsizetype PendingFrames() const { return frames_.size() + frames_of_load_.size(); }

  // The program asks for a page; the engine reports the start a little later. A move within the
  // page (another "#") has no start and no end.
  void LoadAsked(bool within_page);
  void LoadStarted();
  void LoadEnded();
  // The load ended, and another one will take its place: busy without a gap.
  void LoadPostponed();
  void AddressChanged();
  void FrameAsked(const QUrl& url, quayline::FrameRequest kind);
  // A frame has a new document, which still loads.
  void FrameCreated();
  // Gives the address that was asked for, which is not that of an error page.
  QUrl FrameLoaded(const QUrl& url);
  void FrameEndedWithoutPage();
  // `url` was answered with nothing to show.
  void AnsweredEmpty(const QUrl& url);
  // Whether requests of the pages to the router are under way.
  void RequestsUnderWay(bool any);

 Q_SIGNALS:
  void changed();
  // The engine has begun no load for the address that the program asked for.
  void neverStarted();

 private:
  void Update(bool begun);
  void GuardFrames();

  const WaitLimits limits_;
  NavigationState state_;
  bool asked_ = false;
  bool within_page_ = false;
  bool loading_ = false;
  // Frames that were asked for and have not arrived. Those of a page that is loading do not count
  // for themselves: the end of the page comes after theirs.
  QList<QUrl> frames_;
  QList<QUrl> frames_of_load_;
  bool frame_is_form_ = false;
  bool any_under_way_ = false;
  bool any_answered_ = false;  // since the last frame was asked for
  bool any_created_ = false;   // likewise
  QTimer frame_guard_;
  QTimer start_guard_;
};

}  // namespace quayline
