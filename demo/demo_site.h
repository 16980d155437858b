// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QString>

#include <expected>
#include <functional>
#include <memory>

#include "demo/probe_limit.h"
#include "transport/http_message.h"
#include "transport/http_server.h"

namespace quayline::demo {

struct SiteOptions {
  QHostAddress address = QHostAddress(QHostAddress::LocalHost);
  quint16 port = 0;  // 0: any free one
  // A reverse proxy, whose header "X-Forwarded-For" names the client. That of any other sender is
  // ignored.
  QHostAddress proxy;
  // The folder whose "files" and "updates" are served; empty: none.
  QString folder;
  int probes_a_minute = 30;  // for each address
  // Updates are made of the databases in this folder, in place of the folder's; empty: none.
  QString databases;
  QString offered_version = QStringLiteral("99.0.0");
};

// The web site that the program works with: its port test pages, pictures and updates.
//
//   /port_test.php, /port_test_udp.php   a form with the field "port" and the button "Check Port";
//                                        posted, they probe that port of the client's address
//   /my-address                          the client's address, as plain text
//   /files/..., /updates/...             files of the folder
//   /updates/qyl_v3/...                  or an update that is made when the site starts
//
// A form's field "word" is what the probe carries. A result page is sent when its probe is over.
class DemoSite final : public QObject {
 public:
  // Gives the port, or a sentence about the error. Called once.
  std::expected<quint16, QString> Start(const SiteOptions& options);

 private:
  using Answerer = std::function<void(HttpResponse)>;

  void Answer(const HttpRequest& request, const Answerer& answer);
  void Probe(const HttpRequest& request, bool udp, const Answerer& answer);
  QHostAddress ClientOf(const HttpRequest& request) const;
  HttpResponse FileAnswer(const QString& path) const;
  std::expected<void, QString> AddUpdates(quint16 port);

  SiteOptions options_;
  QHash<QString, HttpResponse> updates_;  // by path
  std::unique_ptr<ProbeLimit> limit_;
  int probes_under_way_ = 0;
  std::unique_ptr<HttpServer> server_;
};

}  // namespace quayline::demo
