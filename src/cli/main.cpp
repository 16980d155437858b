// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <unistd.h>

#include "cli/arguments.h"
#include "cli/commands_command.h"
#include "cli/lint_command.h"
#include "cli/update_run.h"
#include "platform/linux/linux_adapters.h"
#include "platform/linux/linux_desktop.h"
#include "platform/linux/private_memory.h"
#include "script/web/web_engine.h"

namespace {

using quayline::CliCommand;
using quayline::CliExit;

int stop_pipe[2];

// The first signal asks the job to stop, the second one ends the program.
void OnStopSignal(int signal) {
  std::signal(signal, SIG_DFL);
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = write(stop_pipe[1], &byte, 1);
}

int Fail(CliExit exit, const QString& message) {
  std::fprintf(stderr, "quayline-cli: %s\n", message.toUtf8().constData());
  return static_cast<int>(exit);
}

int RunUpdate(const quayline::UpdateArguments& arguments, int argc, char** argv) {
  // No window on any screen, whatever the desktop offers.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  quayline::PrepareWebEngine(quayline::PagesAre::kUnseen);
  QApplication application(argc, argv);
  quayline::LinuxAdapters adapters;
  quayline::LinuxDesktop desktop;
  quayline::AppContext context(arguments.data_folder, adapters, desktop);
  if (const auto prepared = quayline::PrepareUpdate(arguments, context); !prepared) {
    return Fail(prepared.error().exit, prepared.error().message);
  }
  quayline::UpdateRun run(
      context,
      quayline::WebPageHosts(context.job_options, context.translator, &context.certificates),
      {.trusted_certificate = arguments.trusted_certificate});
  QObject::connect(&run, &quayline::UpdateRun::finished, &application, &QCoreApplication::exit);
  if (pipe(stop_pipe) == 0) {
    auto* stop = new QSocketNotifier(stop_pipe[0], QSocketNotifier::Read, &application);
    QObject::connect(stop, &QSocketNotifier::activated, &run, [&run, stop] {
      stop->setEnabled(false);
      run.Stop();
    });
    std::signal(SIGINT, OnStopSignal);
    std::signal(SIGTERM, OnStopSignal);
  }
  std::signal(SIGPIPE, SIG_IGN);
  run.Start();
  return QApplication::exec();
}

int Print(const QString& output, int exit_status) {
  const bool written =
      std::fputs(output.toUtf8().constData(), stdout) >= 0 && std::fflush(stdout) == 0;
  return written ? exit_status
                 : Fail(CliExit::kUsage, QStringLiteral("The output cannot be written."));
}

int RunLint(const QString& file) {
  const quayline::LintReport report = quayline::LintFile(file);
  if (!report.error.isEmpty()) {
    return Fail(CliExit::kUsage, report.error);
  }
  return Print(report.output, report.exit_status);
}

}  // namespace

int main(int argc, char** argv) {
  quayline::KeepMemoryPrivate();
  QStringList words;
  for (int i = 1; i < argc; ++i) {
    words.append(QString::fromLocal8Bit(argv[i]));
  }
  const auto arguments = quayline::ParseCliArguments(words);
  if (!arguments) {
    return Fail(CliExit::kUsage, arguments.error() + QStringLiteral(" See quayline-cli --help."));
  }
  switch (arguments->command) {
    case CliCommand::kHelp:
      std::fputs(quayline::CliHelp().toUtf8().constData(), stdout);
      return 0;
    case CliCommand::kVersion:
      std::fputs("quayline-cli " QUAYLINE_VERSION "\n", stdout);
      return 0;
    case CliCommand::kUpdate:
      return RunUpdate(arguments->update, argc, argv);
    case CliCommand::kLint:
      return RunLint(arguments->lint_file);
    case CliCommand::kCommands: {
      const auto text = quayline::DescribeCommands(arguments->commands);
      return text ? Print(*text, 0) : Fail(CliExit::kUsage, text.error());
    }
  }
  return 0;
}
