// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

#include "async/task.h"
#include "core/job_flags.h"
#include "script/browser_set.h"
#include "script/wait_limits.h"

namespace quayline {

// How a wait for the pages ended.
enum class WaitEnd {
  kIdle,     // no navigation began, and none will begin any more
  kArrived,  // the pages came to another document, which is idle; or the user ended the wait
  kPending,  // the limit passed, and the pages still navigate or have pending work
  kStopped,  // the job was stopped
  kFailed,   // a page failed: the page-error flag is set
};

// What a wait is for.
struct WaitScope {
  // Navigations that began after this mark are waited for. Without: those that are under way.
  std::optional<quint64> since;
  // Without: as long as the router takes. The user can always stop the job.
  std::optional<WaitLimits::Time> limit;
  // What the user is shown when the wait gets long.
  QString shown_as;
  // False after the end of a run: its flags belong to the next one.
  bool heeds_flags = true;
  // False after the last entry: a page error has no effect any more.
  bool heeds_errors = true;
  // Of the page. Navigations are always waited for.
  PendingWork work = PendingWork::kAny;
  // False for a page that gives no answer: only navigations are waited for.
  bool asks_page = true;
};

// The only place that waits for pages: for navigations, and for pending work of a page that may
// start one.
//
// Why this is needed. A click on "Save" returns at once. The request may begin at the same moment,
// some milliseconds later, or after a timer, a fade, a request of its own, or a countdown; in the
// window, in a frame, or in a popup. If the next line opens another page before that, the browser
// drops the save, and nothing reports it. A click that starts nothing, on the other hand, must not
// cost time: most lines of a script are such.
//
// How it works:
//   1. Before an action, the caller takes a mark. It counts the navigations that have begun in any
//      frame of any browser of the run.
//   2. The action is done. The scripts that watch the page (page_watch.js) know what it started.
//   3. Nothing has begun: the page is asked to report when it is idle (PageHost::ReportIdle). It
//      runs the tasks that it has queued, and the pending work that the action started, within the
//      times of WaitLimits; then it reports. That takes about 2 ms for a page without pending work.
//      As soon as a navigation begins, the wait goes on at 4.
//   4. A navigation has begun: the wait lasts until none is under way. Starts and ends are never
//      counted against each other: one end may serve two starts.
//   5. The page that the browser came to goes through 3 as well, because pages leave for others by
//      themselves (wait pages, refreshes). At most WaitLimits::hops times. A stop, a page error and
//      the scope's limit end the wait at every step. A page that gives no answer at all is ended by
//      the browser: it fails, and so does the wait.
//
// PageWait writes no log and knows no script. Interpreter, commands and runners translate its
// answer.
class PageWait final {
 public:
  // `host` is the browser that the script drives; `show_wait` shows what a long wait is for, and an
  // empty text when it is over. All parameters outlive the waits.
  PageWait(BrowserSet& browsers, JobFlags& flags, std::function<PageHost*()> host,
           std::function<void(const QString&)> show_wait, WaitLimits limits = {});

  const WaitLimits& Limits() const { return limits_; }

  quint64 Mark() const { return browsers_.Navigation().starts; }
  // Whether a navigation has begun since the mark or is under way.
  bool HasBegun(quint64 mark) const;

  Task<WaitEnd> UntilIdle(WaitScope scope);

  // How many timers of the last action the last idle page had left: they are longer than what is
  // waited for, and will not run when the page is left.
  int LaterTimers() const { return later_timers_; }

  // The state of the markup that two looks at the page found at the end of the last wait; empty if
  // they were not equal.
  const QString& SettledState() const { return settled_state_; }
  // The error texts that came with it, as IdleReport has them.
  const std::optional<QStringList>& Complaints() const { return complaints_; }

  // Whether the page answers at all, within `limit`.
  Task<bool> Answers(WaitLimits::Time limit);

 private:
  class LongWait;
  struct Deadline;

  std::optional<WaitEnd> Interruption(const WaitScope& scope) const;
  // Asks the page to report that it is idle. Nothing: something else ended the wait.
  Task<std::optional<IdleReport>> IdleOfPage(quint64 mark, const WaitScope& scope,
                                             const Deadline& deadline);
  // Waits until no navigation is under way, or the user ends the wait.
  Task<> Arrival(const WaitScope& scope, const Deadline& deadline);

  BrowserSet& browsers_;
  JobFlags& flags_;
  std::function<PageHost*()> host_;
  std::function<void(const QString&)> show_wait_;
  WaitLimits limits_;
  int later_timers_ = 0;
  QString settled_state_;
  std::optional<QStringList> complaints_;
};

}  // namespace quayline
