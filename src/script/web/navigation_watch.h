// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include "script/page_host.h"

namespace quayline {

// Why a frame is on its way.
enum class FrameRequest { kPage, kForm, kRedirect };

// Knows whether a page is on its way somewhere, out of what the engine tells of it.
//
// Of the top page the engine tells every start and end. A frame's start is told, but its end only
// by the agent in the frame's new document; a frame that is answered with nothing at all (204, a
// download) never has one, so that frames are given up after a time, which is longer for a form:
// that may be a save.
class NavigationWatch final : public QObject {
  Q_OBJECT

 public:
  explicit NavigationWatch(QObject* parent = nullptr);

  NavigationState State() const { return state_; }

  // The program asks for a page; the engine's own word comes a little later. A move within the
  // page (another "#") has no start and no end.
  void LoadAsked(bool within_page);
  void LoadStarted();
  void LoadEnded();
  void AddressChanged();
  void FrameAsked(const QUrl& url, quayline::FrameRequest kind);
  void FrameLoaded(const QUrl& url);
  void FrameEndedWithoutPage();

 Q_SIGNALS:
  void changed();

 private:
  void Update(bool begun);

  NavigationState state_;
  bool asked_ = false;
  bool within_page_ = false;
  bool loading_ = false;
  QList<QUrl> frames_;  // that were asked for and have not arrived
  QTimer guard_;
};

}  // namespace quayline
