// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "async/wait.h"

namespace quayline::internal {

void Waiter::Finish() {
  if (!std::exchange(finished_, true)) {
    QMetaObject::invokeMethod(this, &Waiter::ResumeFromEventLoop, Qt::QueuedConnection);
  }
}

void Waiter::FinishAfter(std::chrono::milliseconds time) {
  QTimer::singleShot(time, Qt::PreciseTimer, this, [this] { Finish(); });
}

void Waiter::ResumeFromEventLoop() {
  if (handle_) {
    std::exchange(handle_, {}).resume();
  }
}

}  // namespace quayline::internal
