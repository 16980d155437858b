// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/unfinished_pages.h"

#include <QDeadlineTimer>
#include <QScopeGuard>

#include "async/wait.h"

namespace quayline {

void UnfinishedPages::Keep(std::unique_ptr<BrowserSet> browsers, std::unique_ptr<PageWait> pages,
                           const QString& router_host) {
  Kept& kept = *kept_.emplace_back(std::make_unique<Kept>());
  kept.browsers = std::move(browsers);
  kept.pages = std::move(pages);
  connect(&kept.flow, &Flow::ended, this, [this, ended = &kept] {
    std::erase_if(kept_, [ended](const auto& each) { return each.get() == ended; });
    Q_EMIT gone();
  });
  kept.flow.Start(FinishSaves(*kept.browsers, *kept.pages, router_host));
}

// A page that was only opened is left at once. One that was acted on may have a save under way, and
// is left when it is idle, and soon where no request that may be a save is under way; one that
// gives no answer, when its navigation has ended.
Task<> UnfinishedPages::FinishSaves(BrowserSet& browsers, PageWait& pages, QString router_host) {
  flags_.AddLeavingRuns(1);
  const auto left = qScopeGuard([this] { flags_.AddLeavingRuns(-1); });
  co_await Until([this] {
    return open_dialogs_ == 0;
  }).WokenBy(this, &UnfinishedPages::dialogAnswered);
  if (!browsers.MaySave()) {
    browsers.StopNavigation();
    co_return;
  }
  const WaitLimits& limits = pages.Limits();
  const QDeadlineTimer any_work(limits.work_after_stop);
  WaitScope scope{.shown_as = router_host, .heeds_flags = false};
  scope.asks_page = co_await pages.Answers(limits.silence_after_stop);
  scope.limit = WaitLimits::Time(any_work.remainingTime());
  const WaitEnd end = co_await pages.UntilIdle(scope);
  if (end == WaitEnd::kPending) {
    scope.work = PendingWork::kSaves;
    scope.limit = flags_.ends_by_signal ? std::nullopt : std::optional(limits.after_stop);
    co_await pages.UntilIdle(scope);
  }
}

std::optional<PageDialogAnswer> UnfinishedPages::DuringDialog(
    const std::function<std::optional<PageDialogAnswer>()>& ask) {
  ++open_dialogs_;
  const auto answered = qScopeGuard([this] {
    --open_dialogs_;
    Q_EMIT dialogAnswered();
  });
  return ask();
}

}  // namespace quayline
