// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/job_progress.h"

#include "ui/job/job_window_texts.h"
#include "ui/job/result_texts.h"
#include "ui_job_window.h"

namespace quayline {

JobProgress::JobProgress(const Ui::JobWindow& ui, const JobRunner& runner, EntryStates& states,
                         const Translator& translator, const Message& title, QWidget& window)
    : QObject(&window),
      ui_(ui),
      runner_(runner),
      states_(states),
      translator_(translator),
      title_(title),
      window_(window) {
  connect(&runner, &JobRunner::entryStarted, this, &JobProgress::ShowEntry);
  connect(&runner, &JobRunner::stepStarted, this, &JobProgress::ShowStep);
  connect(&runner, &JobRunner::lookStarted, this, &JobProgress::ShowLook);
  ShowTitle();
}

void JobProgress::ShowTitle() { window_.setWindowTitle(Text(title_)); }

void JobProgress::ShowEntry(int row, int rows, const QString& app_name) {
  row_ = row;
  rows_ = rows;
  ui_.headline_label->setText(Text(runner_.Outcome().kind == JobKind::kTakeBack
                                       ? message::kRemovingEntry
                                       : message::kEntryOf)
                                  .arg(QString::number(row), QString::number(rows), app_name));
  window_.setWindowTitle(
      QStringLiteral("%1 (%2/%3)").arg(Text(title_), QString::number(row), QString::number(rows)));
  ui_.busy_bar->SetMoving(true);
  SetCounted(true);
  states_.SetRunning(row - 1);
  ui_.entries_view->scrollTo(states_.index(row - 1, 0));
}

void JobProgress::ShowStep(int step, int steps) {
  ui_.job_bar->setMaximum(rows_ * steps);
  ui_.job_bar->setValue((row_ - 1) * steps + step - 1);
  ui_.steps_label->setText(Text(message::kStepOf)
                               .arg(QString::number(row_), QString::number(rows_),
                                    QString::number(step), QString::number(steps)));
}

void JobProgress::ShowLook() {
  SetCounted(false);
  states_.SetRowDone();
  ui_.headline_label->setText(Text(message::kLooking));
}

void JobProgress::ShowEnd() {
  ui_.busy_bar->SetMoving(false);
  SetCounted(true);
  if (!runner_.Outcome().stopped) {
    ui_.job_bar->setValue(ui_.job_bar->maximum());
  }
  ShowTitle();
}

void JobProgress::SetCounted(bool counted) {
  ui_.job_bar->setVisible(counted);
  ui_.busy_bar->setVisible(!counted);
  ui_.steps_label->clear();
}

}  // namespace quayline
