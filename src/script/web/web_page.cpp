// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/web_page.h"

#include <QAuthenticator>
#include <QCryptographicHash>
#include <QPointer>
#include <QSslCertificate>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>

#include <utility>

#include "script/web/certificate_fault.h"
#include "script/web/web_texts.h"

namespace quayline {

namespace {

// A page's message is shown in the status box; it may be long.
constexpr int kMaxShownCharacters = 500;
constexpr int kMaxMessages = 100;  // of one page; an endless series adds nothing new

QString Shortened(const QString& text) {
  return text.size() > kMaxShownCharacters ? text.left(kMaxShownCharacters) + QChar(0x2026) : text;
}

// Alone or nearly so: a document, or what a script requests. Images, scripts and style sheets are
// requested all at once.
bool IsAlone(PageRequests::Kind kind, bool is_lonely_frame) {
  return kind == QWebEngineUrlRequestInfo::ResourceTypeMainFrame ||
         kind == QWebEngineUrlRequestInfo::ResourceTypeXhr ||
         (kind == QWebEngineUrlRequestInfo::ResourceTypeSubFrame && is_lonely_frame);
}

}  // namespace

bool IsPageScheme(const QString& scheme) {
  static const QStringList schemes{QStringLiteral("http"),        QStringLiteral("https"),
                                   QStringLiteral("about"),       QStringLiteral("javascript"),
                                   QStringLiteral("data"),        QStringLiteral("blob"),
                                   QStringLiteral("chrome-error")};
  return schemes.contains(scheme);
}

WebPage::WebPage(WebProfile& profile, PageQuestions& questions, QObject* parent)
    : QWebEnginePage(&profile.Engine(), parent), profile_(profile), questions_(questions) {
  connect(this, &QWebEnginePage::authenticationRequired, this, &WebPage::AnswerLogin);
  connect(this, &QWebEnginePage::proxyAuthenticationRequired, this,
          [](const QUrl&, QAuthenticator* authenticator) { *authenticator = QAuthenticator(); });
  connect(this, &QWebEnginePage::certificateError, this, &WebPage::JudgeCertificate);
  connect(this, &QWebEnginePage::loadStarted, this, [this] {
    messages_ = 0;
    has_exceeded_popups_ = false;
    is_muted_ = false;
  });
  connect(this, &QWebEnginePage::featurePermissionRequested, this,
          [this](const QUrl& origin, Feature feature) {
            setFeaturePermission(origin, feature, PermissionDeniedByUser);
            Q_EMIT told(profile_.Text(message::kRefusedPermission));
          });
  connect(this, &QWebEnginePage::fullScreenRequested, this,
          [](QWebEngineFullScreenRequest request) { request.reject(); });
  connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
          [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
}

bool WebPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool is_main_frame) {
  if (!IsPageScheme(url.scheme())) {
    Q_EMIT told(profile_.Text(message::kRefusedAddress).arg(Shortened(url.toDisplayString())));
    return false;
  }
  if (!is_main_frame) {
    Q_EMIT frameNavigating(url, type == NavigationTypeRedirect        ? FrameRequest::kRedirect
                                : type == NavigationTypeFormSubmitted ? FrameRequest::kForm
                                                                      : FrameRequest::kPage);
  }
  return true;
}

QWebEnginePage* WebPage::createWindow(WebWindowType) {
  QWebEnginePage* popup = nullptr;
  const bool is_free = profile_.TakePopup();
  if (is_free) {
    Q_EMIT popupWanted(&popup);
    if (popup == nullptr) {
      profile_.ReturnPopup();
    }
  }
  if (popup == nullptr) {
    Q_EMIT told(profile_.Text(message::kRefusedWindow));
  }
  if (!is_free && !std::exchange(has_exceeded_popups_, true)) {
    Q_EMIT popupsExceeded();
  }
  return popup;
}

void WebPage::javaScriptAlert(const QUrl&, const QString& text) {
  AnswerDialog({.kind = PageDialog::Kind::kAlert, .text = text});
}

bool WebPage::javaScriptConfirm(const QUrl&, const QString& text) {
  return AnswerDialog({.kind = PageDialog::Kind::kConfirm, .text = text}).accepted;
}

bool WebPage::javaScriptPrompt(const QUrl&, const QString& text, const QString& preset,
                               QString* result) {
  const PageDialogAnswer answer =
      AnswerDialog({.kind = PageDialog::Kind::kPrompt, .text = text, .preset = preset});
  *result = answer.typed;
  return answer.accepted;
}

PageDialogAnswer WebPage::AnswerDialog(PageDialog dialog) {
  dialog.text = Shortened(dialog.text);
  dialog.is_repeated = ++messages_ > 1;
  std::optional<PageDialogAnswer> answer = PageDialogAnswer{};
  if (!is_muted_) {
    ++dialogs_open_;
    answer = questions_.AnswerDialog(dialog);
    --dialogs_open_;
    Q_EMIT dialogAnswered();
    is_muted_ = answer && answer->wants_no_more;
  }
  const PageDialogAnswer given =
      answer.value_or(PageDialogAnswer{.accepted = true, .typed = dialog.preset});
  if (messages_ <= kMaxMessages) {
    ReportDialog(dialog, given, answer.has_value());
  }
  return given;
}

void WebPage::ReportDialog(const PageDialog& dialog, const PageDialogAnswer& answer, bool is_seen) {
  if (dialog.kind == PageDialog::Kind::kAlert) {
    Q_EMIT told(profile_.Text(message::kPageSays).arg(dialog.text));
  } else {
    const QString words = !answer.accepted                            ? QStringLiteral("Cancel")
                          : dialog.kind == PageDialog::Kind::kConfirm ? QStringLiteral("OK")
                                                                      : Shortened(answer.typed);
    Q_EMIT told(profile_.Text(message::kPageAsks).arg(dialog.text, words));
  }
  if (!is_seen && !profile_.Options().silent_mode) {
    Q_EMIT messageShown(dialog.text);
  }
}

void WebPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                       int line, const QString& source) {
  if (message.startsWith(profile_.Beacon())) {
    Q_EMIT agentSaid(message.mid(profile_.Beacon().size()));
  } else if (level == ErrorMessageLevel && message.startsWith(QLatin1String("Uncaught "))) {
    Q_EMIT scriptFailed(Shortened(message), source, line);
  }
}

QStringList WebPage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) {
  Q_EMIT told(profile_.Text(message::kRefusedUpload));
  return {};
}

void WebPage::AnswerLogin(const QUrl& url, QAuthenticator* authenticator) {
  Q_EMIT loginAsked();
  const bool is_alone = IsAlone(profile_.Guard().Requests().KindOf(url), is_lonely_frame_);
  const LoginAnswer answer = profile_.AnswerLogin(url, authenticator->realm(), is_alone);
  if (answer.login) {
    authenticator->setUser(answer.login->username);
    authenticator->setPassword(answer.login->password);
    return;
  }
  // An authenticator of its own lets the server's refusal through; one that is left alone would be
  // sent empty, again and again.
  *authenticator = QAuthenticator();
  if (answer.is_postponed) {
    Q_EMIT loginPostponed(url);
  } else if (profile_.IsRouter(url)) {
    Q_EMIT loginRefused(url);
  }
}

// A certificate that the router made itself is accepted as long as it is the one that the user
// trusts. A router that was reset has a new one, so the user is asked again. The certificates of
// other hosts must be valid by themselves.
void WebPage::JudgeCertificate(QWebEngineCertificateError error) {
  const QUrl url = error.url();
  const QString address = QStringLiteral("%1:%2").arg(url.host()).arg(url.port(443));
  const QList<QSslCertificate> chain = error.certificateChain();
  const Message& fault = CertificateFault(chain.value(0), url.host());
  TrustedCertificates* const known = profile_.Certificates();
  if (known == nullptr || !profile_.IsRouter(url) || !error.isOverridable() || chain.isEmpty()) {
    error.rejectCertificate();
    Q_EMIT told(profile_.Text(fault).arg(address));
    return;
  }
  const QByteArray sha256 = chain.first().digest(QCryptographicHash::Sha256);
  const TrustedCertificates::Verdict verdict = known->Look(address, sha256);
  if (verdict == TrustedCertificates::Verdict::kTrusted) {
    known->StorePending();
    error.acceptCertificate();
    return;
  }
  if (&fault != &message::kRefusedCertificate) {
    Q_EMIT told(profile_.Text(fault).arg(address));
  }
  error.defer();
  Q_EMIT told(profile_.Text(message::kCertificateWait).arg(address));
  auto answer = [page = QPointer(this), error, known, address, sha256](bool trusted) mutable {
    if (page == nullptr) {
      return;
    }
    if (trusted) {
      if (!known->Trust(address, sha256)) {
        Q_EMIT page->told(page->profile_.Text(message::kCertificateNotStored).arg(address));
      }
      error.acceptCertificate();
    } else {
      error.rejectCertificate();
    }
  };
  questions_.AskCertificate({.address = address,
                             .fingerprint = TrustedCertificates::Fingerprint(sha256),
                             .is_changed = verdict == TrustedCertificates::Verdict::kChanged},
                            std::move(answer));
}

}  // namespace quayline
