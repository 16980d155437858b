// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/arguments.h"

#include <functional>

namespace quayline {

namespace {

using Setter = std::function<void(UpdateArguments&, const QString&)>;

struct ValueOption {
  const char* name;
  Setter set;
};

const std::vector<ValueOption>& ValueOptions() {
  static const std::vector<ValueOption> options{
      {"--data", [](auto& update, const QString& value) { update.data_folder = value; }},
      {"--list", [](auto& update, const QString& value) { update.list_file = value; }},
      {"--router", [](auto& update, const QString& value) { update.router = value; }},
      {"--address", [](auto& update, const QString& value) { update.address = value; }},
      {"--port", [](auto& update, const QString& value) { update.port = value; }},
      {"--type", [](auto& update, const QString& value) { update.type = value; }},
      {"--user", [](auto& update, const QString& value) { update.user = value; }},
      {"--trust-certificate",
       [](auto& update, const QString& value) { update.trusted_certificate = value; }},
      {"--password-file",
       [](auto& update, const QString& value) { update.password_file = value; }}};
  return options;
}

std::optional<QString> WhatIsWrong(const UpdateArguments& update) {
  if (update.data_folder.isEmpty()) {
    return QStringLiteral("Please say where the program's folder is: --data DIR.");
  }
  if (update.list_file.isEmpty()) {
    return QStringLiteral("Please say which list to send: --list FILE.");
  }
  if (update.type && *update.type != QLatin1String("http://") &&
      *update.type != QLatin1String("https://")) {
    return QStringLiteral("--type is http:// or https://, not \"%1\".").arg(*update.type);
  }
  if (update.port) {
    constexpr int kMaxPort = 65535;
    bool is_number = false;
    const int port = update.port->toInt(&is_number);
    if (!is_number || port < 1 || port > kMaxPort) {
      return QStringLiteral("--port is a number from 1 to 65535, not \"%1\".").arg(*update.port);
    }
  }
  if (update.password_file && update.password_from_stdin) {
    return QStringLiteral("Please give the password once: --password-file or --password-stdin.");
  }
  return std::nullopt;
}

std::expected<UpdateArguments, QString> ParseUpdate(const QStringList& words) {
  UpdateArguments update;
  for (qsizetype i = 0; i < words.size(); ++i) {
    const QString& word = words[i];
    if (word == QLatin1String("--throttle")) {
      update.throttle = true;
      continue;
    }
    if (word == QLatin1String("--password-stdin")) {
      update.password_from_stdin = true;
      continue;
    }
    const qsizetype equals = word.startsWith(QLatin1String("--")) ? word.indexOf(u'=') : -1;
    const QString name = equals < 0 ? word : word.left(equals);
    const auto option = std::ranges::find_if(ValueOptions(), [&name](const ValueOption& candidate) {
      return name == QLatin1String(candidate.name);
    });
    if (option == ValueOptions().end()) {
      if (name == QLatin1String("--password")) {
        return std::unexpected(QStringLiteral(
            "A password on the command line can be seen by every user of this computer: use "
            "--password-file or --password-stdin."));
      }
      return std::unexpected(QStringLiteral("\"%1\" is not an option of update.").arg(word));
    }
    if (equals < 0 && i + 1 == words.size()) {
      return std::unexpected(QStringLiteral("%1 needs a value.").arg(name));
    }
    option->set(update, equals < 0 ? words[++i] : word.mid(equals + 1));
  }
  if (const auto wrong = WhatIsWrong(update)) {
    return std::unexpected(*wrong);
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
    return std::unexpected(
        QStringLiteral("Please say what to do: update, lint, commands, or --help."));
  }
  if (words.first() == QLatin1String("lint")) {
    if (words.size() != 2) {
      return std::unexpected(QStringLiteral("Please name one file: lint FILE."));
    }
    return CliArguments{.command = CliCommand::kLint, .lint_file = words[1]};
  }
  if (words.first() == QLatin1String("commands")) {
    return ParseCommands(words.mid(1));
  }
  if (words.first() != QLatin1String("update")) {
    return std::unexpected(QStringLiteral("\"%1\" is not a command.").arg(words.first()));
  }
  const auto update = ParseUpdate(words.mid(1));
  if (!update) {
    return std::unexpected(update.error());
  }
  return CliArguments{.command = CliCommand::kUpdate, .update = *update};
}

QString CliHelp() {
  return QStringLiteral(
      R"(quayline-cli: opens ports on a home router by its own web pages, without a window.

Usage:
  quayline-cli update --data DIR --list FILE [options]
  quayline-cli lint FILE
  quayline-cli commands [NAME | --markdown]
  quayline-cli --help | --version

update enters every entry of a port list into the router and writes the job log to
standard output as it grows.

  --data DIR           the program's folder: routers.mdb, ports.mdb, custom.mdb, and
                       settings.ini where there is one
  --list FILE          the port list (.qyl): one entry a line, six fields joined by "|":
                       name|address(computer)|start port|end port|TCP, UDP or TCP/UDP|text
  --router NAME        the router's model, as routers.mdb names it
  --address HOST       the router's address
  --port N             the port of its web pages (80)
  --type TYPE          http:// or https:// (http://)
  --user NAME          the router's user name
  --password-file F    a file whose first line is the router's password
  --password-stdin     the password is the first line of standard input
  --trust-certificate FINGERPRINT
                       take this certificate of a router that speaks https and signed it
                       itself: its SHA-256 fingerprint, as an earlier run has told it. It is
                       remembered in DIR.
  --throttle           wait half a second behind each command of the script

What is not given comes from the settings in DIR, else from the router's row in routers.mdb,
else from the defaults in parentheses. A password is never an argument, and the log never
shows it.

Exit status:
  0  all entries ran to their end
  1  the list, or the router's data, was refused before the job began; the reason is on
     standard error
  2  wrong usage, or a file that cannot be read
  3  an entry ended in an error, or the job was stopped (Ctrl-C)

lint judges the lines of a router script (or of a router's file with its two scripts) and writes
what it has to say to standard output, one "file:line: sentence" each. It knows every command: a
name that is nearly one, an argument that is cut at the wrong place, fields that are missing or
lost, numbers that are none. A sentence that begins with "warning:" is about a line that may be
meant so.

Exit status of lint:
  0  nothing, or warnings only
  1  a line cannot do what it says
  2  wrong usage, or a file that cannot be read

commands writes how the commands of router scripts are written, one command with its fields, or the
whole reference as a page.
)");
}

}  // namespace quayline
