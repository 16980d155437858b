// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <utility>

#include "script/page_host.h"

namespace quayline::testing {

class FakePageHost;

// The pages of one test: the calls to its browsers, in order, one readable line a call, and how the
// browsers answer. Lives longer than the browsers.
//
//   SetElementValue(rule_name, Web, false)      ClickButton(Save) in frame 2
//   nav http://router/page.htm                  nav http://router/page.htm in frame main
//   refresh     run save()     keys {RIGHT}     clear cache     stop
//
// A call of a popup has "popup 1: " in front: the number is that of the browser among the living.
// The settle check's calls are counted, not recorded; the search for error texts is not recorded.
class FakePages final {
 public:
  using Reaction = std::function<void(FakePageHost&)>;

  PageHostFactory Factory();

  // The answers to calls that begin with `call`, one after the other; the last one stays. Without
  // any, operations answer as on a page that holds every box and no words, values or options.
  void Answer(const char* call, const QList<QJsonValue>& answers) {
    answers_[QLatin1String(call)] = answers;
  }
  // The page never answers a call that begins so, as a page that hangs.
  void KeepSilentOn(const char* call) { silent_.append(QLatin1String(call)); }
  // What else happens when a call that begins with one of `starts` comes in, before its answer. It
  // takes the place of the page load that `nav` and `refresh` lead to otherwise.
  void On(std::initializer_list<const char*> starts, const Reaction& reaction);

  FakePageHost& Host(int number) const;

  QStringList calls;
  QList<PageLogin> logins;
  int settle_reads = 0;
  QString settled_state;  // of the markup, with every answer
  bool clears_cache = true;
  QString unchanged;         // the address of the page that need not be loaded again
  QString script_error;      // what the next code run in a page fails with
  QJsonObject script_entry;  // what the last one found as the entry

 private:
  friend FakePageHost;

  void Record(FakePageHost& host, const QString& call, const Reaction& otherwise = {});
  void AnswerLater(FakePageHost& host, const QString& call, std::function<void()> answer);
  QJsonValue NextAnswer(const PageCall& call, const QString& line);

  QHash<QString, QList<QJsonValue>> answers_;
  QStringList silent_;
  QList<std::pair<QString, Reaction>> reactions_;
  QList<QPointer<FakePageHost>> hosts_;
};

// A browser that loads nothing: it records its calls, and navigates only as the test says. All its
// answers come from the event loop.
class FakePageHost final : public PageHost {
  Q_OBJECT

 public:
  FakePageHost(FakePages& pages, PageQuestions& questions, int number, QObject* parent);

  // Whom its page asks.
  PageQuestions& questions;

  void Navigate2(const QString& url, const QString& target_frame) override;
  void Refresh2() override;
  void StopNavigation() override;
  void HandOver() override { navigation_.after_action = true; }
  void SetLogin(const PageLogin& login) override { pages_.logins.append(login); }
  void Call(const PageCall& call, std::function<void(PageAnswer)> answer) override;
  void RunInPage(const PageScript& script, std::function<void(const QString&)> done) override;
  void SendKeys(const QString& keys) override;
  void ClearCache(std::function<void(bool)> done) override;
  NavigationState Navigation() const override { return navigation_; }
  bool ShowsUnchanged(const QString& address) const override { return address == pages_.unchanged; }
  void ReportIdle(PendingWork work, std::function<void(IdleReport)> report) override;

  // The page's own moves. Each happens at once and raises what the real browser raises.
  void BeginNavigation();
  void EndNavigation();
  void FailNavigation(const QString& url, int status);
  // One navigation, begun and ended in two turns of the event loop.
  void LoadPage();
  // The same, ended by an error of the address http://x/.
  void LoadBrokenPage(int status);
  FakePageHost& OpenPopup();
  void CloseWindow();

  // Runs `move` in a later turn of the event loop, unless the browser is gone by then.
  void Later(std::function<void()> move);

 private:
  FakePages& pages_;
  const int number_;
  NavigationState navigation_;

  friend FakePages;
};

// Reactions.
inline void LoadForEver(FakePageHost& host) { host.BeginNavigation(); }
inline void OpenPopup(FakePageHost& host) { host.OpenPopup().LoadPage(); }
inline void CloseWindow(FakePageHost& host) { host.CloseWindow(); }

}  // namespace quayline::testing
