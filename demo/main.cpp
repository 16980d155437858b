// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include <QCoreApplication>

#include <cstdio>

#include "demo/command_line.h"
#include "demo/compare_command.h"
#include "demo/demo_router.h"

namespace {

using quayline::demo::CompareCommand;
using quayline::demo::DemoCommand;
using quayline::demo::DemoRouter;

// Flushed at once: scripts wait for the line that names the port.
void Print(const QString& text, std::FILE* stream) {
  std::fputs(text.toLocal8Bit().constData(), stream);
  std::fflush(stream);
}

int Fail(const QString& sentence) {
  Print(sentence + QLatin1Char('\n'), stderr);
  return 1;
}

int Serve(const DemoCommand& command) {
  DemoRouter router;
  const auto port = router.Start(command.model, command.options);
  if (!port) {
    return Fail(port.error());
  }
  const QString scheme = QLatin1String(command.options.https ? "https" : "http");
  Print(QStringLiteral("Listening on %1://127.0.0.1:%2/\n").arg(scheme, QString::number(*port)),
        stdout);
  return QCoreApplication::exec();
}

int Compare(const DemoCommand& command) {
  CompareCommand compare(command.list_file, command.options.port, command.options.https);
  compare.Start([](const CompareCommand::Outcome& outcome) {
    Print(outcome.output, stdout);
    if (!outcome.error.isEmpty()) {
      Fail(outcome.error);
    }
    QCoreApplication::exit(outcome.has_every_entry ? 0 : 1);
  });
  return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const auto command = quayline::demo::ReadCommandLine(QCoreApplication::arguments());
  if (!command) {
    return Fail(command.error() + QStringLiteral(" Try --help."));
  }
  switch (command->kind) {
    case DemoCommand::Kind::kServe:
      return Serve(*command);
    case DemoCommand::Kind::kCompare:
      return Compare(*command);
    case DemoCommand::Kind::kHelp:
      Print(quayline::demo::HelpText(), stdout);
      return 0;
  }
  return 1;
}
