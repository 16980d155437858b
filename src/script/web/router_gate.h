// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <QUrl>

#include <memory>

#include "script/web/connection_limit.h"
#include "script/web/login_watch.h"
#include "script/web/site_origin.h"

namespace quayline {

class GateTunnel;

// The one way from the hosted browsers to the network: a SOCKS5 proxy on 127.0.0.1, inside this
// process, that connects to the admitted origins and to nothing else.
//
// The engine offers every request to an interceptor, but redirects, preconnects and others are
// under way before the interceptor's answer arrives. The gate cannot be overtaken: the engine has
// no other connection to anything, and does not look up names itself. Whatever is not admitted is
// refused before a name is looked up or a connection is made.
//
// No save is sent twice. The engine repeats a request by itself, a POST included, when a connection
// that was used or opened in advance ends without an answer. So:
//   * Over plain HTTP a connection carries one exchange (a request and its answer). When a second
//     request arrives on it, the gate closes it without passing a byte on, and the engine opens
//     another one.
//   * Over TLS connections are reused, because a handshake costs a small router up to a second of
//     its time. A request that may change something is announced (ExpectChange) and then gets a
//     connection of its own: those that are open take no further request.
//   * A connection that was opened in advance is used like a new one, but the engine would repeat
//     the request. So if a change was sent on a connection that had been idle and it ends without
//     an answer, what the engine sends next is refused: over plain HTTP the same request, over TLS
//     any connection within a moment.
// Web sockets are exempt.
//
// The router is not asked for more connections at a time than it may have (ConnectionLimit). The
// connection to the router is made when the first byte of a request
// arrives: a preconnect never reaches the router.
//
// An answer without an end is cut off at kMaxAnswer, except on a web socket.
//
// The engine reads its proxy once, from its command line. So the gate belongs to the process:
// Reserve() binds its port before the engine starts, and Instance() serves it. Origins are admitted
// for an owner, and the admitted ones of all owners count.
class RouterGate final : public QObject {
  Q_OBJECT

 public:
  static constexpr qint64 kMaxAnswer = qint64{64} << 20;

  // Binds the port, once, and gives it. 0 when that failed.
  static quint16 Reserve();
  // Needs the application, which owns it. Without a reserved port nothing is served.
  static RouterGate& Instance();
  ~RouterGate() override;

  // Replaces what was admitted for `owner`. It ends with the owner.
  void Admit(QObject* owner, const QSet<SiteOrigin>& origins);
  // The owner's pages may go anywhere.
  void AdmitAll(QObject* owner);
  bool IsAdmitted(const SiteOrigin& origin) const;

  // `watch` decides about requests with its login, until `owner` ends. Of several with the same
  // login, one that says yes counts. A login that none of them has is judged by all. Where no watch
  // is concerned, the request is passed on.
  void WatchLogins(QObject* owner, LoginWatch* watch);

  // A page is about to open a web socket over TLS. Connections to `origin` that are opened within
  // the next second may be its own, and are not closed at a second request.
  void ExpectWebSocket(const SiteOrigin& origin);

  // A request over TLS that may change something is about to be sent.
  void ExpectChange(const SiteOrigin& origin);

  // The engine's number for a failed load of `url`, put right: it sees a connection that was
  // refused or could not be made as one that was reset. Numbers that are the router's own doing are
  // given back as they are.
  int NetError(const QUrl& url, int engine_error) const;

  // How many requests were passed on and have no complete answer. Where only the connection's end
  // tells that an answer is complete, it lasts until then; over TLS until the router has been
  // silent for half a second.
  int ExchangesUnderWay() const { return static_cast<int>(under_way_.size()); }

 Q_SIGNALS:
  // A request is passed on to the router. `id` is unique. Over TLS `method` is empty, and `url` is
  // the origin alone. `url` has no login and no fragment.
  void exchangeStarted(quint64 id, const QByteArray& method, const QUrl& url);
  // Plain HTTP only: the head of the answer has arrived. `status` is 0 for what is not HTTP. Each
  // hop of a redirect and each 401 before a login is an exchange of its own. An answer from the
  // browser's cache is not seen here.
  void answered(quint64 id, const QByteArray& method, const QUrl& url, int status);
  // An answer is longer than kMaxAnswer. Its connection is about to be reset.
  void answerTooLarge(const QUrl& url);
  // The answer is complete, or none will come. Follows every exchangeStarted().
  void exchangeEnded(quint64 id);

 private:
  friend class GateTunnel;

  explicit RouterGate(int listening, QObject* parent);
  void Accept();

  // For the tunnels.
  ConnectionLimit& Limit() { return limit_; }
  LoginWatch::Pass JudgeLogin(const QUrl& url, const QByteArray& credentials) const;
  void NoteLoginAnswer(const QUrl& url, const QByteArray& credentials,
                       std::optional<int> status) const;
  QList<LoginWatch*> WatchesOf(const QByteArray& credentials) const;
  bool HasHost(const QString& host, quint16 port) const;
  int LastFailure(const QUrl& url, int engine_error) const;
  bool IsWebSocketExpected(const SiteOrigin& origin) const;
  // A connection to `origin` was made, or could not be made: `net_error` is the engine's number.
  void NoteConnected(const SiteOrigin& origin);
  void NoteFailure(const SiteOrigin& origin, int net_error);
  // The router answered a connection within the last minute.
  bool WasThereLately(const SiteOrigin& origin) const;
  // The connection that `request` was sent on ended without an answer; `request` is a plain HTTP
  // request's head, or empty over TLS.
  void NoteLost(const SiteOrigin& origin, const QByteArray& request, int net_error);
  // The same, asked before something is sent.
  bool IsRepetition(const SiteOrigin& origin, const QByteArray& request) const;
  // A request over TLS that begins now may be an announced change.
  bool IsChangeExpected(const SiteOrigin& origin) const;
  quint64 Start(const QByteArray& method, const QUrl& url);
  void End(quint64 id);

  struct Seen {
    QDeadlineTimer is_there{0};  // runs after a connection
    int failure = 0;             // of the last connection, or 0
    QDeadlineTimer web_socket{0};
    QDeadlineTimer change{0};
    QByteArray lost;  // head of the request that was lost last
    QDeadlineTimer lost_lately{0};
  };

  ConnectionLimit limit_;
  int listening_;
  std::unique_ptr<QSocketNotifier> waiting_;
  QHash<QObject*, QSet<SiteOrigin>> admitted_;
  QSet<QObject*> unlimited_;
  QHash<QObject*, LoginWatch*> login_watches_;
  QHash<SiteOrigin, Seen> seen_;
  QSet<quint64> under_way_;
  quint64 last_id_ = 0;
};

}  // namespace quayline
