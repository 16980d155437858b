// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/firewall_helper_run.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>

#include <unistd.h>

#include "async/wait.h"
#include "platform/linux/firewall_helper_codes.h"

namespace quayline {

namespace {

constexpr int kDismissed = 126;  // exit codes of pkexec
constexpr int kNotAuthorized = 127;
constexpr qsizetype kMaxErrorLetters = 300;

// Outlives its owner until the process has ended: root's process cannot be killed, only asked.
class Run final {
 public:
  Run(const HelperLaunch& launch, QStringList arguments)
      : process_(new QProcess(QCoreApplication::instance())) {
    QString program = launch.helper;
    if (!launch.is_root) {
      arguments.prepend(program);
      program = launch.pkexec;
    }
    process_->start(program, arguments);
  }
  ~Run() {
    if (process_ == nullptr) {
      return;
    }
    process_->disconnect();
    if (process_->state() == QProcess::NotRunning) {
      delete process_;
      return;
    }
    QObject::connect(process_, &QProcess::finished, process_, &QObject::deleteLater);
    process_->closeWriteChannel();
    process_->terminate();  // pkexec, while it asks for the password
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  QProcess* Process() const { return process_; }

 private:
  QPointer<QProcess> process_;
};

// `firewall` is the program that the helper starts.
FirewallError ErrorOf(const QProcess& process, const QString& firewall, const QByteArray& words) {
  if (process.error() == QProcess::FailedToStart) {
    return {.fault = FirewallFault::kMissing, .text = process.program()};
  }
  const QString text = QString::fromUtf8(words).simplified().left(kMaxErrorLetters);
  if (process.exitStatus() != QProcess::NormalExit) {
    return {.fault = FirewallFault::kFailed, .text = text};
  }
  switch (process.exitCode()) {
    case kDismissed:
    case kNotAuthorized:
    case static_cast<int>(HelperCode::kRights):
      return {.fault = FirewallFault::kRefused};
    case static_cast<int>(HelperCode::kMissing):
      return {.fault = FirewallFault::kMissing, .text = firewall};
    case static_cast<int>(HelperCode::kNoFirewall):
      return {.fault = FirewallFault::kMissing};
    default:
      return {.fault = FirewallFault::kFailed, .text = text};
  }
}

// The lines that have arrived as a whole.
void ReportProgress(QByteArray& lines, const std::function<void(qsizetype)>& progress) {
  for (qsizetype end = lines.indexOf('\n'); end >= 0; end = lines.indexOf('\n')) {
    bool is_number = false;
    const qsizetype rule = lines.first(end).toLongLong(&is_number);
    lines.remove(0, end + 1);
    if (is_number && progress) {
      progress(rule);
    }
  }
}

}  // namespace

HelperLaunch HelperLaunch::OfSystem() {
  const QString name = QStringLiteral("quayline-firewall-helper");
  const QString folder = QCoreApplication::applicationDirPath();
  const QFileInfo installed(folder + QStringLiteral("/../libexec/quayline/") + name);
  const QFileInfo pkexec(QStringLiteral("/usr/bin/pkexec"));
  return {.helper = installed.isExecutable() ? installed.canonicalFilePath()
                                             : folder + QLatin1Char('/') + name,
          .is_root = geteuid() == 0,
          .pkexec = pkexec.isExecutable() ? pkexec.filePath() : QString()};
}

Task<HelperEnd> RunFirewallHelper(HelperLaunch launch, QStringList arguments,
                                  std::function<void(qsizetype rule)> progress) {
  const QString& starter = launch.is_root ? launch.helper : launch.pkexec;
  for (const QString& program : {starter, launch.helper}) {
    if (!QFileInfo(program).isExecutable()) {
      co_return HelperEnd{.result = std::unexpected(FirewallError{
                              .fault = FirewallFault::kMissing,
                              .text = program.isEmpty() ? QStringLiteral("pkexec") : program})};
    }
  }
  const QString firewall = arguments.value(0);
  const Run run(launch, std::move(arguments));
  QProcess* const process = run.Process();
  QByteArray output;
  QByteArray lines;
  const auto has_ended = [&] {
    const QByteArray arrived = process->readAllStandardOutput();
    output += arrived;
    if (progress) {
      lines += arrived;
      ReportProgress(lines, progress);
    }
    return process->state() == QProcess::NotRunning;
  };
  co_await Until(has_ended)
      .WokenBy(process, &QProcess::readyReadStandardOutput)
      .WokenBy(process, &QProcess::finished)
      .WokenBy(process, &QProcess::errorOccurred);
  has_ended();
  const bool is_done = process->error() != QProcess::FailedToStart &&
                       process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
  if (!is_done) {
    co_return HelperEnd{
        .result = std::unexpected(ErrorOf(*process, firewall, process->readAllStandardError()))};
  }
  co_return HelperEnd{.result = {}, .output = output};
}

}  // namespace quayline
