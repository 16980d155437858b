// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/repair_dialog.h"

#include <QEvent>
#include <QStandardItemModel>

#include "ui/network/repair_texts.h"
#include "ui/toolkit/theme.h"
#include "ui_repair_dialog.h"

namespace quayline {

RepairDialog::RepairDialog(RepairPlan plan, const Translator& translator, QWidget* parent)
    : QDialog(parent),
      plan_(std::move(plan)),
      translator_(translator),
      ui_(std::make_unique<Ui::RepairDialog>()),
      rows_(new QStandardItemModel(this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  OpenOver(*this, {600, 420});
  ui_->note_label->setVisible(plan_.note.has_value());
  ui_->steps_view->setModel(rows_);
  for (int step = 0; step < plan_.steps.size(); ++step) {
    rows_->appendRow({new QStandardItem, new QStandardItem});
  }
  ShowTexts();
  connect(&run_, &RepairRun::stepStarted, this, &RepairDialog::ShowStep);
  connect(&run_, &RepairRun::stepEnded, this, &RepairDialog::TakeResult);
  connect(&run_, &RepairRun::ended, this, &RepairDialog::ShowEnd);
  connect(ui_->repair_button, &QPushButton::clicked, this, &RepairDialog::Begin);
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
}

RepairDialog::~RepairDialog() {
  run_.Cancel();
  if (plan_.closed) {
    plan_.closed();
  }
}

void RepairDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    ShowTexts();
  }
}

void RepairDialog::ShowTexts() {
  setWindowTitle(Text(plan_.title));
  ui_->explanation_label->setText(Text(plan_.explanation));
  ui_->note_label->setText(plan_.note ? TextOf(*plan_.note, translator_) : QString());
  rows_->setHorizontalHeaderLabels({Text(message::kStepColumn), Text(message::kResultColumn)});
  for (int step = 0; step < plan_.steps.size(); ++step) {
    rows_->item(step, 0)->setText(TextOf(plan_.steps[step].line, translator_));
  }
  ShowResults();
  ShowState();
}

void RepairDialog::ShowState() {
  if (failed_steps_.value_or(0) > 0 && plan_.failed) {
    const Sentence end{*plan_.failed,
                       {QString::number(*failed_steps_), QString::number(plan_.steps.size())}};
    ui_->state_label->setText(TextOf(end, translator_));
  } else if (failed_steps_) {
    ui_->state_label->setText(Text(plan_.done));
  } else {
    const QString line = step_ < 0 ? QString() : TextOf(plan_.steps[step_].line, translator_);
    ui_->state_label->setText(Text(plan_.doing) + QLatin1Char(' ') + line);
  }
}

void RepairDialog::Begin() {
  failed_steps_.reset();
  results_.clear();
  ShowResults();
  ui_->repair_button->setEnabled(false);
  ui_->progress_bar->setMaximum(static_cast<int>(plan_.steps.size()));
  ui_->progress_bar->setValue(0);
  run_.Start(plan_.steps);
}

void RepairDialog::ShowStep(int step) {
  step_ = step;
  ShowState();
  ui_->steps_view->scrollTo(rows_->index(step, 0));
}

void RepairDialog::TakeResult(int step, const RepairResult& result) {
  results_.append(result);
  ShowResults();
  ui_->progress_bar->setValue(step + 1);
}

void RepairDialog::ShowResults() {
  for (int row = 0; row < rows_->rowCount(); ++row) {
    QString text;
    if (row < results_.size()) {
      const auto& [is_good, words] = results_[row];
      text = words.isEmpty() ? Text(is_good ? message::kStepDone : message::kStepFailed)
                             : TextOf(words, translator_);
    }
    rows_->item(row, 1)->setText(text);
  }
  ui_->steps_view->SizeColumns();
}

void RepairDialog::ShowEnd(int failed) {
  failed_steps_ = failed;
  ShowState();
  ui_->repair_button->setEnabled(true);
  ui_->repair_button->setFocus();
}

}  // namespace quayline
