// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "core/app_context.h"
#include "script/job_runner.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// The jobs that the job window offers after one has ended, on the same runner and router: to enter
// what is not on the router again, and to take back what was added. Belongs to the window.
class FollowUpJobs final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  FollowUpJobs(AppContext& context, Prompts& prompts, JobRunner& runner, QWidget& window);

  // Enters those entries again that are surely not on the router.
  bool CanTryAgain() const;
  void TryAgain();
  // Asks, and removes the rules that the jobs added; where the router has no script for that, shows
  // which they are and asks for the router's page. After a job that was cut short it is looked up
  // first which they are.
  bool CanTakeBack() const {
    return !runner_.Added().isEmpty() || !runner_.UnseenRules().isEmpty();
  }
  void TakeBack();

  // To be called when a run has ended, before and after its end is shown. The second one asks what
  // the look was for, if the run was one.
  void NoteEnd();
  void GoOn();
  // Whether the run that ended was only a look at what the job before it added.
  bool HasLooked() const { return has_looked_; }
  // Whether the user stopped the last job.
  bool WasStopped() const { return was_stopped_; }

 Q_SIGNALS:
  // A job is about to begin: the receiver opens the runner again.
  void beginning();
  // The user is to remove rules by hand.
  void routerPageWanted();

 private:
  void AskToTakeBack();
  void ReportNothingToTakeBack();
  void RemoveRules();
  // What is said of the rules beside those that can be taken back.
  QString OtherRules() const;
  // Whether another job can begin now, on the router of this window. If not, the user is shown why.
  bool CanBegin();
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  JobRunner& runner_;
  QWidget& window_;
  bool is_looking_ = false;
  bool has_looked_ = false;
  bool was_stopped_ = false;
};

}  // namespace quayline
