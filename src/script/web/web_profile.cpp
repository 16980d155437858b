// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/web_profile.h"

#include <QFile>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QUrl>
#include <QWebEngineDownloadRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

#include "script/wait_limits.h"

// A library's resources are linked in by their name alone; the macro wants the global namespace.
static void LinkScripts() { Q_INIT_RESOURCE(web); }

namespace quayline {

namespace {

constexpr int kMaxPopups = 8;

QString Secret() {
  QString secret = QStringLiteral("q");
  for (int i = 0; i < 4; ++i) {
    secret += QString::number(QRandomGenerator::system()->generate(), 36);
  }
  return secret;
}

// Whether the value of an Authorization header is this login. Of a Digest login only the name is
// readable.
bool IsLogin(const QByteArray& credentials, const QString& username, const QString& password) {
  const QByteArray basic = (username + QLatin1Char(':') + password).toUtf8().toBase64();
  return credentials.endsWith(' ' + basic) ||
         credentials.contains("username=\"" + username.toUtf8() + '"');
}

QString ReadScript(const char* name) {
  QFile file(QStringLiteral(":/quayline/web/") + QLatin1String(name));
  if (!file.open(QIODevice::ReadOnly)) {
    qFatal("A script of the program is missing from its resources.");
  }
  return QString::fromUtf8(file.readAll());
}

// One script of several files: a call of `function`, which the last of them declares. Comments and
// indentation are left out: every document reads the text again.
QString Called(const char* function, std::initializer_list<const char*> files,
               const QJsonArray& arguments) {
  static const QRegularExpression unread(QStringLiteral("^\\s*(//.*)?\\n|^ +"),
                                         QRegularExpression::MultilineOption);
  QString script = QStringLiteral("(function(){\n");
  for (const char* file : files) {
    script += ReadScript(file).remove(unread);
  }
  return script +
         QStringLiteral("%1(...%2);\n})();\n")
             .arg(QLatin1String(function),
                  QString::fromUtf8(QJsonDocument(arguments).toJson(QJsonDocument::Compact)));
}

}  // namespace

WebProfile::WebProfile(const JobOptions& options, const Translator& translator,
                       TrustedCertificates* certificates, const WaitLimits& limits)
    : options_(options),
      translator_(translator),
      certificates_(certificates),
      limits_(limits),
      beacon_(Secret() + QLatin1Char(' ')) {
  RouterGate* const gate = &RouterGate::Instance();
  gate->AdmitAll(this);
  gate->WatchLogins(this, this);
  engine_.setUrlRequestInterceptor(&guard_);
  engine_.setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
  engine_.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
  // A router is asked for nothing that the script did not ask for.
  engine_.settings()->setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
  connect(&engine_, &QWebEngineProfile::downloadRequested, this,
          [this](QWebEngineDownloadRequest* download) {
            download->cancel();
            Q_EMIT downloadRefused(download->suggestedFileName());
          });
  LinkScripts();
  InstallScripts();
}

bool WebProfile::HasLogin(const QByteArray& credentials) const {
  const PageLogin& typed = login_;
  return IsLogin(credentials, typed.username, typed.password) ||
         IsLogin(credentials, typed.username.trimmed(), typed.password.trimmed());
}

std::optional<LoginWatch::Pass> WebProfile::JudgeLogin(const QUrl& url,
                                                       const QByteArray& credentials) {
  if (!IsRouter(url)) {
    return std::nullopt;
  }
  const bool is_second = IsLogin(credentials, login_.username, login_.password);
  return tries_.Judge(url, !is_second && HasLogin(credentials));
}

void WebProfile::NoteLoginAnswer(const QUrl& url, std::optional<int> status) {
  tries_.NoteAnswer(url, status);
}

void WebProfile::InstallScripts() {
  const QString ask = Secret();
  const QString reply = Secret();
  const QString watch_ask = Secret();
  const QString watch_reply = Secret();
  const QJsonObject limits = PageScriptLimits(limits_);
  Install(
      QStringLiteral("agent"), QWebEngineScript::ApplicationWorld,
      Called("installPageIdle", {"watch/page_idle.js"}, {beacon_, watch_ask, watch_reply, limits}) +
          Called("installLoadReport", {"load_report.js"}, {beacon_}) +
          Called("installPageAgent",
                 {"agent/elements.js", "agent/finding.js", "agent/keeping.js", "agent/acting.js",
                  "agent/clicking.js", "agent/choosing.js", "agent/reading.js",
                  "agent/row_cells.js", "agent/row_tables.js", "agent/rows.js",
                  "agent/complaints.js", "agent/picking.js", "agent/entry.js"},
                 {beacon_, ask, reply}));
  Install(QStringLiteral("watch"), QWebEngineScript::MainWorld,
          Called("removePageChannels", {"page_channels.js"}, {}) +
              Called("installHandlerReader", {"handler_reader.js"}, {ask, reply}) +
              Called("installPageWatch",
                     {"watch/pending_work.js", "watch/timers.js", "watch/requests.js",
                      "watch/page_watch.js"},
                     {watch_ask, watch_reply, limits}));
}

// One script a world: each costs every page its time.
void WebProfile::Install(const QString& name, QWebEngineScript::ScriptWorldId world,
                         const QString& source) {
  QWebEngineScript script;
  script.setName(name);
  script.setWorldId(world);
  script.setInjectionPoint(QWebEngineScript::DocumentCreation);
  script.setRunsOnSubFrames(true);
  script.setSourceCode(source);
  engine_.scripts()->insert(script);
}

void WebProfile::SetLogin(const PageLogin& login) {
  if (login != login_) {
    login_ = login;
    tries_.Reset();
    guard_.SetRouter(Router());
    asked_.clear();
    RouterGate::Instance().Admit(this, guard_.Allowed());
  }
}

void WebProfile::Allow(const QUrl& url) {
  guard_.Allow(SiteOrigin::Of(url));
  RouterGate::Instance().Admit(this, guard_.Allowed());
}

bool WebProfile::ShallAskFor(const QUrl& url) {
  const SiteOrigin origin = SiteOrigin::Of(url);
  const bool is_blocked = !guard_.Allowed().isEmpty() && !guard_.Allowed().contains(origin);
  if (!is_blocked || origin.port == 0 || asked_.contains(origin)) {
    return false;
  }
  asked_.insert(origin);
  return true;
}

QUrl WebProfile::RouterAddress() const {
  QUrl url;
  url.setScheme(login_.scheme);
  url.setHost(login_.host);
  url.setPort(login_.port);
  return url;
}

SiteOrigin WebProfile::Router() const { return SiteOrigin::Of(RouterAddress()); }

void WebProfile::SetTypedLogin(const TypedLogin& typed) {
  login_.username = typed.username;
  login_.password = typed.password;
  tries_.Reset();
}

bool WebProfile::IsRouter(const QUrl& url) const { return SiteOrigin::Of(url) == Router(); }

LoginAnswer WebProfile::AnswerLogin(const QUrl& url, const QString& realm, bool is_alone) {
  const bool has_login = !login_.username.isEmpty() || !login_.password.isEmpty();
  if (!IsRouter(url) || !has_login) {
    return {};
  }
  switch (tries_.Ask(realm, url, is_alone)) {
    case LoginTries::Verdict::kFirst:
      return {.login = TypedLogin{.username = login_.username.trimmed(),
                                  .password = login_.password.trimmed()}};
    case LoginTries::Verdict::kSecond:
      return {.login = TypedLogin{.username = login_.username, .password = login_.password}};
    case LoginTries::Verdict::kLater:
      return {.login = std::nullopt, .is_postponed = true};
    case LoginTries::Verdict::kRefused:
      break;
  }
  return {};
}

void WebProfile::AddPeriodicRequests(const QStringList& requests) {
  constexpr qsizetype kMaxRequests = 100;
  for (const QString& request : requests) {
    if (periodic_requests_.size() < kMaxRequests && !periodic_requests_.contains(request)) {
      periodic_requests_.append(request);
    }
  }
}

bool WebProfile::TakePopup() {
  if (popups_ >= kMaxPopups) {
    return false;
  }
  ++popups_;
  return true;
}

}  // namespace quayline
