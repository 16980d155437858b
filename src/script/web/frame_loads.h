// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUrl>

#include <optional>
#include <utility>

#include "script/web/load_questions.h"
#include "script/web/navigation_watch.h"
#include "script/web/web_page.h"

namespace quayline {

class WebProfile;

// The loads of a page's frames: with which status each was answered, and which one failed. Over
// plain HTTP the status comes from the gate, over TLS from the frame's own document, and of a
// connection that failed from the error page that the engine shows in the frame. PageLoads owns it.
//
// While the page itself loads, its frames are part of it: a failure is kept for the end of that.
class FrameLoads final : public QObject {
  Q_OBJECT

 public:
  FrameLoads(WebProfile& profile, NavigationWatch& watch, LoadQuestions& questions,
             QObject* parent);

  void SetPage(WebPage* page);
  // The page is loaded, or another one is.
  void Forget();
  // The first frame of the page that failed while it loaded, and its status.
  const std::optional<std::pair<QUrl, int>>& Failure() const { return failure_; }

  // Opens an address in the frame with this name; a popup where there is none.
  void Open(const QUrl& url, const QString& frame);

  // A frame begins to navigate.
  void Navigating(const QUrl& url, quayline::FrameRequest kind);
  // Whether `url` was requested last for the document of a frame.
  bool IsFrame(const QUrl& url) const;
  // A request for a frame's document was answered.
  void Answered(const QUrl& url, int status);
  void LoginRefused(const QUrl& url) { logins_refused_.insert(url); }
  // An error page with this error's name is about to be loaded in a frame.
  void ErrorShown(const QString& error_name) { error_ = error_name; }
  void Loaded(const QUrl& url);

 Q_SIGNALS:
  // No frame is on its way any more.
  void completed();
  // After the load of the page.
  void failed(const QUrl& url, int status);
  // The page still loads, and the frame may come when it is loaded once more.
  void missing(const QUrl& url);

 private:
  // A frame was kept from an address that is not the router's: the user is asked. If he allows it,
  // the page is loaded once more if it still loads, and else the frame.
  void OnBlocked(const QUrl& url, bool is_navigation_by_router);
  void OpenBlocked(const QUrl& url);
  void LoadedErrorPage(const QUrl& url);
  void Fail(const QUrl& url, int status);

  WebProfile& profile_;
  NavigationWatch& watch_;
  LoadQuestions& questions_;
  QPointer<WebPage> page_;
  QSet<QUrl> logins_refused_;
  QHash<QUrl, int> statuses_;
  std::optional<std::pair<QUrl, int>> failure_;
  QString error_;
};

}  // namespace quayline
