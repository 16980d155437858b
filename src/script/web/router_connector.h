// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QTimer>

#include "script/web/site_origin.h"
#include "script/web/tcp_stream.h"

namespace quayline {

// Connects the stream of a tunnel to the router: looks up the name, tries one address after the
// other, and where the router could not take the connection, all of them again after a pause. The
// stream reports how each try ends; its tunnel, which owns this, decides whether another one is
// made.
class RouterConnector final : public QObject {
  Q_OBJECT

 public:
  // `stream` outlives it.
  explicit RouterConnector(TcpStream& stream);

  void Connect(const SiteOrigin& origin);
  // False: there is no other address.
  bool TryNextAddress();
  // `error` is the errno with which the connection ended; 0: the router closed it. False: a router
  // that ends a connection so does not take the next one either, or there were enough tries.
  // `was_there`: it took a connection lately.
  bool TryAgain(int error, bool was_there);
  void Cancel();

 Q_SIGNALS:
  void nameNotFound();

 private:
  void TryAddress();

  TcpStream& stream_;
  quint16 port_ = 0;
  int lookup_ = -1;
  QList<QHostAddress> addresses_;
  qsizetype next_address_ = 0;
  int rounds_ = 0;
  QTimer pause_;  // before another round
};

// The engine's number for a connection that failed with this errno.
int NetErrorOfSocket(int error);

}  // namespace quayline
