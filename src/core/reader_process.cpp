// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/reader_process.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <algorithm>

#include "async/wait.h"

namespace quayline {

namespace {

constexpr int kMaxErrorLetters = 200;

// One run of the reader. Ends it when it is destroyed.
class ReaderRun final {
 public:
  explicit ReaderRun(const ReaderRequest& request)
      : program_(HelperPath(request.program)),
        max_output_(request.max_output),
        deadline_(request.time_limit) {
    process_.setStandardErrorFile(QProcess::nullDevice());
    process_.start(program_, request.arguments);
    process_.write(request.input);
    process_.closeWriteChannel();
  }
  ~ReaderRun() {
    process_.kill();
    process_.waitForFinished();
  }
  ReaderRun(const ReaderRun&) = delete;
  ReaderRun& operator=(const ReaderRun&) = delete;

  QProcess& Process() { return process_; }
  int TimeLeft() const { return static_cast<int>(deadline_.remainingTime()); }

  // Takes over what has arrived. False when nothing more is to be waited for.
  bool GoesOn() {
    output_ += process_.readAllStandardOutput();
    return process_.state() != QProcess::NotRunning && output_.size() <= max_output_ &&
           !deadline_.hasExpired();
  }

  ReaderResult Result() {
    if (process_.error() == QProcess::FailedToStart) {
      return std::unexpected(ReaderError{
          .text = QStringLiteral("cannot be read: the program \"%1\" is missing").arg(program_),
          .is_input = false});
    }
    if (output_.size() > max_output_) {
      return std::unexpected(ReaderError{QStringLiteral("holds too much")});
    }
    if (process_.state() != QProcess::NotRunning) {
      return std::unexpected(ReaderError{QStringLiteral("takes too long to read")});
    }
    if (process_.exitStatus() == QProcess::NormalExit && process_.exitCode() == 0) {
      return output_;
    }
    const QString told = QString::fromUtf8(output_).left(kMaxErrorLetters).simplified();
    const bool is_sentence = process_.exitStatus() == QProcess::NormalExit &&
                             process_.exitCode() == 1 && !told.isEmpty() &&
                             std::ranges::all_of(told, [](QChar c) { return c.isPrint(); });
    return std::unexpected(ReaderError{is_sentence ? told : QStringLiteral("is damaged")});
  }

 private:
  QString program_;
  qsizetype max_output_;
  QDeadlineTimer deadline_;
  QByteArray output_;
  QProcess process_;
};

}  // namespace

QString HelperPath(const QString& program) {
  const QString folder = QCoreApplication::applicationDirPath();
  const QString installed = folder + QStringLiteral("/../libexec/quayline/") + program;
  return QFileInfo(installed).isExecutable() ? installed : folder + QLatin1Char('/') + program;
}

ReaderResult RunReader(const ReaderRequest& request) {
  constexpr int kInterruptedWithin = 250;
  ReaderRun run(request);
  while (run.GoesOn() && !QThread::currentThread()->isInterruptionRequested()) {
    const int step = std::min(run.TimeLeft(), kInterruptedWithin);
    if (!run.Process().waitForReadyRead(step)) {
      run.Process().waitForFinished(step);  // it may have closed its output, and be about to end
    }
  }
  return run.Result();
}

Task<ReaderResult> RunReaderInBackground(ReaderRequest request) {
  ReaderRun run(request);
  const auto time_left = std::chrono::milliseconds(run.TimeLeft());
  co_await Until([&run] { return !run.GoesOn(); })
      .WokenBy(&run.Process(), &QProcess::readyReadStandardOutput)
      .WokenBy(&run.Process(), &QProcess::finished)
      .WokenBy(&run.Process(), &QProcess::errorOccurred)
      .AtMost(time_left);
  run.GoesOn();
  co_return run.Result();
}

}  // namespace quayline
