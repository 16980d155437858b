// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/routers_command.h"

#include <QDir>

#include <limits>

#include "cli/terminal.h"

namespace quayline {

namespace {

// A name, or what else a database of unknown origin holds, must not make a column or a line.
QString LineOf(const RouterName& router) {
  const QString tested = router.tested.isEmpty() ? QStringLiteral("unknown") : router.tested;
  return WithoutControls(router.name) + QLatin1Char('\t') + WithoutControls(tested) +
         QLatin1Char('\t') + WithoutControls(router.versions) + QLatin1Char('\n');
}

}  // namespace

std::expected<QString, CliError> ListRouters(const RoutersArguments& arguments) {
  const auto failure = [](CliExit exit, const QString& message) {
    return std::unexpected(CliError{.exit = exit, .message = message});
  };
  if (!QDir(arguments.data_folder).exists()) {
    return failure(CliExit::kUsage,
                   QStringLiteral("There is no folder %1.").arg(arguments.data_folder));
  }
  Databases databases;
  if (const auto opened = databases.Open(arguments.data_folder); !opened) {
    return failure(CliExit::kUsage, EnglishOf(opened.error().description));
  }
  constexpr int kStep = 1000;
  QString lines;
  for (QList<RouterName> step = databases.RouterNames(std::numeric_limits<int>::min(), kStep);
       !step.isEmpty(); step = databases.RouterNames(step.last().id, kStep)) {
    for (const RouterName& router : step) {
      if (router.name.contains(arguments.part, Qt::CaseInsensitive)) {
        lines += LineOf(router);
      }
    }
  }
  if (lines.isEmpty()) {
    return failure(CliExit::kRefused,
                   QStringLiteral("No router has \"%1\" in its name.").arg(arguments.part));
  }
  return lines;
}

}  // namespace quayline
