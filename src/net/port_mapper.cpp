// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/port_mapper.h"

#include <QHash>
#include <QHostAddress>
#include <QHostInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <optional>

#include "async/wait.h"
#include "core/port_range.h"
#include "core/program_entries.h"
#include "core/protocol.h"
#include "core/reader_process.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kMaxPorts = 200;  // of an entry: each is a rule of its own, and routers are slow
constexpr qsizetype kMaxAnswer = qsizetype{1} << 20;
constexpr auto kLimitToFind = 15s;
constexpr auto kLimitOfRule = 2s;
constexpr qsizetype kMaxRules = 2000;  // that the mapper takes

constexpr Message kTooManyPorts{
    "These are too many ports to open this way. Please use \"Update Router\" instead."};
constexpr Message kUnknownRouter{
    "The address of your router is not known. Please check it in the main window."};
constexpr Message kNoAnswerInTime{
    "Your router has not answered in time. Some of the ports may have changed: please check "
    "again."};
constexpr Message kNoMapper{
    "The program that asks the router (quayline-mapper) is missing. Please install Quayline "
    "again."};

// One for each port and protocol, as the mapper takes them.
QJsonArray RulesOf(const PortEntry& entry) {
  QJsonArray rules;
  const int start = PortNumber(entry.start_port).value_or(0);
  const int end = PortNumber(entry.end_port).value_or(0);
  const QString protocols = entry.protocol.toLower();
  for (const char* protocol : {"tcp", "udp"}) {
    for (int port = start; port <= end && protocols.contains(QLatin1String(protocol)); ++port) {
      rules.append(QJsonObject{{QStringLiteral("protocol"), QLatin1String(protocol)},
                               {QStringLiteral("port"), port},
                               {QStringLiteral("to"), AddressOf(entry.forwarded_to)},
                               {QStringLiteral("name"), entry.app_name}});
    }
  }
  return rules;
}

MappingResult ResultOf(const QString& word) {
  static const QHash<QString, MappingResult> kResults{
      {QStringLiteral("open"), MappingResult::kOpen},
      {QStringLiteral("for-good"), MappingResult::kForGood},
      {QStringLiteral("shorter"), MappingResult::kShorter},
      {QStringLiteral("missing"), MappingResult::kMissing},
      {QStringLiteral("taken"), MappingResult::kTaken},
      {QStringLiteral("refused"), MappingResult::kRefused}};
  return kResults.value(word, MappingResult::kUnknown);
}

const char* Word(MappingVerb verb) {
  switch (verb) {
    case MappingVerb::kOpen:
      return "open";
    case MappingVerb::kCheck:
      return "check";
    case MappingVerb::kClose:
      return "close";
    case MappingVerb::kFind:
      break;
  }
  return "find";
}

QString NameOf(const QString& protocol) {
  return protocol == QLatin1String("upnp")      ? QStringLiteral("UPnP")
         : protocol == QLatin1String("nat-pmp") ? QStringLiteral("NAT-PMP")
                                                : QString();
}

// The worst of the ports of an entry: when ports are closed, one that is still open.
MappingResult Worse(MappingVerb verb, MappingResult one, MappingResult other) {
  if (verb == MappingVerb::kClose && std::max(one, other) == MappingResult::kMissing) {
    return std::min(one, other);
  }
  return std::max(one, other);
}

MappingAnswer ReadAnswer(MappingVerb verb, const QByteArray& bytes,
                         const QList<qsizetype>& rules_of_entries) {
  const QJsonObject json = QJsonDocument::fromJson(bytes).object();
  const QJsonArray words = json[QStringLiteral("results")].toArray();
  MappingAnswer answer{
      .protocol = NameOf(json[QStringLiteral("speaks")].toString()),
      .outside_address = QHostAddress(json[QStringLiteral("outside")].toString()).toString(),
      .results = {}};
  qsizetype next = 0;
  for (const qsizetype rules : rules_of_entries) {
    std::optional<MappingResult> worst;
    for (qsizetype i = 0; i < rules; ++i) {
      const MappingResult result = ResultOf(words.at(next++).toString());
      worst = worst ? Worse(verb, *worst, result) : result;
    }
    answer.results.append(worst.value_or(MappingResult::kUnknown));
  }
  return answer;
}

// The router's dotted address; empty where its name is not known.
Task<QString> AddressOfRouter(QString router) {
  if (!QHostAddress(router).isNull()) {
    co_return router;
  }
  OneShot<QHostInfo> found;
  QObject receiver;
  QHostInfo::lookupHost(router, &receiver,
                        [done = found.Callback()](const QHostInfo& info) { done(info); });
  const std::optional<QHostInfo> info = co_await found;
  const QList<QHostAddress> addresses = info ? info->addresses() : QList<QHostAddress>();
  const auto dotted =
      std::ranges::find(addresses, QAbstractSocket::IPv4Protocol, &QHostAddress::protocol);
  co_return dotted != addresses.end() ? dotted->toString() : QString();
}

}  // namespace

bool CanBeMapped(const PortEntry& entry) {
  const int start = PortNumber(entry.start_port).value_or(0);
  const int end = PortNumber(entry.end_port).value_or(0);
  return start >= 1 && end >= start && end <= 65535 && end - start < kMaxPorts &&
         ProtocolOf(entry.protocol).has_value() &&
         QHostAddress(AddressOf(entry.forwarded_to)).protocol() == QAbstractSocket::IPv4Protocol;
}

Task<std::expected<MappingAnswer, Message>> AskRouterToMap(MappingRequest request) {
  QJsonArray rules;
  QList<qsizetype> rules_of_entries;
  for (const PortEntry& entry : request.entries) {
    const QJsonArray rules_of_entry = RulesOf(entry);
    rules_of_entries.append(rules_of_entry.size());
    for (const QJsonValue& rule : rules_of_entry) {
      rules.append(rule);
    }
  }
  if (rules.size() > kMaxRules) {
    co_return std::unexpected(kTooManyPorts);
  }
  const QString router = co_await AddressOfRouter(request.router);
  if (router.isEmpty()) {
    co_return std::unexpected(kUnknownRouter);
  }
  const QJsonObject json{{QStringLiteral("do"), QLatin1String(Word(request.verb))},
                         {QStringLiteral("router"), router},
                         {QStringLiteral("seconds"), static_cast<qint64>(request.time.count())},
                         {QStringLiteral("rules"), rules}};
  ReaderRequest run{.arguments = {},
                    .input = QJsonDocument(json).toJson(QJsonDocument::Compact),
                    .time_limit = kLimitToFind + kLimitOfRule * rules.size(),
                    .max_output = kMaxAnswer,
                    .program = QStringLiteral("quayline-mapper")};
  const ReaderResult output = co_await RunReaderInBackground(std::move(run));
  if (!output) {
    co_return std::unexpected(output.error().is_input ? kNoAnswerInTime : kNoMapper);
  }
  co_return ReadAnswer(request.verb, *output, rules_of_entries);
}

}  // namespace quayline
