// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/follow_up_jobs.h"

#include <QWidget>

#include <utility>

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

void FollowUpJobs::TakeBack() {
  if (runner_.UnseenRules().isEmpty()) {
    AskToTakeBack();
  } else if (CanBegin()) {
    is_looking_ = true;
    Q_EMIT beginning();
    runner_.LookForAdded();
  }
}

void FollowUpJobs::NoteEnd() {
  has_looked_ = std::exchange(is_looking_, false);
  if (!has_looked_) {
    was_stopped_ = runner_.StoppedByUser();
  }
}

void FollowUpJobs::GoOn() {
  if (has_looked_ && !runner_.StoppedByUser()) {
    AskToTakeBack();
  }
}

void FollowUpJobs::AskToTakeBack() {
  if (!CanBegin()) {
    return;
  }
  if (runner_.Added().isEmpty() || !runner_.UnseenRules().isEmpty()) {
    ReportNothingToTakeBack();
    return;
  }
  const QString list = RulesText(runner_.Added());
  if (!runner_.HasRemoveScript()) {
    prompts_.Tell(&window_, Text(message::kTakeBackByHand).arg(list),
                  [this] { Q_EMIT routerPageWanted(); });
    return;
  }
  QString question = Text(message::kTakeBackQuestion).arg(list) + OtherRules();
  if (has_looked_) {
    question += QStringLiteral("\n\n") + Text(message::kLookedLate);
  }
  question += QStringLiteral("\n\n") + Text(message::kDoContinue);
  prompts_.AskCarefully(&window_, Text(message::kTakeBackTitle), question, [this](bool yes) {
    if (yes) {
      RemoveRules();
    }
  });
}

void FollowUpJobs::ReportNothingToTakeBack() {
  const QString unseen = RulesText(runner_.UnseenRules());
  prompts_.Tell(&window_, unseen.isEmpty() ? Text(message::kNothingToTakeBack) + OtherRules()
                                           : Text(message::kCannotSeeAdded).arg(unseen));
}

QString FollowUpJobs::OtherRules() const {
  const JobOutcome& outcome = runner_.Outcome();
  if (outcome.kind != JobKind::kUpdate) {
    return {};
  }
  QString text;
  for (const auto& [sentence, names] : {std::pair(message::kMaybeOld, outcome.MaybeOld()),
                                        std::pair(message::kMaybeAdded, outcome.Unclear())}) {
    if (!names.isEmpty()) {
      text += QLatin1Char(' ') + Text(sentence).arg(names.join(QStringLiteral(", ")));
    }
  }
  return text;
}

// Another router may have been chosen while the question was shown.
void FollowUpJobs::RemoveRules() {
  if (CanBegin()) {
    Q_EMIT beginning();
    runner_.TakeBack();
  }
}

}  // namespace quayline
