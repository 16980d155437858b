// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/update_options.h"

namespace quayline {

namespace {

using Update = UpdateArguments;
using Fault = std::optional<QString>;

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
  const auto seconds = ParseTimeout(value);
  return seconds ? Store(update.timeout_seconds, *seconds) : Fault(seconds.error());
}

Fault AddAllowedHost(Update& update, const QString& value) {
  const std::optional<AllowedHost> host = AllowedHost::Parse(value);
  if (!host) {
    return QStringLiteral("--allow-host is HOST or HOST:PORT, not \"%1\".").arg(value);
  }
  update.allowed_hosts.append(*host);
  return std::nullopt;
}

constexpr UpdateOption kOptions[] = {
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

}  // namespace

std::span<const UpdateOption> UpdateOptions() { return kOptions; }

std::expected<int, QString> ParseTimeout(const QString& value) {
  constexpr int kMaxSeconds = 1'000'000;
  const std::optional<int> seconds = NumberWithin(value, 1, kMaxSeconds);
  if (!seconds) {
    return std::unexpected(
        QStringLiteral("--timeout is a number of seconds from 1 to 1000000, not \"%1\".")
            .arg(value));
  }
  return *seconds;
}

}  // namespace quayline
