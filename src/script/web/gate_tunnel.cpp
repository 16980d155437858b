// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/gate_tunnel.h"

#include <QHostInfo>

#include <algorithm>
#include <cerrno>

namespace quayline {

namespace {

using std::chrono::milliseconds;

constexpr char kVersion = 5;
constexpr char kConnect = 1;
constexpr char kIp4 = 1;
constexpr char kName = 3;
constexpr char kIp6 = 4;
constexpr char kTlsHandshake = 22;

constexpr milliseconds kRoundPauses[] = {milliseconds(20), milliseconds(80), milliseconds(300)};
// A connection that the engine opened for a request is used at once.
constexpr milliseconds kPrompt(20);
constexpr milliseconds kTlsAnswerPause(500);
constexpr milliseconds kLongestDiscard(30000);
// A request that is longer is not sent again on another connection.
constexpr qsizetype kMaxKept = qsizetype{1} << 20;
constexpr qsizetype kMaxUnsent = qsizetype{1} << 20;
constexpr qsizetype kMaxHandshake = 600;

// The engine's numbers for a connection that could not be made.
int NetErrorOf(int error) {
  switch (error) {
    case ECONNREFUSED:
      return -102;
    case ETIMEDOUT:
      return -118;
    case ENETUNREACH:
    case EHOSTUNREACH:
    case EADDRNOTAVAIL:
      return -109;
    case ECONNRESET:
    case ECONNABORTED:
      return -101;
    default:
      return -104;
  }
}

quint16 PortAt(const QByteArray& bytes, qsizetype at) {
  const auto byte = [&bytes](qsizetype i) { return static_cast<quint8>(bytes.at(i)); };
  return static_cast<quint16>(byte(at) << 8 | byte(at + 1));
}

QByteArray SocksReply(char code) {
  return QByteArray(1, kVersion) + QByteArray(1, code) + QByteArray(1, '\0') + kIp4 +
         QByteArray(6, '\0');
}

}  // namespace

GateTunnel::GateTunnel(int client, RouterGate& gate) : QObject(&gate), gate_(gate) {
  connect(&client_, &TcpStream::received, this, &GateTunnel::OnClientBytes);
  connect(&client_, &TcpStream::ended, this, &GateTunnel::OnClientEnded);
  connect(&client_, &TcpStream::allSent, this, [this] { router_.SetReading(true); });
  connect(&router_, &TcpStream::connected, this, &GateTunnel::OnConnected);
  connect(&router_, &TcpStream::received, this, &GateTunnel::OnRouterBytes);
  connect(&router_, &TcpStream::ended, this, &GateTunnel::OnRouterEnded);
  connect(&router_, &TcpStream::allSent, this, [this] { client_.SetReading(true); });
  pause_.setSingleShot(true);
  connect(&pause_, &QTimer::timeout, this, &GateTunnel::Connect);
  silence_.setSingleShot(true);
  connect(&silence_, &QTimer::timeout, this, &GateTunnel::OnSilence);
  connect(&client_, &TcpStream::closed, this, &GateTunnel::DeleteWhenClosed);
  connect(&router_, &TcpStream::closed, this, &GateTunnel::DeleteWhenClosed);
  client_.Adopt(client);
}

GateTunnel::~GateTunnel() { gate_.End(id_); }

void GateTunnel::OnClientBytes(const QByteArray& bytes) {
  switch (state_) {
    case State::kGreeting:
    case State::kRequest:
    case State::kFirstBytes:
      buffer_ += bytes;
      if (state_ == State::kGreeting && !ReadGreeting()) {
        return;
      }
      if (state_ == State::kRequest && !ReadRequest()) {
        return;
      }
      if (state_ == State::kFirstBytes && !buffer_.isEmpty()) {
        BeginExchange();
      }
      return;
    case State::kConnecting:
    case State::kPassing:
      PassOn(bytes);
      return;
    case State::kOver:
      return;
  }
}

// Both readers: false when the handshake is not complete yet, or has been refused.
bool GateTunnel::ReadGreeting() {
  if (buffer_.at(0) != kVersion || buffer_.size() > kMaxHandshake) {
    Finish();
    return false;
  }
  if (buffer_.size() < 2 || buffer_.size() < 2 + static_cast<quint8>(buffer_.at(1))) {
    return false;
  }
  buffer_.remove(0, 2 + static_cast<quint8>(buffer_.at(1)));
  client_.Write(QByteArrayView("\x05\x00", 2));  // no login
  state_ = State::kRequest;
  return !buffer_.isEmpty();
}

bool GateTunnel::ReadRequest() {
  constexpr qsizetype kFixed = 4;
  if (buffer_.size() <= kFixed) {
    return false;
  }
  const char type = buffer_.at(3);
  const qsizetype begin = type == kName ? kFixed + 1 : kFixed;
  const qsizetype length = type == kName  ? static_cast<quint8>(buffer_.at(kFixed))
                           : type == kIp4 ? 4
                           : type == kIp6 ? 16
                                          : -1;
  if (buffer_.at(0) != kVersion || buffer_.at(1) != kConnect || length < 0) {
    Refuse();
    return false;
  }
  if (buffer_.size() < begin + length + 2) {
    return false;
  }
  const QByteArray raw = buffer_.mid(begin, length);
  if (type == kName) {
    origin_.host = QString::fromLatin1(raw).toLower();
  } else if (type == kIp4) {
    origin_.host =
        QHostAddress(static_cast<quint32>(PortAt(raw, 0)) << 16 | PortAt(raw, 2)).toString();
  } else {
    origin_.host = QHostAddress(reinterpret_cast<const quint8*>(raw.constData())).toString();
  }
  origin_.port = PortAt(buffer_, begin + length);
  buffer_.remove(0, begin + length + 2);
  if (!gate_.HasHost(origin_.host, origin_.port)) {
    Refuse();
    return false;
  }
  client_.Write(SocksReply(0));
  since_ready_.start();
  state_ = State::kFirstBytes;
  return true;
}

void GateTunnel::Refuse() {
  constexpr char kNotAllowed = 2;
  client_.Write(SocksReply(kNotAllowed));
  Finish();
}

void GateTunnel::BeginExchange() {
  was_idle_ = since_ready_.hasExpired(kPrompt.count());
  const bool is_tls = buffer_.at(0) == kTlsHandshake;
  origin_.scheme = is_tls ? QStringLiteral("https") : QStringLiteral("http");
  if (!gate_.IsAdmitted(origin_)) {
    constexpr int kBlocked = -20;
    Fail(kBlocked);
    return;
  }
  if (is_tls) {
    auto watch = std::make_unique<TlsExchangeWatch>();
    if (gate_.IsWebSocketExpected(origin_)) {
      watch->SetOpenEnded();
    }
    watch_ = std::move(watch);
  } else {
    watch_ = std::make_unique<HttpExchangeWatch>();
  }
  url_.setScheme(origin_.scheme);
  url_.setHost(origin_.host);
  url_.setPort(origin_.port);
  watch_->TakeRequest(buffer_);
  if (gate_.IsRepetition(origin_, watch_->RequestHead())) {
    client_.ResetWhenSent();
    Finish();
    return;
  }
  state_ = State::kConnecting;
  LookUp();
}

void GateTunnel::Retire(const SiteOrigin& origin) {
  if (auto* tls = dynamic_cast<TlsExchangeWatch*>(watch_.get());
      tls != nullptr && origin == origin_) {
    tls->Retire();
  }
}

void GateTunnel::LookUp() {
  const QHostAddress address(origin_.host);
  if (!address.isNull()) {
    addresses_ = {address};
    Connect();
    return;
  }
  QHostInfo::lookupHost(origin_.host, this, [this](const QHostInfo& info) {
    if (state_ != State::kConnecting) {
      return;
    }
    addresses_ = info.addresses();
    // Routers are reached by IPv4; an IPv6 address without a route would hold the page up.
    std::ranges::stable_sort(addresses_, {}, [](const QHostAddress& found) {
      return found.protocol() == QAbstractSocket::IPv4Protocol ? 0 : 1;
    });
    if (addresses_.isEmpty()) {
      constexpr int kNameNotFound = -105;
      Fail(kNameNotFound);
    } else {
      Connect();
    }
  });
}

void GateTunnel::Connect() { router_.ConnectTo(addresses_.at(next_address_), origin_.port); }

void GateTunnel::OnConnected() {
  gate_.NoteConnected(origin_);
  state_ = State::kPassing;
  router_.Write(buffer_);
  NoteRequest();
}

bool GateTunnel::ConnectAgain(int error) {
  if (next_address_ + 1 < addresses_.size() && state_ == State::kConnecting) {
    ++next_address_;
    Connect();
    return true;
  }
  const bool is_worth_it =
      error == 0 || error == ECONNRESET || (error == ECONNREFUSED && gate_.WasThereLately(origin_));
  if (!is_worth_it || !can_repeat_ || rounds_ >= std::ssize(kRoundPauses)) {
    return false;
  }
  state_ = State::kConnecting;
  next_address_ = 0;
  pause_.start(kRoundPauses[rounds_++]);
  return true;
}

void GateTunnel::Fail(int net_error) {
  gate_.NoteFailure(origin_, net_error);
  client_.ResetWhenSent();
  Finish();
}

void GateTunnel::OnRouterEnded(int error) {
  if (state_ == State::kConnecting) {
    if (!ConnectAgain(error)) {
      Fail(NetErrorOf(error));
    }
    return;
  }
  if (!has_answer_ && router_.IsUnreceived() && ConnectAgain(error)) {
    return;
  }
  if (watch_->Requests() == 1 && !watch_->IsAnswered() && is_change_ && was_idle_) {
    constexpr int kEmptyAnswer = -324;
    gate_.NoteLost(origin_, watch_->RequestHead(), error == 0 ? kEmptyAnswer : NetErrorOf(error));
  }
  if (error == 0) {
    client_.CloseWhenSent();
  } else {
    client_.ResetWhenSent();
  }
  Finish();
}

void GateTunnel::PassOn(const QByteArray& bytes) {
  if (!watch_->TakeRequest(bytes)) {
    client_.ResetWhenSent();
    Finish();
    return;
  }
  if (noted_requests_ == 0 && has_answer_) {  // the request follows the handshake of TLS
    was_idle_ = since_ready_.hasExpired(kPrompt.count());
  }
  if (can_repeat_ && !has_answer_) {
    buffer_ += bytes;
    can_repeat_ = buffer_.size() <= kMaxKept;
  }
  if (state_ == State::kPassing) {
    router_.Write(bytes);
    NoteRequest();
  }
  const qsizetype waiting = state_ == State::kPassing ? router_.UnsentBytes() : buffer_.size();
  client_.SetReading(waiting < kMaxUnsent);
}

void GateTunnel::OnRouterBytes(const QByteArray& bytes) {
  has_answer_ = true;
  since_ready_.start();
  buffer_.clear();
  watch_->TakeAnswer(bytes);
  NoteAnswer();
  answer_bytes_ += bytes.size();
  if (answer_bytes_ > RouterGate::kMaxAnswer && !watch_->IsOpenEnded()) {
    Q_EMIT gate_.answerTooLarge(url_);
    client_.ResetWhenSent();
    Finish();
    return;
  }
  if (!is_discarding_) {
    client_.Write(bytes);
    router_.SetReading(client_.UnsentBytes() < kMaxUnsent);
  }
  if (watch_->IsOver()) {
    NoteOver();
    client_.CloseWhenSent();
    Finish();
  }
}

void GateTunnel::OnClientEnded() {
  // A save that was sent whole is heard out: many routers give up what nobody waits for.
  if (state_ == State::kPassing && is_change_ && watch_->IsRequestComplete() && !watch_->IsOver() &&
      !watch_->IsOpenEnded()) {
    is_discarding_ = true;
    silence_.start(kLongestDiscard);
    return;
  }
  Finish();
}

void GateTunnel::NoteRequest() {
  if (watch_->Requests() == noted_requests_) {
    return;
  }
  NoteOver();
  answer_bytes_ = 0;
  noted_requests_ = watch_->Requests();
  const QByteArray& method = watch_->Method();
  is_change_ = method.isEmpty() ? gate_.IsChangeExpected(origin_) && noted_requests_ == 1
                                : method != "GET" && method != "HEAD";
  url_ = QUrl::fromEncoded(url_.toEncoded() + watch_->Target());
  id_ = gate_.Start(method, url_);
}

void GateTunnel::NoteAnswer() {
  if (!watch_->IsAnswered()) {
    return;
  }
  const bool is_plain = origin_.scheme == QLatin1String("http");
  if (!is_told_ && is_plain) {
    is_told_ = true;
    Q_EMIT gate_.answered(id_, watch_->Method(), url_, watch_->Status());
  }
  if (watch_->IsOpenEnded()) {
    NoteOver();
  } else if (!is_plain && !is_discarding_) {
    silence_.start(kTlsAnswerPause);
  }
}

void GateTunnel::NoteOver() { gate_.End(id_); }

void GateTunnel::OnSilence() {
  NoteOver();
  if (state_ == State::kOver) {
    deleteLater();
  } else if (is_discarding_) {
    Finish();
  }
}

void GateTunnel::Finish() {
  state_ = State::kOver;
  NoteOver();
  pause_.stop();
  client_.CloseWhenSent();
  router_.CloseWhenSent();
  // The last bytes may still be on their way to a browser that is busy.
  silence_.start(kLongestDiscard);
  DeleteWhenClosed();
}

void GateTunnel::DeleteWhenClosed() {
  if (state_ == State::kOver && !client_.IsOpen() && !router_.IsOpen()) {
    deleteLater();
  }
}

}  // namespace quayline
