// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "async/task.h"

namespace quayline {

// Runs one outermost task for its owner. Ends the task when it is destroyed or cancelled, so a
// member Flow ties a coroutine to the life of the object that it works on.
class Flow final : public QObject {
  Q_OBJECT

 public:
  explicit Flow(QObject* parent = nullptr);
  ~Flow() override;

  // Starts `task` at once, ending whatever ran before. `ended()` follows from the event loop when
  // the task has returned; it does not follow a Cancel().
  void Start(Task<> task);

  // Ends the task where it is suspended. Not to be called from the task's own code.
  void Cancel();

  bool IsRunning() const { return running_; }

 Q_SIGNALS:
  void ended();

 private:
  Task<> Run(Task<> inner);

  Task<> task_;
  bool running_ = false;
};

}  // namespace quayline
