// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/memory_limit.h"

#include <QFile>
#include <QWebEnginePage>

#include <chrono>
#include <csignal>
#include <unistd.h>

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr auto kLook = 250ms;
// Pages of routers take 50 MB.
constexpr qint64 kMaxBytes = qint64{1} << 30;

// The memory that the process shares with no file.
qint64 OwnMemory(qint64 pid) {
  QFile file(QStringLiteral("/proc/%1/statm").arg(pid));
  if (!file.open(QIODevice::ReadOnly)) {
    return 0;
  }
  constexpr int kResident = 1;
  constexpr int kShared = 2;
  const QList<QByteArray> pages = file.readAll().split(' ');
  return (pages.value(kResident).toLongLong() - pages.value(kShared).toLongLong()) *
         sysconf(_SC_PAGESIZE);
}

}  // namespace

MemoryLimit::MemoryLimit(QObject* parent) : QObject(parent) {
  connect(&timer_, &QTimer::timeout, this, &MemoryLimit::Look);
  timer_.start(kLook);
}

void MemoryLimit::SetPage(QWebEnginePage* page) { page_ = page; }

void MemoryLimit::Look() {
  const qint64 pid = page_ == nullptr ? 0 : page_->renderProcessPid();
  if (pid != 0 && OwnMemory(pid) > kMaxBytes) {
    Q_EMIT exceeded();
    kill(static_cast<pid_t>(pid), SIGKILL);
  }
}

}  // namespace quayline
