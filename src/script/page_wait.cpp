// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/page_wait.h"

#include <QDeadlineTimer>
#include <QTimer>

#include "async/wait.h"
#include "script/page_operations.h"

namespace quayline {

// Shows what a wait is for, once it is long, and takes it back at its end.
class PageWait::LongWait final {
 public:
  LongWait(PageWait& wait, const WaitScope& scope) : wait_(wait) {
    if (scope.shown_as.isEmpty()) {
      return;
    }
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this, text = scope.shown_as] {
      is_shown_ = true;
      wait_.show_wait_(text);
    });
    timer_.start(wait.limits_.long_wait);
  }
  ~LongWait() {
    if (is_shown_) {
      wait_.show_wait_({});
    }
  }
  LongWait(const LongWait&) = delete;
  LongWait& operator=(const LongWait&) = delete;

 private:
  PageWait& wait_;
  QTimer timer_;
  bool is_shown_ = false;
};

struct PageWait::Deadline {
  explicit Deadline(const WaitScope& scope)
      : timer(scope.limit ? QDeadlineTimer(*scope.limit) : QDeadlineTimer(QDeadlineTimer::Forever)),
        is_set(scope.limit) {}

  bool HasPassed() const { return timer.hasExpired(); }
  WaitLimits::Time Left() const { return WaitLimits::Time(timer.remainingTime()); }

  QDeadlineTimer timer;
  bool is_set;
};

PageWait::PageWait(BrowserSet& browsers, JobFlags& flags, std::function<PageHost*()> host,
                   std::function<void(const QString&)> show_wait, WaitLimits limits)
    : browsers_(browsers),
      flags_(flags),
      host_(std::move(host)),
      show_wait_(std::move(show_wait)),
      limits_(limits) {}

bool PageWait::HasBegun(quint64 mark) const {
  return browsers_.Navigation().busy || browsers_.Navigation().starts != mark;
}

// An error comes first: a page error may be what stops the job.
std::optional<WaitEnd> PageWait::Interruption(const WaitScope& scope) const {
  if (scope.heeds_flags && scope.heeds_errors && flags_.PageErrorPending()) {
    return WaitEnd::kFailed;
  }
  if (scope.heeds_flags && flags_.JobStopRequested()) {
    return WaitEnd::kStopped;
  }
  return std::nullopt;
}

Task<WaitEnd> PageWait::UntilIdle(WaitScope scope) {
  const Deadline deadline(scope);
  const LongWait shown(*this, scope);
  settled_state_.clear();
  complaints_.reset();
  quint64 mark = scope.since.value_or(Mark());
  WaitEnd end = WaitEnd::kIdle;
  for (int hop = 0; hop <= limits_.hops;) {
    if (!HasBegun(mark) && !scope.asks_page) {
      co_return end;
    }
    if (!HasBegun(mark) && !Interruption(scope)) {
      const std::optional<IdleReport> report = co_await IdleOfPage(mark, scope, deadline);
      if (report && !HasBegun(mark) && !Interruption(scope)) {
        later_timers_ = report->later_timers;
        settled_state_ = report->settled_state;
        complaints_ = report->complaints;
        co_return report->gave_up ? WaitEnd::kPending : end;
      }
    }
    if (const auto interruption = Interruption(scope)) {
      co_return *interruption;
    }
    if (deadline.HasPassed()) {
      co_return WaitEnd::kPending;
    }
    if (!HasBegun(mark)) {
      continue;  // the browser that was asked is gone: ask the one on show
    }
    co_await Arrival(scope, deadline);
    if (const auto interruption = Interruption(scope)) {
      co_return *interruption;
    }
    if (browsers_.Navigation().busy) {
      co_return deadline.HasPassed() ? WaitEnd::kPending : WaitEnd::kArrived;
    }
    mark = Mark();
    end = WaitEnd::kArrived;
    ++hop;
  }
  co_return WaitEnd::kPending;
}

Task<std::optional<IdleReport>> PageWait::IdleOfPage(quint64 mark, const WaitScope& scope,
                                                     const Deadline& deadline) {
  PageHost* const host = host_();
  OneShot<IdleReport> report;
  host->ReportIdle(scope.work, report.Callback());
  report.GiveUpWhen(&browsers_, &BrowserSet::navigationChanged,
                    [this, mark] { return HasBegun(mark); });
  report.GiveUpWhen(&browsers_, &BrowserSet::activeChanged,
                    [this, host] { return host_() != host; });
  report.GiveUpWhen(&flags_, &JobFlags::changed,
                    [this, &scope] { return Interruption(scope).has_value(); });
  if (deadline.is_set) {
    report.GiveUpAfter(deadline.Left());
  }
  co_return co_await report;
}

// A load that ends and begins again in one turn of the event loop is still under way, so the
// condition is looked at again when the wait resumes.
Task<> PageWait::Arrival(const WaitScope& scope, const Deadline& deadline) {
  const auto over = [this, &scope] {
    return !browsers_.Navigation().busy || (scope.heeds_flags && flags_.PageLoaded()) ||
           Interruption(scope).has_value();
  };
  while (!over() && !deadline.HasPassed()) {
    Until wait = Until(over)
                     .WokenBy(&browsers_, &BrowserSet::navigationChanged)
                     .WokenBy(&flags_, &JobFlags::changed);
    if (deadline.is_set) {
      wait = std::move(wait).AtMost(deadline.Left());
    }
    co_await wait;
  }
}

Task<bool> PageWait::Answers(WaitLimits::Time limit) {
  OneShot<PageAnswer> answer;
  host_()->Call(page_operation::ReadMarkupState(), answer.Callback());
  answer.GiveUpAfter(limit);
  const std::optional<PageAnswer> got = co_await answer;
  co_return got.has_value();
}

}  // namespace quayline
