// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include <expected>

#include "transport/byte_buffer.h"
#include "transport/posix_socket.h"
#include "transport/sock_error.h"
#include "transport/sock_value.h"
#include "transport/socket_readiness.h"

class QHostInfo;

namespace quayline {

enum class SockState {
  kClosed = 0,      // no socket, or one that is not bound to a port that was asked for
  kOpen = 1,        // bound; listening, too, which has no state of its own
  kResolving = 4,   // the peer's name is being looked up
  kResolved = 5,    // it is known, the connection is made next
  kConnecting = 6,  // also after the attempt failed, until closesocket()
  kConnected = 7,   // also after the connection broke, until closesocket()
  kClosing = 8,     // closesocket() is running
  kError = 9        // only an argument of StatusChange(): State() is never this
};

enum class SockProtocol { kTcp = 0, kUdp = 1 };

// One IPv4 socket on the event loop: a TCP connection, a TCP listener or a UDP socket.
//
// The names are fixed, with two exceptions that QObject and C++ ask for: the method `connect` is
// ConnectTo(), since QObject::connect() is another; and a property X is written by SetX().
//
//   UniSock socket;
//   QObject::connect(&socket, &UniSock::Connect, &owner, [&] { socket.SendData(request); });
//   QObject::connect(&socket, &UniSock::DataArrival, &owner, [&] { ... socket.GetData(value); });
//   socket.ConnectTo(u"192.168.1.1"_s, 80);
//
// There are two kinds of errors. What a member refuses, it returns (a SockError); nothing is
// emitted then. What the network or the system fails at is reported by Error() and leaves State()
// as it is: the owner calls closesocket().
//
// The signals are the events. They are emitted from the event loop, and by those members whose
// comments say so. Connect to them directly (the standard way within a thread). A handler may call
// any member, closesocket() included, and may delete the object: nothing of it is touched then.
class UniSock final : public QObject {
  Q_OBJECT

 public:
  using Result = std::expected<void, SockError>;

  explicit UniSock(QObject* parent = nullptr);
  ~UniSock() override;  // closes the socket, without an event

  // TCP: the bytes received and not taken yet. UDP: those of the next datagram.
  int BytesReceived() const;
  // How SendText() ends a line: 0 NUL, 1 CR LF (at first), 2 LF, 3 CR. Other values are refused.
  int LineChange() const { return line_change_; }
  Result SetLineChange(int line_change);
  static QString LocalHostname();
  // While open, the address that the socket is bound to; else the first address of this computer.
  QString LocalIP() const;
  // The port given by the system if there is one, else the one asked for. Set it while closed.
  int LocalPort() const { return bound_port_ != 0 ? bound_port_ : local_port_; }
  Result SetLocalPort(int port);
  // 0, as at first: received bytes are reported by DataArrival() and taken with GetData(). Any
  // other value: lines are reported by TextArrival(), and GetData() is refused. TCP only.
  int Mode() const { return mode_; }
  void SetMode(int mode) { mode_ = mode; }
  // TCP at first. Set it while closed.
  SockProtocol Protocol() const { return protocol_; }
  Result SetProtocol(SockProtocol protocol);
  // The peer, by name or dotted address, and its port, 80 at first. For TCP set them while closed.
  QString RemoteHost() const { return remote_host_; }
  Result SetRemoteHost(const QString& host);
  int RemotePort() const { return remote_port_; }
  Result SetRemotePort(int port);
  // The peer's address in network order, and dotted. 0 until connected.
  quint32 RemoteIP() const { return remote_ip_.s_addr; }
  QString RemoteHostIP() const { return Dotted(remote_ip_); }
  // The caller, during ConnectionRequest() only. RequestHost() waits for the resolver.
  QString RequestHost() const;
  QString RequestIP() const;
  int RequestPort() const;
  // -1 without a socket.
  int SocketHandle() const { return socket_.Handle(); }
  SockState State() const { return state_; }

  // Binds the socket to a port of this computer; a port below 1 or above 65535 stands for
  // LocalPort(). The address is dotted or a name, which is looked up at once (this blocks); empty
  // for the first address of this computer. An open socket stays as it is, which counts as success.
  // Without any port the system chooses one, and the state stays closed.
  bool bind(int port, const QString& address);
  // Waits for callers, on LocalPort() where the socket is not bound yet. State() does not change.
  std::expected<bool, SockError> listen();
  // Connects to the peer. An empty host or an invalid port leaves RemoteHost() or RemotePort().
  // A name is looked up in the background. UDP: only takes the peer for SendData(), and closes.
  Result ConnectTo(const QString& host, int port);
  // Connects to an address in network order, where a socket exists (bind() makes one).
  std::expected<bool, SockError> ConnectIP(quint32 address);
  // Takes the caller that ConnectionRequest() reports, during that event. This object is closed
  // before. Emits Connect().
  Result accept(int request_id);
  // Ends everything. RemoteHost() and RemotePort() stay, LocalPort() does not.
  void closesocket();

  // Takes received data, as the type that `value` has, or of the code `type` (sock_type) if it is
  // not 0; at most `length` bytes of it if that is not 0. `value` stays if there is nothing. UDP:
  // takes one datagram, and its rest is lost. PeekData() leaves the data.
  Result GetData(SockValue& value, int type = 0, qsizetype length = 0);
  Result PeekData(SockValue& value, int type = 0, qsizetype length = 0);
  // Sends what can be sent at once, with its events, and the rest as the peer takes it. UDP: sends
  // one datagram to the peer, whose name is looked up at once (this blocks).
  Result SendData(const SockValue& value);
  // As SendData() for a line, whose end is added. Format 0 is UTF-8, 1 the system's code page, any
  // other 16-bit characters.
  Result SendText(const QString& text, int format);

 Q_SIGNALS:
  // The peer has closed the connection. What was received can be taken now: closesocket() follows.
  void Closing();
  void Connect();
  // Somebody calls. Without accept() during the event, the caller is hung up on.
  void ConnectionRequest(int request_id);
  // TCP: all bytes received and not taken yet. UDP: those of the datagram. One byte is read and
  // thrown away after it: the datagram, or if it was taken, the next one.
  void DataArrival(int bytes);
  // Errors are silent unless a handler sets `*cancel_display` to false: ErrorBox() follows then.
  void Error(int number, const QString& description, int code, const QString& source,
             const QString& help_file, int help_context, bool* cancel_display);
  void SendComplete();
  void SendProgress(int bytes_sent, int bytes_remaining);
  void StatusChange(quayline::SockState state);
  // A line, without its end. Format 1: it came as 16-bit characters, 2: as bytes. `is_not_utf8` is
  // true for all but decoded UTF-8.
  void TextArrival(const QString& text, int format, bool is_not_utf8);
  // The error is to be shown in a box. Who clears the flag of Error() connects to this.
  void ErrorBox(const QString& title, const QString& text);

 private:
  // Whether the object still exists and has not been closed since, which a handler may have done.
  class Watch final {
   public:
    explicit Watch(UniSock* socket) : socket_(socket), closings_(socket->closings_) {}
    bool Holds() const { return socket_ != nullptr && socket_->closings_ == closings_; }

   private:
    QPointer<UniSock> socket_;
    quint64 closings_;
  };

  static std::unexpected<SockError> Refuse(int number, const char* member);
  bool Enter(SockState state);
  bool Report(int number, const QString& source, const QString& description = {});
  bool MakeSocket();
  void ReadBufferSizes();
  int Reset();
  void AbortLookup();
  void OnLookup(const QHostInfo& found);
  void OnReadable();
  void OnWritable();
  void FinishConnecting();
  void TakeCaller();
  void TakeDatagram();
  void Receive();
  void RaiseLines();
  void Send(const QByteArray& bytes);
  void SendChunks();
  void SendDatagram();
  bool MaySend() const;
  Result Fetch(SockValue& value, int type, qsizetype length, bool peek);
  Result FetchDatagram(SockValue& value, int type, qsizetype length, bool peek);
  bool IsUdp() const { return protocol_ == SockProtocol::kUdp; }

  SockState state_ = SockState::kClosed;
  SockProtocol protocol_ = SockProtocol::kTcp;
  int mode_ = 0;
  int line_change_ = 1;
  QString remote_host_;
  int remote_port_ = 80;
  in_addr remote_ip_ = {};
  QString bound_address_;
  int local_port_ = 0;
  int bound_port_ = 0;
  PosixSocket socket_;
  SocketReadiness* readiness_;
  bool is_listening_ = false;
  bool is_sending_ = false;  // SendChunks() runs
  int lookup_ = -1;
  int receive_size_ = 0;
  int send_size_ = 0;
  ByteBuffer received_;
  ByteBuffer to_send_;
  PosixSocket pending_;  // the caller, during ConnectionRequest()
  sockaddr_in pending_peer_ = {};
  quint64 closings_ = 0;  // counted for Watch
};

}  // namespace quayline
