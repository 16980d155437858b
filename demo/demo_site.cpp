// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "demo/demo_site.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

#include "demo/admin_page.h"
#include "demo/demo_updates.h"
#include "demo/port_probe.h"
#include "demo/router_model.h"

namespace quayline::demo {

namespace {

constexpr int kMaxProbes = 100;  // at a time
constexpr qsizetype kMaxWordBytes = 64;
constexpr qint64 kMaxFileBytes = qint64{256} << 20;

HttpResponse SitePage(const QString& title, const QString& content) {
  HttpResponse response;
  response.headers.emplaceBack("Cache-Control", "no-store");
  response.body =
      QStringLiteral(
          "<!DOCTYPE html><html lang=\"en\"><head><meta charset=\"utf-8\"><title>%1</title><style>"
          "body{font:16px sans-serif;margin:2em;max-width:40em;color:#123}"
          "h1{font-size:1.4em;color:#0b5563}input{font:inherit;padding:.2em .5em}"
          "</style></head><body><h1>%1</h1>%2</body></html>")
          .arg(Html(title), content)
          .toUtf8();
  return response;
}

HttpResponse WithStatus(int status, HttpResponse response) {
  response.status = status;
  return response;
}

HttpResponse TestForm(bool udp, const QHostAddress& client) {
  const QString protocol = QLatin1String(udp ? "UDP" : "TCP");
  return SitePage(
      QStringLiteral("Test a %1 port").arg(protocol),
      QStringLiteral("<p>Your address: <b id=\"address\">%1</b></p><form method=\"post\"><p>"
                     "<label>Port: <input name=\"port\" size=\"5\" maxlength=\"5\"></label>"
                     "<input type=\"hidden\" name=\"word\">"
                     "<input type=\"submit\" value=\"Check Port\"></p></form>"
                     "<p>This site then tries to reach that port of your address once.</p>")
          .arg(Html(client.toString())));
}

QString OutcomeText(PortProbe::Outcome outcome) {
  switch (outcome) {
    case PortProbe::Outcome::kConnected:
      return QStringLiteral("A connection was made.");
    case PortProbe::Outcome::kRefused:
      return QStringLiteral("The connection was refused.");
    case PortProbe::Outcome::kNoAnswer:
      return QStringLiteral("There was no answer.");
    case PortProbe::Outcome::kSent:
      return QStringLiteral("A datagram was sent. Whether it arrived can only be seen there.");
  }
  return {};
}

QHostAddress Plain(const QHostAddress& address) {
  bool is_v4 = false;
  const quint32 v4 = address.toIPv4Address(&is_v4);
  return is_v4 ? QHostAddress(v4) : address;
}

bool IsTestPage(const QString& path) {
  return path == QLatin1String("/port_test.php") || path == QLatin1String("/port_test_udp.php");
}

HttpResponse PlainText(const QString& text) {
  HttpResponse response;
  response.content_type = "text/plain; charset=utf-8";
  response.headers.emplaceBack("Cache-Control", "no-store");
  response.body = text.toUtf8() + '\n';
  return response;
}

}  // namespace

std::expected<quint16, QString> DemoSite::Start(const SiteOptions& options) {
  options_ = options;
  limit_ = std::make_unique<ProbeLimit>(options.probes_a_minute);
  server_ = std::make_unique<HttpServer>(
      [this](const HttpRequest& request, const Answerer& answer) { Answer(request, answer); });
  auto port = server_->Listen(options.port, options.address);
  if (port && !options.databases.isEmpty()) {
    if (const auto added = AddUpdates(*port); !added) {
      return std::unexpected(added.error());
    }
  }
  return port;
}

std::expected<void, QString> DemoSite::AddUpdates(quint16 port) {
  QUrl site;
  site.setScheme(QStringLiteral("http"));
  site.setHost(options_.address.toString());
  site.setPort(port);
  auto updates = MakeUpdates(
      {.databases = options_.databases, .version = options_.offered_version, .site = site});
  if (!updates) {
    return std::unexpected(updates.error());
  }
  updates_ = std::move(*updates);
  return {};
}

void DemoSite::Answer(const HttpRequest& request, const Answerer& answer) {
  const QHostAddress client = ClientOf(request);
  const bool udp = request.path.contains(QLatin1String("udp"));
  if (IsTestPage(request.path)) {
    if (request.method == "POST") {
      Probe(request, udp, answer);
    } else {
      answer(TestForm(udp, client));
    }
  } else if (request.path == QLatin1String("/my-address")) {
    answer(PlainText(client.toString()));
  } else if (const auto update = updates_.find(request.path); update != updates_.end()) {
    answer(*update);
  } else if (request.path.startsWith(QLatin1String("/files/")) ||
             request.path.startsWith(QLatin1String("/updates/"))) {
    answer(FileAnswer(request.path));
  } else {
    answer(NotFound());
  }
}

void DemoSite::Probe(const HttpRequest& request, bool udp, const Answerer& answer) {
  const FormFields form(request.body);
  const QString title = QStringLiteral("Result");
  bool is_number = false;
  const int port = form.Value(QStringLiteral("port")).toInt(&is_number);
  const QByteArray word = form.Value(QStringLiteral("word")).toUtf8();
  const QHostAddress client = ClientOf(request);
  if (!is_number || port < 1 || port > 65535 || word.size() > kMaxWordBytes) {
    answer(WithStatus(400, SitePage(title, QStringLiteral("<p>A port is a number from 1 to 65535."
                                                          "</p>"))));
  } else if (client.isNull() || probes_under_way_ >= kMaxProbes ||
             !limit_->Allow(client, ProbeLimit::Clock::now())) {
    answer(WithStatus(429, SitePage(title, QStringLiteral("<p>Too many tests. Please wait a "
                                                          "minute.</p>"))));
  } else {
    ++probes_under_way_;
    const auto show = [this, answer, title](PortProbe::Outcome outcome) {
      --probes_under_way_;
      answer(SitePage(title, QStringLiteral("<p>%1</p>").arg(OutcomeText(outcome))));
    };
    new PortProbe({client, static_cast<quint16>(port), udp, word}, show, this);
  }
}

// Null where the proxy names no address: then no address is probed.
QHostAddress DemoSite::ClientOf(const HttpRequest& request) const {
  const QHostAddress peer = Plain(request.peer);
  if (options_.proxy.isNull() || peer != Plain(options_.proxy)) {
    return peer;
  }
  // Each proxy appends to the list, or adds a line of its own: only the last address is of the one
  // that is trusted.
  QByteArray list;
  for (const auto& [name, value] : request.headers) {
    if (name == "x-forwarded-for") {
      list = value;
    }
  }
  return Plain(QHostAddress(QString::fromLatin1(list.split(',').last().trimmed())));
}

HttpResponse DemoSite::FileAnswer(const QString& path) const {
  if (options_.folder.isEmpty()) {
    return NotFound();
  }
  const QString top = path.section(QLatin1Char('/'), 1, 1);
  const QString root =
      QFileInfo(options_.folder + QLatin1Char('/') + top).canonicalFilePath() + QLatin1Char('/');
  const QFileInfo info(root + path.mid(top.size() + 2));
  QFile file(info.canonicalFilePath());
  if (!info.isFile() || !file.fileName().startsWith(root) || file.size() > kMaxFileBytes ||
      !file.open(QIODevice::ReadOnly)) {
    return NotFound();
  }
  HttpResponse response;
  response.content_type = QMimeDatabase().mimeTypeForFile(info).name().toLatin1();
  response.body = file.readAll();
  return response;
}

}  // namespace quayline::demo
