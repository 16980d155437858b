// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/stop_signals.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace quayline {

namespace {

// Those that are not ignored from the start: a signal that is held back is not ignored any more.
const sigset_t& HeldSignals() {
  static const sigset_t held = [] {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
      struct sigaction action{};
      if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
        sigaddset(&signals, signal);
      }
    }
    return signals;
  }();
  return held;
}

}  // namespace

void StopSignals::HoldBack() { pthread_sigmask(SIG_BLOCK, &HeldSignals(), nullptr); }

StopSignals::StopSignals(QObject* parent) : QObject(parent) {
  file_ = signalfd(-1, &HeldSignals(), SFD_CLOEXEC | SFD_NONBLOCK);
  if (file_ < 0) {
    // Without the descriptor a signal ends the program at once.
    pthread_sigmask(SIG_UNBLOCK, &HeldSignals(), nullptr);
    return;
  }
  auto* notifier = new QSocketNotifier(file_, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, &StopSignals::Read);
}

StopSignals::~StopSignals() {
  if (file_ >= 0) {
    close(file_);
  }
}

void StopSignals::Read() {
  signalfd_siginfo info;
  while (read(file_, &info, sizeof info) == sizeof info) {
    if (++count_ == 1) {
      Q_EMIT first();
    } else {
      Q_EMIT second();
    }
  }
}

}  // namespace quayline
