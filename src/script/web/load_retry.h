// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include "script/wait_limits.h"

class QWebEngineLoadingInfo;

namespace quayline {

// Decides whether a page of ours that failed is requested again. Many routers start their web
// server, or themselves, again after a save, and the next page is requested meanwhile.
//
// A request that may have reached the router is not repeated: a plain address can apply settings,
// or restart the router. So only a GET without a query is, within a minute after a user action, and
// only when no connection could be made or the answer is 503. A page that broke off is requested
// once more: half a form would be submitted as half a rule.
class LoadRetry final : public QObject {
  Q_OBJECT

 public:
  explicit LoadRetry(const WaitLimits& limits, QObject* parent = nullptr);

  // There was a user action on the page.
  void NoteAction() { since_action_.start(); }
  // A page of ours is requested: a GET of `url`.
  void NoteLoad(const QUrl& url);
  // Whatever fails from now on is not to be repeated.
  void NoteEnd() { since_load_.invalidate(); }
  // True when again() will follow, after a pause that grows from try to try. `net_error` is the
  // engine's number, corrected where the engine reports another one.
  bool TryAgain(const QWebEngineLoadingInfo& failed, int net_error);
  // False when there was nothing to stop.
  bool Stop();

 Q_SIGNALS:
  void again(const QUrl& url);

 private:
  const WaitLimits limits_;
  QElapsedTimer since_action_;
  QElapsedTimer since_load_;
  QTimer pause_;
  size_t tries_ = 0;
  bool was_short_ = false;
  QUrl url_;
};

}  // namespace quayline
