// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWebEngineView>

#include <memory>
#include <optional>

#include "async/flow.h"
#include "core/router_session.h"
#include "i18n/message.h"
#include "script/page_host.h"
#include "script/web/idle_reports.h"
#include "script/web/memory_limit.h"
#include "script/web/page_keys.h"
#include "script/web/page_loads.h"
#include "script/web/page_script.h"
#include "script/web/script_calls.h"
#include "script/web/script_watchdog.h"

namespace quayline {

class WebPage;
class WebProfile;

// A hosted browser on Qt WebEngine. How its pages are waited for is described at PageWait.
class WebPageHost final : public PageHost {
  Q_OBJECT

 public:
  WebPageHost(std::shared_ptr<WebProfile> profile, PageQuestions& questions, QObject* parent);
  ~WebPageHost() override;

  // Those that exist.
  static QList<WebPageHost*> All();
  const std::shared_ptr<WebProfile>& Profile() const { return profile_; }

  void Navigate2(const QString& url, const QString& target_frame) override;
  void Refresh2() override;
  void StopNavigation() override;
  void RunStopped() override;
  void HandOver() override;
  void SetLogin(const PageLogin& login) override;
  void Call(const PageCall& call, std::function<void(PageAnswer)> answer) override;
  void RunInPage(const PageScript& script, std::function<void(const QString& error)> done) override;
  void SendKeys(const QString& keys) override;
  void ClearCache(std::function<void(bool)> done) override;
  NavigationState Navigation() const override;
  bool ShowsUnchanged(const QString& address) const override;
  void ReportIdle(PendingWork work, std::function<void(IdleReport)> report) override;
  QString EngineVersion() const override;
  QWidget* Widget() override { return view_; }

 private:
  void ConnectLoads();
  void ConnectPage();
  void OnLoadingChanged(const QWebEngineLoadingInfo& info);
  void ReturnPopup();
  void OnCloseRequested();
  void NoteAct();
  void OnAgentSaid(const QString& text);
  // What the agent, or the load report, says of documents and their parts.
  void OnLoadReported(const QString& kind, const QString& fields);
  // Runs code in one of the page's worlds; see ScriptCalls.
  void Ask(const QString& code, quint32 world, ScriptCalls::Answer done);
  void OnRendererGone();
  // The engine starts a process that has ended again without our scripts: only another page has
  // them.
  void ReplaceDeadPage();
  void AskForAddress(const QUrl& url, const std::function<void(bool allowed)>& answer);
  void AskForLogin(const QString& address,
                   const std::function<void(std::optional<TypedLogin>)>& answer);
  void OnDownloadRefused(const QString& file_name);
  QString Text(const Message& message) const;

  Task<> RunClearCache(std::function<void(bool)> done);

  std::shared_ptr<WebProfile> profile_;
  Flow clearing_;
  PageQuestions& questions_;
  QPointer<WebPage> page_;
  QPointer<WebPage> dead_page_;  // kept, since it may be the one that is calling
  QPointer<QWebEngineView> view_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  bool is_popup_ = false;
  bool counts_as_open_ = false;  // among the popups
  bool is_renderer_gone_ = false;
  bool is_led_ = false;  // the page has been acted on since we loaded one, or the user has it
  ScriptCalls calls_;
  PageScripts scripts_;
  PageKeys keys_;
  PageLoads loads_;
  ScriptWatchdog watchdog_;
  MemoryLimit memory_{nullptr};
  // The last page that was loaded whole, and the number of actions before it was asked for.
  struct LoadedPage {
    QUrl url;
    quint64 actions = 0;
  };
  std::optional<LoadedPage> loaded_page_;
  quint64 actions_before_load_ = 0;
  IdleReports idle_reports_;  // last: a wait uses what is above
};

}  // namespace quayline
