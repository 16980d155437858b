// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace quayline {

// The part of SOCKS5 (RFC 1928) by which a browser says where a connection shall lead: the greeting
// without a login, and the request to connect. It reads bytes and gives bytes, and has no socket.
class SocksHandshake final {
 public:
  enum class State {
    kIncomplete,
    kComplete,  // Host(), Port() and Rest() are valid
    kRefused,   // what was asked for is not supported: Reply(false) says so
    kInvalid,   // not SOCKS5 at all
  };

  // Takes the next bytes, and appends what is to be answered at once to `answer`.
  State Take(const QByteArray& bytes, QByteArray* answer);

  // A name or an address, in lower case; an IPv6 address without brackets.
  const QString& Host() const { return host_; }
  quint16 Port() const { return port_; }
  // What followed the handshake.
  const QByteArray& Rest() const { return bytes_; }

  // The answer to the request.
  static QByteArray Reply(bool is_allowed);

 private:
  State ReadGreeting(QByteArray* answer);
  State ReadRequest();

  bool is_greeted_ = false;
  QByteArray bytes_;
  QString host_;
  quint16 port_ = 0;
};

}  // namespace quayline
