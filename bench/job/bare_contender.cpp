// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QAuthenticator>
#include <QElapsedTimer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineView>

#include "async/wait.h"
#include "bench/job/contender.h"
#include "bench/job/job_data.h"
#include "script/web/web_profile.h"

namespace quayline::bench {

namespace {

// Discards the console messages of pages.
class SilentPage final : public QWebEnginePage {
 public:
  using QWebEnginePage::QWebEnginePage;

 protected:
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                const QString&) override {}
};

QString Quoted(const QString& text) { return QLatin1Char('"') + text + QLatin1Char('"'); }

class BareContender final : public Contender {
 public:
  BareContender(const JobSite& site, PageView view, bool with_scripts)
      : site_(site),
        page_(std::make_unique<SilentPage>(with_scripts ? &program_profile_.Engine()
                                                        : &bare_profile_)) {
    QObject::connect(page_.get(), &QWebEnginePage::authenticationRequired, page_.get(),
                     [this](const QUrl&, QAuthenticator* authenticator) {
                       authenticator->setUser(site_.router.routerusername);
                       authenticator->setPassword(site_.router.routerpassword);
                     });
    QObject::connect(page_.get(), &QWebEnginePage::loadFinished, page_.get(), [this] { ++loads_; });
    if (view != PageView::kHidden) {
      view_ = std::make_unique<QWebEngineView>();
      view_->setPage(page_.get());
      view_->resize(SizeOf(view));
      view_->show();
    }
  }

  // The page may not outlive its profile, nor the view its page.
  ~BareContender() override {
    view_.reset();
    page_.reset();
  }

  Task<> Prepare() override { co_await Load(); }

  Task<> Do(QString what) override {
    if (what == QLatin1String("prepare")) {
      co_return;
    }
    if (what == QLatin1String("commands")) {
      co_await MeasureSteps();
      co_return;
    }
    for (const PortEntry& entry : site_.entries) {
      co_await Load();
      co_await Fill(FieldsOf(entry));
      const int before = loads_;
      page_->runJavaScript(QStringLiteral("document.getElementsByName('btn_add')[0].click()"),
                           QWebEngineScript::ApplicationWorld);
      co_await NextLoad(before);
    }
  }

 private:
  Task<> Load() {
    const int before = loads_;
    page_->load(site_.page);
    co_await NextLoad(before);
  }

  Until NextLoad(int before) {
    return Until([this, before] { return loads_ > before; })
        .WokenBy(page_.get(), &QWebEnginePage::loadFinished);
  }

  Task<> Run(QString code) {
    OneShot<QVariant> answer;
    page_->runJavaScript(code, QWebEngineScript::ApplicationWorld, answer.Callback());
    co_await answer;
  }

  Task<> Fill(FieldValues fields) {
    const QString element = QStringLiteral("document.getElementsByName('%1')[0].%2");
    const auto Text = [&element](const char* name, const QString& value) {
      return element.arg(QLatin1String(name), QStringLiteral("value = ")) + Quoted(value);
    };
    co_await Run(Text("rule_name", fields.name));
    co_await Run(Text("start_port", fields.start));
    co_await Run(Text("end_port", fields.end));
    co_await Run(Text("protocol", fields.protocol.toLower()));
    co_await Run(Text("server_ip", fields.address));
    co_await Run(element.arg(QStringLiteral("enabled"), QStringLiteral("checked = true")));
  }

  Task<> MeasureSteps() {
    constexpr int kTrips = 200;
    constexpr int kLoads = 20;
    QElapsedTimer clock;
    for (int i = 0; i < kTrips; ++i) {
      clock.start();
      co_await Run(QStringLiteral("1"));
      Tell("round_trip", clock.nsecsElapsed());
    }
    for (int i = 0; i < kLoads; ++i) {
      clock.start();
      co_await Load();
      Tell("load", clock.nsecsElapsed());
    }
  }

  static void Tell(const char* what, qint64 nanoseconds) {
    constexpr qint64 kNanosecondsPerMicrosecond = 1000;
    Say(QStringLiteral("cost %1 %2")
            .arg(QLatin1String(what))
            .arg(nanoseconds / kNanosecondsPerMicrosecond));
  }

  JobSite site_;
  QWebEngineProfile bare_profile_;
  JobOptions options_;
  const Translator translator_{QString()};
  WebProfile program_profile_{options_, translator_, nullptr};
  std::unique_ptr<QWebEnginePage> page_;
  std::unique_ptr<QWebEngineView> view_;
  int loads_ = 0;
};

}  // namespace

std::unique_ptr<Contender> MakeBareContender(const JobSite& site, PageView view,
                                             bool with_scripts) {
  return std::make_unique<BareContender>(site, view, with_scripts);
}

}  // namespace quayline::bench
