// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QWebEngineProfile>
#include <QWebEngineScript>

#include <optional>

#include "core/router_session.h"
#include "core/trusted_certificates.h"
#include "i18n/translator.h"
#include "script/page_host.h"
#include "script/wait_limits.h"
#include "script/web/login_tries.h"
#include "script/web/login_watch.h"
#include "script/web/request_guard.h"

namespace quayline {

// How a login question of the browser is answered.
struct LoginAnswer {
  std::optional<TypedLogin> login;
  bool is_postponed = false;  // the login may be right, and is not given now
};

// What the browsers of one job share: cookies and logins, which end with the job, the scripts that
// run in every page, and the router's login with the tries that are left. Owned by the factory and
// by each host.
class WebProfile final : public QObject, private LoginWatch {
  Q_OBJECT

 public:
  // `certificates` may be null: then no certificate is trusted.
  WebProfile(const JobOptions& options, const Translator& translator,
             TrustedCertificates* certificates, const WaitLimits& limits = {});

  QWebEngineProfile& Engine() { return engine_; }
  const JobOptions& Options() const { return options_; }
  const WaitLimits& Limits() const { return limits_; }
  TrustedCertificates* Certificates() const { return certificates_; }
  QString Text(const Message& message) const { return translator_.Text(message); }
  const RequestGuard& Guard() const { return guard_; }
  // As RequestGuard.
  void BypassCacheOnce() { guard_.BypassCacheOnce(); }

  // Marks the messages of our scripts on a page's console. No page can know it.
  const QString& Beacon() const { return beacon_; }

  // The requests that pages of the job were found to repeat by themselves, as page_watch.js writes
  // them. Pages that are loaded later need not find out again.
  QJsonArray PeriodicRequests() const { return QJsonArray::fromStringList(periodic_requests_); }
  void AddPeriodicRequests(const QStringList& requests);

  // Another login, or another router, has its own tries.
  void SetLogin(const PageLogin& login);
  // The login that the user typed in for the router of this job.
  void SetTypedLogin(const TypedLogin& typed);
  // Lets pages ask another origin than the router's, until the router changes. The login is not
  // given to it.
  void Allow(const QUrl& url);
  // True once for each origin that pages may not ask.
  bool ShallAskFor(const QUrl& url);
  // The router's own scheme, host and port, as an address.
  QUrl RouterAddress() const;
  LoginTries& Logins() { return tries_; }
  // Whether an address has the router's own scheme, host and port.
  bool IsRouter(const QUrl& url) const;
  // Answers the browser's login question for the router's own scheme, host and port, and for no
  // other. `is_alone`: no other requests of the page are queued.
  LoginAnswer AnswerLogin(const QUrl& url, const QString& realm, bool is_alone);

  // Whether the address is on the router's host, on any port.
  bool IsOnRouter(const QUrl& url) const {
    return login_.host.isEmpty() || url.host() == login_.host;
  }
  // Parts of pages that failed to load twice: pages are not loaded again for them.
  void NoteMissing(const QUrl& url) { missing_.insert(url); }
  bool IsKnownMissing(const QUrl& url) const { return missing_.contains(url); }

  // Counts the user actions on the pages of the job.
  quint64 Actions() const { return actions_; }
  void NoteAction() { ++actions_; }

  // Popups that are open at the same time; a page that opens more is refused.
  bool TakePopup();
  void ReturnPopup() { --popups_; }

 Q_SIGNALS:
  // Some page of the job offered a file. Of which page cannot be asked: the engine crashes over a
  // download whose frame has gone.
  void downloadRefused(const QString& file_name);

 private:
  bool HasLogin(const QByteArray& credentials) const override;
  std::optional<Pass> JudgeLogin(const QUrl& url, const QByteArray& credentials) override;
  void NoteLoginAnswer(const QUrl& url, std::optional<int> status) override;
  SiteOrigin Router() const;
  void InstallScripts();
  void Install(const QString& name, QWebEngineScript::ScriptWorldId world, const QString& source);

  const JobOptions& options_;
  const Translator& translator_;
  TrustedCertificates* certificates_;
  const WaitLimits limits_;
  QSet<SiteOrigin> asked_;  // the user was asked for these
  RequestGuard guard_;      // outlives the engine that asks it
  QWebEngineProfile engine_;
  QString beacon_;
  PageLogin login_;
  LoginTries tries_;
  QSet<QUrl> missing_;
  int popups_ = 0;
  quint64 actions_ = 0;
  QStringList periodic_requests_;
};

}  // namespace quayline
