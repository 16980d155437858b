// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_loads.h"

#include <QWebEngineLoadingInfo>

#include <utility>

#include "script/status_text.h"
#include "script/web/net_error.h"
#include "script/web/router_gate.h"
#include "script/web/web_page.h"
#include "script/web/web_profile.h"
#include "script/web/web_texts.h"

namespace quayline {

namespace {

constexpr int kLoginWanted = 401;
constexpr int kForbidden = 403;

}  // namespace

PageLoads::PageLoads(WebProfile& profile, std::function<WebPage*()> make_page,
                     LoadQuestions::AskLogin ask_login, LoadQuestions::AskAddress ask_address,
                     QObject* parent)
    : QObject(parent),
      profile_(profile),
      questions_(profile, std::move(ask_login), std::move(ask_address), nullptr),
      watch_(profile.Limits()),
      request_(profile, nullptr),
      parts_(profile, std::move(make_page), nullptr),
      frames_(profile, watch_, questions_, nullptr),
      retry_(profile.Limits()) {
  connect(&watch_, &NavigationWatch::changed, this, &PageLoads::changed);
  connect(&watch_, &NavigationWatch::neverStarted, this, [this] {
    is_ours_asked_ = false;
    Fail(load_.url, page_status::kInvalidUrl);
  });
  RouterGate* const gate = &RouterGate::Instance();
  connect(gate, &RouterGate::answered, this,
          [this](quint64, const QByteArray&, const QUrl& url, int status) {
            if (profile_.Guard().Requests().KindOf(url) ==
                QWebEngineUrlRequestInfo::ResourceTypeMainFrame) {
              load_.status = status;
            }
          });
  connect(gate, &RouterGate::answerTooLarge, this, [this](const QUrl& url) {
    if (SiteOrigin::Of(url) == SiteOrigin::Of(load_.url)) {
      DocumentTooLarge();
    }
  });
  connect(&frames_, &FrameLoads::completed, this, &PageLoads::completed);
  connect(&frames_, &FrameLoads::failed, this, &PageLoads::failed);
  connect(&frames_, &FrameLoads::missing, this,
          [this](const QUrl& url) { parts_.NoteMissing(url); });
  connect(&retry_, &LoadRetry::again, this, &PageLoads::Request);
}

void PageLoads::Follow(WebPage* page) {
  page_ = page;
  request_.SetPage(page);
  frames_.SetPage(page);
  connect(page, &QWebEnginePage::loadingChanged, this, &PageLoads::OnLoadingChanged);
  connect(page, &QWebEnginePage::urlChanged, &watch_, &NavigationWatch::AddressChanged);
  connect(page, &WebPage::frameNavigating, &frames_, &FrameLoads::Navigating);
  connect(page, &WebPage::loginAsked, this, [this] { load_.is_login_asked = true; });
  connect(page, &WebPage::loginPostponed, this, [this](const QUrl& url) {
    parts_.NoteLoginPostponed(url);
    OnLoginRefused(url);
  });
  connect(page, &WebPage::loginRefused, this, &PageLoads::OnLoginRefused);
}

void PageLoads::Open(const QUrl& url) {
  const bool within_page = IsWithinPage(url);
  Begin({.is_ours = true});
  retry_.NoteLoad(url);
  watch_.LoadAsked(within_page);
  Request(url);
  is_ours_asked_ = !within_page;
}

void PageLoads::Begin(Load load) {
  load_ = std::move(load);
  frames_.Forget();
  parts_.Forget();
}

void PageLoads::Request(const QUrl& url) {
  is_ours_asked_ = true;
  load_.url = url;
  request_.Send(url);
}

void PageLoads::Refresh() {
  const QUrl url = page_->url();
  if (url.isEmpty() || url.scheme() == QLatin1String("about")) {
    return;
  }
  Begin({.url = url, .is_ours = true, .is_repeated = true});
  is_ours_asked_ = true;
  retry_.NoteEnd();
  watch_.LoadAsked(false);
  if (profile_.Guard().Requests().TopMethod(url) == "POST") {
    Q_EMIT told(profile_.Text(message::kFetchedWithoutForm), StatusKind::kNotable);
  }
  request_.Reload();
}

void PageLoads::Stop() {
  const bool was_trying = retry_.Stop();
  const bool was_asking = std::exchange(is_asking_, false);
  const bool was_judging = parts_.StopJudging();
  const bool was_delayed = request_.Cancel();
  load_.is_stopped = true;
  if (was_trying || was_asking || was_judging || was_delayed) {
    questions_.Drop();
    watch_.LoadEnded();
  }
  page_->triggerAction(QWebEnginePage::Stop);
}

// The engine's stop would end the requests of a page's scripts as well, and one may be a save: it
// is for a page that is on its way alone.
void PageLoads::EndOwnLoads() {
  const bool is_on_its_way =
      watch_.IsLoading() || (watch_.State().busy && watch_.PendingFrames() == 0);
  if (load_.is_ours && is_on_its_way) {
    Stop();
  } else {
    retry_.NoteEnd();
  }
}

void PageLoads::OnLoadingChanged(const QWebEngineLoadingInfo& info) {
  switch (info.status()) {
    case QWebEngineLoadingInfo::LoadStartedStatus:
      return OnStarted(info.url());
    case QWebEngineLoadingInfo::LoadFailedStatus:
      return OnFailed(info);
    case QWebEngineLoadingInfo::LoadStoppedStatus:
      return OnStopped();
    case QWebEngineLoadingInfo::LoadSucceededStatus:
      return OnArrived();
  }
}

void PageLoads::OnStarted(const QUrl& url) {
  questions_.Drop();
  is_asking_ = false;
  if (std::exchange(is_ours_asked_, false)) {
    Begin({.url = load_.url, .is_ours = true, .is_repeated = load_.is_repeated});
    // An address that the engine cannot parse becomes an empty page.
    load_.is_invalid = url.isEmpty() && load_.url.scheme() != QLatin1String("about");
  } else {
    Begin({.url = url});
    retry_.NoteEnd();
  }
  request_.ShowErrorPagesAsChosen();
  watch_.LoadStarted();
  Q_EMIT started(url);
}

// The answer was no page: nothing (204), a file, or an address that belongs to another program.
void PageLoads::OnStopped() {
  constexpr int kNotModified = 304;
  const bool is_led_away = load_.status / 100 == 3 && load_.status != kNotModified;
  if (load_.is_too_large) {
    Fail(load_.url, page_status::kTooLarge);
  } else if (load_.is_ours && is_led_away && !load_.is_stopped) {
    Fail(load_.url, page_status::kUnknownProtocol);
  } else {
    Finish();
  }
}

void PageLoads::OnArrived() {
  if (load_.is_invalid || load_.is_too_large) {
    Fail(load_.url, load_.is_invalid ? page_status::kInvalidUrl : page_status::kTooLarge);
    return;
  }
  NoteLoginsArrived();
  const QUrl url = page_->url();
  if (load_.is_repeated || url.hasQuery() || profile_.Guard().Requests().TopMethod(url) != "GET") {
    Finish();
    return;
  }
  parts_.Judge(load_.is_ours, [this, url](bool needs_repeat) {
    if (!needs_repeat) {
      Finish();
      return;
    }
    load_.is_repeated = true;
    watch_.LoadPostponed();
    Request(url);
  });
}

// The page has loaded, but what its scripts requested may still be on its way.
void PageLoads::NoteLoginsArrived() {
  profile_.Logins().NoteArrivals([this](const QUrl& url) {
    return profile_.Guard().Requests().KindOf(url) != QWebEngineUrlRequestInfo::ResourceTypeXhr;
  });
}

void PageLoads::Finish() {
  const QSet<QUrl> missing = parts_.Missing();
  const auto frame_failure = frames_.Failure();
  retry_.NoteEnd();
  watch_.LoadEnded();
  Q_EMIT told(profile_.Text(message::kPageDone), StatusKind::kProgress);
  for (const QUrl& url : missing) {
    profile_.NoteMissing(url);
    Q_EMIT resourceFailed(url);
  }
  if (frame_failure) {
    Q_EMIT failed(frame_failure->first, frame_failure->second);
  } else {
    Q_EMIT completed();
  }
}

void PageLoads::Fail(const QUrl& url, int status) {
  retry_.NoteEnd();
  watch_.LoadEnded();
  Q_EMIT failed(url, status);
}

void PageLoads::OnFailed(const QWebEngineLoadingInfo& info) {
  const bool is_http = info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain;
  const int net_error =
      is_http ? info.errorCode() : RouterGate::Instance().NetError(info.url(), info.errorCode());
  if (net_error == 0) {
    RendererGone();  // which the engine reports of the load and of the process, in either order
    return;
  }
  if (retry_.TryAgain(info, net_error)) {
    watch_.LoadPostponed();
    Q_EMIT told(profile_.Text(message::kTryingAgain), StatusKind::kNotable);
    return;
  }
  if (!is_http) {
    if (const auto cause = CauseOfNetError(net_error)) {
      Q_EMIT told(profile_.Text(*cause).arg(info.url().host()), StatusKind::kNotable);
    }
    const int status = load_.is_too_large ? page_status::kTooLarge : StatusOfNetError(net_error);
    if (!AskForAddress(info.url(), status)) {
      Fail(info.url(), status);
    }
    return;
  }
  const int status = info.errorCode();
  if (status == kLoginWanted && AskForLogin(info.url())) {
    return;
  }
  if (status != kLoginWanted && status != kForbidden) {
    NoteLoginsArrived();
  }
  if (status == kForbidden || (status == kLoginWanted && !load_.is_login_asked)) {
    FailUnlessLoginPage(info.url(), status);
  } else {
    Fail(info.url(), status);
  }
}

void PageLoads::FailUnlessLoginPage(const QUrl& url, int status) {
  questions_.AskIsLoginPage(page_, [this, url, status](bool is_login_page) {
    if (is_login_page) {
      Q_EMIT noted(profile_.Text(message::kLoginPageStatus).arg(StatusText(status)));
      Finish();
    } else {
      Fail(url, status);
    }
  });
}

bool PageLoads::AskForLogin(const QUrl& url) {
  if (!load_.is_login_refused || profile_.Options().silent_mode) {
    return false;
  }
  // Before the question, which may be answered at once.
  watch_.LoadPostponed();
  is_asking_ = true;
  questions_.AskForLogin(url, [this, url](std::optional<TypedLogin> typed) {
    is_asking_ = false;
    if (!typed) {
      Fail(url, kLoginWanted);
      return;
    }
    profile_.SetTypedLogin(*typed);
    Request(url);
  });
  return true;
}

bool PageLoads::AskForAddress(const QUrl& url, int status) {
  if (!profile_.ShallAskFor(url)) {
    return false;
  }
  watch_.LoadPostponed();
  is_asking_ = true;
  questions_.AskForAddress(url, [this, url, status](bool allowed) {
    is_asking_ = false;
    // Only the engine knows what a POST was to send.
    if (allowed && profile_.Guard().Requests().TopMethod(url) == "GET") {
      Request(url);
    } else {
      Fail(url, status);
    }
  });
  return true;
}

void PageLoads::OnLoginRefused(const QUrl& url) {
  if (frames_.IsFrame(url)) {
    frames_.LoginRefused(url);
  } else {
    load_.is_login_refused = true;
  }
}

void PageLoads::ResourceFailed(const QUrl& url) {
  if (!profile_.IsOnRouter(url)) {
    return;  // blocked, and reported as such
  }
  if (!watch_.IsLoading()) {
    Q_EMIT resourceFailed(url);
  } else {
    parts_.NoteMissing(url);
  }
}

void PageLoads::DocumentTooLarge() {
  if (watch_.IsLoading()) {
    load_.is_too_large = true;
    page_->triggerAction(QWebEnginePage::Stop);
  }
}

void PageLoads::RendererGone() {
  parts_.StopJudging();
  questions_.Drop();
  request_.Cancel();
  watch_.FrameEndedWithoutPage();
  if (std::exchange(load_.is_process_gone, true)) {
    watch_.LoadEnded();
  } else {
    Fail(load_.url, load_.is_too_large ? page_status::kTooLarge : page_status::kCannotLoadData);
  }
}

}  // namespace quayline
