// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// What a socket receives and sends.

#include <cerrno>

#include "transport/sock_text.h"
#include "transport/unisock.h"

namespace quayline {

namespace {

// After that many pieces the event loop has its turn, however fast the peer reads.
constexpr int kPiecesAtOnce = 64;

}  // namespace

void UniSock::TakeDatagram() {
  const Watch watch(this);
  if (const int bytes = socket_.ReadableBytes(); bytes > 0) {
    Q_EMIT DataArrival(bytes);
  }
  if (watch.Holds()) {
    char byte = 0;
    ::recv(socket_.Handle(), &byte, sizeof byte, 0);
  }
}

void UniSock::Receive() {
  char* const place = received_.Prepare(receive_size_);
  const ssize_t count = ::recv(socket_.Handle(), place, static_cast<size_t>(receive_size_), 0);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
    return;
  }
  if (count <= 0) {
    const int number = SockErrorNumber(errno);
    readiness_->SetReading(false);  // it would be reported without end
    const Watch watch(this);
    if (count < 0) {
      Report(number, QString());
      return;
    }
    Q_EMIT Closing();
    if (watch.Holds()) {
      closesocket();
    }
    return;
  }
  received_.Commit(count);
  if (mode_ == 0) {
    Q_EMIT DataArrival(static_cast<int>(received_.Size()));
  } else {
    RaiseLines();
  }
}

void UniSock::RaiseLines() {
  const SockLines found = TakeLines(received_.View());
  received_.Drop(found.taken);
  const Watch watch(this);
  for (const SockLine& line : found.lines) {
    Q_EMIT TextArrival(line.text, line.format, line.is_not_utf8);
    if (!watch.Holds()) {
      return;
    }
  }
}

UniSock::Result UniSock::GetData(SockValue& value, int type, qsizetype length) {
  return Fetch(value, type, length, false);
}

UniSock::Result UniSock::PeekData(SockValue& value, int type, qsizetype length) {
  return Fetch(value, type, length, true);
}

UniSock::Result UniSock::Fetch(SockValue& value, int type, qsizetype length, bool peek) {
  const bool is_allowed =
      IsUdp() ? state_ == SockState::kOpen : state_ == SockState::kConnected && mode_ == 0;
  if (!is_allowed) {
    return Refuse(sock_error::kWrongState, "GetData");
  }
  const int wanted = type != 0 ? type : TypeOf(value);
  if (!BytesOfType(wanted, 0)) {
    return Refuse(sock_error::kBadType, "GetData");
  }
  if (IsUdp()) {
    return FetchDatagram(value, wanted, length, peek);
  }
  const qsizetype available = length < 1 ? received_.Size() : std::min(length, received_.Size());
  const qsizetype count = *BytesOfType(wanted, available);
  if (count > 0) {
    value = FromBytes(peek ? received_.View().first(count).toByteArray() : received_.Take(count),
                      wanted);
  }
  return {};
}

UniSock::Result UniSock::FetchDatagram(SockValue& value, int type, qsizetype length, bool peek) {
  const qsizetype readable = socket_.ReadableBytes();
  const qsizetype asked = length < 1 ? readable : std::min(length, readable);
  QByteArray bytes(*BytesOfType(type, asked), Qt::Uninitialized);
  const ssize_t count = ::recv(socket_.Handle(), bytes.data(), static_cast<size_t>(bytes.size()),
                               peek ? MSG_PEEK : 0);
  if (count < 0) {
    Report(SockErrorNumber(errno), QStringLiteral("GetData"));
    return {};
  }
  bytes.truncate(count);
  value = FromBytes(std::move(bytes), type);
  return {};
}

bool UniSock::MaySend() const {
  return IsUdp() ? state_ == SockState::kOpen && !remote_host_.isEmpty() && remote_port_ != 0
                 : state_ == SockState::kConnected;
}

UniSock::Result UniSock::SendData(const SockValue& value) {
  if (!MaySend()) {
    return Refuse(sock_error::kWrongState, "SendData");
  }
  Send(ToBytes(value));
  return {};
}

UniSock::Result UniSock::SendText(const QString& text, int format) {
  if (!MaySend()) {
    return Refuse(sock_error::kWrongState, "SendText");
  }
  static const QString kEnds[] = {QString(QChar(0)), QStringLiteral("\r\n"), QStringLiteral("\n"),
                                  QStringLiteral("\r")};
  const QString line = text + kEnds[line_change_];
  if (format == 0) {
    Send(line.toUtf8());
  } else if (format == 1) {
    Send(line.toLocal8Bit());
  } else {
    Send(QByteArray(reinterpret_cast<const char*>(line.utf16()), line.size() * 2));
  }
  return {};
}

void UniSock::Send(const QByteArray& bytes) {
  if (bytes.isEmpty()) {
    return;
  }
  to_send_.Append(bytes);
  if (IsUdp()) {
    SendDatagram();
  } else {
    SendChunks();
  }
}

void UniSock::SendChunks() {
  if (is_sending_) {
    return;  // called in an event of the loop below, which sends what was added
  }
  is_sending_ = true;
  const Watch watch(this);
  int error = 0;
  for (int piece = 0; piece < kPiecesAtOnce && !to_send_.IsEmpty(); ++piece) {
    const QByteArrayView chunk =
        to_send_.View().first(std::min<qsizetype>(to_send_.Size(), send_size_));
    const ssize_t sent =
        ::send(socket_.Handle(), chunk.data(), static_cast<size_t>(chunk.size()), MSG_NOSIGNAL);
    error = sent < 0 ? errno : 0;
    if (error == EINTR) {
      continue;
    }
    if (error != 0) {
      break;
    }
    to_send_.Drop(sent);
    Q_EMIT SendProgress(static_cast<int>(sent), static_cast<int>(to_send_.Size()));
    if (watch.Holds() && to_send_.IsEmpty()) {
      Q_EMIT SendComplete();
    }
    if (!watch.Holds()) {
      return;
    }
  }
  is_sending_ = false;
  const bool is_failed = error != 0 && error != EAGAIN && error != EINTR;
  readiness_->SetWriting(!is_failed && !to_send_.IsEmpty());
  if (is_failed) {
    Report(SockErrorNumber(error), QString());
  }
}

void UniSock::SendDatagram() {
  int number = 0;
  if (const auto host = ResolveNow(remote_host_); !host) {
    number = LookupErrorNumber(host.error());
  } else {
    remote_ip_ = *host;
    const QByteArrayView bytes = to_send_.View();
    number = SockErrorNumber(socket_.SendTo(bytes, remote_ip_, static_cast<quint16>(remote_port_)));
  }
  to_send_.Clear();
  if (number != 0) {
    Report(number, QString());
  }
}

}  // namespace quayline
