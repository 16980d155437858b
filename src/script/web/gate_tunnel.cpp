// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/gate_tunnel.h"

#include <utility>

#include "script/web/request_login.h"

namespace quayline {

namespace {

using std::chrono::milliseconds;

constexpr char kTlsHandshake = 22;

// A connection that the engine opened for a request is used at once.
constexpr milliseconds kPrompt(20);
constexpr milliseconds kTlsAnswerPause(500);
constexpr milliseconds kLongestDiscard(30000);
// A request that is longer is not sent again on another connection.
constexpr qsizetype kMaxKept = qsizetype{1} << 20;
constexpr qsizetype kMaxUnsent = qsizetype{1} << 20;

// Between two questions whether the login that another request tries is right.
constexpr milliseconds kLoginPause(20);

}  // namespace

GateTunnel::GateTunnel(int client, RouterGate& gate) : QObject(&gate), gate_(gate) {
  connect(&client_, &TcpStream::received, this, &GateTunnel::OnClientBytes);
  connect(&client_, &TcpStream::ended, this, &GateTunnel::OnClientEnded);
  connect(&client_, &TcpStream::allSent, this, [this] { router_.SetReading(true); });
  connect(&router_, &TcpStream::connected, this, &GateTunnel::OnConnected);
  connect(&router_, &TcpStream::received, this, &GateTunnel::OnRouterBytes);
  connect(&router_, &TcpStream::ended, this, &GateTunnel::OnRouterEnded);
  connect(&router_, &TcpStream::allSent, this, [this] { client_.SetReading(true); });
  login_pause_.setSingleShot(true);
  connect(&login_pause_, &QTimer::timeout, this, &GateTunnel::TakePlace);
  connect(&connector_, &RouterConnector::nameNotFound, this, [this] {
    constexpr int kNameNotFound = -105;
    Fail(kNameNotFound);
  });
  silence_.setSingleShot(true);
  connect(&silence_, &QTimer::timeout, this, &GateTunnel::OnSilence);
  traffic_.setSingleShot(true);
  connect(&traffic_, &QTimer::timeout, this, [this] { gate_.Limit().Release(origin_, place_); });
  connect(&client_, &TcpStream::closed, this, &GateTunnel::DeleteWhenClosed);
  connect(&router_, &TcpStream::closed, this, &GateTunnel::DeleteWhenClosed);
  client_.Adopt(client);
}

GateTunnel::~GateTunnel() {
  gate_.Limit().Release(origin_, place_);
  gate_.End(id_);
}

void GateTunnel::OnClientBytes(const QByteArray& bytes) {
  switch (state_) {
    case State::kHandshake:
      ReadHandshake(bytes);
      return;
    case State::kFirstBytes:
      buffer_ += bytes;
      if (HasHead()) {
        BeginExchange();
      }
      return;
    case State::kWaiting:
    case State::kConnecting:
    case State::kPassing:
      PassOn(bytes);
      return;
    case State::kOver:
      return;
  }
}

void GateTunnel::ReadHandshake(const QByteArray& bytes) {
  QByteArray answer;
  const SocksHandshake::State read = handshake_.Take(bytes, &answer);
  client_.Write(answer);
  if (read == SocksHandshake::State::kIncomplete) {
    return;
  }
  if (read == SocksHandshake::State::kInvalid) {
    Finish();
    return;
  }
  if (read == SocksHandshake::State::kRefused ||
      !gate_.HasHost(handshake_.Host(), handshake_.Port())) {
    client_.Write(SocksHandshake::Reply(false));
    Finish();
    return;
  }
  origin_.host = handshake_.Host();
  origin_.port = handshake_.Port();
  client_.Write(SocksHandshake::Reply(true));
  since_ready_.start();
  state_ = State::kFirstBytes;
  buffer_ = handshake_.Rest();
  if (!buffer_.isEmpty() && HasHead()) {
    BeginExchange();
  }
}

// A request is judged by its whole head: a login may be in the last line of it.
bool GateTunnel::HasHead() const {
  constexpr qsizetype kLongestHead = qsizetype{1} << 16;
  return buffer_.at(0) == kTlsHandshake || buffer_.contains("\r\n\r\n") ||
         buffer_.size() > kLongestHead;
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
  url_ = origin_.Address();
  watch_->TakeRequest(buffer_);
  if (gate_.IsRepetition(origin_, watch_->RequestHead())) {
    client_.ResetWhenSent();
    Finish();
    return;
  }
  state_ = State::kWaiting;
  TakePlace();
}

// A request that waits for another one's login has no place: the other one may need it.
void GateTunnel::TakePlace() {
  if (state_ != State::kWaiting) {
    return;
  }
  const LoginWatch::Pass pass = JudgeLogin();
  if (pass == LoginWatch::Pass::kWait) {
    login_pause_.start(kLoginPause);
    return;
  }
  place_ = gate_.Limit().Take(origin_, [this] {
    state_ = State::kConnecting;
    NoteTraffic();
    connector_.Connect(origin_);
  });
}

// Each byte shows that the connection is in use.
void GateTunnel::NoteTraffic() {
  if (state_ == State::kConnecting || state_ == State::kPassing) {
    traffic_.start(has_answer_ ? ConnectionLimit::kPause : ConnectionLimit::kUnanswered);
  }
}

void GateTunnel::Retire(const SiteOrigin& origin) {
  if (auto* tls = dynamic_cast<TlsExchangeWatch*>(watch_.get());
      tls != nullptr && origin == origin_) {
    tls->Retire();
  }
}

void GateTunnel::OnConnected() {
  gate_.NoteConnected(origin_);
  state_ = State::kPassing;
  router_.Write(buffer_);
  NoteRequest();
}

LoginWatch::Pass GateTunnel::JudgeLogin() {
  const auto login = FindLogin(buffer_, watch_->RequestHead().size());
  if (!login) {
    return LoginWatch::Pass::kSend;
  }
  const LoginWatch::Pass pass = gate_.JudgeLogin(AddressOf(watch_->Target()), login->credentials);
  if (pass == LoginWatch::Pass::kSend) {
    credentials_ = login->credentials;
  } else if (pass == LoginWatch::Pass::kWithoutLogin) {
    buffer_.remove(login->begin, login->size);
  }
  return pass;
}

void GateTunnel::NoteLoginAnswer(std::optional<int> status) {
  if (const QByteArray sent = std::exchange(credentials_, {}); !sent.isEmpty()) {
    gate_.NoteLoginAnswer(AddressOf(watch_->Target()), sent, status);
  }
}

bool GateTunnel::ConnectAgain(int error) {
  if (state_ == State::kConnecting && connector_.TryNextAddress()) {
    return true;
  }
  if (!can_repeat_ || !connector_.TryAgain(error, gate_.WasThereLately(origin_))) {
    return false;
  }
  state_ = State::kConnecting;
  return true;
}

void GateTunnel::Fail(int net_error) {
  NoteLoginAnswer(0);
  gate_.NoteFailure(origin_, net_error);
  client_.ResetWhenSent();
  Finish();
}

void GateTunnel::OnRouterEnded(int error) {
  if (state_ == State::kConnecting) {
    if (!ConnectAgain(error)) {
      Fail(NetErrorOfSocket(error));
    }
    return;
  }
  if (!has_answer_ && router_.IsUnreceived() && ConnectAgain(error)) {
    return;
  }
  if (watch_->Requests() == 1 && !watch_->IsAnswered() && is_change_ && was_idle_) {
    constexpr int kEmptyAnswer = -324;
    gate_.NoteLost(origin_, watch_->RequestHead(),
                   error == 0 ? kEmptyAnswer : NetErrorOfSocket(error));
  }
  NoteLoginAnswer(0);
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
  NoteTraffic();
  const qsizetype waiting = state_ == State::kPassing ? router_.UnsentBytes() : buffer_.size();
  client_.SetReading(waiting < kMaxUnsent);
}

void GateTunnel::OnRouterBytes(const QByteArray& bytes) {
  has_answer_ = true;
  NoteTraffic();
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
  // The answer to a save that was sent whole is read to its end: many routers give up what nobody
  // waits for. A save that still waits for a connection is sent.
  const bool is_waiting = state_ == State::kWaiting || state_ == State::kConnecting;
  const bool is_change = is_waiting ? IsChange() : state_ == State::kPassing && is_change_;
  if (is_change && watch_->IsRequestComplete() && !watch_->IsOver() && !watch_->IsOpenEnded()) {
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
  is_change_ = IsChange();
  url_ = AddressOf(watch_->Target());
  id_ = gate_.Start(watch_->Method(), url_);
}

bool GateTunnel::IsChange() const {
  const QByteArray& method = watch_->Method();
  return method.isEmpty() ? gate_.IsChangeExpected(origin_) && noted_requests_ == 1
                          : method != "GET" && method != "HEAD";
}

void GateTunnel::NoteAnswer() {
  if (!watch_->IsAnswered()) {
    return;
  }
  const bool is_plain = origin_.scheme == QLatin1String("http");
  if (!is_told_ && is_plain) {
    is_told_ = true;
    NoteLoginAnswer(watch_->Status());
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
  NoteLoginAnswer(std::nullopt);
  NoteOver();
  connector_.Cancel();
  client_.CloseWhenSent();
  router_.CloseWhenSent(ConnectionLimit::kClosing);
  // The last bytes may still be on their way to a browser that is busy.
  silence_.start(kLongestDiscard);
  DeleteWhenClosed();
}

void GateTunnel::DeleteWhenClosed() {
  if (state_ != State::kOver || router_.IsOpen()) {
    return;
  }
  gate_.Limit().Release(origin_, place_);
  if (!client_.IsOpen()) {
    deleteLater();
  }
}

}  // namespace quayline
