// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/frm_job_status.h"

#include <QCloseEvent>

#include "ui/job/job_window_texts.h"
#include "ui/job/run_display.h"
#include "ui/toolkit/theme.h"
#include "ui_frm_job_status.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

}  // namespace

FrmJobStatus::FrmJobStatus(AppContext& context, Prompts& prompts, PageHostFactory make_host)
    : context_(context),
      prompts_(prompts),
      ui_(std::make_unique<Ui::FrmJobStatus>()),
      questions_(*this, prompts, context.translator, kJobTexts),
      runner_(std::make_unique<JobRunner>(context, std::move(make_host), questions_)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(Text(message::kJobTitle));
  ResizeOnScreen(*this, {1120, 780});
  ui_->upper_splitter->setSizes({690, 400});
  ui_->splitter->setSizes({500, 120});
  QFont title = ui_->label_entry->font();
  title.setBold(true);
  ui_->label_entry->setFont(title);

  display_ =
      new RunDisplay(*this, *runner_, questions_, context, prompts, kJobTexts, RunControls(*ui_));
  connect(runner_.get(), &JobRunner::entryStarted, this, &FrmJobStatus::ShowEntry);
  connect(runner_.get(), &JobRunner::ended, this, &FrmJobStatus::ShowEnd);
  connect(ui_->command_stop, &QPushButton::clicked, this, &FrmJobStatus::Stop);
  connect(ui_->command_close, &QPushButton::clicked, this, &FrmJobStatus::CloseAfterAsking);
  runner_->Open();
  display_->ShowOpened();
  timer1_.setSingleShot(true);
  connect(&timer1_, &QTimer::timeout, runner_.get(), &JobRunner::Run);
  timer1_.start(500ms);
}

// The job first: its browsers show themselves in this window's widgets.
FrmJobStatus::~FrmJobStatus() { runner_.reset(); }

void FrmJobStatus::ShowEntry(int row, int rows, const QString& app_name) {
  ui_->label_entry->setText(
      Text(message::kEntryOf).arg(QString::number(row), QString::number(rows), app_name));
  setWindowTitle(QStringLiteral("%1 (%2/%3)")
                     .arg(Text(message::kJobTitle), QString::number(row), QString::number(rows)));
  ui_->dBar1->SetMoving(true);
}

void FrmJobStatus::Stop() {
  if (timer1_.isActive()) {
    timer1_.stop();
    runner_->Stop();
    ShowEnd();
    return;
  }
  ui_->command_stop->setEnabled(false);
  ui_->label_entry->setText(Text(message::kStopping));
  runner_->Stop();
}

void FrmJobStatus::ShowEnd() {
  ui_->label_entry->setText(OutcomeText());
  ui_->label_waiting->clear();
  ui_->dBar1->SetMoving(false);
  ui_->Command1->setEnabled(false);
  ui_->command_stop->setEnabled(false);
  ui_->command_close->setFocus();
  setWindowTitle(Text(message::kJobTitle));
}

QString FrmJobStatus::OutcomeText() const {
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
  if (!outcome.to_check.isEmpty()) {
    return Text(message::kFinishedToCheck).arg(outcome.to_check.join(QStringLiteral(", ")));
  }
  return Text(message::kFinished);
}

void FrmJobStatus::CloseAfterAsking() {
  if (!IsWorking()) {
    close();
    return;
  }
  prompts_.Ask(this, Text(message::kCloseTitle), Text(message::kCloseQuestion), [this](bool yes) {
    if (yes) {
      close();
    }
  });
}

void FrmJobStatus::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    CloseAfterAsking();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void FrmJobStatus::closeEvent(QCloseEvent* event) {
  if (event->spontaneous() && IsWorking()) {  // the user's, by the window's frame
    event->ignore();
    CloseAfterAsking();
    return;
  }
  timer1_.stop();
  context_.job_flags.SetPageErrorPending(true);
  display_->Leave();
  event->accept();
}

void FrmJobStatus::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ui_->dBar1->SetMoving(IsWorking());
}

}  // namespace quayline
