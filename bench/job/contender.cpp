// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "bench/job/contender.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

#include "async/flow.h"

namespace quayline::bench {

namespace {

Task<> DoAndSay(Task<> task, QString said) {
  co_await task;
  Say(said);
}

}  // namespace

QSize SizeOf(PageView view) {
  constexpr QSize kWindow(1024, 768);
  constexpr QSize kStamp(16, 16);
  return view == PageView::kStamp ? kStamp : kWindow;
}

void Say(const QString& line) {
  std::printf("%s\n", line.toUtf8().constData());
  std::fflush(stdout);
}

int Serve(Contender& contender) {
  Flow flow;
  flow.Start(DoAndSay(contender.Prepare(), QStringLiteral("ready")));
  QByteArray received;
  QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &flow, [&] {
    char bytes[256];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) {
      input.setEnabled(false);
      QCoreApplication::quit();
      return;
    }
    received.append(bytes, count);
    if (const qsizetype end = received.indexOf('\n'); end >= 0) {
      const QString what = QString::fromUtf8(received.first(end));
      received.remove(0, end + 1);
      flow.Start(DoAndSay(contender.Do(what), QStringLiteral("done")));
    }
  });
  return QCoreApplication::exec();
}

}  // namespace quayline::bench
