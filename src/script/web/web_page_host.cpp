// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/web_page_host.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QTimer>
#include <QWebEngineLoadingInfo>
#include <QWebEngineScript>
#include <QWebEngineSettings>

#include "async/wait.h"
#include "script/key_sequence.h"
#include "script/page_operations.h"
#include "script/status_text.h"
#include "script/wait_limits.h"
#include "script/web/web_engine.h"
#include "script/web/web_page.h"
#include "script/web/web_texts.h"

namespace quayline {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kAskAgain(1000);      // a report that was lost with what it ran in
constexpr milliseconds kCacheClearing(50);   // no signal tells its end
constexpr milliseconds kKeysLimit(250);      // of keys that no document has heard

QString AsJavaScript(const QJsonArray& values) {
  return QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact));
}

QString ShownUrl(const QUrl& url) { return url.toString(QUrl::RemoveUserInfo); }

// A name that ends in a number can only be an address. The engine says nothing at all of a load
// from one that is none, such as 192.168.1.999.
bool IsHost(const QString& host) {
  static const QRegularExpression numeric(QStringLiteral("(^|\\.)([0-9]+|0[xX][0-9a-fA-F]*)\\.?$"));
  return !host.isEmpty() && (!numeric.match(host).hasMatch() || !QHostAddress(host).isNull());
}

// For an address that is none: whatever may have been meant as its login is left out.
QString WithoutLogin(const QString& address) {
  static const QRegularExpression login(QStringLiteral("//.*@"),
                                        QRegularExpression::DotMatchesEverythingOption);
  return QString(address).replace(login, QStringLiteral("//"));
}

}  // namespace

WebPageHost::WebPageHost(std::shared_ptr<WebProfile> profile, QObject* parent)
    : PageHost(parent),
      profile_(std::move(profile)),
      page_(new WebPage(*profile_, nullptr)),
      view_(new QWebEngineView) {
  view_->setPage(page_);
  view_->setContextMenuPolicy(Qt::NoContextMenu);
  connect(&watch_, &NavigationWatch::changed, this, &PageHost::navigationChanged);
  keys_guard_.setSingleShot(true);
  connect(&retry_, &LoadRetry::again, this, [this](const QUrl& url) { page_->load(url); });
  connect(&keys_guard_, &QTimer::timeout, this, &WebPageHost::AskHeld);
  connect(profile_.get(), &WebProfile::downloadRefused, this, &WebPageHost::OnDownloadRefused);
  connect(&profile_->Guard(), &RequestGuard::blocked, this, [this](const QUrl& url) {
    Q_EMIT statusTextChanged(Text(message::kBlockedHost).arg(RequestGuard::NameOf(url)));
  });
  ConnectPage();
}

WebPageHost::~WebPageHost() {
  *alive_ = false;
  disconnect(page_, nullptr, this, nullptr);
  // In this order: the page may not outlive its profile, nor the view its page.
  delete view_;
  delete page_;
  delete dead_page_;
  if (is_popup_) {
    profile_->ReturnPopup();
  }
}

void WebPageHost::ConnectPage() {
  connect(page_, &QWebEnginePage::loadingChanged, this, &WebPageHost::OnLoadingChanged);
  connect(page_, &QWebEnginePage::urlChanged, &watch_, &NavigationWatch::AddressChanged);
  connect(page_, &QWebEnginePage::loadProgress, this, &PageHost::progressChanged);
  connect(page_, &QWebEnginePage::windowCloseRequested, this, &PageHost::windowClosing);
  connect(page_, &QWebEnginePage::linkHovered, this, &PageHost::statusTextChanged);
  connect(page_, &QWebEnginePage::renderProcessTerminated, this, &WebPageHost::OnRendererGone);
  connect(page_, &WebPage::frameNavigating, &watch_, &NavigationWatch::FrameAsked);
  connect(page_, &WebPage::agentSaid, this, &WebPageHost::OnAgentSaid);
  connect(page_, &WebPage::told, this, &PageHost::statusTextChanged);
  connect(page_, &WebPage::scriptFailed, this, &PageHost::scriptError);
  connect(page_, &WebPage::messageShown, this, &PageHost::pageMessage);
  connect(page_, &WebPage::loginRefused, this, [this] { login_refused_ = true; });
  connect(page_, &WebPage::certificateQuestion, this, &WebPageHost::OnCertificateQuestion);
  connect(page_, &WebPage::popupWanted, this, [this](QWebEnginePage** popup) {
    auto host = std::make_unique<WebPageHost>(profile_, nullptr);
    host->is_popup_ = true;
    host->is_led_ = true;
    Q_EMIT newWindow(host.get());
    if (host->parent() != nullptr) {
      *popup = host.release()->page_;  // its parent has it now
    } else {
      host->is_popup_ = false;  // never counted as open
    }
  });
}

void WebPageHost::OnDownloadRefused(const QString& file_name) {
  watch_.FrameEndedWithoutPage();
  if (!is_popup_) {
    Q_EMIT statusTextChanged(Text(message::kRefusedFile).arg(file_name));
  }
}

void WebPageHost::OnLoadingChanged(const QWebEngineLoadingInfo& info) {
  const QString url = ShownUrl(info.url());
  switch (info.status()) {
    case QWebEngineLoadingInfo::LoadStartedStatus:
      // Without an error page of its own a failed load leaves the page as it was.
      page_->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled,
                                      !profile_->Options().silent_mode);
      login_refused_ = false;
      watch_.LoadStarted();
      AskHeld();  // the document that would have heard the keys is going
      Q_EMIT beforeNavigate();
      Q_EMIT statusTextChanged(Text(message::kOpeningPage).arg(url));
      return;
    case QWebEngineLoadingInfo::LoadFailedStatus:
      OnLoadFailed(info);
      return;
    case QWebEngineLoadingInfo::LoadStoppedStatus:
    case QWebEngineLoadingInfo::LoadSucceededStatus:
      retry_.NoteEnd();
      watch_.LoadEnded();
      Q_EMIT statusTextChanged(Text(message::kPageDone));
      Q_EMIT documentComplete();
      return;
  }
}

void WebPageHost::OnLoadFailed(const QWebEngineLoadingInfo& info) {
  if (retry_.TryAgain(info)) {
    Q_EMIT statusTextChanged(Text(message::kTryingAgain));
    return;
  }
  watch_.LoadEnded();
  const bool is_http = info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain;
  constexpr int kLoginWanted = 401;
  if (is_http && info.errorCode() == kLoginWanted && AskForLogin(info.url())) {
    return;
  }
  const int error = RouterGate::Instance().NetError(info.url(), info.errorCode());
  Q_EMIT navigateError(ShownUrl(info.url()), is_http ? info.errorCode() : StatusOfNetError(error));
}

void WebPageHost::NoteAct() {
  is_led_ = true;
  retry_.NoteAct();
}

void WebPageHost::OnAgentSaid(const QString& text) {
  const QString kind = text.section(QLatin1Char(' '), 0, 0);
  if (kind == QLatin1String("idle") || kind == QLatin1String("pending")) {
    OnPageReported(text, kind == QLatin1String("idle"));
    return;
  }
  if (kind == QLatin1String("closing")) {
    Q_EMIT windowClosing();
    return;
  }
  if (kind == QLatin1String("key")) {
    if (keys_under_way_ > 1) {
      --keys_under_way_;
    } else if (keys_under_way_ == 1) {
      AskHeld();
    }
    return;
  }
  const bool is_top = text.section(QLatin1Char(' '), 1, 1) == QLatin1String("1");
  const QUrl url(text.section(QLatin1Char(' '), 2));
  if (kind == QLatin1String("new") && is_top) {
    Q_EMIT navigateComplete();
  } else if (kind == QLatin1String("load") && !is_top) {
    watch_.FrameLoaded(url);
    if (url.scheme() == QLatin1String("chrome-error")) {
      Q_EMIT navigateError(ShownUrl(page_->url()), page_status::kCannotLoadData);
    } else if (!watch_.State().busy) {
      Q_EMIT documentComplete();
    }
  }
}

void WebPageHost::Navigate2(const QString& address, const QString& target_frame) {
  constexpr QLatin1String kScript("javascript:");
  if (address.startsWith(kScript, Qt::CaseInsensitive)) {
    RunInPage(QUrl::fromPercentEncoding(address.mid(kScript.size()).toUtf8()), [] {});
    return;
  }
  const QUrl url(address, QUrl::TolerantMode);
  const bool is_blank = url.scheme() == QLatin1String("about");
  if (!url.isValid() || !(is_blank || IsHost(url.host()))) {
    Q_EMIT navigateError(WithoutLogin(address), page_status::kInvalidUrl);
    return;
  }
  ReplaceDeadPage();
  is_led_ = false;
  if (!target_frame.isEmpty()) {
    // Only a page's own script can reach a frame by its name.
    page_->runJavaScript(QStringLiteral("window.open(...%1)")
                             .arg(AsJavaScript({QString::fromUtf8(url.toEncoded()), target_frame})),
                         QWebEngineScript::ApplicationWorld);
    return;
  }
  const QUrl current = page_->url();
  const bool within_page =
      url.hasFragment() && url != current &&
      url.adjusted(QUrl::RemoveFragment) == current.adjusted(QUrl::RemoveFragment);
  if (within_page) {
    // The page hears of it and does what it does behind a click.
    Ask(QStringLiteral("window.quaylineArm?.()"), QWebEngineScript::ApplicationWorld,
        [](const auto&) {});
  }
  retry_.NoteLoad(url);
  watch_.LoadAsked(within_page);
  page_->load(url);
}

void WebPageHost::Refresh2() {
  if (is_renderer_gone_) {
    Navigate2(ShownUrl(page_->url()), {});
    return;
  }
  watch_.LoadAsked(false);
  page_->triggerAction(QWebEnginePage::ReloadAndBypassCache);
}

void WebPageHost::StopNavigation() {
  if (retry_.Stop()) {
    watch_.LoadEnded();
  }
  page_->triggerAction(QWebEnginePage::Stop);
}

void WebPageHost::SetLogin(const PageLogin& login) { profile_->SetLogin(login); }

void WebPageHost::Call(const PageCall& call, std::function<void(PageAnswer)> answer) {
  if (call.IsUserAction()) {
    NoteAct();
  }
  const QJsonArray arguments{call.operation, call.arguments, call.frame, call.IsUserAction()};
  Ask(QStringLiteral("window.quaylineCall?.(...%1)").arg(AsJavaScript(arguments)),
      QWebEngineScript::ApplicationWorld, [answer = std::move(answer)](const QVariant& result) {
        const QVariantMap envelope = result.toMap();
        answer({.answered = envelope.value(QStringLiteral("ok")).toBool(),
                .value = QJsonValue::fromVariant(envelope.value(QStringLiteral("value"))),
                .markup_state = envelope.value(QStringLiteral("state")).toString(),
                .is_working = envelope.value(QStringLiteral("working")).toBool(),
                .near_names = envelope.value(QStringLiteral("near")).toStringList()});
      });
}

void WebPageHost::RunInPage(const QString& code, std::function<void()> done) {
  NoteAct();
  Ask(QStringLiteral("window.quaylineArm?.()"), QWebEngineScript::ApplicationWorld,
      [](const QVariant&) {});
  Ask(code, QWebEngineScript::MainWorld, [done = std::move(done)](const QVariant&) { done(); });
}

void WebPageHost::Ask(const QString& code, quint32 world, PendingAnswer done) {
  if (is_renderer_gone_) {
    done({});
    return;
  }
  const quint64 number = ++asked_;
  pending_.emplace(number, std::move(done));
  held_.append({number, code, world});
  if (keys_under_way_ == 0) {
    AskHeld();
  }
}

void WebPageHost::AskHeld() {
  keys_under_way_ = 0;
  keys_guard_.stop();
  for (const HeldQuestion& held : std::exchange(held_, {})) {
    page_->runJavaScript(held.code, held.world,
                         [this, number = held.number, alive = alive_](const QVariant& result) {
                           if (*alive) {
                             if (auto asked = pending_.extract(number)) {
                               asked.mapped()(result);
                             }
                           }
                         });
  }
}

void WebPageHost::OnRendererGone() {
  is_renderer_gone_ = true;
  held_.clear();
  watch_.LoadEnded();
  const auto alive = alive_;
  const auto unanswered = std::exchange(pending_, {});
  for (const auto& [number, done] : unanswered) {
    if (*alive) {
      done({});
    }
  }
  if (*alive) {
    Q_EMIT navigateError(ShownUrl(page_->url()), page_status::kCannotLoadData);
  }
}

void WebPageHost::ReplaceDeadPage() {
  if (!is_renderer_gone_) {
    return;
  }
  is_renderer_gone_ = false;
  disconnect(page_, nullptr, this, nullptr);
  delete dead_page_;
  dead_page_ = page_;
  page_ = new WebPage(*profile_, nullptr);
  view_->setPage(page_);
  ConnectPage();
}

void WebPageHost::SendKeys(const QString& keys) {
  // Another widget after each move to another site.
  QWidget* target = view_ == nullptr ? nullptr : view_->focusProxy();
  if (target == nullptr) {
    return;
  }
  const QList<KeyStroke> strokes = ParseKeys(keys);
  if (!strokes.isEmpty()) {
    NoteAct();
    keys_under_way_ += static_cast<int>(strokes.size());
    keys_guard_.start(kKeysLimit);
  }
  for (const KeyStroke& stroke : strokes) {
    QKeyEvent press(QEvent::KeyPress, stroke.key, stroke.modifiers, stroke.text);
    QKeyEvent release(QEvent::KeyRelease, stroke.key, stroke.modifiers, stroke.text);
    QCoreApplication::sendEvent(target, &press);
    QCoreApplication::sendEvent(target, &release);
  }
}

void WebPageHost::ClearCache(std::function<void(bool)> done) {
  profile_->Engine().clearHttpCache();
  QTimer::singleShot(kCacheClearing, this, [done = std::move(done)] { done(true); });
}

NavigationState WebPageHost::Navigation() const {
  NavigationState state = watch_.State();
  state.after_action = is_led_;
  return state;
}

void WebPageHost::ReportIdle(std::function<void(IdleReport)> report) {
  idle_wait_.Start(WaitForReport(std::move(report)));
}

// "idle", the wait, the number of timers that are left, whether the page gave up; on lines of their
// own the requests that are periodic.
void WebPageHost::OnPageReported(const QString& text, bool is_idle) {
  const QStringList lines = text.split(QLatin1Char('\n'));
  const QStringList fields = lines.first().split(QLatin1Char(' '));
  profile_->AddPeriodicRequests(lines.mid(1));
  Q_EMIT pageReported(fields.value(1), is_idle,
                      {.later_timers = fields.value(2).toInt(),
                       .gave_up = fields.value(3) == QLatin1String("1")});
}

// A document without our scripts has nothing that could start a navigation. A report is lost when
// the document is written again meanwhile: the page is asked once more.
Task<> WebPageHost::WaitForReport(std::function<void(IdleReport)> report) {
  std::optional<IdleReport> got;
  bool is_pending = false;
  QString id;
  const QObject listener;  // ends the connection with this frame
  connect(this, &WebPageHost::pageReported, &listener,
          [&](const QString& which, bool is_idle, IdleReport page_report) {
            if (which == id) {
              is_pending = true;
              got = is_idle ? std::optional(page_report) : got;
            }
          });
  while (!got) {
    id = QString::number(++idle_waits_);
    is_pending = false;
    OneShot<bool> asked;
    Ask(QStringLiteral("window.quaylineReportIdle?.(...%1)")
            .arg(AsJavaScript({id, is_led_, profile_->PeriodicRequests()})),
        QWebEngineScript::ApplicationWorld,
        [done = asked.Callback()](const QVariant& result) { done(result.toBool()); });
    const std::optional<bool> has_watch = co_await asked;
    if (!has_watch.value_or(false)) {
      got = IdleReport{};
      break;
    }
    co_await Until([&] { return got || is_pending; })
        .WokenBy(this, &WebPageHost::pageReported)
        .AtMost(kAskAgain);
    if (is_pending) {
      co_await Until([&got] { return got.has_value(); })
          .WokenBy(this, &WebPageHost::pageReported)
          .AtMost(WaitLimits().save + kAskAgain);
    }
  }
  // Brings in what all this has announced meanwhile.
  OneShot<bool> flushed;
  Ask(QStringLiteral("1"), QWebEngineScript::ApplicationWorld,
      [done = flushed.Callback()](const QVariant&) { done(true); });
  co_await flushed;
  report(*got);
}

void WebPageHost::OnCertificateQuestion(const ShownCertificate& shown,
                                        const std::function<void(bool)>& answer) {
  if (!isSignalConnected(QMetaMethod::fromSignal(&PageHost::certificateQuestion))) {
    answer(false);
    return;
  }
  Q_EMIT statusTextChanged(Text(message::kCertificateWait).arg(shown.address));
  Q_EMIT certificateQuestion(shown, [answer, alive = alive_](bool trusted) {
    if (*alive) {
      answer(trusted);
    }
  });
}

bool WebPageHost::AskForLogin(const QUrl& url) {
  if (!login_refused_ || profile_->Options().silent_mode ||
      !isSignalConnected(QMetaMethod::fromSignal(&PageHost::loginQuestion))) {
    return false;
  }
  watch_.LoadAsked(false);  // busy until the user has answered
  Q_EMIT loginQuestion(url.host(), [this, url, alive = alive_](std::optional<TypedLogin> typed) {
    if (!*alive) {
      return;
    }
    if (typed) {
      profile_->SetTypedLogin(*typed);
      page_->load(url);
    } else {
      constexpr int kLoginWanted = 401;
      watch_.LoadEnded();
      Q_EMIT navigateError(ShownUrl(url), kLoginWanted);
    }
  });
  return true;
}

QString WebPageHost::Text(const Message& message) const { return profile_->Text(message); }

PageHostFactory WebPageHosts(const JobOptions& options, const Translator& translator,
                             TrustedCertificates* certificates) {
  auto profile = std::make_shared<std::shared_ptr<WebProfile>>();
  return [profile, &options, &translator, certificates](QObject* parent) -> PageHost* {
    if (*profile == nullptr) {
      *profile = std::make_shared<WebProfile>(options, translator, certificates);
    }
    return new WebPageHost(*profile, parent);
  };
}

}  // namespace quayline
