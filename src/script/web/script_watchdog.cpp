// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/script_watchdog.h"

#include <QFile>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace quayline {

namespace {

using std::chrono::milliseconds;

// Less than this part of the time is what a process uses that only waits. A script that runs gets
// more even where many programs share the processor.
constexpr int kBusyPart = 50;

// The processor time that the process's first thread has used, on which scripts run.
milliseconds ProcessorTime(qint64 pid) {
  QFile file(QStringLiteral("/proc/%1/task/%1/stat").arg(pid));
  if (!file.open(QIODevice::ReadOnly)) {
    return {};
  }
  const QByteArray stat = file.readAll();
  // The second field is a name in parentheses, and may hold anything.
  const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
  constexpr int kUserTime = 11;
  constexpr int kSystemTime = 12;
  const qint64 ticks =
      fields.value(kUserTime).toLongLong() + fields.value(kSystemTime).toLongLong();
  return milliseconds(ticks * 1000 / sysconf(_SC_CLK_TCK));
}

}  // namespace

ScriptWatchdog::ScriptWatchdog(const WaitLimits& limits, std::function<bool()> is_needed,
                               QObject* parent)
    : QObject(parent), limits_(limits), is_needed_(std::move(is_needed)) {
  connect(&timer_, &QTimer::timeout, this, &ScriptWatchdog::Look);
  timer_.start(limits_.silence_look);
}

void ScriptWatchdog::SetPage(QWebEnginePage* page) {
  page_ = page;
  asked_ = *answered_;
}

void ScriptWatchdog::Hurry() {
  is_hurried_ = true;
  timer_.start(limits_.silence_look_after_stop);
  if (page_ != nullptr && IsAnswered()) {
    Ping();
  }
}

void ScriptWatchdog::Look() {
  if (page_ == nullptr || page_->renderProcessPid() == 0) {
    return;
  }
  if (IsAnswered()) {
    if (is_hurried_) {
      is_hurried_ = false;
      timer_.start(limits_.silence_look);
    } else if (is_needed_()) {
      Ping();
    }
    return;
  }
  const milliseconds silence(since_ping_.elapsed());
  const milliseconds used = ProcessorTime(page_->renderProcessPid()) - used_at_ping_;
  if (silence >= (is_hurried_ ? limits_.silence_after_stop : limits_.silence) &&
      used * kBusyPart > silence && (is_hurried_ || is_needed_())) {
    asked_ = *answered_;
    kill(static_cast<pid_t>(page_->renderProcessPid()), SIGKILL);
  }
}

void ScriptWatchdog::Ping() {
  const quint64 number = ++asked_;
  since_ping_.start();
  used_at_ping_ = ProcessorTime(page_->renderProcessPid());
  page_->runJavaScript(
      QStringLiteral("0"), QWebEngineScript::ApplicationWorld,
      [answered = answered_, number](const QVariant&) { *answered = std::max(*answered, number); });
}

}  // namespace quayline
