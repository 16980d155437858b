// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/job_window.h"

#include <QCloseEvent>

#include "ui/job/job_window_texts.h"
#include "ui/job/result_texts.h"
#include "ui/job/run_display.h"
#include "ui/toolkit/theme.h"
#include "ui_job_window.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

}  // namespace

JobWindow::JobWindow(AppContext& context, Prompts& prompts, PageHostFactory make_host)
    : context_(context),
      ui_(std::make_unique<Ui::JobWindow>()),
      questions_(*this, prompts, context.translator, kRunnerTexts),
      runner_(std::make_unique<JobRunner>(context, std::move(make_host), questions_)),
      entry_states_(context.translator) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(Text(message::kJobTitle));
  OpenOver(*this, {1120, 780});
  ui_->upper_splitter->setSizes({690, 400});
  ui_->splitter->setSizes({500, 120});
  QFont title = ui_->headline_label->font();
  title.setBold(true);
  ui_->headline_label->setFont(title);

  display_ = new RunDisplay(*this, *runner_, questions_, context, prompts, kRunnerTexts,
                            RunControls(*ui_));
  ConnectEntries();
  connect(runner_.get(), &JobRunner::ended, this, &JobWindow::ShowEnd);
  connect(ui_->stop_button, &QPushButton::clicked, this, &JobWindow::Stop);
  connect(ui_->again_button, &QPushButton::clicked, this, &JobWindow::TryAgain);
  connect(ui_->close_button, &QPushButton::clicked, this, &JobWindow::CloseAfterAsking);
  runner_->Open();
  display_->ShowOpened();
  start_timer_.setSingleShot(true);
  connect(&start_timer_, &QTimer::timeout, runner_.get(), &JobRunner::Run);
  start_timer_.start(500ms);
}

void JobWindow::ConnectEntries() {
  entry_states_.Begin(context_.port_list.Entries());
  ui_->entries_view->setModel(&entry_states_);
  const auto fit = [this] {
    ui_->entries_view->resizeColumnToContents(EntryStates::kEntry);
    ui_->entries_view->resizeColumnToContents(EntryStates::kState);
  };
  fit();
  connect(&entry_states_, &QAbstractItemModel::dataChanged, this, fit);
  connect(&entry_states_, &QAbstractItemModel::modelReset, this, fit);
  connect(runner_.get(), &JobRunner::entryStarted, this, &JobWindow::ShowEntry);
  connect(runner_.get(), &JobRunner::lookStarted, this,
          [this] { ui_->headline_label->setText(Text(message::kLooking)); });
}

// The job is destroyed first: its browsers use this window's widgets.
JobWindow::~JobWindow() { runner_.reset(); }

void JobWindow::ShowEntry(int row, int rows, const QString& app_name) {
  ui_->headline_label->setText(
      Text(message::kEntryOf).arg(QString::number(row), QString::number(rows), app_name));
  setWindowTitle(QStringLiteral("%1 (%2/%3)")
                     .arg(Text(message::kJobTitle), QString::number(row), QString::number(rows)));
  ui_->busy_bar->SetMoving(true);
  entry_states_.SetRunning(row - 1);
  ui_->entries_view->scrollTo(entry_states_.index(row - 1, 0));
}

void JobWindow::Stop() {
  if (start_timer_.isActive()) {
    start_timer_.stop();
    runner_->Stop();
    ShowEnd();
    return;
  }
  display_->DisableStop();
  ui_->headline_label->setText(Text(message::kStopping));
  runner_->Stop();
}

void JobWindow::ShowEnd() {
  entry_states_.SetResults(runner_->Outcome().results, runner_->Outcome().entries);
  ui_->entries_view->scrollTo(entry_states_.FirstToLookAt());
  ui_->headline_label->setText(OutcomeText());
  ui_->waiting_label->clear();
  ui_->busy_bar->SetMoving(false);
  display_->DisableStop();
  ui_->again_button->setVisible(context_.job_options.verify_after_update &&
                                !runner_->Outcome().ToTryAgain().isEmpty());
  setWindowTitle(Text(message::kJobTitle));
}

void JobWindow::TryAgain() {
  if (context_.job_flags.is_running) {
    return;
  }
  ui_->again_button->hide();
  ui_->stop_button->setEnabled(true);
  runner_->Open();
  display_->ShowOpened();
  runner_->RunAgain();
  entry_states_.Begin(runner_->Rows());
}

QString JobWindow::OutcomeText() const {
  const JobOutcome& outcome = runner_->Outcome();
  if (runner_->StoppedByUser()) {
    return Text(message::kStopped);
  }
  if (outcome.stopped) {
    return Text(message::kEndedEarly);
  }
  if (outcome.entries_failed > 0) {
    return Text(message::kFinishedWithErrors)
        .arg(QString::number(outcome.entries_failed), QString::number(outcome.entries));
  }
  if (context_.job_options.verify_after_update) {
    return entry_states_.Summary();
  }
  if (const QStringList names = outcome.ToCheck(); !names.isEmpty()) {
    return Text(message::kFinishedToCheck).arg(names.join(QStringLiteral(", ")));
  }
  return Text(message::kFinished);
}

void JobWindow::CloseAfterAsking() {
  if (IsWorking()) {
    display_->AskToClose(message::kCloseTitle, message::kCloseQuestion);
  } else {
    close();
  }
}

void JobWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    CloseAfterAsking();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void JobWindow::closeEvent(QCloseEvent* event) {
  if (event->spontaneous() && IsWorking()) {  // by the user, with the window's frame
    event->ignore();
    CloseAfterAsking();
    return;
  }
  start_timer_.stop();
  context_.job_flags.SetPageErrorPending(true);
  display_->Leave();
  event->accept();
}

void JobWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ui_->busy_bar->SetMoving(IsWorking());
}

}  // namespace quayline
