// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "async/flow.h"

namespace quayline {

Flow::Flow(QObject* parent) : QObject(parent) {}

Flow::~Flow() { Cancel(); }

void Flow::Start(Task<> task) {
  Cancel();
  running_ = true;
  task_ = Run(std::move(task));
  task_.handle().resume();
}

void Flow::Cancel() {
  running_ = false;
  task_ = {};
}

Task<> Flow::Run(Task<> inner) {
  co_await inner;
  running_ = false;
  // Queued: a receiver may delete this flow, and with it the frame that runs now.
  QMetaObject::invokeMethod(this, &Flow::ended, Qt::QueuedConnection);
}

}  // namespace quayline
