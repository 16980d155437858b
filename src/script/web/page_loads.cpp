// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_loads.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QWebEngineHttpRequest>
#include <QWebEngineLoadingInfo>
#include <QWebEngineScript>
#include <QWebEngineSettings>

#include <algorithm>
#include <utility>

#include "script/status_text.h"
#include "script/web/router_gate.h"
#include "script/web/web_page.h"
#include "script/web/web_profile.h"
#include "script/web/web_texts.h"

namespace quayline {

namespace {

constexpr int kLoginWanted = 401;
constexpr int kForbidden = 403;

// The engine's error numbers by the names that its error pages show.
int NetErrorOf(const QString& name) {
  static const QHash<QString, int> errors{{QStringLiteral("ERR_BLOCKED_BY_CLIENT"), -20},
                                          {QStringLiteral("ERR_CONNECTION_CLOSED"), -100},
                                          {QStringLiteral("ERR_CONNECTION_RESET"), -101},
                                          {QStringLiteral("ERR_CONNECTION_REFUSED"), -102},
                                          {QStringLiteral("ERR_NAME_NOT_RESOLVED"), -105},
                                          {QStringLiteral("ERR_INTERNET_DISCONNECTED"), -106},
                                          {QStringLiteral("ERR_ADDRESS_UNREACHABLE"), -109},
                                          {QStringLiteral("ERR_CONNECTION_TIMED_OUT"), -118},
                                          {QStringLiteral("ERR_SOCKS_CONNECTION_FAILED"), -120},
                                          {QStringLiteral("ERR_TOO_MANY_REDIRECTS"), -310},
                                          {QStringLiteral("ERR_UNSAFE_PORT"), -312},
                                          {QStringLiteral("ERR_INVALID_RESPONSE"), -320},
                                          {QStringLiteral("ERR_EMPTY_RESPONSE"), -324},
                                          {QStringLiteral("ERR_CONTENT_LENGTH_MISMATCH"), -354},
                                          {QStringLiteral("ERR_INCOMPLETE_CHUNKED_ENCODING"), -355},
                                          {QStringLiteral("ERR_INVALID_HTTP_RESPONSE"), -370}};
  constexpr int kCertificate = -200;
  constexpr int kTls = -113;
  constexpr int kFailed = -2;
  if (name.startsWith(QLatin1String("ERR_CERT_"))) {
    return kCertificate;
  }
  return errors.value(name, name.startsWith(QLatin1String("ERR_SSL_")) ? kTls : kFailed);
}

// What stands behind a failed load, where the status alone does not say it.
std::optional<Message> CauseOf(int net_error) {
  constexpr int kNoCommonTls = -113;
  constexpr int kOldTls = -172;
  constexpr int kNoTls = -107;
  switch (net_error) {
    case kNoCommonTls:
    case kOldTls:
      return message::kOldTls;
    case kNoTls:
      return message::kNoTls;
    default:
      return std::nullopt;
  }
}

}  // namespace

PageLoads::PageLoads(WebProfile& profile, std::function<WebPage*()> make_page, AskLogin ask_login,
                     AskAddress ask_address, QObject* parent)
    : QObject(parent),
      profile_(profile),
      make_page_(std::move(make_page)),
      ask_login_(std::move(ask_login)),
      ask_address_(std::move(ask_address)) {
  connect(&watch_, &NavigationWatch::changed, this, &PageLoads::changed);
  connect(&watch_, &NavigationWatch::neverStarted, this, [this] {
    is_ours_asked_ = false;
    Fail(load_.url, page_status::kInvalidUrl);
  });
  RouterGate* const gate = &RouterGate::Instance();
  connect(gate, &RouterGate::answered, this, &PageLoads::OnAnswered);
  connect(gate, &RouterGate::answerTooLarge, this, [this](const QUrl& url) {
    if (SiteOrigin::Of(url) == SiteOrigin::Of(load_.url)) {
      DocumentTooLarge();
    }
  });
  const auto count = [this, gate] { watch_.RequestsUnderWay(gate->ExchangesUnderWay() > 0); };
  connect(gate, &RouterGate::exchangeStarted, this, count);
  connect(gate, &RouterGate::exchangeEnded, this, count);
  connect(&retry_, &LoadRetry::again, this, &PageLoads::Request);
  connect(&profile_.Guard(), &RequestGuard::blocked, this, &PageLoads::OnBlocked);
  request_.setSingleShot(true);
  connect(&request_, &QTimer::timeout, this, [this] { page_->load(load_.url); });
}

void PageLoads::Follow(WebPage* page) {
  page_ = page;
  connect(page, &QWebEnginePage::loadingChanged, this, &PageLoads::OnLoadingChanged);
  connect(page, &QWebEnginePage::urlChanged, &watch_, &NavigationWatch::AddressChanged);
  connect(page, &WebPage::frameNavigating, this, &PageLoads::OnFrameNavigating);
  connect(page, &WebPage::loginAsked, this, [this] { load_.is_login_asked = true; });
  connect(page, &WebPage::loginPostponed, this, &PageLoads::OnLoginPostponed);
  connect(page, &WebPage::loginRefused, this, &PageLoads::OnLoginRefused);
}

bool PageLoads::IsWithinPage(const QUrl& url) const {
  const QUrl current = page_->url();
  return url.hasFragment() && url != current &&
         url.adjusted(QUrl::RemoveFragment) == current.adjusted(QUrl::RemoveFragment);
}

void PageLoads::Open(const QUrl& url) {
  const bool within_page = IsWithinPage(url);
  probe_.reset();
  load_ = {.is_ours = true};
  retry_.NoteLoad(url);
  watch_.LoadAsked(within_page);
  Request(url);
  is_ours_asked_ = !within_page;
}

void PageLoads::Request(const QUrl& url) {
  constexpr std::chrono::milliseconds kSettingArrives(1);
  is_ours_asked_ = true;
  load_.url = url;
  if (ShowErrorPages(!profile_.Options().silent_mode)) {
    request_.start(kSettingArrives);
  } else {
    page_->load(url);
  }
}

// Without an error page of its own a failed load leaves the page as it was. For a frame there is no
// other sign that it failed, so they are shown from the moment that the document is there.
bool PageLoads::ShowErrorPages(bool shown) {
  QWebEngineSettings* const settings = page_->settings();
  if (settings->testAttribute(QWebEngineSettings::ErrorPageEnabled) == shown) {
    return false;
  }
  settings->setAttribute(QWebEngineSettings::ErrorPageEnabled, shown);
  return true;
}

void PageLoads::OnFrameNavigating(const QUrl& url, FrameRequest kind) {
  watch_.FrameAsked(url, kind);
  page_->SetLonelyFrame(!watch_.IsLoading() && watch_.PendingFrames() == 1);
}

// Only a script of the page can reach a frame by its name.
void PageLoads::OpenInFrame(const QUrl& url, const QString& frame) {
  const QJsonArray arguments{QString::fromUtf8(url.toEncoded()), frame};
  page_->runJavaScript(
      QStringLiteral("window.open(...%1)")
          .arg(QString::fromUtf8(QJsonDocument(arguments).toJson(QJsonDocument::Compact))),
      QWebEngineScript::ApplicationWorld);
}

void PageLoads::Refresh() {
  const QUrl url = page_->url();
  if (url.isEmpty() || url.scheme() == QLatin1String("about")) {
    return;
  }
  probe_.reset();
  load_ = {.url = url, .is_ours = true, .is_repeated = true};
  is_ours_asked_ = true;
  retry_.NoteEnd();
  watch_.LoadAsked(false);
  if (profile_.Guard().Requests().TopMethod(page_->url()) == "POST") {
    // The engine would send the form again, and the router would save twice.
    Q_EMIT told(profile_.Text(message::kFetchedWithoutForm), StatusKind::kNotable);
    QWebEngineHttpRequest request(url);
    request.setHeader("Cache-Control", "no-cache");
    page_->load(request);
    return;
  }
  page_->triggerAction(QWebEnginePage::ReloadAndBypassCache);
}

void PageLoads::Stop() {
  const bool was_trying = retry_.Stop();
  const bool was_asking = std::exchange(is_asking_, false);
  const bool was_probing = std::exchange(probe_, nullptr) != nullptr;
  const bool was_delayed = request_.isActive();
  request_.stop();
  load_.is_stopped = true;
  if (was_trying || was_asking || was_probing || was_delayed) {
    ++generation_;
    watch_.LoadEnded();
  }
  page_->triggerAction(QWebEnginePage::Stop);
}

// The engine's stop would end the requests of a page's scripts as well, and one may be a save: it is
// for a page that is on its way alone.
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
      OnStarted(info.url());
      return;
    case QWebEngineLoadingInfo::LoadFailedStatus:
      OnFailed(info);
      return;
    case QWebEngineLoadingInfo::LoadStoppedStatus:
      OnStopped();
      return;
    case QWebEngineLoadingInfo::LoadSucceededStatus:
      OnArrived();
      return;
  }
}

void PageLoads::OnStarted(const QUrl& url) {
  ++generation_;
  is_asking_ = false;
  if (std::exchange(is_ours_asked_, false)) {
    load_ = {.url = load_.url, .is_ours = true, .is_repeated = load_.is_repeated};
    // An address that the engine cannot parse becomes an empty page.
    load_.is_invalid = url.isEmpty() && load_.url.scheme() != QLatin1String("about");
  } else {
    load_ = {.url = url};
    retry_.NoteEnd();
  }
  ShowErrorPages(!profile_.Options().silent_mode);
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

void PageLoads::OnAnswered(quint64, const QByteArray&, const QUrl& url, int status) {
  const PageRequests::Kind kind = profile_.Guard().Requests().KindOf(url);
  if (kind == QWebEngineUrlRequestInfo::ResourceTypeMainFrame) {
    load_.status = status;
  } else if (kind == QWebEngineUrlRequestInfo::ResourceTypeSubFrame) {
    constexpr int kNoContent = 204;
    constexpr int kResetContent = 205;
    if (status == kNoContent || status == kResetContent) {
      watch_.AnsweredEmpty(url);
    } else {
      load_.frame_statuses.insert(url, status);
    }
  }
}

void PageLoads::TopDocumentCreated() { ShowErrorPages(true); }

void PageLoads::OnArrived() {
  if (load_.is_invalid) {
    Fail(load_.url, page_status::kInvalidUrl);
    return;
  }
  if (load_.is_too_large) {
    Fail(load_.url, page_status::kTooLarge);
    return;
  }
  profile_.Logins().NoteAllArrived();
  if (Completes()) {
    return;
  }
  Finish();
}

bool PageLoads::CanRepeat() const {
  return !load_.is_repeated && profile_.Guard().Requests().TopMethod(page_->url()) == "GET" &&
         !page_->url().hasQuery();
}

void PageLoads::Repeat() {
  load_.is_repeated = true;
  watch_.LoadPostponed();
  Request(page_->url());
}

bool PageLoads::Completes() {
  if (!CanRepeat()) {
    return false;
  }
  if (!load_.logins_postponed.isEmpty()) {
    const QUrl url = *load_.logins_postponed.cbegin();
    if (profile_.Logins().IsAcceptedFor(url)) {
      Repeat();
      return true;
    }
    probe_ = std::make_unique<LoginProbe>(std::unique_ptr<WebPage>(make_page_()), url);
    connect(probe_.get(), &LoginProbe::over, this, [this, url](bool is_answered) {
      probe_.release()->deleteLater();
      if (is_answered) {
        profile_.Logins().NoteArrival(url);
      }
      if (profile_.Logins().IsAcceptedFor(url)) {
        Repeat();
      } else {
        Finish();
      }
    });
    return true;
  }
  const bool is_new = std::ranges::any_of(
      load_.resources_failed, [this](const QUrl& url) { return !profile_.IsKnownMissing(url); });
  if (load_.is_ours && is_new) {
    Repeat();
    return true;
  }
  return false;
}

void PageLoads::Finish() {
  const Load load = load_;
  retry_.NoteEnd();
  watch_.LoadEnded();
  Q_EMIT told(profile_.Text(message::kPageDone), StatusKind::kProgress);
  for (const QUrl& url : load.resources_failed) {
    profile_.NoteMissing(url);
    Q_EMIT resourceFailed(url);
  }
  if (load.frame_failure) {
    Q_EMIT failed(load.frame_failure->first, load.frame_failure->second);
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
    if (const auto cause = CauseOf(net_error)) {
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
    profile_.Logins().NoteAllArrived();
  }
  if (status == kForbidden || (status == kLoginWanted && !load_.is_login_asked)) {
    FailUnlessLoginPage(info.url(), status);
    return;
  }
  Fail(info.url(), status);
}

void PageLoads::FailUnlessLoginPage(const QUrl& url, int status) {
  page_->runJavaScript(
      QStringLiteral("document.querySelector('input[type=\"password\" i]') !== null"),
      QWebEngineScript::ApplicationWorld,
      [this, self = QPointer(this), url, status, generation = generation_](const QVariant& found) {
        if (self == nullptr || generation != generation_) {
          return;
        }
        if (found.toBool()) {
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
  const auto answer = [this, self = QPointer(this), url,
                       generation = generation_](std::optional<TypedLogin> typed) {
    if (self == nullptr || generation != generation_) {
      return;
    }
    is_asking_ = false;
    if (!typed) {
      Fail(url, kLoginWanted);
      return;
    }
    profile_.SetTypedLogin(*typed);
    Request(url);
  };
  ask_login_(url.host(), answer);
  return true;
}

bool PageLoads::AskForAddress(const QUrl& url, int status) {
  if (!profile_.ShallAskFor(url)) {
    return false;
  }
  watch_.LoadPostponed();
  is_asking_ = true;
  ask_address_(url,
               [this, self = QPointer(this), url, status, generation = generation_](bool allowed) {
                 if (self == nullptr) {
                   return;
                 }
                 if (allowed) {
                   profile_.Allow(url);
                 }
                 if (generation != generation_) {
                   return;
                 }
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

void PageLoads::OnBlocked(const QUrl& url, bool is_navigation_by_router) {
  const bool is_frame =
      profile_.Guard().Requests().KindOf(url) == QWebEngineUrlRequestInfo::ResourceTypeSubFrame;
  const bool is_of_this_page = watch_.IsLoading() || watch_.PendingFrames() > 0;
  if (!is_navigation_by_router || !is_frame || !is_of_this_page || !profile_.ShallAskFor(url)) {
    return;
  }
  ask_address_(url, [this, self = QPointer(this), url, generation = generation_](bool allowed) {
    if (self == nullptr || !allowed) {
      return;
    }
    profile_.Allow(url);
    if (generation != generation_) {
      return;
    }
    if (watch_.IsLoading()) {
      load_.resources_failed.insert(url);
    } else {
      LoadFrameAgain(url);
    }
  });
}

// The blocked frame shows an error page, which no script can reach. Its element has the blocked
// address, or one of the router's that led there.
void PageLoads::LoadFrameAgain(const QUrl& url) {
  constexpr char kCode[] = R"((function(blocked) {
    const visit = (window_) => {
      for (const frame of window_.document.querySelectorAll('iframe, frame')) {
        if (frame.contentDocument) {
          visit(frame.contentWindow);
        } else if (frame.src === blocked || frame.src === '' ||
                   new URL(frame.src).origin === location.origin) {
          frame.contentWindow.location.replace(blocked);
        }
      }
    };
    visit(window);
  })(...%1))";
  const QJsonArray arguments{QString::fromUtf8(url.toEncoded())};
  page_->runJavaScript(
      QLatin1String(kCode).toString().arg(
          QString::fromUtf8(QJsonDocument(arguments).toJson(QJsonDocument::Compact))),
      QWebEngineScript::ApplicationWorld);
}

void PageLoads::OnLoginPostponed(const QUrl& url) {
  load_.logins_postponed.insert(url);
  OnLoginRefused(url);
}

void PageLoads::OnLoginRefused(const QUrl& url) {
  if (profile_.Guard().Requests().KindOf(url) == QWebEngineUrlRequestInfo::ResourceTypeSubFrame) {
    load_.frame_logins_refused.insert(url);
  } else {
    load_.is_login_refused = true;
  }
}

void PageLoads::FrameFailed(const QString& error_name) { frame_error_ = error_name; }

void PageLoads::FrameAnswered(const QUrl& url, int status) {
  load_.frame_statuses.insert(url.adjusted(QUrl::RemoveFragment), status);
}

void PageLoads::FrameLoaded(const QUrl& url) {
  const QUrl asked = watch_.FrameLoaded(url);
  const int status = load_.frame_statuses.take(url.adjusted(QUrl::RemoveFragment));
  constexpr int kFirstError = 400;
  if (url.scheme() == QLatin1String("chrome-error")) {
    OnFrameErrorPage(asked == url ? page_->url() : asked);
  } else if (load_.frame_logins_refused.remove(url)) {
    FailFrame(url, kLoginWanted);
  } else if (status >= kFirstError) {
    FailFrame(url, status);
  } else {
    profile_.Logins().NoteArrival(url);
    if (!watch_.State().busy) {
      Q_EMIT completed();
    }
  }
}

void PageLoads::OnFrameErrorPage(const QUrl& url) {
  constexpr int kBlockedByUs = -20;  // and reported as such
  const int error =
      RouterGate::Instance().NetError(url, NetErrorOf(std::exchange(frame_error_, {})));
  if (error == kBlockedByUs) {
    return;
  }
  if (watch_.IsLoading()) {
    load_.resources_failed.insert(url);
  }
  FailFrame(url, StatusOfNetError(error));
}

// While the page loads, its frames are part of it: the page fails when it has ended.
void PageLoads::FailFrame(const QUrl& url, int status) {
  if (!watch_.IsLoading()) {
    Q_EMIT failed(url, status);
  } else if (!load_.frame_failure) {
    load_.frame_failure = {url, status};
  }
}

void PageLoads::ResourceFailed(const QUrl& url) {
  if (!profile_.IsOnRouter(url)) {
    return;  // blocked, and reported as such
  }
  if (!watch_.IsLoading()) {
    Q_EMIT resourceFailed(url);
  } else {
    load_.resources_failed.insert(url);
  }
}

void PageLoads::DocumentTooLarge() {
  if (watch_.IsLoading()) {
    load_.is_too_large = true;
    page_->triggerAction(QWebEnginePage::Stop);
  }
}

void PageLoads::RendererGone() {
  probe_.reset();
  ++generation_;
  request_.stop();
  watch_.FrameEndedWithoutPage();
  if (std::exchange(load_.is_process_gone, true)) {
    watch_.LoadEnded();
  } else {
    Fail(load_.url, load_.is_too_large ? page_status::kTooLarge : page_status::kCannotLoadData);
  }
}

}  // namespace quayline
