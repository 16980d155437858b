// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

#include "script/wait_limits.h"

class QWebEnginePage;

namespace quayline {

// Ends the process of a page whose script never ends: such a page answers no call, and takes no new
// load. While the page is waited for, it is sent a trivial script from time to time. A page that is
// silent without using the processor is left alone: it waits for an answer (a synchronous request,
// which may be a save).
class ScriptWatchdog final : public QObject {
  Q_OBJECT

 public:
  // `is_needed` is whether the page is waited for.
  ScriptWatchdog(const WaitLimits& limits, std::function<bool()> is_needed, QObject* parent);

  void SetPage(QWebEnginePage* page);
  // The run was stopped: a silent page is given WaitLimits::silence_after_stop from now on.
  void Hurry();

 private:
  void Look();
  void Ping();
  bool IsAnswered() const { return asked_ == *answered_; }

  const WaitLimits limits_;
  std::function<bool()> is_needed_;
  QPointer<QWebEnginePage> page_;
  QTimer timer_;
  quint64 asked_ = 0;
  std::shared_ptr<quint64> answered_ = std::make_shared<quint64>(0);
  QElapsedTimer since_ping_;
  std::chrono::milliseconds used_at_ping_{0};
  bool is_hurried_ = false;
};

}  // namespace quayline
