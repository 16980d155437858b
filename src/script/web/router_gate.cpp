// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/router_gate.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "script/web/gate_tunnel.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr auto kThereLately = 60s;
constexpr auto kWebSocketSoon = 1s;
constexpr auto kChangeSoon = 5s;
// The engine repeats at once; a user or a script takes longer.
constexpr auto kRepetition = 300ms;

struct Listener {
  int descriptor = -1;
  quint16 port = 0;
};

Listener Listen() {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (descriptor < 0) {
    return {};
  }
  if (bind(descriptor, any, size) != 0 || listen(descriptor, SOMAXCONN) != 0 ||
      getsockname(descriptor, any, &size) != 0) {
    close(descriptor);
    return {};
  }
  return {.descriptor = descriptor, .port = ntohs(address.sin_port)};
}

const Listener& ReservedListener() {
  static const Listener listener = Listen();
  return listener;
}

}  // namespace

quint16 RouterGate::Reserve() { return ReservedListener().port; }

RouterGate& RouterGate::Instance() {
  static QPointer<RouterGate> gate;
  if (gate == nullptr) {
    gate = new RouterGate(ReservedListener().descriptor, QCoreApplication::instance());
  }
  return *gate;
}

RouterGate::RouterGate(int listening, QObject* parent) : QObject(parent), listening_(listening) {
  if (listening_ >= 0) {
    waiting_ = std::make_unique<QSocketNotifier>(listening_, QSocketNotifier::Read);
    connect(waiting_.get(), &QSocketNotifier::activated, this, &RouterGate::Accept);
  }
}

void RouterGate::Accept() {
  while (true) {
    const int client = accept4(listening_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (client < 0) {
      return;
    }
    new GateTunnel(client, *this);
  }
}

void RouterGate::Admit(QObject* owner, const QSet<SiteOrigin>& origins) {
  if (!admitted_.contains(owner) && !unlimited_.contains(owner)) {
    connect(owner, &QObject::destroyed, this, [this](QObject* ended) {
      admitted_.remove(ended);
      unlimited_.remove(ended);
    });
  }
  unlimited_.remove(owner);
  admitted_[owner] = origins;
}

void RouterGate::AdmitAll(QObject* owner) {
  Admit(owner, {});
  unlimited_.insert(owner);
}

void RouterGate::WatchLogins(QObject* owner, LoginWatch* watch) {
  connect(owner, &QObject::destroyed, this,
          [this](QObject* ended) { login_watches_.remove(ended); });
  login_watches_.insert(owner, watch);
}

QList<LoginWatch*> RouterGate::WatchesOf(const QByteArray& credentials) const {
  const QList<LoginWatch*> all = login_watches_.values();
  QList<LoginWatch*> having;
  std::ranges::copy_if(all, std::back_inserter(having),
                       [&](const LoginWatch* watch) { return watch->HasLogin(credentials); });
  return having.isEmpty() ? all : having;
}

LoginWatch::Pass RouterGate::JudgeLogin(const QUrl& url, const QByteArray& credentials) const {
  std::optional<LoginWatch::Pass> best;
  for (LoginWatch* const watch : WatchesOf(credentials)) {
    if (const auto pass = watch->JudgeLogin(url, credentials); pass && (!best || *pass < *best)) {
      best = pass;
    }
  }
  return best.value_or(LoginWatch::Pass::kSend);
}

void RouterGate::NoteLoginAnswer(const QUrl& url, const QByteArray& credentials,
                                 std::optional<int> status) const {
  for (LoginWatch* const watch : WatchesOf(credentials)) {
    watch->NoteLoginAnswer(url, status);
  }
}

bool RouterGate::IsAdmitted(const SiteOrigin& origin) const {
  return !unlimited_.isEmpty() ||
         std::ranges::any_of(admitted_, [&](const auto& set) { return set.contains(origin); });
}

bool RouterGate::HasHost(const QString& host, quint16 port) const {
  return IsAdmitted({.scheme = QStringLiteral("http"), .host = host, .port = port}) ||
         IsAdmitted({.scheme = QStringLiteral("https"), .host = host, .port = port});
}

void RouterGate::ExpectWebSocket(const SiteOrigin& origin) {
  seen_[origin].web_socket = QDeadlineTimer(kWebSocketSoon);
}

bool RouterGate::IsWebSocketExpected(const SiteOrigin& origin) const {
  return !seen_.value(origin).web_socket.hasExpired();
}

void RouterGate::ExpectChange(const SiteOrigin& origin) {
  seen_[origin].change = QDeadlineTimer(kChangeSoon);
  for (auto* tunnel : findChildren<GateTunnel*>(Qt::FindDirectChildrenOnly)) {
    tunnel->Retire(origin);
  }
}

bool RouterGate::IsChangeExpected(const SiteOrigin& origin) const {
  return !seen_.value(origin).change.hasExpired();
}

void RouterGate::NoteLost(const SiteOrigin& origin, const QByteArray& request, int net_error) {
  Seen& seen = seen_[origin];
  seen.lost = request;
  seen.lost_lately = QDeadlineTimer(kRepetition);
  seen.failure = net_error;
}

bool RouterGate::IsRepetition(const SiteOrigin& origin, const QByteArray& request) const {
  const auto found = seen_.constFind(origin);
  return found != seen_.constEnd() && !found->lost_lately.hasExpired() && found->lost == request;
}

int RouterGate::NetError(const QUrl& url, int engine_error) const {
  constexpr int kBlocked = -20;
  constexpr int kClosed = -100;
  constexpr int kReset = -101;
  constexpr int kEmptyAnswer = -324;
  constexpr int kSocksFailed = -120;
  constexpr int kSocksUnreachable = -121;
  switch (engine_error) {
    case kSocksFailed:
    case kSocksUnreachable:
      return IsAdmitted(SiteOrigin::Of(url)) ? LastFailure(url, engine_error) : kBlocked;
    case kClosed:
    case kReset:
    case kEmptyAnswer:
      return LastFailure(url, engine_error);
    default:
      return engine_error;
  }
}

int RouterGate::LastFailure(const QUrl& url, int engine_error) const {
  const int failure = seen_.value(SiteOrigin::Of(url)).failure;
  return failure == 0 ? engine_error : failure;
}

void RouterGate::NoteConnected(const SiteOrigin& origin) {
  seen_[origin].is_there = QDeadlineTimer(kThereLately);
  seen_[origin].failure = 0;
}

// The tunnels report the end of their exchanges here, so they go before the members do.
RouterGate::~RouterGate() { qDeleteAll(findChildren<GateTunnel*>()); }

void RouterGate::NoteFailure(const SiteOrigin& origin, int net_error) {
  seen_[origin].failure = net_error;
}

bool RouterGate::WasThereLately(const SiteOrigin& origin) const {
  return !seen_.value(origin).is_there.hasExpired();
}

quint64 RouterGate::Start(const QByteArray& method, const QUrl& url) {
  under_way_.insert(++last_id_);
  Q_EMIT exchangeStarted(last_id_, method, url);
  return last_id_;
}

void RouterGate::End(quint64 id) {
  if (under_way_.remove(id)) {
    Q_EMIT exchangeEnded(id);
  }
}

}  // namespace quayline
