// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/arguments.h"

#include <QCommandLineParser>

#include "cli/update_options.h"

namespace quayline {

namespace {

using Fault = std::optional<QString>;

Fault FaultOfWhole(const UpdateArguments& update) {
  if (update.data_folder.isEmpty()) {
    return QStringLiteral("Please say where the program's folder is: --data DIR.");
  }
  if (update.list_file.isEmpty()) {
    return QStringLiteral("Please say which list to send: --list FILE.");
  }
  if (update.password_file && update.password_from_stdin) {
    return QStringLiteral("Please give the password once: --password-file or --password-stdin.");
  }
  return std::nullopt;
}

Fault FaultOfWords(const QCommandLineParser& parser, bool is_parsed, const QString& command) {
  const QString not_known = QStringLiteral("\"%1\" is not an option of %2.");
  const QStringList unknown = parser.unknownOptionNames();
  if (unknown.contains(QStringLiteral("password"))) {
    return QStringLiteral(
        "A password on the command line can be seen by every user of this computer: use "
        "--password-file or --password-stdin.");
  }
  if (!unknown.isEmpty()) {
    return not_known.arg(unknown.first(), command);
  }
  if (!is_parsed) {
    return parser.errorText();
  }
  const QStringList rest = parser.positionalArguments();
  return rest.isEmpty() ? std::nullopt : Fault(not_known.arg(rest.first(), command));
}

std::expected<UpdateArguments, QString> ParseUpdate(const QStringList& words) {
  QCommandLineParser parser;
  for (const UpdateOption& option : UpdateOptions()) {
    parser.addOption({option.Name(), QString(),
                      option.value == nullptr ? QString() : QLatin1String(option.value)});
  }
  const bool is_parsed = parser.parse(words);
  if (const Fault fault = FaultOfWords(parser, is_parsed, words.first())) {
    return std::unexpected(*fault);
  }
  UpdateArguments update;
  update.only_looks = words.first() == QLatin1String("check");
  for (const UpdateOption& option : UpdateOptions()) {
    if (!parser.isSet(option.Name())) {
      continue;
    }
    const QStringList values = parser.values(option.Name());
    for (const QString& value : option.value == nullptr ? QStringList(QString()) : values) {
      if (const Fault fault = option.set(update, value)) {
        return std::unexpected(*fault);
      }
    }
  }
  if (const Fault fault = FaultOfWhole(update)) {
    return std::unexpected(*fault);
  }
  return update;
}

std::expected<CliArguments, QString> ParseCommands(const QStringList& words) {
  if (words.size() > 1) {
    return std::unexpected(QStringLiteral("Please name one command: commands NAME."));
  }
  const QString name = words.value(0);
  const bool as_markdown = name == QLatin1String("--markdown");
  if (name.startsWith(QLatin1Char('-')) && !as_markdown) {
    return std::unexpected(QStringLiteral("\"%1\" is not an option of commands.").arg(name));
  }
  return CliArguments{
      .command = CliCommand::kCommands,
      .commands = {.name = as_markdown ? QString() : name, .as_markdown = as_markdown}};
}

std::expected<CliArguments, QString> ParseRouters(const QStringList& words) {
  QCommandLineParser parser;
  parser.addOption({QStringLiteral("data"), QString(), QStringLiteral("value")});
  if (!parser.parse(words)) {
    return std::unexpected(parser.unknownOptionNames().isEmpty()
                               ? parser.errorText()
                               : QStringLiteral("\"%1\" is not an option of routers.")
                                     .arg(parser.unknownOptionNames().first()));
  }
  const RoutersArguments routers{.data_folder = parser.value(QStringLiteral("data")),
                                 .part = parser.positionalArguments().join(QLatin1Char(' '))};
  if (routers.data_folder.isEmpty()) {
    return std::unexpected(
        QStringLiteral("Please say where the program's folder is: routers --data DIR."));
  }
  return CliArguments{.command = CliCommand::kRouters, .routers = routers};
}

std::expected<CliArguments, QString> ParseTry(const QStringList& words) {
  QCommandLineParser parser;
  for (const char* name : {"pages", "answers", "list", "timeout"}) {
    parser.addOption({QLatin1String(name), QString(), QStringLiteral("value")});
  }
  if (!parser.parse(words)) {
    return std::unexpected(parser.unknownOptionNames().isEmpty()
                               ? parser.errorText()
                               : QStringLiteral("\"%1\" is not an option of try.")
                                     .arg(parser.unknownOptionNames().first()));
  }
  TryArguments trial{.router_file = {},
                     .pages = parser.value(QStringLiteral("pages")),
                     .answers = parser.value(QStringLiteral("answers")),
                     .list = parser.value(QStringLiteral("list")),
                     .timeout_seconds = {}};
  if (parser.positionalArguments().size() != 1) {
    return std::unexpected(QStringLiteral("Please name one file: try ROUTERFILE --pages DIR."));
  }
  trial.router_file = parser.positionalArguments().first();
  if (trial.pages.isEmpty()) {
    return std::unexpected(QStringLiteral("Please say where the router's pages are: --pages DIR."));
  }
  if (parser.isSet(QStringLiteral("timeout"))) {
    const auto seconds = ParseTimeout(parser.value(QStringLiteral("timeout")));
    if (!seconds) {
      return std::unexpected(seconds.error());
    }
    trial.timeout_seconds = *seconds;
  }
  return CliArguments{.command = CliCommand::kTry, .trial = trial};
}

}  // namespace

std::expected<CliArguments, QString> ParseCliArguments(const QStringList& words) {
  const bool wants_help =
      words.contains(QStringLiteral("--help")) || words.contains(QStringLiteral("-h"));
  if (wants_help || words == QStringList(QStringLiteral("help"))) {
    return CliArguments{.command = CliCommand::kHelp};
  }
  if (words.contains(QStringLiteral("--version"))) {
    return CliArguments{.command = CliCommand::kVersion};
  }
  if (words.isEmpty()) {
    return std::unexpected(QStringLiteral(
        "Please say what to do: update, check, routers, lint, try, commands, or --help."));
  }
  if (words.first() == QLatin1String("lint")) {
    if (words.size() != 2) {
      return std::unexpected(QStringLiteral("Please name one file: lint FILE."));
    }
    return CliArguments{.command = CliCommand::kLint, .lint_file = words[1]};
  }
  if (words.first() == QLatin1String("routers")) {
    return ParseRouters(words);
  }
  if (words.first() == QLatin1String("try")) {
    return ParseTry(words);
  }
  if (words.first() == QLatin1String("commands")) {
    return ParseCommands(words.mid(1));
  }
  if (words.first() != QLatin1String("update") && words.first() != QLatin1String("check")) {
    return std::unexpected(QStringLiteral("\"%1\" is not a command.").arg(words.first()));
  }
  const auto update = ParseUpdate(words);  // its first word takes the place of the program's name
  if (!update) {
    return std::unexpected(update.error());
  }
  return CliArguments{.command = CliCommand::kUpdate, .update = *update};
}

}  // namespace quayline
