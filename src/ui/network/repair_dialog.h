// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>
#include <optional>

#include "i18n/translator.h"
#include "net/repair_run.h"

class QStandardItemModel;

namespace Ui {
class RepairDialog;
}

namespace quayline {

// What a repair window repairs, and with which steps.
struct RepairPlan {
  Message title;
  Message explanation;
  std::optional<Sentence> note = {};
  QList<RepairStep> steps;
  Message doing;                       // before the line of each step
  Message done;                        // at the end
  std::optional<Message> failed = {};  // at the end, if steps failed; "%1" of "%2"
  std::function<void()> closed;        // the window is closed, maybe after any step; may be empty
};

// Does the steps of a repair, each shown with its result, as often as the button is pressed.
// Deletes itself when it is closed, which ends the repair after its step.
class RepairDialog final : public QDialog {
  Q_OBJECT

 public:
  // `translator` outlives it.
  RepairDialog(RepairPlan plan, const Translator& translator, QWidget* parent);
  ~RepairDialog() override;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ShowTexts();
  void ShowState();
  void Begin();
  void ShowStep(int step);
  void TakeResult(int step, const RepairResult& result);
  void ShowResults();
  void ShowEnd(int failed);
  QString Text(const Message& message) const { return translator_.Text(message); }

  const RepairPlan plan_;
  const Translator& translator_;
  RepairRun run_;
  int step_ = -1;                    // that is done; -1 before the first
  std::optional<int> failed_steps_;  // of a repair that has ended
  QList<RepairResult> results_;      // of the steps that have ended
  std::unique_ptr<Ui::RepairDialog> ui_;
  QStandardItemModel* rows_;
};

}  // namespace quayline
