// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// UniSock beside QTcpSocket, on one event loop and in turn: 1 GiB received and sent over loopback,
// and connections that are made and closed by the peer. The peer is a thread with a blocking
// socket.

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkProxy>
#include <QTcpSocket>

#include <arpa/inet.h>
#include <cstdio>
#include <ctime>
#include <functional>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "bench/median.h"
#include "transport/unisock.h"

namespace quayline::bench {
namespace {

using namespace Qt::StringLiterals;

constexpr qint64 kVolume = qint64{1} << 30;
constexpr qsizetype kBlock = qsizetype{1} << 20;
constexpr int kConnections = 4000;
constexpr int kRounds = 5;
const QString kLoopback = u"127.0.0.1"_s;

enum class Work { kReceive, kSend, kConnect };

// Serves `connections` callers, one after the other, in a thread of its own.
class Peer final {
 public:
  Peer(Work work, int connections) : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in own = {};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof own;
    const bool listens = ::bind(listener_, reinterpret_cast<sockaddr*>(&own), size) == 0 &&
                         ::listen(listener_, SOMAXCONN) == 0 &&
                         ::getsockname(listener_, reinterpret_cast<sockaddr*>(&own), &size) == 0;
    if (!listens) {
      std::perror("socket_benchmark");
      std::exit(1);
    }
    port_ = ntohs(own.sin_port);
    thread_ = std::thread([this, work, connections] {
      for (int i = 0; i < connections; ++i) {
        Serve(::accept(listener_, nullptr, nullptr), work);
      }
    });
  }
  ~Peer() {
    thread_.join();
    ::close(listener_);
  }

  quint16 Port() const { return port_; }

 private:
  static void Serve(int caller, Work work) {
    QByteArray block(kBlock, 'x');
    if (work == Work::kReceive) {
      for (qint64 sent = 0; sent < kVolume; sent += kBlock) {
        for (qsizetype part = 0; part < kBlock;) {
          part += ::send(caller, block.constData() + part, static_cast<size_t>(kBlock - part),
                         MSG_NOSIGNAL);
        }
      }
    } else if (work == Work::kSend) {
      qint64 received = 0;
      while (received < kVolume) {
        received += ::recv(caller, block.data(), kBlock, 0);
      }
    }
    ::close(caller);
  }

  int listener_;
  quint16 port_ = 0;
  std::thread thread_;
};

using Done = std::function<void()>;

void StartUniSock(UniSock& socket, Work work, quint16 port, const Done& done) {
  auto* const moved = new qint64(0);  // lives as long as the socket
  QObject::connect(&socket, &QObject::destroyed, [moved] { delete moved; });
  if (work == Work::kReceive) {
    QObject::connect(&socket, &UniSock::DataArrival, &socket, [&socket, moved] {
      SockValue value = QByteArray();
      if (socket.GetData(value)) {
        *moved += std::get<QByteArray>(value).size();
      }
    });
  } else if (work == Work::kSend) {
    const auto send = [&socket, moved] {
      if (*moved < kVolume) {
        *moved += kBlock;
        static_cast<void>(socket.SendData(QByteArray(kBlock, 'x')));
      }
    };
    QObject::connect(&socket, &UniSock::Connect, &socket, send);
    QObject::connect(&socket, &UniSock::SendComplete, &socket, send);
  }
  QObject::connect(&socket, &UniSock::Closing, &socket, done);
  static_cast<void>(socket.ConnectTo(kLoopback, port));
}

void StartTcpSocket(QTcpSocket& socket, Work work, quint16 port, const Done& done) {
  auto* const moved = new qint64(0);
  QObject::connect(&socket, &QObject::destroyed, [moved] { delete moved; });
  socket.setProxy(QNetworkProxy::NoProxy);
  if (work == Work::kReceive) {
    QObject::connect(&socket, &QTcpSocket::readyRead, &socket,
                     [&socket, moved] { *moved += socket.readAll().size(); });
  } else if (work == Work::kSend) {
    const auto send = [&socket, moved] {
      if (socket.bytesToWrite() == 0 && *moved < kVolume) {
        *moved += kBlock;
        socket.write(QByteArray(kBlock, 'x'));
      }
    };
    QObject::connect(&socket, &QTcpSocket::connected, &socket, send);
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, send);
  }
  QObject::connect(&socket, &QTcpSocket::disconnected, &socket, done);
  socket.connectToHost(kLoopback, port);
}

struct Times {
  std::vector<double> whole;      // seconds
  std::vector<double> processor;  // seconds of this thread, which also counts on a busy machine
};

// A socket is made for each connection.
template <typename Socket>
void Measure(void (*start)(Socket&, Work, quint16, const Done&), Work work, Times& times) {
  const int connections = work == Work::kConnect ? kConnections : 1;
  const Peer peer(work, connections);
  const auto now = [](clockid_t clock) {
    timespec time = {};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  };
  const double whole = now(CLOCK_MONOTONIC);
  const double processor = now(CLOCK_THREAD_CPUTIME_ID);
  for (int i = 0; i < connections; ++i) {
    QEventLoop loop;
    Socket socket;
    start(socket, work, peer.Port(), [&loop] { loop.quit(); });
    loop.exec();
  }
  times.whole.push_back(now(CLOCK_MONOTONIC) - whole);
  times.processor.push_back(now(CLOCK_THREAD_CPUTIME_ID) - processor);
}

void Print(const char* name, const Times& times, double amount, const char* unit) {
  std::printf("  %-10s %8.0f %s, %.2f s of processor time\n", name, amount / Median(times.whole),
              unit, Median(times.processor));
}

void Run() {
  constexpr double kMiB = static_cast<double>(kVolume >> 20);
  const struct {
    Work work;
    const char* name;
    double amount;
    const char* unit;
  } kWorks[] = {{Work::kReceive, "receive 1 GiB", kMiB, "MiB/s"},
                {Work::kSend, "send 1 GiB", kMiB, "MiB/s"},
                {Work::kConnect, "connect, and be closed", kConnections, "connections/s"}};
  for (const auto& each : kWorks) {
    Times own;
    Times qt;
    for (int round = 0; round < kRounds; ++round) {
      for (int turn = 0; turn < 2; ++turn) {
        if ((round + turn) % 2 == 0) {
          Measure<UniSock>(&StartUniSock, each.work, own);
        } else {
          Measure<QTcpSocket>(&StartTcpSocket, each.work, qt);
        }
      }
    }
    std::printf("%s\n", each.name);
    Print("UniSock", own, each.amount, each.unit);
    Print("QTcpSocket", qt, each.amount, each.unit);
    std::fflush(stdout);
  }
}

}  // namespace
}  // namespace quayline::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  quayline::bench::Run();
  return 0;
}
