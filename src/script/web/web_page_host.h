// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QTimer>
#include <QWebEngineView>

#include <map>
#include <memory>

#include "async/flow.h"
#include "core/router_session.h"
#include "i18n/message.h"
#include "script/page_host.h"
#include "script/web/load_retry.h"
#include "script/web/navigation_watch.h"

class QWebEngineLoadingInfo;

namespace quayline {

class WebPage;
class WebProfile;

// A hosted browser on Qt WebEngine. How its pages are waited for is described at PageWait.
class WebPageHost final : public PageHost {
  Q_OBJECT

 public:
  WebPageHost(std::shared_ptr<WebProfile> profile, QObject* parent);
  ~WebPageHost() override;

  void Navigate2(const QString& url, const QString& target_frame) override;
  void Refresh2() override;
  void StopNavigation() override;
  void SetLogin(const PageLogin& login) override;
  void Call(const PageCall& call, std::function<void(PageAnswer)> answer) override;
  void RunInPage(const QString& code, std::function<void()> done) override;
  void SendKeys(const QString& keys) override;
  void ClearCache(std::function<void(bool)> done) override;
  NavigationState Navigation() const override;
  void ReportIdle(std::function<void(IdleReport)> report) override;
  QWidget* Widget() override { return view_; }

 Q_SIGNALS:
  // The page reported on the wait `id`. `is_idle` is false when it has pending work.
  void pageReported(const QString& id, bool is_idle, quayline::IdleReport report);

 private:
  using PendingAnswer = std::function<void(const QVariant&)>;
  struct HeldQuestion {
    quint64 number;
    QString code;
    quint32 world;
  };

  void ConnectPage();
  void OnLoadingChanged(const QWebEngineLoadingInfo& info);
  void OnLoadFailed(const QWebEngineLoadingInfo& info);
  void NoteAct();
  void OnAgentSaid(const QString& text);
  // Runs code in one of the page's worlds. Calls back once, with nothing when the page's process
  // ends first.
  void Ask(const QString& code, quint32 world, PendingAnswer done);
  // Keys take another way into the page than questions do, and are overtaken: questions wait until
  // the page has heard the keys before them.
  void AskHeld();
  // The engine itself would keep the open questions until the page is deleted.
  void OnRendererGone();
  // The engine starts a process that has ended anew without our scripts: only another page has
  // them.
  void ReplaceDeadPage();
  void OnCertificateQuestion(const ShownCertificate& shown,
                             const std::function<void(bool trusted)>& answer);
  // Asks the user for the login that a page which failed for want of it needs. False when there is
  // nobody to ask, or no question to ask.
  bool AskForLogin(const QUrl& url);
  void OnDownloadRefused(const QString& file_name);
  Task<> WaitForReport(std::function<void(IdleReport)> report);
  void OnPageReported(const QString& text, bool is_idle);
  QString Text(const Message& message) const;

  std::shared_ptr<WebProfile> profile_;
  NavigationWatch watch_;
  QPointer<WebPage> page_;
  QPointer<WebPage> dead_page_;  // kept, since it may be the one that is calling
  QPointer<QWebEngineView> view_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  bool is_popup_ = false;
  bool is_renderer_gone_ = false;
  bool login_refused_ = false;  // by us, during the load under way
  bool is_led_ = false;         // the page has been acted on since we loaded one
  LoadRetry retry_;
  quint64 asked_ = 0;
  std::map<quint64, PendingAnswer> pending_;  // by number, which is the order of asking
  QList<HeldQuestion> held_;
  int keys_under_way_ = 0;
  QTimer keys_guard_;
  int idle_waits_ = 0;
  Flow idle_wait_;
};

}  // namespace quayline
