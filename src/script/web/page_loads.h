// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

#include "script/page_host.h"
#include "script/web/load_retry.h"
#include "script/web/login_probe.h"
#include "script/web/navigation_watch.h"

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
  // Asks the user for the login of a router.
  using AskLogin = std::function<void(
      const QString& address, const std::function<void(std::optional<TypedLogin>)>& answer)>;

  // Asks the user whether pages may go to the origin of `url`, which the router led to.
  using AskAddress =
      std::function<void(const QUrl& url, const std::function<void(bool allowed)>& answer)>;

  PageLoads(WebProfile& profile, std::function<WebPage*()> make_page, AskLogin ask_login,
            AskAddress ask_address, QObject* parent);

  void Follow(WebPage* page);

  NavigationState State() const { return watch_.State(); }
  // Whether `url` is a place within the document.
  bool IsWithinPage(const QUrl& url) const;
  // Requests a page by GET, as the program's own.
  void Open(const QUrl& url);
  // A frame of the page, by its name.
  void OpenInFrame(const QUrl& url, const QString& frame);
  // Requests the page again, past all caches. Without a page there is nothing to do.
  void Refresh();
  // Ends what is loaded, and the tries that may follow.
  void Stop();
  // The user stopped the run. Ends what is no save: a page of ours, and the tries for one.
  void EndOwnLoads();
  void NoteAction() { retry_.NoteAction(); }

  // What the page's agent reports.
  void TopDocumentCreated();
  // The status of a frame's document, before its FrameLoaded().
  void FrameAnswered(const QUrl& url, int status);
  void FrameLoaded(const QUrl& url);
  void FrameCreated() { watch_.FrameCreated(); }
  void FrameFailed(const QString& error_name);
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
    QSet<QUrl> logins_postponed;
    QSet<QUrl> frame_logins_refused;
    QHash<QUrl, int> frame_statuses;
    QSet<QUrl> resources_failed;
    std::optional<std::pair<QUrl, int>> frame_failure;
  };

  void OnLoadingChanged(const QWebEngineLoadingInfo& info);
  // Requests a page of ours. The load is under way already.
  void Request(const QUrl& url);
  // True when that is a change, which the page hears of a little later.
  bool ShowErrorPages(bool shown);
  void OnFrameNavigating(const QUrl& url, FrameRequest kind);
  void OnStarted(const QUrl& url);
  void OnArrived();
  void OnStopped();
  // An answer of the router, over plain HTTP.
  void OnAnswered(quint64 id, const QByteArray& method, const QUrl& url, int status);
  void OnFailed(const QWebEngineLoadingInfo& info);
  void OnLoginPostponed(const QUrl& url);
  void OnLoginRefused(const QUrl& url);
  // Whether the page can be requested once more: a GET without a query, and only once.
  bool CanRepeat() const;
  // Requests the page once more; the load stays under way.
  void Repeat();
  // True when the page is, or may be, requested once more because parts of it are missing.
  bool Completes();
  // Fails a load, unless the answer is a login page to fill in.
  void FailUnlessLoginPage(const QUrl& url, int status);
  // False when there is no login to ask for, or nobody to ask.
  bool AskForLogin(const QUrl& url);
  // A page was blocked because it is not of the router. False when that stands.
  bool AskForAddress(const QUrl& url, int status);
  // The same for a frame. Its page is loaded once more if it still loads, and else the frame.
  void OnBlocked(const QUrl& url, bool is_navigation_by_router);
  void LoadFrameAgain(const QUrl& url);
  void Finish();
  void Fail(const QUrl& url, int status);
  void OnFrameErrorPage(const QUrl& url);
  void FailFrame(const QUrl& url, int status);

  WebProfile& profile_;
  std::function<WebPage*()> make_page_;
  AskLogin ask_login_;
  AskAddress ask_address_;
  QPointer<WebPage> page_;
  NavigationWatch watch_;
  LoadRetry retry_;
  QTimer request_;
  Load load_;
  bool is_asking_ = false;      // the user is asked for something
  bool is_ours_asked_ = false;  // the next start is that of our own request
  quint64 generation_ = 0;      // of loads, so that an answer about an earlier one is known
  QString frame_error_;         // the name of the error that the next error page of a frame shows
  std::unique_ptr<LoginProbe> probe_;
};

}  // namespace quayline
