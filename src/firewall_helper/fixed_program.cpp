// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "firewall_helper/fixed_program.h"

#include <QFileInfo>
#include <QProcess>

namespace quayline {

FixedProgram::FixedProgram(const QString& name) {
  for (const char* folder : {"/usr/sbin/", "/sbin/", "/usr/bin/", "/bin/"}) {
    if (const QFileInfo file(QLatin1String(folder) + name);
        path_.isEmpty() && file.isExecutable()) {
      path_ = file.filePath();
    }
  }
}

ProgramOutput FixedProgram::Run(const QStringList& arguments, const QByteArray& input) const {
  constexpr int kLimit = 60'000;
  QProcess process;
  process.start(path_, arguments);
  process.write(input);
  process.closeWriteChannel();
  const bool has_ended =
      process.waitForFinished(kLimit) && process.exitStatus() == QProcess::NormalExit;
  if (process.state() != QProcess::NotRunning) {
    process.kill();
    process.waitForFinished();
  }
  return {.exit_code = has_ended ? process.exitCode() : -1,
          .output = process.readAllStandardOutput(),
          .errors = process.readAllStandardError()};
}

}  // namespace quayline
