// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/command_runner.h"

#include <QPointer>
#include <QProcess>

#include "async/wait.h"

namespace quayline {

Task<std::optional<int>> RunCommand(QString line, std::chrono::milliseconds limit) {
  const QStringList words = QProcess::splitCommand(line);
  // Has no owner: it may outlive the wait for it.
  auto* const process = new QProcess;
  QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
  process->setStandardInputFile(QProcess::nullDevice());
  process->setStandardOutputFile(QProcess::nullDevice());
  process->setStandardErrorFile(QProcess::nullDevice());
  const QPointer<QProcess> running(process);
  process->start(words.value(0), words.mid(1));
  const auto has_ended = [running] {
    return running == nullptr || running->state() == QProcess::NotRunning;
  };
  co_await Until(has_ended)
      .WokenBy(process, &QProcess::finished)
      .WokenBy(process, &QProcess::errorOccurred)
      .AtMost(limit);
  if (running != nullptr && running->error() == QProcess::FailedToStart) {
    running->deleteLater();
    co_return static_cast<int>(QProcess::FailedToStart);
  }
  co_return std::nullopt;
}

}  // namespace quayline
