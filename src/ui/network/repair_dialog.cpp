// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/repair_dialog.h"

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
  setWindowTitle(plan_.title);
  OpenOver(*this, {600, 420});
  ui_->explanation_label->setText(plan_.explanation);
  ui_->note_label->setText(plan_.note);
  ui_->note_label->setVisible(!plan_.note.isEmpty());
  ui_->state_label->setText(plan_.doing + QLatin1Char(' '));
  rows_->setHorizontalHeaderLabels({Text(message::kStepColumn), Text(message::kResultColumn)});
  ui_->steps_view->setModel(rows_);
  for (const RepairStep& step : plan_.steps) {
    rows_->appendRow({new QStandardItem(step.line), new QStandardItem});
  }
  ui_->steps_view->SizeColumns();
  connect(&run_, &RepairRun::stepStarted, this, &RepairDialog::ShowStep);
  connect(&run_, &RepairRun::stepEnded, this, &RepairDialog::ShowResult);
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

void RepairDialog::Begin() {
  for (int row = 0; row < rows_->rowCount(); ++row) {
    rows_->item(row, 1)->setText(QString());
  }
  ui_->repair_button->setEnabled(false);
  ui_->progress_bar->setMaximum(static_cast<int>(plan_.steps.size()));
  ui_->progress_bar->setValue(0);
  run_.Start(plan_.steps);
}

void RepairDialog::ShowStep(int step, const QString& line) {
  ui_->state_label->setText(plan_.doing + QLatin1Char(' ') + line);
  ui_->steps_view->scrollTo(rows_->index(step, 0));
}

void RepairDialog::ShowResult(int step, const RepairResult& result) {
  const QString word = Text(result.is_good ? message::kStepDone : message::kStepFailed);
  rows_->item(step, 1)->setText(result.words.isEmpty() ? word : result.words);
  ui_->steps_view->SizeColumns();
  ui_->progress_bar->setValue(step + 1);
}

void RepairDialog::ShowEnd(int failed) {
  ui_->state_label->setText(
      failed == 0 || plan_.failed.isEmpty()
          ? plan_.done
          : plan_.failed.arg(QString::number(failed), QString::number(plan_.steps.size())));
  ui_->repair_button->setEnabled(true);
  ui_->repair_button->setFocus();
}

}  // namespace quayline
