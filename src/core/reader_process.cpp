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

constexpr Message kNoReader{
    "The program \"%1\", which reads it, is missing. Please install Quayline again."};
constexpr Message kTooMuch{"It contains too much."};
constexpr Message kTooSlow{"It takes too long to read."};
constexpr Message kDamaged{"Its content is damaged."};

// What the reader reports; whatever else it says is a fault of the reader itself.
constexpr Message kReports[] = {{"It contains a text of more than a million letters."},
                                {"It contains other files than the databases."},
                                {"It is encrypted."},
                                {"It contains a file that is too large."},
                                {"It is not a package of databases."},
                                {"It contains a file twice."}};

Message ReportOf(const QByteArray& output) {
  const auto* const found =
      std::ranges::find_if(kReports, [&](const Message& each) { return output == each.english; });
  return found == std::end(kReports) ? kDamaged : *found;
}

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
      return std::unexpected(ReaderError{.reason = {kNoReader, {program_}}, .is_input = false});
    }
    if (output_.size() > max_output_) {
      return std::unexpected(ReaderError{{kTooMuch}});
    }
    if (process_.state() != QProcess::NotRunning) {
      return std::unexpected(ReaderError{{kTooSlow}});
    }
    if (process_.exitStatus() == QProcess::NormalExit && process_.exitCode() == 0) {
      return output_;
    }
    return std::unexpected(ReaderError{{ReportOf(output_)}});
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
