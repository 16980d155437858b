// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QScopeGuard>
#include <QThread>

#include <functional>
#include <memory>
#include <optional>

#include "async/task.h"
#include "async/wait.h"

namespace quayline {

// Runs `work` in a thread of its own, and waits for what it returns while the event loop goes on.
// For work on files that takes long: it shares nothing with the rest of the program. Destroying the
// task interrupts the thread and waits until `work` has returned, so that nothing goes on in the
// background unseen.
template <typename T>
Task<T> RunInThread(std::function<T()> work) {
  std::optional<T> result;
  const std::unique_ptr<QThread> thread(
      QThread::create([&result, &work] { result.emplace(work()); }));
  const auto ended = qScopeGuard([&thread] {
    thread->requestInterruption();
    thread->wait();
  });
  thread->start();
  co_await Until([&thread] {
    return thread->isFinished();
  }).WokenBy(thread.get(), &QThread::finished);
  thread->wait();
  co_return std::move(*result);
}

}  // namespace quayline
