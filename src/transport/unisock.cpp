// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/unisock.h"

#include <QHash>
#include <QHostInfo>

#include <arpa/inet.h>
#include <cerrno>
#include <netdb.h>

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr int kBacklog = 5;
constexpr int kMaxPort = 65535;
constexpr int kMaxDatagram = 65507;
constexpr int kMaxCallerName = 256;

bool IsPort(int port) { return port >= 1 && port <= kMaxPort; }

// Those that emit ConnectionRequest() now, by the number that they emit: what accept() is given is
// a number, and whose it is must be found without trusting it.
QHash<int, UniSock*>& Callees() {
  static QHash<int, UniSock*> callees;
  return callees;
}

}  // namespace

std::unexpected<SockError> UniSock::Refuse(int number, const char* member) {
  return std::unexpected(
      SockError{number, SockErrorText(number), QStringLiteral("UniSock.") + QLatin1String(member)});
}

UniSock::UniSock(QObject* parent) : QObject(parent), readiness_(new SocketReadiness(this)) {
  connect(readiness_, &SocketReadiness::readable, this, &UniSock::OnReadable);
  connect(readiness_, &SocketReadiness::writable, this, &UniSock::OnWritable);
}

UniSock::~UniSock() {
  AbortLookup();
  readiness_->Use(-1);
}

int UniSock::BytesReceived() const {
  if (IsUdp()) {
    return socket_.IsOpen() ? socket_.ReadableBytes() : 0;
  }
  return static_cast<int>(received_.Size());
}

UniSock::Result UniSock::SetLineChange(int line_change) {
  if (line_change < 0 || line_change > 3) {
    return Refuse(sock_error::kBadArgument, "LineChange");
  }
  line_change_ = line_change;
  return {};
}

QString UniSock::LocalHostname() { return QHostInfo::localHostName(); }

QString UniSock::LocalIP() const {
  return state_ == SockState::kOpen ? bound_address_ : Dotted(FirstOwnAddress());
}

UniSock::Result UniSock::SetLocalPort(int port) {
  if (state_ != SockState::kClosed) {
    return Refuse(sock_error::kInvalidOperation, "LocalPort");
  }
  if (port < 0 || port > kMaxPort) {
    return Refuse(sock_error::kBadArgument, "LocalPort");
  }
  local_port_ = port;
  return {};
}

UniSock::Result UniSock::SetProtocol(SockProtocol protocol) {
  if (state_ != SockState::kClosed) {
    return Refuse(sock_error::kInvalidOperation, "Protocol");
  }
  protocol_ = protocol;
  return {};
}

UniSock::Result UniSock::SetRemoteHost(const QString& host) {
  if (!IsUdp() && state_ != SockState::kClosed) {
    return Refuse(sock_error::kInvalidOperation, "RemotePort");  // one name for both
  }
  remote_host_ = host;
  return {};
}

UniSock::Result UniSock::SetRemotePort(int port) {
  if (!IsUdp() && state_ != SockState::kClosed) {
    return Refuse(sock_error::kInvalidOperation, "RemotePort");
  }
  if (port < 0 || port > kMaxPort) {
    return Refuse(sock_error::kBadArgument, "RemotePort");
  }
  remote_port_ = port;
  return {};
}

QString UniSock::RequestHost() const {
  char name[kMaxCallerName] = {};
  if (pending_.IsOpen()) {
    ::getnameinfo(reinterpret_cast<const sockaddr*>(&pending_peer_), sizeof pending_peer_, name,
                  sizeof name, nullptr, 0, 0);
  }
  return QString::fromLocal8Bit(name);
}

QString UniSock::RequestIP() const {
  return pending_.IsOpen() ? Dotted(pending_peer_.sin_addr) : QString();
}

int UniSock::RequestPort() const { return pending_.IsOpen() ? ntohs(pending_peer_.sin_port) : 0; }

// False when a handler has closed or deleted the object.
bool UniSock::Enter(SockState state) {
  const Watch watch(this);
  state_ = state;
  Q_EMIT StatusChange(state);
  return watch.Holds();
}

// As Enter(). The state stays. Without a number only the state's event is emitted.
bool UniSock::Report(int number, const QString& source, const QString& description) {
  const Watch watch(this);
  const QPointer<UniSock> alive(this);
  Q_EMIT StatusChange(SockState::kError);
  if (number == 0 || alive == nullptr) {
    return watch.Holds();
  }
  const QString text = description.isEmpty() ? SockErrorText(number) : description;
  const QString title =
      source.isEmpty() ? QStringLiteral("UniSock") : QStringLiteral("UniSock.") + source;
  bool cancel_display = true;
  Q_EMIT Error(number, text, number, title, QString(), 0, &cancel_display);
  if (!cancel_display && alive != nullptr) {
    Q_EMIT ErrorBox(title, text);
  }
  return watch.Holds();
}

bool UniSock::MakeSocket() {
  if (!socket_.IsOpen()) {
    socket_ = PosixSocket::Open(IsUdp());
    readiness_->Use(socket_.Handle());
    ReadBufferSizes();
  }
  return socket_.IsOpen();
}

void UniSock::ReadBufferSizes() {
  receive_size_ = IsUdp() ? kMaxDatagram : socket_.BufferSize(SO_RCVBUF);
  send_size_ = IsUdp() ? kMaxDatagram : socket_.BufferSize(SO_SNDBUF);
}

bool UniSock::bind(int port, const QString& address) {
  if (!MakeSocket()) {
    return false;
  }
  if (state_ == SockState::kOpen) {
    return true;
  }
  const int wanted = IsPort(port) ? port : local_port_;
  const auto own = ResolveNow(address);
  const int number = own ? SockErrorNumber(socket_.Bind(*own, static_cast<quint16>(wanted)))
                         : LookupErrorNumber(own.error());
  if (number != 0) {
    Report(number, QStringLiteral("Private_Bind"));
    return false;
  }
  bound_address_ = Dotted(*own);
  readiness_->SetReading(IsUdp());
  if (wanted == 0) {
    const auto bound = socket_.OwnAddress();
    bound_port_ = bound ? ntohs(bound->sin_port) : 0;
    return true;
  }
  local_port_ = wanted;
  return Enter(SockState::kOpen);
}

std::expected<bool, SockError> UniSock::listen() {
  if (state_ != SockState::kClosed && state_ != SockState::kOpen) {
    return Refuse(sock_error::kInvalidOperation, "Listen");
  }
  if (!bind(0, QString())) {
    return false;
  }
  if (::listen(socket_.Handle(), kBacklog) != 0) {
    return Refuse(SockErrorNumber(errno), "Listen");
  }
  is_listening_ = true;
  readiness_->SetReading(true);
  return true;
}

UniSock::Result UniSock::ConnectTo(const QString& host, int port) {
  const bool is_allowed = state_ == SockState::kClosed || state_ == SockState::kOpen;
  if (is_allowed) {
    remote_host_ = host.isEmpty() ? remote_host_ : host;
    remote_port_ = IsPort(port) ? port : remote_port_;
  }
  if (!is_allowed || remote_host_.isEmpty()) {
    Report(0, QStringLiteral("Connect"));
    return {};
  }
  if (!MakeSocket()) {
    return {};
  }
  if (IsUdp()) {
    Enter(SockState::kClosed);
    return {};
  }
  if (const auto address = AddressOfText(remote_host_)) {
    const auto started = ConnectIP(address->s_addr);
    return started ? Result() : std::unexpected(started.error());
  }
  AbortLookup();
  lookup_ = QHostInfo::lookupHost(remote_host_, this, &UniSock::OnLookup);
  Enter(SockState::kResolving);
  return {};
}

void UniSock::AbortLookup() {
  if (const int lookup = std::exchange(lookup_, -1); lookup >= 0) {
    QHostInfo::abortHostLookup(lookup);
  }
}

void UniSock::OnLookup(const QHostInfo& found) {
  // The answer of a lookup that was aborted may already be queued.
  if (found.lookupId() != lookup_) {
    return;
  }
  lookup_ = -1;
  if (found.error() != QHostInfo::NoError) {
    Report(found.error() == QHostInfo::HostNotFound ? sock_error::kHostNotFound
                                                    : sock_error::kLookupFailed,
           QString());
    return;
  }
  const QList<QHostAddress> addresses = found.addresses();
  const auto first = std::ranges::find(addresses, QAbstractSocket::IPv4Protocol,
                                       [](const QHostAddress& each) { return each.protocol(); });
  if (first == addresses.end()) {
    Report(sock_error::kNoAddress, QString());
    return;
  }
  const quint32 address = htonl(first->toIPv4Address());
  if (!Enter(SockState::kResolved)) {
    return;
  }
  if (const auto started = ConnectIP(address); !started) {
    Report(started.error().number, QStringLiteral("ConnectIP"));  // although it was not called
  }
}

std::expected<bool, SockError> UniSock::ConnectIP(quint32 address) {
  if (!socket_.IsOpen() || !IsPort(remote_port_)) {
    Report(0, QStringLiteral("ConnectIP"));
    return false;
  }
  if (!Enter(SockState::kConnecting)) {
    return false;
  }
  remote_ip_ = {address};
  const int error = socket_.Connect(remote_ip_, static_cast<quint16>(remote_port_));
  if (error == 0 || error == EINPROGRESS) {
    readiness_->SetWriting(true);
    return true;
  }
  const int number = SockErrorNumber(error);
  if (number == sock_error::kAddressNotAvailable) {
    return Refuse(number, "ConnectIP");
  }
  Report(number, QStringLiteral("ConnectIP"));
  return false;
}

UniSock::Result UniSock::accept(int request_id) {
  if (state_ != SockState::kClosed || request_id == 0) {
    return Refuse(sock_error::kInvalidOperation, "Accept");
  }
  const QPointer<UniSock> alive(this);
  if (Callees().contains(request_id)) {
    closesocket();
  }
  // Looked up after that: its handlers may have ended the listener, or this object.
  UniSock* const listener = Callees().value(request_id);
  if (listener == nullptr || !listener->pending_.IsOpen() || alive == nullptr) {
    return Refuse(sock_error::kBadArgument, "Accept");
  }
  socket_ = std::move(listener->pending_);
  protocol_ = SockProtocol::kTcp;
  remote_ip_ = listener->pending_peer_.sin_addr;
  remote_port_ = ntohs(listener->pending_peer_.sin_port);
  ReadBufferSizes();
  readiness_->Use(socket_.Handle());
  readiness_->SetReading(true);
  const Watch watch(this);
  if (const auto own = socket_.OwnAddress()) {
    bound_address_ = Dotted(own->sin_addr);
    bound_port_ = ntohs(own->sin_port);
  } else {
    Report(SockErrorNumber(errno), QStringLiteral("Accept"));
  }
  if (watch.Holds() && Enter(SockState::kConnected)) {
    Q_EMIT Connect();
  }
  return {};
}

void UniSock::closesocket() {
  if (state_ == SockState::kClosing) {
    return;  // a handler of the events below
  }
  ++closings_;
  const QPointer<UniSock> alive(this);
  Enter(SockState::kClosing);
  if (alive == nullptr) {
    return;
  }
  AbortLookup();
  if (const int error = Reset(); error != 0) {
    Report(SockErrorNumber(error), QStringLiteral("CloseSocket"));
  }
  if (alive != nullptr) {
    Enter(SockState::kClosed);
  }
}

// The error of closing the socket, as an errno value.
int UniSock::Reset() {
  readiness_->Use(-1);
  const int error = socket_.Close();
  pending_.Close();
  pending_peer_ = {};
  is_listening_ = false;
  is_sending_ = false;
  received_.Clear();
  to_send_.Clear();
  bound_address_.clear();
  local_port_ = 0;
  bound_port_ = 0;
  return error;
}

void UniSock::OnReadable() {
  if (is_listening_) {
    TakeCaller();
  } else if (IsUdp()) {
    TakeDatagram();
  } else {
    Receive();
  }
}

void UniSock::OnWritable() {
  if (state_ == SockState::kConnecting) {
    FinishConnecting();
  } else {
    SendChunks();
  }
}

void UniSock::FinishConnecting() {
  readiness_->SetWriting(false);
  if (const int error = socket_.TakeError(); error != 0) {
    Report(SockErrorNumber(error), QString());
    return;
  }
  const auto peer = socket_.PeerAddress();
  if (!peer) {
    Report(SockErrorNumber(peer.error()), QString());
    return;
  }
  remote_ip_ = peer->sin_addr;
  remote_port_ = ntohs(peer->sin_port);
  send_size_ = socket_.BufferSize(SO_SNDBUF);  // the system has made it larger
  readiness_->SetReading(true);
  if (Enter(SockState::kConnected)) {
    Q_EMIT Connect();
  }
}

void UniSock::TakeCaller() {
  sockaddr_in peer = {};
  socklen_t size = sizeof peer;
  PosixSocket caller(::accept4(socket_.Handle(), reinterpret_cast<sockaddr*>(&peer), &size,
                               SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!caller.IsOpen()) {
    const int error = errno;
    if (error != EAGAIN && error != EINTR) {
      readiness_->PauseReading(100ms);  // with no handle left, the caller waits and is reported on
      Report(SockErrorNumber(error), QString());
    }
    return;
  }
  static int last_id = 0;
  const int id = ++last_id;
  pending_ = std::move(caller);
  pending_peer_ = peer;
  Callees().insert(id, this);
  const QPointer<UniSock> alive(this);
  Q_EMIT ConnectionRequest(id);
  Callees().remove(id);
  if (alive != nullptr) {
    pending_.Close();
    pending_peer_ = {};
  }
}

}  // namespace quayline
