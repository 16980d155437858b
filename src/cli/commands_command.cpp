// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/commands_command.h"

#include "script/command_reference.h"
#include "script/near_name.h"

namespace quayline {

std::expected<QString, QString> DescribeCommands(const CommandsArguments& arguments) {
  if (arguments.as_markdown) {
    return CommandReferencePage();
  }
  if (arguments.name.isEmpty()) {
    return CommandList();
  }
  const QString name = arguments.name.toLower();
  if (const CommandRow* row = FindCommand(name)) {
    return CommandManual(*row);
  }
  const QString near = NearestCommandName(name, true);
  const QString hint =
      near.isEmpty() ? QString() : QStringLiteral(" Did you mean \"%1\"?").arg(near);
  return std::unexpected(
      QStringLiteral("There is no command \"%1\" in scripts.").arg(arguments.name) + hint);
}

}  // namespace quayline
