// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QSslCertificate>
#include <QSslServer>
#include <QVBoxLayout>
#include <QWebEngineScript>
#include <QWebEngineView>

#include "demo/certificate.h"
#include "script/status_text.h"

extern "C" void QuaylinePrepareTestBinary() { quayline::PrepareWebEngine(); }

void PrintTo(const QJsonValue& value, std::ostream* out) {
  *out << QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).toStdString();
}

namespace quayline::testing {

using namespace std::chrono_literals;

namespace {

constexpr int kPaddingElements = 10000;

constexpr char kPageScript[] = R"(
  var notes = [];
  function note(text) { notes.push(text); }
  function fields(tell) {
    return [...document.querySelectorAll('input,select,textarea,button')].map(tell).join('|');
  }
  function values() { return fields((field) => field.value); }
  function checks() { return fields((field) => field.checked); }
  function names() { return fields((field) => field.name); })";

QByteArray Page(const QByteArray& head, const QByteArray& body) {
  return QByteArray(
             "<!DOCTYPE html><html lang='roots-own-tag'><head><meta charset=utf-8><script>") +
         kPageScript + "</script>" + head + "</head><body>" + body + "</body></html>";
}

}  // namespace

Reply Html(const QByteArray& markup) {
  return Answer("200 OK", markup, "Content-Type: text/html; charset=utf-8\r\n");
}

Reply LoginNeeded() {
  return Answer("401 Unauthorized", "who are you?", "WWW-Authenticate: Basic realm=\"r\"\r\n");
}

namespace {

std::unique_ptr<QTcpServer> SecureListener(const QSslConfiguration& tls) {
  auto listener = std::make_unique<QSslServer>();
  listener->setSslConfiguration(tls);
  return listener;
}

QSslConfiguration NewCertificate(QSsl::SslProtocol version) {
  auto tls = demo::ServerCertificate({}, {});
  EXPECT_TRUE(tls.has_value()) << tls.error().toStdString();
  tls->setProtocol(version);
  return *tls;
}

}  // namespace

SecureServer::SecureServer(QSsl::SslProtocol version) : SecureServer(NewCertificate(version)) {}

SecureServer::SecureServer(const QSslConfiguration& tls) : server(SecureListener(tls)) {
  const QUrl address = Address({});
  certificates.Trust(QStringLiteral("%1:%2").arg(address.host()).arg(address.port()),
                     tls.localCertificate().digest(QCryptographicHash::Sha256));
}

WebTest::WebTest() : window(std::make_unique<QWidget>()) { NextBrowser(); }

void WebTest::NextBrowser(TrustedCertificates* certificates) {
  host.reset(WebPageHosts(options, translator, certificates, limits)(questions, nullptr));
  delete window->layout();
  auto* layout = new QVBoxLayout(window.get());
  layout->addWidget(host->Widget());
  window->resize(640, 480);
  window->show();
  window->activateWindow();
  host->Widget()->setFocus();
  QObject::connect(host.get(), &PageHost::navigateError, window.get(),
                   [this](const QString& url, int status) {
                     errors.append(QStringLiteral("%1 %2").arg(status).arg(url));
                   });
  QObject::connect(host.get(), &PageHost::statusTextChanged, window.get(),
                   [this](const QString& text) { told.append(text); });
  QObject::connect(host.get(), &PageHost::documentComplete, window.get(), [this] { ++completed; });
  QObject::connect(host.get(), &PageHost::noted, window.get(),
                   [this](const QString& text) { notes.append(text); });
  QObject::connect(host.get(), &PageHost::resourceFailed, window.get(),
                   [this](const QString& url) { missing.append(QUrl(url).path()); });
  QObject::connect(host.get(), &PageHost::scriptError, window.get(),
                   [this](const QString& text) { script_errors.append(text); });
}

WebTest::~WebTest() {
  host.reset();
  window.reset();
}

void WebTest::Open(const QUrl& address) {
  errors.clear();
  told.clear();
  script_errors.clear();
  notes.clear();
  missing.clear();
  completed = 0;
  host->Navigate2(QString::fromUtf8(address.toEncoded()), {});
  Settle();
}

void WebTest::Show(const QByteArray& body, const QByteArray& head) {
  server.replies["/page"] = Html(Page(head, body));
  Open("/page");
  ASSERT_EQ(errors, QStringList());
}

void WebTest::GiveLogin(const QString& username, const QString& password) {
  const QUrl address = server.Address({});
  host->SetLogin({.scheme = address.scheme(),
                  .host = address.host(),
                  .port = address.port(),
                  .username = username,
                  .password = password});
}

void WebTest::Settle() {
  ASSERT_TRUE(RunUntil([&] { return !host->Navigation().busy; }, 60s));
}

QJsonValue WebTest::Ask(PageCall call, int frame) {
  call.frame = frame;
  std::optional<PageAnswer> got;
  host->Call(call, [&got](PageAnswer answer) { got = std::move(answer); });
  if (!RunUntil([&] { return got.has_value(); }) || !got->answered) {
    return kNoAnswer;
  }
  return got->value;
}

QString WebTest::Read(const char* expression) {
  std::optional<QVariant> got;
  EnginePage()->runJavaScript(QStringLiteral("String(%1)").arg(QString::fromUtf8(expression)),
                              QWebEngineScript::MainWorld,
                              [&got](const QVariant& value) { got = value; });
  return RunUntil([&] { return got.has_value(); }) ? got->toString()
                                                   : QStringLiteral("[no answer]");
}

void WebTest::RunInPage(const char* code) {
  bool done = false;
  host->RunInPage({.code = QString::fromUtf8(code), .entry = {}},
                  [&done](const QString&) { done = true; });
  ASSERT_TRUE(RunUntil([&] { return done; }));
}

void WebTest::Check(const char* state_script, std::initializer_list<ActionCase> cases) {
  CheckOnLargePage(*cases.begin(), state_script);
  for (const ActionCase& row : cases) {
    CheckOne(row, state_script);
  }
}

void WebTest::Check(std::initializer_list<QuestionCase> cases) {
  for (const QuestionCase& row : cases) {
    const ActionCase with_state{row.fault, row.body, row.call, "", row.answer};
    if (&row == cases.begin()) {
      CheckOnLargePage(with_state, "''");
    }
    CheckOne(with_state, "''");
  }
}

void WebTest::CheckOnLargePage(const ActionCase& row, const char* state_script) {
  SCOPED_TRACE("with 10,000 elements more");
  const QByteArray body =
      row.body + ("<div hidden>" + QByteArray("<i></i>").repeated(kPaddingElements));
  CheckOne({row.fault, body.constData(), row.call, row.state, row.answer}, state_script);
}

void WebTest::CheckOne(const ActionCase& row, const char* state_script) {
  SCOPED_TRACE(row.fault);
  Show(row.body);
  EXPECT_EQ(Ask(row.call), row.answer);
  EXPECT_EQ(Read(state_script), QString::fromUtf8(row.state));
}

QWebEnginePage* WebTest::EnginePage(PageHost* of) const {
  return qobject_cast<QWebEngineView*>((of == nullptr ? host.get() : of)->Widget())->page();
}

QString WebTest::FirstError() const { return StatusText(errors.value(0).section(u' ', 0, 0)); }

bool WebTest::IsTold(const char* part) {
  return RunUntil([&] { return told.filter(QString::fromUtf8(part)).size() > 0; });
}

}  // namespace quayline::testing
