// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QTemporaryDir>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "cli/arguments.h"
#include "cli/commands_command.h"
#include "cli/help.h"
#include "cli/lint_command.h"
#include "cli/prepare_update.h"
#include "cli/routers_command.h"
#include "cli/terminal.h"
#include "cli/try_run.h"
#include "cli/update_run.h"
#include "platform/linux/linux_adapters.h"
#include "platform/linux/linux_desktop.h"
#include "platform/linux/linux_listeners.h"
#include "platform/linux/private_memory.h"
#include "platform/linux/stop_signals.h"
#include "script/web/web_engine.h"

namespace {

using quayline::CliCommand;
using quayline::CliExit;

int Fail(CliExit exit, const QString& message) {
  quayline::ReportLines(QStringLiteral("quayline-cli: ") + message);
  return static_cast<int>(exit);
}

// Messages of the libraries are for their developers; standard error is for the job's.
void DropMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

[[noreturn]] void EndAtOnce() {
  quayline::Report(QStringLiteral("Ended at once. The router may not have got its last save."));
  std::_Exit(static_cast<int>(CliExit::kFailed));
}

// To be called before the application of a run is made.
void PrepareRun() {
  std::signal(SIGPIPE, SIG_IGN);
  quayline::StopSignals::HoldBack();
  // No window on any screen, whatever the desktop offers.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  quayline::PrepareWebEngine(quayline::PagesAre::kUnseen);
  qInstallMessageHandler(DropMessage);
}

int RunUpdate(const quayline::UpdateArguments& arguments, int argc, char** argv) {
  const auto password = quayline::ReadPassword(arguments);
  if (!password) {
    return Fail(password.error().exit, password.error().message);
  }
  PrepareRun();
  QApplication application(argc, argv);
  const quayline::StopSignals signals;
  quayline::LinuxAdapters adapters;
  quayline::LinuxDesktop desktop;
  quayline::AppContext context(arguments.data_folder, adapters, desktop);
  if (const auto prepared = quayline::PrepareUpdate(arguments, *password, context); !prepared) {
    return Fail(prepared.error().exit, prepared.error().message);
  }
  context.router_locks = quayline::RouterLocks(quayline::RouterLocks::SystemFolders());
  context.journals = quayline::JobJournals(quayline::JobJournals::SystemFolder());
  const quayline::LinuxListeners listeners;
  context.listeners = &listeners;
  for (const quayline::CutOffJob& job : context.journals.TakeCutOff()) {
    quayline::ReportLines(QStringLiteral("quayline-cli: ") +
                          CutOffNotice(job,
                                       QStringLiteral("To see what the router has now, run "
                                                      "\"quayline-cli check\"."),
                                       context.translator));
  }
  const auto lock = context.router_locks.TryTake(quayline::RouterKey(context.session));
  if (lock == nullptr && arguments.no_wait) {
    return Fail(CliExit::kFailed,
                QStringLiteral("Another Quayline works on the router at %1. Nothing was done.")
                    .arg(RouterHost(context.session)));
  }
  quayline::UpdateRun run(
      context,
      quayline::WebPageHosts(context.job_options, context.translator, &context.certificates),
      arguments);
  QObject::connect(&run, &quayline::UpdateRun::finished, &application, &QCoreApplication::exit);
  QObject::connect(&signals, &quayline::StopSignals::first, &run, &quayline::UpdateRun::Stop);
  QObject::connect(&signals, &quayline::StopSignals::second, &run, &EndAtOnce);
  run.Start();
  return QApplication::exec();
}

int RunTry(const quayline::TryArguments& arguments, int argc, char** argv) {
  PrepareRun();
  QApplication application(argc, argv);
  const quayline::StopSignals signals;
  const QTemporaryDir folder;
  quayline::LinuxAdapters adapters;
  quayline::LinuxDesktop desktop;
  quayline::AppContext context(folder.path(), adapters, desktop);
  auto run = quayline::TryRun::Prepare(
      arguments, context,
      quayline::WebPageHosts(context.job_options, context.translator, &context.certificates));
  if (!run) {
    return Fail(run.error().exit, run.error().message);
  }
  quayline::TryRun* const trial = run->get();
  QObject::connect(trial, &quayline::TryRun::finished, &application, &QCoreApplication::exit);
  QObject::connect(&signals, &quayline::StopSignals::first, trial, &quayline::TryRun::Stop);
  QObject::connect(&signals, &quayline::StopSignals::second, trial, &EndAtOnce);
  trial->Start();
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

int RunRouters(const quayline::RoutersArguments& arguments, int argc, char** argv) {
  qInstallMessageHandler(DropMessage);
  const QCoreApplication application(argc, argv);
  const auto list = quayline::ListRouters(arguments);
  return list ? Print(*list, 0) : Fail(list.error().exit, list.error().message);
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
    case CliCommand::kTry:
      return RunTry(arguments->trial, argc, argv);
    case CliCommand::kRouters:
      return RunRouters(arguments->routers, argc, argv);
    case CliCommand::kLint:
      return RunLint(arguments->lint_file);
    case CliCommand::kCommands: {
      const auto text = quayline::DescribeCommands(arguments->commands);
      return text ? Print(*text, 0) : Fail(CliExit::kUsage, text.error());
    }
  }
  return 0;
}
