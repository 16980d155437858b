// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <expected>
#include <optional>

#include "cli/update_arguments.h"

namespace quayline {

// What `quayline-cli commands` is to print.
struct CommandsArguments {
  QString name;  // empty: all commands
  bool as_markdown = false;
};

// The options of `quayline-cli routers`.
struct RoutersArguments {
  QString data_folder;
  QString part;  // of the names; empty: all routers
};

// The options of `quayline-cli try`.
struct TryArguments {
  QString router_file;
  QString pages;    // the folder of pages
  QString answers;  // empty: "answers.json" in it
  QString list;     // empty: two sample entries
  std::optional<int> timeout_seconds;
};

enum class CliCommand { kHelp, kVersion, kUpdate, kLint, kCommands, kRouters, kTry };

struct CliArguments {
  CliCommand command = CliCommand::kHelp;
  UpdateArguments update;
  QString lint_file;
  CommandsArguments commands;
  RoutersArguments routers;
  TryArguments trial;
};

// Reads the words after the program's name. An error is a sentence for the user.
std::expected<CliArguments, QString> ParseCliArguments(const QStringList& words);

}  // namespace quayline
