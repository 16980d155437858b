// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/follow_up_jobs.h"

#include <QWidget>

#include "core/update_command.h"
#include "ui/job/job_window_texts.h"
#include "ui/job/outcome_text.h"

namespace quayline {

FollowUpJobs::FollowUpJobs(AppContext& context, Prompts& prompts, JobRunner& runner,
                           QWidget& window)
    : QObject(&window), context_(context), prompts_(prompts), runner_(runner), window_(window) {}

bool FollowUpJobs::CanBegin() {
  if (context_.job_flags.IsRunning()) {
    prompts_.Tell(&window_, Text(kJobRuns));
    return false;
  }
  if (!runner_.IsRouterChosen()) {
    const RouterSession& router = runner_.Router();
    prompts_.Tell(&window_,
                  Text(message::kOtherRouter).arg(router.router_name, RouterHost(router)));
    return false;
  }
  return true;
}

bool FollowUpJobs::CanTryAgain() const {
  return context_.job_options.verify_after_update && !runner_.Outcome().ToTryAgain().isEmpty();
}

void FollowUpJobs::TryAgain() {
  if (CanBegin()) {
    Q_EMIT beginning();
    runner_.RunAgain();
  }
}

void FollowUpJobs::AskToTakeBack() {
  if (!CanBegin()) {
    return;
  }
  const QString list = RulesText(runner_.Added());
  if (!runner_.HasRemoveScript()) {
    prompts_.Tell(&window_, Text(message::kTakeBackByHand).arg(list),
                  [this] { Q_EMIT routerPageWanted(); });
    return;
  }
  QString question = Text(message::kTakeBackQuestion).arg(list);
  if (const QStringList names = runner_.Outcome().MaybeOld(); !names.isEmpty()) {
    question += QLatin1Char(' ') + Text(message::kMaybeOld).arg(names.join(QStringLiteral(", ")));
  }
  question += QStringLiteral("\n\n") + Text(message::kDoContinue);
  prompts_.AskCarefully(&window_, Text(message::kTakeBackTitle), question, [this](bool yes) {
    if (yes) {
      TakeBack();
    }
  });
}

// Another router may have been chosen while the question was shown.
void FollowUpJobs::TakeBack() {
  if (CanBegin()) {
    Q_EMIT beginning();
    runner_.TakeBack();
  }
}

}  // namespace quayline
