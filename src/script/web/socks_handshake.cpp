// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/socks_handshake.h"

#include <QHostAddress>

namespace quayline {

namespace {

constexpr char kVersion = 5;
constexpr char kConnect = 1;
constexpr char kIp4 = 1;
constexpr char kName = 3;
constexpr char kIp6 = 4;
constexpr qsizetype kMaxHandshake = 600;

quint16 NumberAt(const QByteArray& bytes, qsizetype at) {
  const auto byte = [&bytes](qsizetype i) { return static_cast<quint8>(bytes.at(i)); };
  return static_cast<quint16>(byte(at) << 8 | byte(at + 1));
}

}  // namespace

SocksHandshake::State SocksHandshake::Take(const QByteArray& bytes, QByteArray* answer) {
  bytes_ += bytes;
  State state = State::kComplete;
  if (!is_greeted_) {
    state = ReadGreeting(answer);
  }
  return state == State::kComplete ? ReadRequest() : state;
}

SocksHandshake::State SocksHandshake::ReadGreeting(QByteArray* answer) {
  if (bytes_.isEmpty()) {
    return State::kIncomplete;
  }
  if (bytes_.at(0) != kVersion || bytes_.size() > kMaxHandshake) {
    return State::kInvalid;
  }
  if (bytes_.size() < 2 || bytes_.size() < 2 + static_cast<quint8>(bytes_.at(1))) {
    return State::kIncomplete;
  }
  bytes_.remove(0, 2 + static_cast<quint8>(bytes_.at(1)));
  answer->append("\x05\x00", 2);  // no login
  is_greeted_ = true;
  return State::kComplete;
}

SocksHandshake::State SocksHandshake::ReadRequest() {
  constexpr qsizetype kFixed = 4;
  if (bytes_.size() <= kFixed) {
    return State::kIncomplete;
  }
  const char type = bytes_.at(3);
  const qsizetype begin = type == kName ? kFixed + 1 : kFixed;
  const qsizetype length = type == kName  ? static_cast<quint8>(bytes_.at(kFixed))
                           : type == kIp4 ? 4
                           : type == kIp6 ? 16
                                          : -1;
  if (bytes_.at(0) != kVersion || bytes_.at(1) != kConnect || length < 0) {
    return State::kRefused;
  }
  if (bytes_.size() < begin + length + 2) {
    return State::kIncomplete;
  }
  const QByteArray raw = bytes_.mid(begin, length);
  if (type == kName) {
    host_ = QString::fromLatin1(raw).toLower();
  } else if (type == kIp4) {
    host_ =
        QHostAddress(static_cast<quint32>(NumberAt(raw, 0)) << 16 | NumberAt(raw, 2)).toString();
  } else {
    host_ = QHostAddress(reinterpret_cast<const quint8*>(raw.constData())).toString();
  }
  port_ = NumberAt(bytes_, begin + length);
  bytes_.remove(0, begin + length + 2);
  return State::kComplete;
}

QByteArray SocksHandshake::Reply(bool is_allowed) {
  constexpr char kNotAllowed = 2;
  return QByteArray(1, kVersion) + QByteArray(1, is_allowed ? '\0' : kNotAllowed) +
         QByteArray(1, '\0') + kIp4 + QByteArray(6, '\0');
}

}  // namespace quayline
