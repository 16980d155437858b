// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <memory>

#include "script/web/exchange_watch.h"
#include "script/web/router_connector.h"
#include "script/web/router_gate.h"
#include "script/web/socks_handshake.h"
#include "script/web/tcp_stream.h"

namespace quayline {

// One connection of the browser through the gate. It lives until both sides have ended, and then
// deletes itself.
//   1. The SOCKS5 greeting and request are read. An origin that is not admitted is refused; an
//      admitted one is accepted at once, before there is a connection to it.
//   2. The first bytes of the request are awaited. They tell TLS from plain HTTP, which has to fit
//      the origin.
//   3. A request with a login that is not accepted yet may wait for another one that tries it, and
//      may lose it (LoginWatch). Then a place among the connections to the router is awaited
//      (ConnectionLimit).
//   4. The name is looked up and the router is connected. As long as the router has received
//      nothing, a connection that fails is made again a few times, if the router was there lately.
//   5. Bytes are passed on in both directions. An end or a reset of the router's is passed on as
//      what it was. When a request arrives that the connection may not carry, the browser's side
//      is reset.
class GateTunnel final : public QObject {
  Q_OBJECT

 public:
  GateTunnel(int client, RouterGate& gate);
  ~GateTunnel() override;

  // A tunnel to `origin` over TLS carries no request after the one under way.
  void Retire(const SiteOrigin& origin);

 private:
  enum class State { kHandshake, kFirstBytes, kWaiting, kConnecting, kPassing, kOver };

  void OnClientBytes(const QByteArray& bytes);
  void ReadHandshake(const QByteArray& bytes);
  bool HasHead() const;
  void BeginExchange();
  void OnConnected();
  void TakePlace();
  // Takes a login out of the request that may not have it.
  LoginWatch::Pass JudgeLogin();
  void NoteLoginAnswer(std::optional<int> status);
  QUrl AddressOf(const QByteArray& target) const {
    return QUrl::fromEncoded(origin_.Address().toEncoded() + target);
  }
  void OnRouterEnded(int error);
  void OnRouterBytes(const QByteArray& bytes);
  void OnClientEnded();
  // Tries the next address, or the same ones once more. False when there is nothing left to try.
  bool ConnectAgain(int error);
  // No connection could be made.
  void Fail(int net_error);
  // Passes bytes on; closes the browser's side if they begin a second request.
  void PassOn(const QByteArray& bytes);
  void NoteTraffic();
  void NoteRequest();
  // Whether the request may change something. Known when its head is complete.
  bool IsChange() const;
  void NoteAnswer();
  void NoteOver();
  void OnSilence();
  void Finish();
  void DeleteWhenClosed();

  RouterGate& gate_;
  TcpStream client_{this};
  TcpStream router_{this};
  RouterConnector connector_{router_};
  State state_ = State::kHandshake;
  SocksHandshake handshake_;
  SiteOrigin origin_;
  quint64 place_ = 0;       // among the connections to the origin; 0: not asked for
  QByteArray buffer_;       // the request, until the router has received it
  QByteArray credentials_;  // sent with it, while the answer is not known
  bool can_repeat_ = true;
  bool has_answer_ = false;  // a byte of it
  int noted_requests_ = 0;
  QElapsedTimer since_ready_;   // the browser could send
  bool was_idle_ = false;       // before its first request, so that the engine may repeat that
  bool is_told_ = false;        // answered() was emitted
  bool is_change_ = false;      // the request may change something
  bool is_discarding_ = false;  // the browser has gone, the answer is read all the same
  std::unique_ptr<ExchangeWatch> watch_;
  qint64 answer_bytes_ = 0;  // to the last request
  QTimer traffic_;           // ends when nothing was sent or received for a time
  QTimer login_pause_;
  QTimer silence_;  // of the router: over TLS the end of an answer; of a browser that has gone
  quint64 id_ = 0;
  QUrl url_;
};

}  // namespace quayline
