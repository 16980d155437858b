// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUrl>

#include <functional>
#include <optional>

#include "script/page_host.h"
#include "script/web/frame_loads.h"
#include "script/web/load_questions.h"
#include "script/web/load_retry.h"
#include "script/web/navigation_watch.h"
#include "script/web/page_parts.h"
#include "script/web/page_request.h"

class QWebEngineLoadingInfo;

namespace quayline {

class WebPage;
class WebProfile;

// The loads of one hosted browser: requests pages, follows what the engine and the page's agent
// report of them, decides what is requested again, and gives each load one end. A load that is
// requested again, or that waits for the user, is under way without a gap.
class PageLoads final : public QObject {
  Q_OBJECT

 public:
  PageLoads(WebProfile& profile, std::function<WebPage*()> make_page,
            LoadQuestions::AskLogin ask_login, LoadQuestions::AskAddress ask_address,
            QObject* parent);

  void Follow(WebPage* page);

  NavigationState State() const { return watch_.State(); }
  // Whether `url` is a place within the document.
  bool IsWithinPage(const QUrl& url) const { return request_.IsWithinPage(url); }
  // Requests a page by GET, as the program's own.
  void Open(const QUrl& url);
  // A frame of the page, by its name.
  void OpenInFrame(const QUrl& url, const QString& frame) { frames_.Open(url, frame); }
  // Requests the page again, past all caches. Without a page there is nothing to do.
  void Refresh();
  // Ends what is loaded, and the tries that may follow.
  void Stop();
  // The user stopped the run. Ends what is no save: a page of ours, and the tries for one.
  void EndOwnLoads();
  void NoteAction() { retry_.NoteAction(); }

  // What the page's agent reports.
  void TopDocumentCreated() { request_.ShowErrorPages(true); }
  // The status of a frame's document, before its FrameLoaded().
  void FrameAnswered(const QUrl& url, int status) { frames_.Answered(url, status); }
  void FrameLoaded(const QUrl& url) { frames_.Loaded(url); }
  void FrameCreated() { watch_.FrameCreated(); }
  void FrameFailed(const QString& error_name) { frames_.ErrorShown(error_name); }
  void ResourceFailed(const QUrl& url);
  void DocumentTooLarge();
  // The page's process is about to be ended because of its size.
  void PageTooLarge() { load_.is_too_large = true; }

  void FileRefused() { watch_.FrameEndedWithoutPage(); }
  void RendererGone();

 Q_SIGNALS:
  void changed();
  void started(const QUrl& url);
  void completed();
  void failed(const QUrl& url, int status);
  void told(const QString& text, quayline::StatusKind kind);
  // Something that belongs in the log of the run.
  void noted(const QString& text);
  void resourceFailed(const QUrl& url);

 private:
  // What is known of the load of the top page that is under way, or was the last one.
  struct Load {
    QUrl url;
    bool is_ours = false;      // requested by Open(), not by the page
    bool is_repeated = false;  // requested once more because parts were missing
    bool is_invalid = false;   // the engine cannot parse the address
    int status = 0;            // of the last answer
    bool is_stopped = false;   // by the program
    bool is_too_large = false;
    bool is_process_gone = false;
    bool is_login_asked = false;
    bool is_login_refused = false;
  };

  void OnLoadingChanged(const QWebEngineLoadingInfo& info);
  // Requests a page of ours. The load is under way already.
  void Request(const QUrl& url);
  void OnStarted(const QUrl& url);
  void OnArrived();
  void OnStopped();
  void OnFailed(const QWebEngineLoadingInfo& info);
  void OnLoginRefused(const QUrl& url);
  // Fails a load, unless the answer is a login page to fill in.
  void FailUnlessLoginPage(const QUrl& url, int status);
  // False when there is no login to ask for, or nobody to ask.
  bool AskForLogin(const QUrl& url);
  // A page was blocked because it is not of the router. False: it stays blocked.
  bool AskForAddress(const QUrl& url, int status);
  void NoteLoginsArrived();
  void Finish();
  void Fail(const QUrl& url, int status);
  // Another load begins: what is known is known of this one.
  void Begin(Load load);

  WebProfile& profile_;
  LoadQuestions questions_;
  QPointer<WebPage> page_;
  NavigationWatch watch_;
  PageRequest request_;
  PageParts parts_;
  FrameLoads frames_;
  LoadRetry retry_;
  Load load_;
  bool is_asking_ = false;      // the load waits for an answer of the user
  bool is_ours_asked_ = false;  // the next start is that of our own request
};

}  // namespace quayline
