// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "transport/http_server.h"

#include <QPointer>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTimer>

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr auto kIdleTime = 30s;
constexpr qint64 kReadAtOnce = qint64{64} << 10;
constexpr qint64 kMaxUnsentBytes = qint64{4} << 20;

// One client. Owned by the server; ends itself when the client goes.
class Connection final : public QObject {
 public:
  Connection(QTcpSocket* socket, const HttpServer::LateHandler& handler, AnswerDelay delay,
             QObject* owner)
      : QObject(owner), socket_(socket), handler_(handler), delay_(delay) {
    socket_->setParent(this);
    socket_->setReadBufferSize(kReadAtOnce);
    idle_.setSingleShot(true);
    connect(&idle_, &QTimer::timeout, socket_, &QTcpSocket::abort);
    connect(socket_, &QTcpSocket::readyRead, this, &Connection::Go);
    connect(socket_, &QTcpSocket::bytesWritten, this, &Connection::Go);
    connect(socket_, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    idle_.start(kIdleTime);
    Go();  // what a TLS connection brought along is not announced again
  }

 private:
  // kTunnel: the connection uses another protocol now, and is only kept open.
  enum class State { kReading, kAnswering, kLeaving, kTunnel };

  void Go() {
    if (state_ == State::kLeaving || state_ == State::kTunnel) {
      socket_->readAll();
      return;
    }
    while (state_ == State::kReading && socket_->bytesToWrite() < kMaxUnsentBytes) {
      buffer_ += socket_->readAll();
      ParsedRequest parsed = ParseRequest(buffer_);
      if (parsed.status == ParseStatus::kIncomplete) {
        return;
      }
      idle_.start(kIdleTime);
      if (parsed.status == ParseStatus::kRefused) {
        Refuse(parsed.refusal);
        return;
      }
      buffer_.remove(0, parsed.consumed);
      parsed.request.peer = socket_->peerAddress();
      AnswerInTime(parsed.request);
    }
  }

  void AnswerInTime(const HttpRequest& request) {
    state_ = State::kAnswering;
    const auto spread = static_cast<int>((delay_.most - delay_.least).count());
    const auto time =
        delay_.least + std::chrono::milliseconds(QRandomGenerator::global()->bounded(spread + 1));
    if (time == 0ms) {
      Answer(request);
      return;
    }
    idle_.stop();
    QTimer::singleShot(time, Qt::PreciseTimer, this, [this, request] {
      Answer(request);
      Go();
    });
  }

  void Answer(const HttpRequest& request) {
    idle_.stop();
    is_in_handler_ = true;
    handler_(request, [connection = QPointer(this), request](const HttpResponse& response) {
      if (connection) {
        connection->TakeAnswer(response, request);
      }
    });
    is_in_handler_ = false;
  }

  void TakeAnswer(const HttpResponse& response, const HttpRequest& request) {
    if (response.hold > 0ms) {
      QTimer::singleShot(response.hold, this, [this, response, request] {
        Send(response, request);
        Go();
      });
      return;
    }
    Send(response, request);
    if (!is_in_handler_) {
      Go();
    }
  }

  void Send(const HttpResponse& response, const HttpRequest& request) {
    constexpr int kSwitchingProtocols = 101;
    idle_.start(kIdleTime);
    socket_->write(FormatResponse(response, request.keep_alive, request.method == "HEAD"));
    state_ = State::kReading;
    if (response.status == kSwitchingProtocols) {
      state_ = State::kTunnel;
    } else if (!request.keep_alive) {
      Leave();
    }
  }

  void Refuse(int status) {
    HttpResponse response;
    response.status = status;
    response.body = "<html><body><h1>" + QByteArray::number(status) + "</h1></body></html>";
    socket_->write(FormatResponse(response, false, false));
    Leave();
  }

  // What the client still sends is read and thrown away until the answer is out.
  void Leave() {
    state_ = State::kLeaving;
    buffer_.clear();
    socket_->disconnectFromHost();
  }

  QTcpSocket* socket_;
  const HttpServer::LateHandler& handler_;
  bool is_in_handler_ = false;
  AnswerDelay delay_;
  QByteArray buffer_;
  QTimer idle_;
  State state_ = State::kReading;
};

}  // namespace

HttpServer::HttpServer(Handler handler, AnswerDelay delay, std::unique_ptr<QTcpServer> listener)
    : HttpServer(LateHandler([handler = std::move(handler)](const HttpRequest& request,
                                                            const auto& answer) {
                   answer(handler(request));
                 }),
                 delay, std::move(listener)) {}

HttpServer::HttpServer(LateHandler handler, AnswerDelay delay, std::unique_ptr<QTcpServer> listener)
    : handler_(std::move(handler)), delay_(delay), listener_(std::move(listener)) {
  // Unlike newConnection, this is emitted after the TLS handshake.
  connect(listener_.get(), &QTcpServer::pendingConnectionAvailable, this,
          &HttpServer::TakeConnections);
}

std::expected<quint16, QString> HttpServer::Listen(quint16 port, const QHostAddress& address) {
  if (!listener_->listen(address, port)) {
    return std::unexpected(QStringLiteral("Port %1 cannot be used: %2.")
                               .arg(QString::number(port), listener_->errorString()));
  }
  return listener_->serverPort();
}

void HttpServer::TakeConnections() {
  while (QTcpSocket* socket = listener_->nextPendingConnection()) {
    if (children().size() >= max_connections_) {
      socket->abort();
      socket->deleteLater();
      continue;
    }
    new Connection(socket, handler_, delay_, this);
  }
}

}  // namespace quayline
