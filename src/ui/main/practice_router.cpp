// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/practice_router.h"

#include <QRegularExpression>

#include <csignal>
#include <sys/prctl.h>

#include "core/reader_process.h"

namespace quayline {

PracticeRouter::PracticeRouter(QObject* parent) : QObject(parent) {
  process_.setStandardErrorFile(QProcess::nullDevice());
  process_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
  connect(&process_, &QProcess::readyReadStandardOutput, this, &PracticeRouter::ReadPort);
  const auto end = [this] {
    port_.clear();
    Q_EMIT failed();
  };
  connect(&process_, &QProcess::finished, this, end);
  connect(&process_, &QProcess::errorOccurred, this, [end](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) {
      end();
    }
  });
}

PracticeRouter::~PracticeRouter() { Stop(); }

void PracticeRouter::Start() {
  if (process_.state() != QProcess::NotRunning) {
    return;
  }
  output_.clear();
  process_.start(HelperPath(QStringLiteral("quayline-demo-router")),
                 {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--model"),
                  QStringLiteral("formback")},
                 QIODevice::ReadOnly);
}

void PracticeRouter::Stop() {
  const QSignalBlocker quiet(this);
  process_.kill();
  process_.waitForFinished(1000);
  port_.clear();
}

// One line says where it listens.
void PracticeRouter::ReadPort() {
  constexpr qsizetype kMostOutput = 4096;
  static const QRegularExpression line(
      QStringLiteral("^Listening on http://127\\.0\\.0\\.1:(\\d{1,5})/"),
      QRegularExpression::MultilineOption);
  output_ = (output_ + process_.readAllStandardOutput()).left(kMostOutput);
  const auto match = line.match(QString::fromLatin1(output_));
  if (match.hasMatch() && port_.isEmpty()) {
    port_ = match.captured(1);
    Q_EMIT started();
  }
}

}  // namespace quayline
