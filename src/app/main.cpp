// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QMessageBox>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <unistd.h>

#include "app/program_windows.h"
#include "app/single_instance.h"
#include "core/app_context.h"
#include "core/ini_file.h"
#include "core/program_folder.h"
#include "core/shipped_databases.h"
#include "i18n/language_locale.h"
#include "platform/linux/linux_adapters.h"
#include "platform/linux/linux_desktop.h"
#include "platform/linux/linux_echoes.h"
#include "platform/linux/linux_firewall.h"
#include "platform/linux/linux_listeners.h"
#include "platform/linux/private_memory.h"
#include "platform/linux/stop_signals.h"
#include "platform/linux/wine_settings.h"
#include "script/web/web_engine.h"
#include "ui/entries/entry_windows.h"
#include "ui/main/main_frame.h"
#include "ui/main/splash_screen.h"
#include "ui/main/version.h"
#include "ui/toolkit/theme.h"
#include "ui/toolkit/window_language.h"

namespace quayline {
namespace {

struct Options {
  QString data_folder;  // empty: looked for
  QString list_file;    // a saved list to open, or empty
  bool run_update = false;
};

void NameProgram() {
  QCoreApplication::setApplicationName(QStringLiteral("quayline"));
  QCoreApplication::setApplicationVersion(ProgramVersion());
  QGuiApplication::setApplicationDisplayName(QStringLiteral("Quayline"));
  QGuiApplication::setDesktopFileName(QStringLiteral("quayline"));
}

// Ends the process for --help, --version and options that are not known.
Options ReadOptions() {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Opens the ports of your home router by working through its own pages."));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption data(
      QStringLiteral("data"),
      QStringLiteral("The program's folder: settings, list and databases. Found by itself when it "
                     "is not given."),
      QStringLiteral("DIR"));
  const QCommandLineOption run_update(
      QStringLiteral("run-update"),
      QStringLiteral("Press \"Update Router\" as soon as the main window is filled. The windows "
                     "stay open."));
  parser.addOption(data);
  parser.addOption(run_update);
  parser.addPositionalArgument(QStringLiteral("FILE.qyl"),
                               QStringLiteral("A saved list of ports to open."),
                               QStringLiteral("[FILE.qyl]"));
  parser.process(*QCoreApplication::instance());
  const QStringList files = parser.positionalArguments();
  if (files.size() > 1) {
    std::fprintf(stderr, "quayline: only one list can be opened at a time\n");
    std::exit(EXIT_FAILURE);
  }
  return {.data_folder = parser.value(data),
          .list_file = files.isEmpty() ? QString() : QFileInfo(files.first()).absoluteFilePath(),
          .run_update = parser.isSet(run_update)};
}

// Help and version are for terminals, which may have no display for an application with windows.
bool AsksForText(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const QByteArrayView argument(argv[i]);
    if (argument == "--help" || argument == "-h" || argument == "--help-all" ||
        argument == "--version" || argument == "-v") {
      return true;
    }
  }
  return false;
}

constexpr Message kNoFolder{"There is no folder \"%1\"."};

std::expected<QString, Sentence> ChooseFolder(const QString& wanted) {
  if (wanted.isEmpty()) {
    const QString executable_folder = QCoreApplication::applicationDirPath();
    return FindProgramFolder(executable_folder, ShippedFolder(executable_folder));
  }
  if (!QDir(wanted).exists()) {
    return std::unexpected(Sentence{kNoFolder, {wanted}});
  }
  return QDir(wanted).absolutePath();
}

// The user's own language files come before those that came with the program.
void FindLanguages(Translator& translator) {
  if (translator.LanguageFiles().isEmpty()) {
    translator.SetFolder(ShippedFolder(QCoreApplication::applicationDirPath()) +
                         QStringLiteral("/Languages"));
  }
}

// The language that the settings in `folder` name. Without a folder it is not known which one the
// user chose: the desktop's.
void ChooseLanguage(Translator& translator, const QString& folder) {
  FindLanguages(translator);
  if (!folder.isEmpty()) {
    translator.Choose(ReadIniValue(QStringLiteral("main"), QLatin1String(setting::kLanguage.key),
                                   folder + QStringLiteral("/settings.ini")));
    return;
  }
  QStringList names;
  for (const QString& choice : translator.AvailableLanguages()) {
    names.append(translator.LanguageOf(choice));
  }
  translator.Choose(LanguageOfDesktop(QLocale::system(), names));
}

// Ends a start without a main window. `folder` is that of the program, or empty.
int ShowFailure(QApplication& application, const Sentence& why, const QString& folder) {
  std::fprintf(stderr, "quayline: %s\n", qPrintable(EnglishOf(why)));
  Translator translator(folder);
  ChooseLanguage(translator, folder);
  const WindowLanguage window_language(application, translator);
  QMessageBox box(QMessageBox::Critical, QStringLiteral("Quayline"), TextOf(why, translator));
  QObject::connect(&box, &QMessageBox::finished, qApp, &QCoreApplication::quit,
                   Qt::QueuedConnection);
  box.open();
  QCoreApplication::exec();
  return 2;
}

// What the command line asks for, once the main window is filled.
void BeginWith(MainWindow& main, const Options& options) {
  if (options.run_update && !options.list_file.isEmpty()) {
    main.List().OpenFile(options.list_file, [&main] { main.UpdateRouter(); });
  } else if (options.run_update) {
    main.UpdateRouter();
  } else if (!options.list_file.isEmpty()) {
    main.List().OfferFile(options.list_file);
  }
}

// Another instance was started, and has ended in favour of this one.
void ComeForward(QWidget& window, MainWindow& main, const QString& list_file) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
  if (!list_file.isEmpty()) {
    main.List().OfferFile(list_file);
  }
}

constexpr Message kBesideAnother{
    "Another Quayline is running and does not answer, so this one has started beside it. If both "
    "change your list of ports, you will be asked which one to keep."};
constexpr Message kLookAtRouter{"To see what the router has now, press \"Check Router\"."};
constexpr Message kRunsAlready{"Quayline is running already: press \"Update Router\" there."};
constexpr Message kStartedAsRoot{
    "You have started Quayline as the administrator (root), which it does not need: the pages of "
    "your router then run without the browser's sandbox, so please start it as an ordinary user."};

QStringList CutOffNotices(const JobJournals& journals, const Translator& texts) {
  QStringList notices;
  for (const CutOffJob& job : journals.TakeCutOff()) {
    notices.append(CutOffNotice(job, texts.Text(kLookAtRouter), texts));
  }
  return notices;
}

// A signal closes the main window, which goes at once; the program ends when the pages of its job
// have become idle.
void EndOnSignals(StopSignals& signals, MainFrame& main_window, JobFlags& flags) {
  signals.disconnect(qApp);
  QObject::connect(&signals, &StopSignals::first, &main_window, [&main_window, &flags] {
    flags.ends_by_signal = true;
    main_window.CloseWithoutAsking();
    if (flags.LeavingRuns() > 0) {
      std::fprintf(stderr,
                   "quayline: What is on its way to the router is waited for. The same signal once "
                   "more ends the program at once.\n");
    }
  });
}

// The browser's sandbox cannot be used by root. Without a desktop nobody would close the box.
void WarnOfRoot(Prompts& prompts, const Translator& texts, MainWindow& main,
                const std::function<void()>& go_on) {
  const QString platform = QGuiApplication::platformName();
  const bool is_desktop =
      platform == QLatin1String("xcb") || platform.startsWith(QLatin1String("wayland"));
  if (geteuid() != 0 || !is_desktop) {
    go_on();
    return;
  }
  prompts.Tell(&main, texts.Text(kStartedAsRoot), go_on);
}

int Run(QApplication& application, const Options& options, StopSignals& signals) {
  // The main window's end is the program's, whatever else is open.
  QGuiApplication::setQuitOnLastWindowClosed(false);
  const Theme theme(application);
  const auto folder = ChooseFolder(options.data_folder);
  if (!folder) {
    return ShowFailure(application, folder.error(), {});
  }
  SingleInstance instance(*folder);
  InstanceState state = instance.TryAcquire();
  if (state == InstanceState::kRunning && options.run_update) {
    return ShowFailure(application, {kRunsAlready}, *folder);
  }
  if (state == InstanceState::kRunning) {
    if (instance.HandOver(options.list_file)) {
      return 0;
    }
    state = instance.TryAcquire();  // it has ended, or hangs, since it answered
  }
  LinuxAdapters adapters;
  LinuxDesktop desktop;
  AppContext context(*folder, adapters, desktop);
  if (options.data_folder.isEmpty()) {
    context.shipped_folder = ShippedFolder(QCoreApplication::applicationDirPath());
  }
  ChooseLanguage(context.translator, *folder);
  const WindowLanguage window_language(application, context.translator);
  context.router_locks = RouterLocks(RouterLocks::SystemFolders());
  context.journals = JobJournals(JobJournals::SystemFolder());
  const LinuxListeners listeners;
  context.listeners = &listeners;
  LinuxFirewall firewall;
  context.firewall = &firewall;
  WindowPrompts prompts(context.translator);
  SystemHostNames host_names;
  const WineSettings foreign_settings;
  const EntryWindows entries{context, prompts, host_names, foreign_settings};
  LinuxEchoes echoes;
  ProgramWindows windows(context, prompts, entries, echoes, firewall);
  MainFrame main_window(context, prompts, windows);
  QObject::connect(&main_window, &MainFrame::closed, qApp, &QCoreApplication::quit,
                   Qt::QueuedConnection);
  EndOnSignals(signals, main_window, context.job_flags);
  SplashScreen splash;
  QObject::connect(&main_window, &MainFrame::startFailed, &splash, &QWidget::close);
  MainWindow& main = main_window.Main();
  QObject::connect(&instance, &SingleInstance::requested, &main,
                   [&main_window, &main](const QString& list_file) {
                     ComeForward(main_window, main, list_file);
                   });
  QObject::connect(&main_window, &MainFrame::leaving, &instance, &SingleInstance::Release);
  QObject::connect(&main, &MainWindow::ready, &main, [&, state] {
    QStringList notices;
    if (state != InstanceState::kAcquired) {
      notices.append(context.translator.Text(kBesideAnother));
    }
    notices += CutOffNotices(context.journals, context.translator);
    if (!notices.isEmpty()) {
      prompts.Notify(&main, notices.join(QStringLiteral("\n\n")));
    }
    instance.Listen();
    windows.SearchSecondRouter();
    WarnOfRoot(prompts, context.translator, main, [&main, &options] { BeginWith(main, options); });
  });
  if (options.run_update) {
    main_window.show();
  } else {
    QObject::connect(&splash, &SplashScreen::timeForMainWindow, &main_window, &QWidget::show);
    splash.show();
  }
  // The splash screen is drawn first, and shown while the main window is made ready.
  QTimer::singleShot(0, &main_window, &MainFrame::Load);
  const int result = QCoreApplication::exec();
  return main_window.HasFailed() ? 1 : result;
}

}  // namespace
}  // namespace quayline

int main(int argc, char** argv) {
  using namespace quayline;
  KeepMemoryPrivate();
  NameProgram();
  if (AsksForText(argc, argv)) {
    const QCoreApplication application(argc, argv);
    ReadOptions();
    return 0;
  }
  StopSignals::HoldBack();
  PrepareWebEngine();
  QApplication application(argc, argv);
  StopSignals signals;
  QObject::connect(&signals, &StopSignals::first, &application, &QCoreApplication::quit);
  QObject::connect(&signals, &StopSignals::second, [] { std::_Exit(EXIT_FAILURE); });
  return Run(application, ReadOptions(), signals);
}
