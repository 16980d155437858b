// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineView>

#include <chrono>

#include "async/wait.h"
#include "bench/job/contender.h"
#include "cli/cli_questions.h"
#include "core/app_context.h"
#include "platform/linux/linux_adapters.h"
#include "platform/linux/linux_desktop.h"
#include "script/job_runner.h"
#include "script/web/web_engine.h"

namespace quayline::bench {

namespace {

// In the time that pages use, too.
qint64 Now() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

// The page's own events, as "event <microseconds> page.<what>" lines.
constexpr char kPageTimes[] = R"((() => {
  const navigation = performance.getEntriesByType('navigation')[0];
  const names = ['fetchStart', 'requestStart', 'responseStart', 'responseEnd', 'domInteractive',
                 'domComplete', 'loadEventEnd'];
  return names.map((name) => Math.round((performance.timeOrigin + navigation[name]) * 1000) +
                             ' page.' + name).join('\n');
})())";

class QuaylineContender final : public Contender {
 public:
  QuaylineContender(const JobSite& site, PageView view)
      : site_(site),
        view_(view),
        context_(folder_.path(), adapters_, desktop_),
        runner_(context_, WebPageHosts(context_.job_options, context_.translator), questions_) {
    SelectRouter(context_.session, site.router);
    context_.session.router_ip = site.page.host();
    context_.session.http_port = QString::number(site.page.port());
    context_.job_options.throttle = false;
    QObject::connect(&runner_, &JobRunner::activeHostChanged, &runner_,
                     [this](PageHost* host) { Show(host); });
    QObject::connect(&runner_.Log(), &JobLog::appended, &runner_,
                     [this](const QString& text) { NoteLog(text); });
  }

  // A job opens a new browser; its first page is loaded here.
  Task<> Prepare() override {
    runner_.Open();
    PageHost* host = runner_.ActiveHost();
    Show(host);
    ConnectTrace(host);
    host->SetLogin({.scheme = site_.page.scheme(),
                    .host = site_.page.host(),
                    .port = site_.page.port(),
                    .username = site_.router.routerusername,
                    .password = site_.router.routerpassword});
    host->Navigate2(site_.page.toString(), {});
    co_await Until([host] {
      return !host->Navigation().busy;
    }).WokenBy(host, &PageHost::navigationChanged);
  }

  Task<> Do(QString what) override {
    if (what == QLatin1String("prepare")) {
      co_await Prepare();
      co_return;
    }
    if (what == QLatin1String("commands")) {
      co_await MeasureCommands();
      co_return;
    }
    is_tracing_ = what == QLatin1String("trace");
    co_await RunEntries(site_.entries);
    for (const QString& event : std::exchange(events_, {})) {
      Say(QStringLiteral("event ") + event);
    }
    is_tracing_ = false;
  }

 private:
  void Show(PageHost* host) const {
    QWidget* view = host->Widget();
    view->resize(SizeOf(view_));
    view->setVisible(view_ != PageView::kHidden);
  }

  Task<> RunEntries(QList<PortEntry> entries) {
    context_.port_list.SetEntries(std::move(entries));
    runner_.Run();
    co_await Until([this] { return !runner_.IsRunning(); }).WokenBy(&runner_, &JobRunner::ended);
  }

  // Each line of a script is logged when its command begins: what lies between two such lines is
  // the whole cost of the first one's command, and of the check of the page before the second.
  Task<> MeasureCommands() {
    constexpr int kMany = 100;
    constexpr int kFew = 30;
    const auto Repeat = [this](const char* line, int times) {
      for (int i = 0; i < times; ++i) {
        context_.session.update_script.append(QLatin1String(line));
      }
    };
    const QStringList script = std::exchange(context_.session.update_script, {});
    Repeat("nav(\"rules.html\")", kFew);
    Repeat("set_type_choices(\"TCP|UDP|Both\")", kMany);
    Repeat("set_name(\"rule_name,\")", kMany);
    Repeat("set_combobox(\"protocol,\")", kMany);
    Repeat("set_checkbox(\"enabled,\")", kMany);
    Repeat("click_button(\"btn_clear\")", kMany);
    Repeat("no command", 1);
    is_tracing_ = true;
    co_await RunEntries(site_.entries.first(1));
    is_tracing_ = false;
    context_.session.update_script = script;
    SayCosts();
  }

  void SayCosts() {
    static const QRegularExpression step(QStringLiteral("^(\\d+) log.*\\. (\\w+)\\(\""));
    QString command;
    qint64 begun = 0;
    for (const QString& event : std::exchange(events_, {})) {
      const QRegularExpressionMatch match = step.match(event);
      const bool is_step = event.contains(QLatin1String("Step "));
      if (!is_step) {
        continue;
      }
      const qint64 now = event.section(QLatin1Char(' '), 0, 0).toLongLong();
      if (!command.isEmpty()) {
        Say(QStringLiteral("cost %1 %2").arg(command).arg(now - begun));
      }
      command = match.captured(2);
      begun = now;
    }
  }

  void Note(qint64 time, const QString& what) {
    if (is_tracing_) {
      events_.append(QString::number(time) + QLatin1Char(' ') + what);
    }
  }

  void NoteLog(const QString& text) { Note(Now(), QStringLiteral("log ") + text.simplified()); }

  void ConnectTrace(PageHost* host) {
    QObject::connect(host, &PageHost::beforeNavigate, &runner_,
                     [this] { Note(Now(), QStringLiteral("host.started")); });
    QObject::connect(host, &PageHost::navigateComplete, &runner_,
                     [this] { Note(Now(), QStringLiteral("host.document")); });
    QObject::connect(host, &PageHost::documentComplete, &runner_, [this, host] {
      Note(Now(), QStringLiteral("host.loaded"));
      if (is_tracing_) {
        AskPageTimes(host);
      }
    });
  }

  void AskPageTimes(PageHost* host) {
    auto* view = qobject_cast<QWebEngineView*>(host->Widget());
    view->page()->runJavaScript(QLatin1String(kPageTimes), QWebEngineScript::ApplicationWorld,
                                [this](const QVariant& times) {
                                  if (is_tracing_ && !times.toString().isEmpty()) {
                                    events_.append(times.toString().split(QLatin1Char('\n')));
                                  }
                                });
  }

  JobSite site_;
  PageView view_;
  QTemporaryDir folder_;
  LinuxAdapters adapters_;
  LinuxDesktop desktop_;
  AppContext context_;
  CliQuestions questions_{{}, [](const QString&) {}};
  JobRunner runner_;
  bool is_tracing_ = false;
  QStringList events_;
};

}  // namespace

std::unique_ptr<Contender> MakeQuaylineContender(const JobSite& site, PageView view) {
  return std::make_unique<QuaylineContender>(site, view);
}

}  // namespace quayline::bench
