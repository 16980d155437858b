// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/demo_router.h"

#include <QSslServer>

#include "demo/certificate.h"

namespace quayline::demo {

namespace {

constexpr char kStatePath[] = "/__state";
constexpr char kResetPath[] = "/__reset";

bool HasLogin(const HttpRequest& request, const QByteArray& user_and_password) {
  const QByteArray header = request.Header("authorization");
  const qsizetype blank = header.indexOf(' ');
  return blank > 0 && header.first(blank).toLower() == "basic" &&
         QByteArray::fromBase64(header.mid(blank + 1).trimmed()) == user_and_password;
}

HttpResponse AskForLogin(const char* realm) {
  HttpResponse response;
  response.status = 401;
  response.headers.emplaceBack("WWW-Authenticate", QByteArray("Basic realm=\"") + realm + "\"");
  response.body =
      "<html><head><title>401 Unauthorized</title></head><body><h1>401 Unauthorized</h1>"
      "<p>A login is required.</p></body></html>";
  return response;
}

HttpResponse WrongMethod() {
  HttpResponse response;
  response.status = 405;
  response.headers.emplaceBack("Allow", "GET, HEAD, POST");
  response.body = "<html><body><h1>405 Method Not Allowed</h1></body></html>";
  return response;
}

}  // namespace

std::expected<quint16, QString> DemoRouter::Start(const QString& model,
                                                  const DemoOptions& options) {
  const ModelInfo* info = FindModel(model);
  if (!info) {
    return std::unexpected(QStringLiteral("There is no model \"%1\".").arg(model));
  }
  auto listener = std::make_unique<QTcpServer>();
  if (options.https) {
    const auto certificate = ServerCertificate(options.certificate_file, options.key_file);
    if (!certificate) {
      return std::unexpected(certificate.error());
    }
    auto secure = std::make_unique<QSslServer>();
    secure->setSslConfiguration(*certificate);
    listener = std::move(secure);
  }
  server_.reset();
  info_ = info;
  options_ = options;
  table_ = std::make_unique<RuleTable>(options.entries);
  MakeModel();
  server_ =
      std::make_unique<HttpServer>([this](const HttpRequest& request) { return Answer(request); },
                                   options.delay, std::move(listener));
  return server_->Listen(options.port);
}

void DemoRouter::MakeModel() {
  requests_ = 0;
  wrong_logins_ = 0;
  model_ = info_->make(*table_, {.user = options_.user, .password = options_.password});
}

QList<Rule> DemoRouter::Rules() const { return table_ ? table_->Rules() : QList<Rule>(); }

int DemoRouter::Saves() const { return table_ ? table_->Saves() : 0; }

void DemoRouter::Reset() {
  if (table_) {
    table_->Clear();
    MakeModel();
  }
}

HttpResponse DemoRouter::Answer(const HttpRequest& request) {
  if (request.path == QLatin1String(kStatePath) || request.path == QLatin1String(kResetPath)) {
    return AnswerWithoutLogin(request);
  }
  ++requests_;
  if (!IsLetIn(request)) {
    return AskForLogin(info_->realm);
  }
  if (request.method != "GET" && request.method != "HEAD" && request.method != "POST") {
    return WrongMethod();
  }
  return model_->Answer(request);
}

bool DemoRouter::IsLetIn(const HttpRequest& request) {
  if (!info_->realm ||
      HasLogin(request, (options_.user + QLatin1Char(':') + options_.password).toUtf8())) {
    return true;
  }
  wrong_logins_ += request.Header("authorization").isEmpty() ? 0 : 1;
  return false;
}

HttpResponse DemoRouter::AnswerWithoutLogin(const HttpRequest& request) {
  const bool is_reset = request.path == QLatin1String(kResetPath);
  if (request.method != (is_reset ? "POST" : "GET")) {
    return WrongMethod();
  }
  if (is_reset) {
    Reset();
  }
  HttpResponse response;
  response.content_type = "application/json";
  response.body = FormatState({.model = QLatin1String(info_->name),
                               .rules = Rules(),
                               .requests = Requests(),
                               .saves = Saves()});
  return response;
}

}  // namespace quayline::demo
