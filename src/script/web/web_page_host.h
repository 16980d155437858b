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

// A hosted browser on Qt WebEngine.
//
// How a page is proven quiet (ProveQuiet), so that no save is overtaken and no click is waited for
// longer than it takes:
//   1. Ahead of an act the page watch (page_watch.js) is armed. From then on it counts the work
//      that the page puts off: timers up to 2.5 s, clocks up to 4 s behind the act, frames of the
//      painting, requests, pictures and scripts that are fetched, questions to workers and sockets,
//      and what these put off in their turn. The next turn of a fast clock that ran before counts.
//   2. The act is done. A link or `location =` is announced to the engine ahead of the act's own
//      answer, a form that is submitted behind it, ahead of one more round trip.
//   3. The agent (page_rest.js) lets the tasks that are not counted go ahead (messages, promises,
//      events): it sets a timer and then sends itself a few messages in a row, each of which stands
//      behind whatever was queued before it. A document that has just been loaded has done so by
//      itself while the engine was still busy with the load.
//   4. It asks the watches of all documents what they have in hand. Nothing: the watch is disarmed
//      and the agent says "quiet". Something: it says "working", waits for the watch's word that
//      the last of it is done, and goes back to 3. Requests are waited for as long as a router may
//      take over a save, other work less.
//   5. One more round trip brings in what all this has announced meanwhile. Then the proof stands.
//   6. A document whose watch keeps silent is proven by time as well: four timers in a row, two
//      frames of the painting, 30 ms in all.
//   7. A page that an act led to and that has nothing to fill in or to press (a "please wait") is
//      proven like the page of the act, and not like one that was opened.
// Whoever waits leaves at any of these steps as soon as a navigation begins; behind its end the new
// page is proven in its turn, because pages leave by themselves as soon as they are there.
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
  NavigationState Navigation() const override { return watch_.State(); }
  void ProveQuiet(std::function<void()> quiet) override;
  QWidget* Widget() override { return view_; }

 Q_SIGNALS:
  void quietTold(const QString& id);
  void workTold(const QString& id);

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
  Task<> Prove(std::function<void()> quiet);
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
  int proofs_ = 0;
  Flow proof_;
};

}  // namespace quayline
