// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/web_page_host.h"

#include <QJsonArray>
#include <QWebEngineLoadingInfo>
#include <QWebEngineScript>

#include "script/page_operations.h"
#include "script/status_text.h"
#include "script/web/page_address.h"
#include "script/web/url_cache.h"
#include "script/web/web_engine.h"
#include "script/web/web_page.h"
#include "script/web/web_texts.h"

namespace quayline {

static QList<WebPageHost*>& Hosts() {
  static QList<WebPageHost*> hosts;
  return hosts;
}

QList<WebPageHost*> WebPageHost::All() { return Hosts(); }

WebPageHost::WebPageHost(std::shared_ptr<WebProfile> profile, PageQuestions& questions,
                         QObject* parent)
    : PageHost(parent),
      profile_(std::move(profile)),
      questions_(questions),
      page_(new WebPage(*profile_, questions, nullptr)),
      view_(new QWebEngineView),
      scripts_(calls_, nullptr),
      loads_(
          *profile_, [this] { return new WebPage(*profile_, questions_, nullptr); },
          [this](const auto&... question) { AskForLogin(question...); },
          [this](const auto&... question) { AskForAddress(question...); }, nullptr),
      // A page whose dialog the user has before him says nothing.
      watchdog_(
          profile_->Limits(),
          [this] { return !page_->IsAsking() && (loads_.State().busy || calls_.HasOpenCalls()); },
          nullptr),
      idle_reports_(*profile_, calls_, nullptr) {
  view_->setPage(page_);
  view_->setContextMenuPolicy(Qt::NoContextMenu);
  connect(&scripts_, &PageScripts::failed, this, &PageHost::scriptError);
  connect(&keys_, &PageKeys::arrived, this, [this] { calls_.Release(); });
  connect(&memory_, &MemoryLimit::exceeded, &loads_, &PageLoads::PageTooLarge);
  connect(profile_.get(), &WebProfile::downloadRefused, this, &WebPageHost::OnDownloadRefused);
  connect(&profile_->Guard(), &RequestGuard::blocked, this, [this](const QUrl& url) {
    Q_EMIT statusTextChanged(Text(message::kBlockedHost).arg(RequestGuard::NameOf(url)),
                             StatusKind::kNotable);
  });
  ConnectLoads();
  ConnectPage();
  Hosts().append(this);
}

WebPageHost::~WebPageHost() {
  Hosts().removeOne(this);
  *alive_ = false;
  calls_.Drop();
  disconnect(page_, nullptr, this, nullptr);
  // In this order: the page may not outlive its profile, nor the view its page.
  delete view_;
  delete page_;
  delete dead_page_;
  ReturnPopup();
}

QString WebPageHost::EngineVersion() const {
  return QStringLiteral("Qt WebEngine %1 (Chromium %2)")
      .arg(QLatin1String(qWebEngineVersion()), QLatin1String(qWebEngineChromiumVersion()));
}

// A popup that closes is not open any more, though its last requests may keep it for a time.
void WebPageHost::ReturnPopup() {
  if (std::exchange(counts_as_open_, false)) {
    profile_->ReturnPopup();
  }
}

void WebPageHost::ConnectLoads() {
  connect(&loads_, &PageLoads::changed, this, &PageHost::navigationChanged);
  connect(&loads_, &PageLoads::completed, this, &PageHost::documentComplete);
  connect(&loads_, &PageLoads::told, this, &PageHost::statusTextChanged);
  connect(&loads_, &PageLoads::noted, this, &PageHost::noted);
  connect(&loads_, &PageLoads::started, this, [this](const QUrl& url) {
    keys_.Forget();  // the document that would have got them is going
    Q_EMIT beforeNavigate();
    Q_EMIT statusTextChanged(Text(message::kOpeningPage).arg(ShownUrl(url)));
  });
  connect(&loads_, &PageLoads::failed, this,
          [this](const QUrl& url, int status) { Q_EMIT navigateError(ShownUrl(url), status); });
  connect(&loads_, &PageLoads::resourceFailed, this,
          [this](const QUrl& url) { Q_EMIT resourceFailed(ShownUrl(url)); });
}

void WebPageHost::ConnectPage() {
  connect(page_, &QWebEnginePage::loadingChanged, this, &WebPageHost::OnLoadingChanged);
  loads_.Follow(page_);
  calls_.SetPage(page_);
  watchdog_.SetPage(page_);
  memory_.SetPage(page_);
  connect(page_, &QWebEnginePage::loadProgress, this, &PageHost::progressChanged);
  connect(page_, &QWebEnginePage::windowCloseRequested, this, &WebPageHost::OnCloseRequested);
  connect(page_, &QWebEnginePage::linkHovered, this,
          [this](const QString& url) { Q_EMIT statusTextChanged(url); });
  connect(page_, &QWebEnginePage::renderProcessTerminated, this, &WebPageHost::OnRendererGone);
  connect(page_, &WebPage::agentSaid, this, &WebPageHost::OnAgentSaid);
  connect(page_, &WebPage::told, this,
          [this](const QString& text) { Q_EMIT statusTextChanged(text, StatusKind::kNotable); });
  connect(page_, &WebPage::scriptFailed, &scripts_, &PageScripts::NoteError);
  connect(page_, &WebPage::messageShown, this, &PageHost::pageMessage);
  connect(page_, &WebPage::popupsExceeded, this, [this] {
    Q_EMIT noted(Text(message::kTooManyWindows));
    Q_EMIT navigateError(ShownUrl(page_->url()), page_status::kTooManyWindows);
  });
  connect(page_, &WebPage::popupWanted, this, [this](QWebEnginePage** popup) {
    auto host = std::make_unique<WebPageHost>(profile_, questions_, nullptr);
    host->is_popup_ = true;
    host->counts_as_open_ = true;
    host->is_led_ = true;
    Q_EMIT newWindow(host.get());
    if (host->parent() != nullptr) {
      *popup = host.release()->page_;  // its parent has it now
    } else {
      host->counts_as_open_ = false;  // the page returns it
    }
  });
}

void WebPageHost::OnCloseRequested() {
  if (page_->IsAsking()) {
    connect(page_, &WebPage::dialogAnswered, this, &WebPageHost::OnCloseRequested,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    return;
  }
  ReturnPopup();
  Q_EMIT windowClosing();
}

void WebPageHost::OnDownloadRefused(const QString& file_name) {
  loads_.FileRefused();
  if (!is_popup_) {
    Q_EMIT statusTextChanged(Text(message::kRefusedFile).arg(file_name), StatusKind::kNotable);
  }
}

void WebPageHost::OnLoadingChanged(const QWebEngineLoadingInfo& info) {
  if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) {
    loaded_page_.reset();
    actions_before_load_ = profile_->Actions();
  } else if (info.status() == QWebEngineLoadingInfo::LoadSucceededStatus) {
    loaded_page_ = {.url = info.url(), .actions = actions_before_load_};
  }
}

void WebPageHost::NoteAct() {
  profile_->NoteAction();
  is_led_ = true;
  loads_.NoteAction();
}

void WebPageHost::OnAgentSaid(const QString& text) {
  const QString kind = text.section(QLatin1Char(' '), 0, 0);
  if (kind == QLatin1String("idle") || kind == QLatin1String("pending")) {
    idle_reports_.Take(text, kind == QLatin1String("idle"));
    return;
  }
  if (kind == QLatin1String("closing")) {
    OnCloseRequested();
    return;
  }
  if (kind == QLatin1String("key")) {
    keys_.NoteArrival();
    return;
  }
  OnLoadReported(kind, text.section(QLatin1Char(' '), 1));
}

void WebPageHost::OnLoadReported(const QString& kind, const QString& fields) {
  if (kind == QLatin1String("missing")) {
    loads_.ResourceFailed(QUrl(fields));
    return;
  }
  if (kind == QLatin1String("neterror")) {
    loads_.FrameFailed(fields);
    return;
  }
  if (kind == QLatin1String("status")) {
    loads_.FrameAnswered(QUrl(fields.section(QLatin1Char(' '), 1)),
                         fields.section(QLatin1Char(' '), 0, 0).toInt());
    return;
  }
  if (kind == QLatin1String("huge")) {
    loads_.DocumentTooLarge();
    return;
  }
  const bool is_top = fields.section(QLatin1Char(' '), 0, 0) == QLatin1String("1");
  if (kind == QLatin1String("new") && is_top) {
    loads_.TopDocumentCreated();
    Q_EMIT navigateComplete();
  } else if (kind == QLatin1String("new")) {
    loads_.FrameCreated();
  } else if (kind == QLatin1String("load") && !is_top) {
    loads_.FrameLoaded(QUrl(fields.section(QLatin1Char(' '), 1)));
  }
}

void WebPageHost::Navigate2(const QString& address, const QString& target_frame) {
  constexpr QLatin1String kScript("javascript:");
  if (address.startsWith(kScript, Qt::CaseInsensitive)) {
    RunInPage(
        {.code = QUrl::fromPercentEncoding(address.mid(kScript.size()).toUtf8()), .entry = {}},
        [](const QString&) {});
    return;
  }
  const QUrl url(address, QUrl::TolerantMode);
  const bool is_blank = url.scheme() == QLatin1String("about");
  if (url.isValid() && !url.scheme().isEmpty() && !IsPageScheme(url.scheme())) {
    Q_EMIT statusTextChanged(Text(message::kRefusedAddress).arg(WithoutLogin(address)));
    Q_EMIT navigateError(WithoutLogin(address), page_status::kUnknownProtocol);
    return;
  }
  if (!url.isValid() || !(is_blank || IsHost(url.host()))) {
    Q_EMIT navigateError(WithoutLogin(address), page_status::kInvalidUrl);
    return;
  }
  ReplaceDeadPage();
  is_led_ = false;
  if (!target_frame.isEmpty()) {
    loads_.OpenInFrame(url, target_frame);
    return;
  }
  if (loads_.IsWithinPage(url)) {
    // The page gets an event for it and may react, as to a click.
    Ask(QStringLiteral("window.quaylineArm?.()"), QWebEngineScript::ApplicationWorld,
        [](const auto&) {});
  }
  loads_.Open(url);
}

void WebPageHost::Refresh2() {
  if (is_renderer_gone_) {
    Navigate2(ShownUrl(page_->url()), {});
  } else {
    loads_.Refresh();
  }
}

void WebPageHost::StopNavigation() { loads_.Stop(); }

void WebPageHost::RunStopped() {
  loads_.EndOwnLoads();
  watchdog_.Hurry();
}

void WebPageHost::HandOver() { is_led_ = true; }

void WebPageHost::SetLogin(const PageLogin& login) { profile_->SetLogin(login); }

void WebPageHost::Call(const PageCall& call, std::function<void(PageAnswer)> answer) {
  if (call.IsUserAction()) {
    NoteAct();
  }
  const QJsonArray arguments{call.operation, call.arguments, call.frame, call.IsUserAction()};
  Ask(QStringLiteral("window.quaylineCall?.(...%1)").arg(AsJavaScript(arguments)),
      QWebEngineScript::ApplicationWorld, [answer = std::move(answer)](const QVariant& result) {
        const QVariantMap envelope = result.toMap();
        const QVariant complaints = envelope.value(QStringLiteral("complaints"));
        answer({.answered = envelope.value(QStringLiteral("ok")).toBool(),
                .value = QJsonValue::fromVariant(envelope.value(QStringLiteral("value"))),
                .markup_state = envelope.value(QStringLiteral("state")).toString(),
                .complaints = complaints.typeId() == QMetaType::QVariantList
                                  ? std::optional(complaints.toStringList())
                                  : std::nullopt,
                .is_working = envelope.value(QStringLiteral("working")).toBool()});
      });
}

void WebPageHost::RunInPage(const PageScript& script,
                            std::function<void(const QString& error)> done) {
  NoteAct();
  scripts_.Run(script, std::move(done));
}

void WebPageHost::Ask(const QString& code, quint32 world, ScriptCalls::Answer done) {
  calls_.Run(code, world, std::move(done));
}

void WebPageHost::OnRendererGone() {
  is_renderer_gone_ = true;
  watchdog_.SetPage(nullptr);
  memory_.SetPage(nullptr);
  const auto alive = alive_;
  calls_.AnswerAll();
  if (*alive) {
    loads_.RendererGone();
  }
}

void WebPageHost::ReplaceDeadPage() {
  if (!is_renderer_gone_) {
    return;
  }
  is_renderer_gone_ = false;
  disconnect(page_, nullptr, this, nullptr);
  disconnect(page_, nullptr, &loads_, nullptr);
  disconnect(page_, nullptr, &scripts_, nullptr);
  delete dead_page_;
  dead_page_ = page_;
  page_ = new WebPage(*profile_, questions_, nullptr);
  view_->setPage(page_);
  ConnectPage();
}

void WebPageHost::SendKeys(const QString& keys) {
  // Another widget after each move to another site.
  QWidget* target = view_ == nullptr ? nullptr : view_->focusProxy();
  if (target == nullptr) {
    return;
  }
  calls_.Hold();
  if (keys_.Send(target, keys)) {
    NoteAct();
  } else {
    calls_.Release();
  }
}

void WebPageHost::ClearCache(std::function<void(bool)> done) {
  clearing_.Start(RunClearCache(std::move(done)));
}

Task<> WebPageHost::RunClearCache(std::function<void(bool)> done) {
  QList<WebPageHost*> hosts = All();
  hosts.removeIf([this](const WebPageHost* host) { return host->Profile() != profile_; });
  const bool cleared = co_await ClearCachesOf(hosts);
  done(cleared);
}

bool WebPageHost::ShowsUnchanged(const QString& address) const {
  const QUrl url(address, QUrl::TolerantMode);
  return loaded_page_ && loaded_page_->actions == profile_->Actions() && loaded_page_->url == url &&
         page_->url() == url && profile_->Guard().Requests().TopMethod(url) == "GET";
}

NavigationState WebPageHost::Navigation() const {
  NavigationState state = loads_.State();
  state.after_action = is_led_;
  return state;
}

void WebPageHost::ReportIdle(PendingWork work, std::function<void(IdleReport)> report) {
  idle_reports_.Ask(work, is_led_, std::move(report));
}

void WebPageHost::AskForAddress(const QUrl& url, const std::function<void(bool)>& answer) {
  QUrl target;
  const SiteOrigin origin = SiteOrigin::Of(url);
  target.setScheme(origin.scheme);
  target.setHost(origin.host);
  target.setPort(origin.port);
  questions_.AskOtherAddress(
      {.target = target.toString(), .router = profile_->RouterAddress().toString()},
      [answer, alive = alive_](bool allowed) {
        if (*alive) {
          answer(allowed);
        }
      });
}

void WebPageHost::AskForLogin(const QString& address,
                              const std::function<void(std::optional<TypedLogin>)>& answer) {
  questions_.AskLogin(address, [answer, alive = alive_](std::optional<TypedLogin> typed) {
    if (*alive) {
      answer(std::move(typed));
    }
  });
}

QString WebPageHost::Text(const Message& message) const { return profile_->Text(message); }

PageHostFactory WebPageHosts(const JobOptions& options, const Translator& translator,
                             TrustedCertificates* certificates, const WaitLimits& limits) {
  auto profile = std::make_shared<std::shared_ptr<WebProfile>>();
  return [profile, &options, &translator, certificates, limits](PageQuestions& questions,
                                                                QObject* parent) -> PageHost* {
    if (*profile == nullptr) {
      *profile = std::make_shared<WebProfile>(options, translator, certificates, limits);
    }
    return new WebPageHost(*profile, questions, parent);
  };
}

}  // namespace quayline
