// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

#include <memory>

#include "script/job_runner.h"
#include "ui/job/entry_states.h"
#include "ui/job/run_questions.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class JobWindow;
}

namespace quayline {

class RunDisplay;

// The window of a job: what becomes of each entry, the router's pages as the job works through
// them, its log, what the browser reports. The job begins half a second after the window opened,
// and ends with it at the latest. A user who closes it during the job is asked; close() does not
// ask. The window deletes itself when it is closed and a save under way has arrived.
class JobWindow final : public QWidget {
  Q_OBJECT

 public:
  JobWindow(AppContext& context, Prompts& prompts, PageHostFactory make_host);
  ~JobWindow() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ConnectEntries();
  void ShowEntry(int row, int rows, const QString& app_name);
  void ShowEnd();
  // Enters those entries again that are surely not on the router.
  void TryAgain();
  void Stop();
  bool IsWorking() const { return start_timer_.isActive() || runner_->IsRunning(); }
  // Closes the window, after asking where that ends the job.
  void CloseAfterAsking();
  QString OutcomeText() const;
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  std::unique_ptr<Ui::JobWindow> ui_;
  RunQuestions questions_;
  std::unique_ptr<JobRunner> runner_;
  EntryStates entry_states_;
  RunDisplay* display_ = nullptr;  // a child of this window
  QTimer start_timer_;
};

}  // namespace quayline
