// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QUrl>

class QWebEngineLoadingInfo;

namespace quayline {

// Knows when a load of ours that failed is worth another try. Many routers start their web server,
// or themselves, anew behind a save, and the next page is asked for in the midst of it. Without an
// act shortly before, nobody is expected to come back: a wrong address is told at once. A page that
// breaks off is tried again once: half a form would be sent off as half a rule.
class LoadRetry final : public QObject {
  Q_OBJECT

 public:
  explicit LoadRetry(QObject* parent = nullptr);

  // The page was acted on.
  void NoteAct() { since_act_.start(); }
  // A load of ours begins.
  void NoteLoad(const QUrl& url);
  void NoteEnd() { since_load_.invalidate(); }
  // True where again() will come. What the page itself went for is never tried again: it may have
  // been a save.
  bool TryAgain(const QWebEngineLoadingInfo& failed);
  // False when there was nothing to stop.
  bool Stop();

 Q_SIGNALS:
  void again(const QUrl& url);

 private:
  QElapsedTimer since_act_;
  QElapsedTimer since_load_;
  QTimer pause_;
  bool was_short_ = false;
  QUrl url_;
};

}  // namespace quayline
