// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "demo/command_line.h"

#include <QCommandLineParser>

#include <chrono>
#include <functional>

namespace quayline::demo {

namespace {

constexpr int kMaxDelay = 60'000;
constexpr int kMaxEntries = 1000;

using Result = std::expected<void, QString>;

// A row holds everything about an option: the parser, and by it the help, are made from the rows.
struct Option {
  const char* name;
  const char* value;  // its name in the help; nullptr: the option takes none
  const char* sentence;
  Result (*take)(const QString& value, DemoCommand& command);
};

std::expected<int, QString> Number(const QString& text, int least, int most) {
  bool is_number = false;
  const int number = text.toInt(&is_number);
  if (!is_number || number < least || number > most) {
    return std::unexpected(QStringLiteral("\"%1\" is not a number from %2 to %3.")
                               .arg(text, QString::number(least), QString::number(most)));
  }
  return number;
}

Result TakePort(const QString& value, DemoCommand& command) {
  const auto port = Number(value, 0, 65535);
  if (!port) {
    return std::unexpected(port.error());
  }
  command.options.port = static_cast<quint16>(*port);
  return {};
}

Result TakeModel(const QString& value, DemoCommand& command) {
  if (!FindModel(value)) {
    return std::unexpected(QStringLiteral("There is no model \"%1\".").arg(value));
  }
  command.model = value;
  return {};
}

Result TakeDelay(const QString& value, DemoCommand& command) {
  const auto least = Number(value.section(QLatin1Char('-'), 0, 0), 0, kMaxDelay);
  const auto most = Number(
      value.section(QLatin1Char('-'), value.contains(QLatin1Char('-')) ? 1 : 0), 0, kMaxDelay);
  if (!least || !most || *most < *least) {
    return std::unexpected(QStringLiteral("\"%1\" is no delay: give milliseconds up to %2, or two "
                                          "such numbers with \"-\" between them.")
                               .arg(value, QString::number(kMaxDelay)));
  }
  command.options.delay = {std::chrono::milliseconds(*least), std::chrono::milliseconds(*most)};
  return {};
}

Result TakeUser(const QString& value, DemoCommand& command) {
  // The login is sent as user, colon, password, so that a colon would end the user's name.
  if (value.contains(QLatin1Char(':'))) {
    return std::unexpected(QStringLiteral("A user name cannot hold a colon."));
  }
  command.options.user = value;
  return {};
}

Result TakePassword(const QString& value, DemoCommand& command) {
  command.options.password = value;
  return {};
}

Result TakeEntries(const QString& value, DemoCommand& command) {
  const auto entries = Number(value, 1, kMaxEntries);
  if (!entries) {
    return std::unexpected(entries.error());
  }
  command.options.entries = *entries;
  return {};
}

Result TakeHttps(const QString&, DemoCommand& command) {
  command.options.https = true;
  return {};
}

Result TakeCertificate(const QString& value, DemoCommand& command) {
  command.options.certificate_file = value;
  return {};
}

Result TakeKey(const QString& value, DemoCommand& command) {
  command.options.key_file = value;
  return {};
}

Result TakeCompare(const QString& value, DemoCommand& command) {
  command.kind = DemoCommand::Kind::kCompare;
  command.list_file = value;
  return {};
}

constexpr Option kOptions[] = {
    {"port", "N", "listen on this port of 127.0.0.1; 0, the default, takes any", TakePort},
    {"model", "NAME", "the router to be, see below (default formback)", TakeModel},
    {"delay", "MS", "milliseconds before each answer; \"0-50\" for a random time", TakeDelay},
    {"user", "NAME", "the login's name (default admin)", TakeUser},
    {"password", "WORD", "the login's password (default admin)", TakePassword},
    {"entries", "N", "rules that the table holds (default 20)", TakeEntries},
    {"https", nullptr, "speak https, with a new self-signed certificate", TakeHttps},
    {"certificate", "FILE", "the certificate of https, as PEM; needs --key", TakeCertificate},
    {"key", "FILE", "its private key, as PEM", TakeKey},
    {"compare", "LIST",
     "compare the list file with the router on --port: 0 if every entry is on it", TakeCompare},
};

// The other options would have no effect.
Result CheckCompare(const DemoCommand& command, const QStringList& given) {
  for (const QString& name : given) {
    if (name != QLatin1String("compare") && name != QLatin1String("port") &&
        name != QLatin1String("https")) {
      return std::unexpected(QStringLiteral("--%1 does not go with --compare.").arg(name));
    }
  }
  if (command.options.port == 0) {
    return std::unexpected(QStringLiteral("--compare needs the router's --port."));
  }
  return {};
}

Result CheckCertificate(const DemoOptions& options) {
  const bool has_certificate = !options.certificate_file.isEmpty();
  if (has_certificate != !options.key_file.isEmpty() || (has_certificate && !options.https)) {
    return std::unexpected(
        QStringLiteral("--https, --certificate and --key belong to each other."));
  }
  return {};
}

void AddOptions(QCommandLineParser& parser) {
  parser.setApplicationDescription(QStringLiteral(
      "A home router on loopback. GET /__state shows its rules, POST /__reset clears "
      "them."));
  parser.addOption({QStringLiteral("help"), QStringLiteral("Shows this text.")});
  for (const Option& option : kOptions) {
    parser.addOption({QLatin1String(option.name), QLatin1String(option.sentence),
                      option.value ? QLatin1String(option.value) : QString()});
  }
}

// Help is given whatever else the line contains, except for a value of --help itself.
bool WantsHelp(const QCommandLineParser& parser, bool is_parsed) {
  return parser.isSet(QStringLiteral("help")) &&
         (is_parsed || !parser.unknownOptionNames().isEmpty());
}

Result TakeOptions(const QCommandLineParser& parser, DemoCommand& command) {
  for (const Option& option : kOptions) {
    const QString name = QLatin1String(option.name);
    if (!parser.isSet(name)) {
      continue;
    }
    if (const auto taken = option.take(parser.value(name), command); !taken) {
      return std::unexpected(QStringLiteral("--%1: %2").arg(name, taken.error()));
    }
  }
  return command.kind == DemoCommand::Kind::kCompare ? CheckCompare(command, parser.optionNames())
                                                     : CheckCertificate(command.options);
}

}  // namespace

std::expected<DemoCommand, QString> ReadCommandLine(const QStringList& arguments) {
  QCommandLineParser parser;
  AddOptions(parser);
  const bool is_parsed = parser.parse(arguments);
  DemoCommand command;
  if (WantsHelp(parser, is_parsed)) {
    command.kind = DemoCommand::Kind::kHelp;
    return command;
  }
  if (!is_parsed) {
    return std::unexpected(parser.errorText());
  }
  if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty()) {
    return std::unexpected(QStringLiteral("\"%1\" is not understood.").arg(rest.first()));
  }
  if (const auto taken = TakeOptions(parser, command); !taken) {
    return std::unexpected(taken.error());
  }
  return command;
}

QString HelpText() {
  QCommandLineParser parser;
  AddOptions(parser);
  QString text = parser.helpText() + QStringLiteral("\nModels:\n");
  for (const ModelInfo& model : RouterModels()) {
    text +=
        QStringLiteral("  %1%2\n")
            .arg(QString::fromLatin1(model.name).leftJustified(20), QLatin1String(model.sentence));
  }
  return text;
}

}  // namespace quayline::demo
