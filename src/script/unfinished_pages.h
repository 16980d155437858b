// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "async/flow.h"
#include "core/job_flags.h"
#include "script/browser_set.h"
#include "script/page_questions.h"
#include "script/page_wait.h"

namespace quayline {

// Pages that are left while they may still save. A router drops a save whose connection is closed
// early, so pages stay until it has been answered. As long as that takes, they count among
// JobFlags::LeavingRuns(). Belongs to the runner.
class UnfinishedPages final : public QObject {
  Q_OBJECT

 public:
  // `flags` outlives it.
  explicit UnfinishedPages(JobFlags& flags) : flags_(flags) {}

  // Keeps the pages of a run that is over, in the background, until they have saved. What they
  // report is not about the next run: the caller disconnects them.
  void Keep(std::unique_ptr<BrowserSet> browsers, std::unique_ptr<PageWait> pages,
            const QString& router_host);
  bool IsEmpty() const { return kept_.empty(); }

  // Returns when the pages can be left. Without a save under way that is soon; with one, when it
  // has been answered, or after WaitLimits::after_stop. Both outlive the task.
  Task<> FinishSaves(BrowserSet& browsers, PageWait& pages, QString router_host);

  // Calls `ask`, which shows the user a dialog of a page. No page goes until it has returned: the
  // engine's call that asked is below it on the stack.
  std::optional<PageDialogAnswer> DuringDialog(
      const std::function<std::optional<PageDialogAnswer>()>& ask);

 Q_SIGNALS:
  // Kept pages have saved, and are gone.
  void gone();
  void dialogAnswered();

 private:
  struct Kept {
    std::unique_ptr<BrowserSet> browsers;
    std::unique_ptr<PageWait> pages;
    Flow flow;  // last: its frame uses what is above
  };

  JobFlags& flags_;
  int open_dialogs_ = 0;
  std::vector<std::unique_ptr<Kept>> kept_;
};

}  // namespace quayline
