// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

#include "script/page_call.h"
#include "script/page_questions.h"

class QWidget;

namespace quayline {

// The login of the router. It is given only to the browser's login question.
struct PageLogin {
  QString scheme;  // "http" or "https"
  QString host;
  int port = 80;
  QString username;
  QString password;

  bool operator==(const PageLogin&) const = default;
};

// Code for the top page's own world.
struct PageScript {
  QString code;
  QJsonObject entry;  // what the code finds as the constant `quayline`
};

// Whether a page navigates.
struct NavigationState {
  quint64 starts = 0;  // raised whenever a navigation begins in any frame of the page
  bool busy = false;   // a navigation has begun and not ended yet
  // There was a user action on the page since the script opened one, or the user has the page: what
  // the page sends may be a save.
  bool after_action = false;
};

// Which pending work of a page is waited for.
enum class PendingWork {
  kAny,
  kSaves,  // requests that may be a save, and nothing else
};

// What a page has left when it is idle.
struct IdleReport {
  // Timers of the last action that are longer than what is waited for. They have not run.
  int later_timers = 0;
  // The page is not idle: it had pending work for longer than a page is waited for.
  bool gave_up = false;
  // The state of the top document's markup; see page_operation::ReadMarkupState(). Empty if two
  // looks at it were not equal.
  QString settled_state;
  // The error texts that the page shows, as page_operation::ReadComplaints() gives them; nothing
  // where they were reported before, with the same state.
  std::optional<QStringList> complaints;
};

// What a line of the status box is about.
enum class StatusKind {
  kProgress,  // what the browser is doing
  kNotable,   // a message of a page, and what was refused or blocked: reported without a box, too
};

// One hosted browser with its current page. Quayline drives pages through this interface alone.
// One real implementation (WebPageHost) and a recording double for tests.
//
// Nothing here waits: what takes time is answered through a callback, which may come from inside
// the call, or through a signal. After the host is destroyed no callback comes. Signals only
// announce: what a page asks is answered by the PageQuestions that the host is made with.
class PageHost : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // Starts a navigation. With a target frame's name, in that frame of the page; a name that the
  // page does not have opens a popup, as a link with that target would. An address that no browser
  // can open is answered by navigateError().
  virtual void Navigate2(const QString& url, const QString& target_frame) = 0;
  // Fetches the page again, past all caches.
  virtual void Refresh2() = 0;
  // Ends a navigation that is under way.
  virtual void StopNavigation() = 0;
  // The user stopped the run: ends a load that no user action led to, the retries of one, and a
  // page whose script never ends. What may be a save continues.
  virtual void RunStopped() {}
  // The user has the page from now on, and may act on it: NavigationState::after_action.
  virtual void HandOver() = 0;

  virtual void SetLogin(const PageLogin& login) = 0;

  // Asks the page agent. Answers once, in the order of the calls.
  virtual void Call(const PageCall& call, std::function<void(PageAnswer)> answer) = 0;
  // Runs code in the top page's own world, as a script of the page. The answer is the error, or an
  // empty text.
  virtual void RunInPage(const PageScript& script,
                         std::function<void(const QString& error)> done) = 0;
  // Types into the control of the page that has the focus. Special characters and names in braces
  // have the meaning of the classic key sending: + ^ % are modifiers, ~ is Enter, {RIGHT} a key.
  virtual void SendKeys(const QString& keys) = 0;
  // Empties the browser's cache of pages.
  virtual void ClearCache(std::function<void(bool cleared)> done) = 0;

  virtual NavigationState Navigation() const = 0;
  // Whether the top page is this address as the router serves it now: loaded whole by a plain GET
  // that was sent after the last action on any page of the job.
  virtual bool ShowsUnchanged(const QString& address) const = 0;
  // Reports once when what the page was asked to do has either begun a navigation or will not begin
  // one any more: its queued tasks have run, and it has no pending work. A new call replaces one
  // that was not answered. No report comes when the document goes meanwhile.
  virtual void ReportIdle(PendingWork work, std::function<void(IdleReport)> report) = 0;

  // Name and version of the engine; empty in the test double.
  virtual QString EngineVersion() const { return {}; }
  // The view that shows the page; null in the test double.
  virtual QWidget* Widget() { return nullptr; }

 Q_SIGNALS:
  // `starts` or `busy` of Navigation() changed. Emitted before documentComplete() and the like.
  void navigationChanged();

  void beforeNavigate();
  // The new document has arrived; its content may still be loading.
  void navigateComplete();
  // The page has ended loading, successfully or not, and is not busy any more.
  void documentComplete();
  // A navigation failed. `status` is an HTTP status (401) or one of the negative numbers that
  // StatusText() knows. `url` never holds a login.
  void navigateError(const QString& url, int status);
  // The page opened a popup. A receiver takes ownership of the host; without one it is deleted.
  void newWindow(quayline::PageHost* popup);
  // The page closed itself.
  void windowClosing();
  void progressChanged(int percent);
  // A line for the status box.
  void statusTextChanged(const QString& text,
                         quayline::StatusKind kind = quayline::StatusKind::kProgress);
  // The page showed a message that was answered without the user. Only raised with silent mode off.
  void pageMessage(const QString& text);
  // Something about a page for the log of the run.
  void noted(const QString& text);
  // A script, a style sheet or a frame of the page could not be loaded, and the page is incomplete.
  void resourceFailed(const QString& url);
  // A script of the page failed. `is_answered`: it is the script of RunInPage(), which answers the
  // error as well.
  void scriptError(const QString& description, const QString& url, int line,
                   bool is_answered = false);
};

using PageHostFactory = std::function<PageHost*(PageQuestions& questions, QObject* parent)>;

}  // namespace quayline
