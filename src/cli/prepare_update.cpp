// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/prepare_update.h"

#include <QDir>
#include <QFile>

#include <limits>

#include "cli/terminal.h"
#include "core/port_list_file.h"
#include "core/router_address.h"
#include "core/save_file.h"
#include "core/update_command.h"

namespace quayline {

namespace {

std::unexpected<CliError> Failure(CliExit exit, const QString& message) {
  return std::unexpected(CliError{.exit = exit, .message = message});
}

// What was given, else the setting, else what the router's row or the default has put there.
void Choose(QString& value, const std::optional<QString>& given, const QString& setting) {
  if (given) {
    value = *given;
  } else if (!setting.isEmpty()) {
    value = setting;
  }
}

std::optional<int> FindRouterId(const Databases& databases, const QString& name) {
  constexpr int kPage = 1000;
  std::optional<int> other_case;
  for (QList<RouterName> page = databases.RouterNames(std::numeric_limits<int>::min(), kPage);
       !page.isEmpty(); page = databases.RouterNames(page.last().id, kPage)) {
    for (const RouterName& router : page) {
      if (router.name == name) {
        return router.id;
      }
      if (!other_case && router.name.compare(name, Qt::CaseInsensitive) == 0) {
        other_case = router.id;
      }
    }
  }
  return other_case;
}

std::expected<void, CliError> ChooseRouter(const UpdateArguments& arguments, AppContext& context) {
  const Settings& settings = context.settings;
  QString name;
  Choose(name, arguments.router, settings.Value(setting::kRouter));
  if (name.isEmpty()) {
    return {};  // refused by the checks
  }
  const std::optional<int> id = FindRouterId(context.databases, name);
  const std::optional<RouterRecord> record = id ? context.databases.FindRouter(*id) : std::nullopt;
  if (!record) {
    return Failure(CliExit::kUsage,
                   QStringLiteral("There is no router named \"%1\" in %2. \"quayline-cli routers\" "
                                  "lists all names.")
                       .arg(name, context.FileInFolder("routers.mdb")));
  }
  SelectRouter(context.session, *record);
  return {};
}

QString WhyNot(ListFileError error) {
  switch (error) {
    case ListFileError::kTooLarge:
      return QStringLiteral(": it is too large");
    case ListFileError::kNotAList:
      return QStringLiteral(": it is not a list of ports");
    case ListFileError::kCannotOpen:
    case ListFileError::kCannotWrite:
    case ListFileError::kChangedElsewhere:
      break;
  }
  return {};
}

}  // namespace

std::expected<std::optional<QString>, CliError> ReadPassword(const UpdateArguments& arguments) {
  QFile file;
  bool opened = true;
  if (arguments.password_from_stdin) {
    opened = file.open(stdin, QIODevice::ReadOnly);
  } else if (arguments.password_file) {
    file.setFileName(*arguments.password_file);
    opened = file.open(QIODevice::ReadOnly);
  } else {
    return std::nullopt;
  }
  if (!opened) {
    return Failure(CliExit::kUsage, QStringLiteral("The password file %1 cannot be read: %2.")
                                        .arg(file.fileName(), file.errorString()));
  }
  constexpr qint64 kMaxPasswordBytes = 4096;
  QByteArray line = file.readLine(kMaxPasswordBytes);
  while (line.endsWith('\n') || line.endsWith('\r')) {
    line.chop(1);
  }
  return QString::fromUtf8(line);
}

std::expected<void, CliError> PrepareUpdate(const UpdateArguments& arguments,
                                            const std::optional<QString>& password,
                                            AppContext& context) {
  if (!QDir(context.program_folder).exists()) {
    return Failure(CliExit::kUsage,
                   QStringLiteral("There is no folder %1.").arg(context.program_folder));
  }
  RemoveUnfinishedWrites(context.program_folder);
  if (const auto opened = context.databases.Open(context.program_folder); !opened) {
    return Failure(CliExit::kUsage, EnglishOf(opened.error().description));
  }
  for (const Notice& notice : context.databases.Notices()) {
    Report(QStringLiteral("quayline-cli: ") + EnglishOf(notice));
  }
  const auto list = LoadPortList(arguments.list_file);
  if (!list) {
    return Failure(CliExit::kUsage, QStringLiteral("The list %1 cannot be read%2.")
                                        .arg(arguments.list_file, WhyNot(list.error())));
  }
  if (const auto chosen = ChooseRouter(arguments, context); !chosen) {
    return std::unexpected(chosen.error());
  }
  const Settings& settings = context.settings;
  RouterSession& session = context.session;
  Choose(session.router_ip, arguments.address, settings.Value(setting::kRouterIp));
  Choose(session.http_port, arguments.port, settings.Value(setting::kHttpPort));
  Choose(session.http_type, arguments.type, settings.Value(setting::kHttpType));
  Choose(session.username, arguments.user, settings.Value(setting::kRouterUsername));
  Choose(session.password, password, settings.Value(setting::kRouterPassword));
  const RouterAddress address = ParseRouterAddress(session.router_ip);
  session.router_ip = address.host;
  if (!address.http_port.isEmpty() && !arguments.port) {
    session.http_port = address.http_port;
  } else if (!address.http_port.isEmpty()) {  // two ports: neither is guessed to be right
    session.router_ip += QLatin1Char(':') + address.http_port;
  }
  context.job_options.silent_mode = true;
  context.job_options.throttle = arguments.throttle;
  context.job_options.verify_after_update =
      !arguments.no_verify && settings.Boolean(setting::kVerifyAfterUpdate);

  QList<PortEntry> entries = *list;
  ClampPorts(entries, session);
  const UpdateVerdict verdict = CheckUpdate(entries, session, context.translator);
  if (!verdict.accepted) {
    return Failure(CliExit::kRefused, verdict.message);
  }
  context.port_list.SetEntries(std::move(entries));
  return {};
}

}  // namespace quayline
