// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/arguments.h"

#include <QCommandLineParser>

namespace quayline {

namespace {

using Update = UpdateArguments;
using Fault = std::optional<QString>;

// An option of `update`. The parser and the help are both made from these rows.
struct Option {
  const char* name;
  const char* value;  // its name in the help; nullptr: the option takes none
  const char* help;   // lines of the help
  // Stores a value; a fault is a sentence for the user.
  Fault (*set)(Update& update, const QString& value);
};

// The number in `text` if it lies in the range.
std::optional<int> NumberWithin(const QString& text, int least, int most) {
  bool is_number = false;
  const int number = text.toInt(&is_number);
  return is_number && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

Fault Store(auto& member, auto value) {
  member = std::move(value);
  return std::nullopt;
}

Fault SetPort(Update& update, const QString& value) {
  constexpr int kMaxPort = 65535;
  if (!NumberWithin(value, 1, kMaxPort)) {
    return QStringLiteral("--port is a number from 1 to 65535, not \"%1\".").arg(value);
  }
  return Store(update.port, value);
}

Fault SetType(Update& update, const QString& value) {
  if (value != QLatin1String("http://") && value != QLatin1String("https://")) {
    return QStringLiteral("--type is http:// or https://, not \"%1\".").arg(value);
  }
  return Store(update.type, value);
}

Fault SetTimeout(Update& update, const QString& value) {
  constexpr int kMaxSeconds = 1'000'000;
  const std::optional<int> seconds = NumberWithin(value, 1, kMaxSeconds);
  if (!seconds) {
    return QStringLiteral("--timeout is a number of seconds from 1 to 1000000, not \"%1\".")
        .arg(value);
  }
  return Store(update.timeout_seconds, *seconds);
}

Fault AddAllowedHost(Update& update, const QString& value) {
  const std::optional<AllowedHost> host = AllowedHost::Parse(value);
  if (!host) {
    return QStringLiteral("--allow-host is HOST or HOST:PORT, not \"%1\".").arg(value);
  }
  update.allowed_hosts.append(*host);
  return std::nullopt;
}

constexpr Option kOptions[] = {
    {"data", "DIR",
     "the program's folder: routers.mdb, ports.mdb, custom.mdb, and\n"
     "settings.ini where there is one",
     [](Update& u, const QString& value) { return Store(u.data_folder, value); }},
    {"list", "FILE",
     "the port list (.qyl): one entry a line, six fields joined by \"|\":\n"
     "name|address(computer)|start port|end port|TCP, UDP or TCP/UDP|text",
     [](Update& u, const QString& value) { return Store(u.list_file, value); }},
    {"router", "NAME", "the router's model, as routers.mdb names it",
     [](Update& u, const QString& value) { return Store(u.router, value); }},
    {"address", "HOST", "the router's address",
     [](Update& u, const QString& value) { return Store(u.address, value); }},
    {"port", "N", "the port of its web pages (80)", SetPort},
    {"type", "TYPE", "http:// or https:// (http://)", SetType},
    {"user", "NAME", "the router's user name",
     [](Update& u, const QString& value) { return Store(u.user, value); }},
    {"password-file", "F", "a file whose first line is the router's password",
     [](Update& u, const QString& value) { return Store(u.password_file, value); }},
    {"password-stdin", nullptr, "the password is the first line of standard input",
     [](Update& u, const QString&) { return Store(u.password_from_stdin, true); }},
    {"trust-certificate", "FINGERPRINT",
     "take this certificate of a router that speaks https and signed it\n"
     "itself: its SHA-256 fingerprint, as an earlier run has reported it.\n"
     "It is remembered in DIR.",
     [](Update& u, const QString& value) { return Store(u.trusted_certificate, value); }},
    {"allow-host", "HOST[:PORT]",
     "let the router's pages lead to this address too; may be given more\n"
     "than once. Every other address is blocked, and reported.",
     AddAllowedHost},
    {"allow-script", nullptr,
     "run the router's script although it was imported from somebody else;\n"
     "without it the run says what the script would do. It is remembered in\n"
     "DIR.",
     [](Update& u, const QString&) { return Store(u.allow_script, true); }},
    {"throttle", nullptr,
     "wait half a second after each command of the script; the throttle in\n"
     "the menu of the main window is only for that window's jobs",
     [](Update& u, const QString&) { return Store(u.throttle, true); }},
    {"timeout", "SECONDS", "stop the job, as Ctrl-C does, when it has taken so long in all",
     SetTimeout},
    {"no-wait", nullptr,
     "end at once where another Quayline works on this router, instead of\n"
     "waiting for it",
     [](Update& u, const QString&) { return Store(u.no_wait, true); }},
    {"no-verify", nullptr,
     "do not read the router's rules before and after; what became of the\n"
     "entries is not known then",
     [](Update& u, const QString&) { return Store(u.no_verify, true); }},
    {"json", nullptr,
     "write the results for programs, one object a line, and no log:\n"
     "{\"entry\": \"Web\", \"state\": \"different\", \"differs\": [\"port\"],\n"
     "\"seen\": \"the row on the router's page\", \"existed\": false} for each\n"
     "entry, then {\"job\": \"done\", \"exit\": 4}. A state is on-router,\n"
     "different, missing, unknown or to-check; a job is done, stopped or\n"
     "error; what differs is port, address, protocol or disabled. Entries\n"
     "that lead to this computer have \"listens\": \"sshd listens\", or\n"
     "\"nothing listens on 80\", and so on.",
     [](Update& u, const QString&) { return Store(u.as_json, true); }},
};

QString Name(const Option& option) { return QLatin1String(option.name); }

Fault FaultOfWhole(const Update& update) {
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
  for (const Option& option : kOptions) {
    parser.addOption({Name(option), QString(),
                      option.value == nullptr ? QString() : QLatin1String(option.value)});
  }
  const bool is_parsed = parser.parse(words);
  if (const Fault fault = FaultOfWords(parser, is_parsed, words.first())) {
    return std::unexpected(*fault);
  }
  Update update;
  update.only_looks = words.first() == QLatin1String("check");
  for (const Option& option : kOptions) {
    if (!parser.isSet(Name(option))) {
      continue;
    }
    const QStringList values = parser.values(Name(option));
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
    Update update;
    if (const Fault fault = SetTimeout(update, parser.value(QStringLiteral("timeout")))) {
      return std::unexpected(*fault);
    }
    trial.timeout_seconds = update.timeout_seconds;
  }
  return CliArguments{.command = CliCommand::kTry, .trial = trial};
}

// The help of the options in two columns.
QString OptionsHelp() {
  constexpr qsizetype kColumn = 23;
  QString help;
  for (const Option& option : kOptions) {
    QString head = QStringLiteral("  --") + Name(option);
    if (option.value != nullptr) {
      head += QLatin1Char(' ') + QLatin1String(option.value);
    }
    const bool fits = head.size() < kColumn - 1;
    help += fits ? head.leftJustified(kColumn) : head + QLatin1Char('\n') + QString(kColumn, u' ');
    help += QString::fromLatin1(option.help)
                .replace(QLatin1Char('\n'), QLatin1Char('\n') + QString(kColumn, u' ')) +
            QLatin1Char('\n');
  }
  return help;
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

QString CliHelp() {
  return QStringLiteral(
             R"(quayline-cli: opens ports on a home router by its own web pages, without a window.

Usage:
  quayline-cli update --data DIR --list FILE [options]
  quayline-cli check --data DIR --list FILE [options]
  quayline-cli routers --data DIR [PART OF A NAME]
  quayline-cli lint FILE
  quayline-cli try ROUTERFILE --pages DIR [--answers FILE] [--list FILE] [--timeout SECONDS]
  quayline-cli commands [NAME | --markdown]
  quayline-cli --help | --version

update enters every entry of a port list into the router and writes the job log to
standard output as it grows. Standard error has what a window would show beside the log: errors
of pages, what pages say, what was refused or blocked, and what the job waits for.
Before the first entry and after the last one it reads the rules that the router's own page shows.
At the end a table says of each entry whether the rule was seen there.

check only looks: it reads the rules and says the same of each entry. Nothing is changed.

)") + OptionsHelp() +
         QStringLiteral(
             R"(
What is not given comes from the settings in DIR, else from the router's row in routers.mdb,
else from the defaults in parentheses. A password is never an argument, and the log never
shows it.

Ctrl-C (or SIGTERM, SIGHUP, SIGQUIT) stops the job: no further command runs, and a save that is
on its way to the router is waited for. A second Ctrl-C ends the program at once.

Exit status:
  0  all entries ran to their end, and each was seen on the router, or the router's page does
     not tell; then standard error says so
  1  the list, or the router's data, was refused before the job began; the reason is on
     standard error
  2  wrong usage, or a file that cannot be read
  3  an entry ended in an error, or the job was stopped (Ctrl-C, --timeout), or another
     Quayline works on the router (--no-wait)
  4  all entries ran, and one is not on the router as it is wanted

routers lists the routers that routers.mdb has scripts for, one a line, with tabs between the columns:
the name as --router takes it; how the scripts were tried: "real" (on a real router), "rebuild" (on
a faithful rebuild of its pages), "documentation" (written from documentation, not tried on a router
yet) or "unknown"; and the firmware that they were written for.

Exit status of routers:
  0  at least one router is listed
  1  no router has such a name
  2  wrong usage, or a file that cannot be read

lint judges the lines of a router script (or of a router's file with its two scripts) and writes
what it finds to standard output, one "file:line: sentence" each. It knows every command: a
name that is nearly one, an argument that is cut at the wrong place, fields that are missing or
lost, invalid numbers. A sentence that begins with "warning:" is about a line that may be
meant so.

Exit status of lint:
  0  nothing, or warnings only
  1  a line cannot do what it says
  2  wrong usage, or a file that cannot be read

try runs the scripts of a router's file without the router: DIR has its pages, and FILE (answers.json
in DIR) says what the router does with what they send. Each line is reported with what it found and
what was sent; passwords are not shown. Without --list two sample entries are entered. What was entered is
removed again where the file has a script for that. Without --timeout a trial is stopped after 300 seconds.

Exit status of try:
  0  the router had the rules of the entries as they are wanted, its page showed them, and the script
     that removes them left all others
  others as for update

commands writes how the commands of router scripts are written, one command with its fields, or the
whole reference as a page.
)");
}

}  // namespace quayline
