// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

#include "core/job_flags.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// Asks whether the job that runs is to be stopped for something else, such as closing a window. The
// job goes on meanwhile, and Enter lets it go on. When it ends by itself, the question goes away as
// if the user had not asked for anything: the result of the job stays on the screen.
class StopQuestion final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  StopQuestion(const JobFlags& flags, Prompts& prompts, QWidget& window);
  ~StopQuestion() override;

  // Does nothing while the question is open.
  void Ask(const QString& title, const QString& text, std::function<void()> agreed);

 private:
  const JobFlags& flags_;
  Prompts& prompts_;
  QWidget& window_;
  std::unique_ptr<QObject> asker_;  // null: no question is open
};

}  // namespace quayline
