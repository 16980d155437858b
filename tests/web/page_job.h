// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTemporaryDir>

#include "core/app_context.h"
#include "script/job_runner.h"
#include "web/web_fixture.h"

namespace quayline::testing {

class NoAdapters final : public Adapters {
 public:
  QList<Adapter> List() const override { return {}; }
  QString LocalAddress(const QString&) const override { return {}; }
  QStringList AddressTable() const override { return {}; }
};

class NoDesktop final : public Desktop {
 public:
  bool OpenInBrowser(const QUrl&) override { return false; }
};

// A job of one entry, "Web", on the pages of a server on loopback.
class PageJob : public ::testing::Test {
 protected:
  PageJob() {
    const QUrl address = server_.Address({});
    context_.session.router_ip = address.host();
    context_.session.http_port = QString::number(address.port());
    context_.job_options.throttle = false;
    context_.port_list.SetEntries({{.app_name = QStringLiteral("Web"),
                                    .forwarded_to = QStringLiteral("1.1.1.1()"),
                                    .start_port = QStringLiteral("80"),
                                    .end_port = QStringLiteral("80"),
                                    .protocol = QStringLiteral("TCP")}});
  }

  void Start(const QStringList& script) {
    context_.session.update_script = script;
    runner_ = std::make_unique<JobRunner>(context_, WebPageHosts(context_.job_options));
    runner_->Open();
    runner_->ActiveHost()->Widget()->show();
    runner_->Run();
  }
  bool LogHolds(const char* text) {
    return RunUntil([&] { return runner_->Log().Text().contains(QLatin1String(text)); },
                    std::chrono::seconds(20));
  }
  bool Ends(std::chrono::milliseconds limit) {
    return RunUntil([&] { return !runner_->IsRunning(); }, limit);
  }

  ScriptedServer server_;
  QTemporaryDir folder_;
  NoAdapters adapters_;
  NoDesktop desktop_;
  AppContext context_{folder_.path(), adapters_, desktop_};
  std::unique_ptr<JobRunner> runner_;
};

}  // namespace quayline::testing
