// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QCommandLineParser>
#include <QHash>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <unistd.h>

#include "bench/job/child_process.h"
#include "bench/job/job_data.h"
#include "bench/job/process_tree.h"
#include "bench/median.h"
#include "core/app_context.h"
#include "platform/linux/linux_adapters.h"
#include "platform/linux/linux_desktop.h"
#include "script/web/web_engine.h"
#include "ui/main/main_frame.h"
#include "ui/main/splash_screen.h"
#include "ui/toolkit/theme.h"

// From a process's start to its main window, filled and idle. The program starts itself for each
// measurement and builds the windows in the same order as the desktop program does.

namespace quayline::bench {
namespace {

double Milliseconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  constexpr double kMsPerSecond = 1e3;
  constexpr double kNanosecondsPerMs = 1e6;
  return static_cast<double>(time.tv_sec) * kMsPerSecond +
         static_cast<double>(time.tv_nsec) / kNanosecondsPerMs;
}

// The longest time during which the event loop was blocked.
class Heartbeat final : public QObject {
 public:
  Heartbeat() {
    connect(&timer_, &QTimer::timeout, this, [this] {
      const double now = Milliseconds(CLOCK_MONOTONIC);
      longest_gap_ = std::max(longest_gap_, now - last_);
      last_ = now;
    });
    timer_.start(1);
  }
  void Restart() {
    last_ = Milliseconds(CLOCK_MONOTONIC);
    longest_gap_ = 0;
  }
  double LongestGap() const { return longest_gap_; }

 private:
  QTimer timer_;
  double last_ = Milliseconds(CLOCK_MONOTONIC);
  double longest_gap_ = 0;
};

void Tell(const char* what, double value) {
  std::printf("%s %.2f\n", what, value);
  std::fflush(stdout);
}

// The main window opens no other one in this benchmark.
class NoWindows final : public WindowFactory {
 public:
  QWidget* Job(QWidget*) override { return nullptr; }
  QWidget* RouterCheck() override { return nullptr; }
  QDialog* AddEntry(QWidget*, std::function<void()>) override { return nullptr; }
  QDialog* EditEntry(QWidget*, int, std::function<void()>) override { return nullptr; }
  QDialog* Adapters(QWidget*, std::function<void(const QString&)>) override { return nullptr; }
  QDialog* PageView(QWidget*) override { return nullptr; }
  QDialog* SecondRouter(QWidget*) override { return nullptr; }
  QDialog* PortChecker(QWidget*) override { return nullptr; }
  QDialog* QuickPorts(QWidget*) override { return nullptr; }
  QDialog* RouterList(QWidget*, std::function<void(int)>) override { return nullptr; }
  QDialog* Scripts(QWidget*, std::function<void()>) override { return nullptr; }
  QDialog* OfComputer(QWidget*, ComputerWindow) override { return nullptr; }
  QDialog* StaticAddress(QWidget*) override { return nullptr; }
  QDialog* ProgramUpdate(QWidget*, std::function<void()>) override { return nullptr; }
  void CheckForUpdate(QWidget*, std::function<void()>) override {}
  QDialog* DatabaseUpdate(QWidget*, std::function<void()>) override { return nullptr; }
  bool HasSecondRouter() const override { return false; }
};

// Opens the windows as the desktop program does; `begun` is the time of the process's start.
int RunWindows(QApplication& application, const QString& folder, double begun) {
  QGuiApplication::setQuitOnLastWindowClosed(false);
  const Theme theme(application);
  LinuxAdapters adapters;
  LinuxDesktop desktop;
  AppContext context(folder, adapters, desktop);
  WindowPrompts prompts(context.translator);
  NoWindows windows;
  MainFrame main_window(context, prompts, windows);
  SplashScreen splash;
  Heartbeat heartbeat;
  const auto Since = [begun] { return Milliseconds(CLOCK_MONOTONIC) - begun; };
  QObject::connect(&main_window.Main(), &MainWindow::ready, &main_window, [&] {
    Tell("filled_ms", Since());
    Tell("filled_cpu_ms", Milliseconds(CLOCK_PROCESS_CPUTIME_ID));
    Tell("longest_block_ms", heartbeat.LongestGap());
  });
  QObject::connect(&splash, &SplashScreen::timeForMainWindow, &main_window, [&] {
    const double before = Milliseconds(CLOCK_MONOTONIC);
    main_window.show();
    main_window.repaint();
    Tell("show_ms", Milliseconds(CLOCK_MONOTONIC) - before);
  });
  splash.show();
  QTimer::singleShot(0, &main_window, [&] {
    Tell("splash_ms", Since());
    main_window.Load();
    heartbeat.Restart();
  });
  // Long after the splash screen; nothing is left to be done then.
  constexpr int kIdleAfter = 2500;
  QTimer::singleShot(kIdleAfter, &main_window, [&] {
    constexpr double kKibPerMib = 1024;
    const TreeMemory memory = MemoryOf(getpid());
    Tell("cpu_ms", Milliseconds(CLOCK_PROCESS_CPUTIME_ID));
    Tell("pss_mib", static_cast<double>(memory.pss_kib) / kKibPerMib);
    Tell("rss_mib", static_cast<double>(memory.rss_kib) / kKibPerMib);
    QCoreApplication::quit();
  });
  return QApplication::exec();
}

QList<RouterRecord> ManyRouters(int count) {
  QList<RouterRecord> routers;
  for (int i = 1; i <= count; ++i) {
    routers.append({.id = i,
                    .routername = QStringLiteral("Maker %1 Model %2").arg(i % 97).arg(i),
                    .routerusername = QStringLiteral("admin"),
                    .routersupportsboth = QStringLiteral("yes"),
                    .routercommands = QStringLiteral("nav(\"forward.htm\")\r\n").repeated(30)});
  }
  return routers;
}

using Values = QHash<QString, std::vector<double>>;

bool MeasureOnce(const QString& folder, Values& values) {
  const QString begun = QString::number(Milliseconds(CLOCK_MONOTONIC), 'f', 3);
  ChildProcess process({QCoreApplication::applicationFilePath().toStdString(), "--folder",
                        folder.toStdString(), "--begun", begun.toStdString()},
                       false);
  bool has_filled = false;
  while (const auto line = process.ReadLine(std::chrono::seconds(60))) {
    const QStringList words = QString::fromStdString(*line).split(QLatin1Char(' '));
    values[words.value(0)].push_back(words.value(1).toDouble());
    has_filled = has_filled || words.value(0) == QLatin1String("filled_ms");
  }
  return has_filled;
}

int Measure(int rounds, int count) {
  const QTemporaryDir many;
  const QTemporaryDir few;
  constexpr int kFew = 10;
  if (!WriteProgramFolder(ManyRouters(count), many.path()) ||
      !WriteProgramFolder(ManyRouters(kFew), few.path())) {
    std::fprintf(stderr, "The databases cannot be written.\n");
    return 2;
  }
  Values with_many;
  Values with_few;
  for (int round = 0; round < rounds; ++round) {
    if (!MeasureOnce(many.path(), with_many) || !MeasureOnce(few.path(), with_few)) {
      std::fprintf(stderr, "The main window does not get filled.\n");
      return 2;
    }
  }
  std::printf("%-18s %12d %12d routers (medians of %d starts)\n", "", count, kFew, rounds);
  for (const char* what : {"splash_ms", "filled_ms", "filled_cpu_ms", "longest_block_ms", "show_ms",
                           "cpu_ms", "pss_mib", "rss_mib"}) {
    std::printf("%-18s %12.1f %12.1f\n", what, Median(with_many.value(QLatin1String(what))),
                Median(with_few.value(QLatin1String(what))));
  }
  return 0;
}

int Run(QApplication& application) {
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addOptions(
      {{QStringLiteral("rounds"), QStringLiteral("Starts of each kind (7)."), QStringLiteral("N"),
        QStringLiteral("7")},
       {QStringLiteral("routers"), QStringLiteral("In the database (10000)."), QStringLiteral("N"),
        QStringLiteral("10000")},
       {QStringLiteral("folder"), QStringLiteral("For the program itself."), QStringLiteral("DIR")},
       {QStringLiteral("begun"), QStringLiteral("Likewise."), QStringLiteral("MS"),
        QStringLiteral("0")}});
  parser.process(application);
  const QString folder = parser.value(QStringLiteral("folder"));
  if (!folder.isEmpty()) {
    return RunWindows(application, folder, parser.value(QStringLiteral("begun")).toDouble());
  }
  return Measure(parser.value(QStringLiteral("rounds")).toInt(),
                 parser.value(QStringLiteral("routers")).toInt());
}

}  // namespace
}  // namespace quayline::bench

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  quayline::PrepareWebEngine();
  QApplication application(argc, argv);
  return quayline::bench::Run(application);
}
