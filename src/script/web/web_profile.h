// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWebEngineProfile>

#include "core/router_session.h"
#include "script/page_host.h"

namespace quayline {

// What the browsers of one job share: cookies and logins, which end with the job, the scripts that
// stand in every page, and the router's login with the tries that are left. Owned by the factory
// and by each host.
class WebProfile final : public QObject {
  Q_OBJECT

 public:
  explicit WebProfile(const JobOptions& options);

  QWebEngineProfile& Engine() { return engine_; }
  const JobOptions& Options() const { return options_; }

  // Marks what our scripts say on a page's console. No page can know it.
  const QString& Beacon() const { return beacon_; }

  // Another login, or another router, has its own tries.
  void SetLogin(const PageLogin& login);
  // Answers the browser's login question for the router's own scheme, host and port. False, and no
  // answer, for every other address, without a login, and when the tries are used up.
  bool AnswerLogin(const QUrl& url, QString* username, QString* password);

  // Popups that are open at the same time; a page that opens more is refused.
  bool TakePopup();
  void ReturnPopup() { --popups_; }

 private:
  void InstallScripts();

  const JobOptions& options_;
  QWebEngineProfile engine_;
  QString beacon_;
  PageLogin login_;
  int tries_ = 0;
  int popups_ = 0;
};

}  // namespace quayline
