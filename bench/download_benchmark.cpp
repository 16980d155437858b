// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Fetches one GiB over loopback into a file, with Download and with the command curl in turn, and
// prints the throughput and the most memory that each process had. Each runs in a process of its
// own; the server is a thread of this one.
//
//   download_benchmark [FOLDER]                  FOLDER takes the file; by default the temporary
//   one download_benchmark --fetch URL FILE CHUNK    one download; started by the former

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "async/flow.h"
#include "bench/median.h"
#include "transport/curl_transfer.h"
#include "transport/download.h"

namespace {

using quayline::CurlTransfer;
using quayline::Download;
using quayline::Flow;
using quayline::Task;

constexpr qint64 kBytes = qint64{1} << 30;
constexpr int kRounds = 5;

// Blocking sends: it is never what limits the other end.
void Serve(int listener) {
  const std::vector<char> block(1 << 20, 'q');
  while (true) {
    const int client = accept(listener, nullptr, nullptr);
    if (client < 0) {
      return;
    }
    std::array<char, 4096> request{};
    [[maybe_unused]] const auto read = recv(client, request.data(), request.size(), 0);
    const QByteArray head =
        "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(kBytes) + "\r\n\r\n";
    send(client, head.constData(), static_cast<size_t>(head.size()), MSG_NOSIGNAL);
    for (qint64 left = kBytes; left > 0;) {
      const auto sent = send(client, block.data(),
                             static_cast<size_t>(std::min<qint64>(left, 1 << 20)), MSG_NOSIGNAL);
      if (sent <= 0) {
        break;
      }
      left -= sent;
    }
    close(client);
  }
}

Task<> Run(Download* download) {
  co_await download->GetFileInformation();
  co_await download->DownLoad();
}

int Fetch(const QStringList& arguments) {
  Download download(std::make_unique<CurlTransfer>());
  download.options.URL = arguments.at(2);
  download.options.SaveLocation = arguments.at(3);
  download.options.CHUNK = arguments.at(4).toInt();
  bool is_complete = false;
  QObject::connect(&download, &Download::DLComplete, &download, [&] { is_complete = true; });
  Flow flow;
  QObject::connect(&flow, &Flow::ended, qApp, &QCoreApplication::quit);
  flow.Start(Run(&download));
  QCoreApplication::exec();
  return is_complete ? EXIT_SUCCESS : EXIT_FAILURE;
}

struct Result {
  double seconds = 0;
  double memory_mib = 0;
};

Result Measure(const QStringList& command) {
  QList<QByteArray> texts;
  std::vector<char*> arguments;
  for (const QString& text : command) {
    texts.append(text.toLocal8Bit());
  }
  for (QByteArray& text : texts) {
    arguments.push_back(text.data());
  }
  arguments.push_back(nullptr);
  QElapsedTimer timer;
  timer.start();
  const pid_t child = fork();
  if (child == 0) {
    execvp(arguments.front(), arguments.data());
    std::_Exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (status != 0) {
    std::fprintf(stderr, "%s failed\n", qPrintable(command.join(QLatin1Char(' '))));
    std::exit(EXIT_FAILURE);
  }
  return {static_cast<double>(timer.nsecsElapsed()) / 1e9,
          static_cast<double>(usage.ru_maxrss) / 1024};
}

int Compare(const QString& folder) {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{.sin_family = AF_INET, .sin_addr = {htonl(INADDR_LOOPBACK)}};
  socklen_t length = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      listen(listener, 4) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    return EXIT_FAILURE;
  }
  std::thread(Serve, listener).detach();
  const QString url = QStringLiteral("http://127.0.0.1:%1/file").arg(ntohs(address.sin_port));
  const QTemporaryDir work(folder + QStringLiteral("/download.XXXXXX"));
  const QString file = work.filePath(QStringLiteral("file"));
  const auto own = [&](const char* chunk) {
    return QStringList{QCoreApplication::applicationFilePath(), QStringLiteral("--fetch"), url,
                       file, QLatin1String(chunk)};
  };
  const std::array contenders{
      std::pair{"curl", QStringList{QStringLiteral("curl"), QStringLiteral("-s"),
                                    QStringLiteral("-o"), file, url}},
      std::pair{"Download, chunks of 64 KiB", own("65536")},
      std::pair{"Download, chunks of 1 KiB", own("1024")}};
  std::array<std::vector<double>, contenders.size()> seconds;
  std::array<double, contenders.size()> memory{};
  for (int round = 0; round < kRounds; ++round) {
    for (std::size_t i = 0; i < contenders.size(); ++i) {
      const std::size_t turn = (i + static_cast<std::size_t>(round)) % contenders.size();
      QFile::remove(file);
      const Result result = Measure(contenders.at(turn).second);
      seconds.at(turn).push_back(result.seconds);
      memory.at(turn) = std::max(memory.at(turn), result.memory_mib);
    }
  }
  const double curl = quayline::bench::Median(seconds.front());
  for (std::size_t i = 0; i < contenders.size(); ++i) {
    const double median = quayline::bench::Median(seconds.at(i));
    std::printf("%-28s %6.0f MiB/s  %5.2f of curl's time  %5.1f MiB\n", contenders.at(i).first,
                static_cast<double>(kBytes >> 20) / median, median / curl, memory.at(i));
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.value(1) == QLatin1String("--fetch") && arguments.size() == 5) {
    return Fetch(arguments);
  }
  return Compare(arguments.value(1, QDir::tempPath()));
}
