// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

#include "i18n/translator.h"
#include "net/repair_run.h"

class QStandardItemModel;

namespace Ui {
class RepairDialog;
}

namespace quayline {

// What a repair window repairs, and with which steps.
struct RepairPlan {
  QString title;
  QString explanation;
  QString note;  // empty: none
  QList<RepairStep> steps;
  QString doing;                 // before the line of each step
  QString done;                  // at the end
  QString failed;                // at the end, if steps failed; "%1" of "%2". Empty: as `done`
  std::function<void()> closed;  // the window is closed, maybe after any step; may be empty
};

// Does the steps of a repair, each shown with its result, as often as the button is pressed.
// Deletes itself when it is closed, which ends the repair after its step.
class RepairDialog final : public QDialog {
  Q_OBJECT

 public:
  // `translator` outlives it.
  RepairDialog(RepairPlan plan, const Translator& translator, QWidget* parent);
  ~RepairDialog() override;

 private:
  void Begin();
  void ShowStep(int step, const QString& line);
  void ShowResult(int step, const RepairResult& result);
  void ShowEnd(int failed);
  QString Text(const Message& message) const { return translator_.Text(message); }

  const RepairPlan plan_;
  const Translator& translator_;
  RepairRun run_;
  std::unique_ptr<Ui::RepairDialog> ui_;
  QStandardItemModel* rows_;
};

}  // namespace quayline
