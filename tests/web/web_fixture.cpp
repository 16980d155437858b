// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "web/web_fixture.h"

#include <QJsonDocument>
#include <QVBoxLayout>
#include <QWebEngineScript>
#include <QWebEngineView>

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

WebTest::WebTest() : window(std::make_unique<QWidget>()), host(make_host(nullptr)) {
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
  completed = 0;
  host->Navigate2(QString::fromUtf8(address.toEncoded()), {});
  Settle();
}

void WebTest::Show(const QByteArray& body, const QByteArray& head) {
  server.replies["/page"] = Html(Page(head, body));
  Open("/page");
  ASSERT_EQ(errors, QStringList());
}

void WebTest::Settle() {
  ASSERT_TRUE(RunUntil([&] { return !host->Navigation().busy; }, 10s));
}

QJsonValue WebTest::Ask(PageCall call, int frame) {
  call.frame = frame;
  std::optional<PageAnswer> got;
  host->Call(call, [&got](PageAnswer answer) { got = std::move(answer); });
  if (!RunUntil([&] { return got.has_value(); }, 10s) || !got->answered) {
    return kNoAnswer;
  }
  return got->value;
}

QString WebTest::Read(const char* expression) {
  std::optional<QVariant> got;
  EnginePage()->runJavaScript(QStringLiteral("String(%1)").arg(QString::fromUtf8(expression)),
                              QWebEngineScript::MainWorld,
                              [&got](const QVariant& value) { got = value; });
  return RunUntil([&] { return got.has_value(); }, 10s) ? got->toString()
                                                        : QStringLiteral("[no answer]");
}

void WebTest::RunInPage(const char* code) {
  bool done = false;
  host->RunInPage(QString::fromUtf8(code), [&done] { done = true; });
  ASSERT_TRUE(RunUntil([&] { return done; }, 10s));
}

void WebTest::Check(std::span<const OperationCase> cases) {
  QByteArray many = "<div hidden>";
  for (int i = 0; i < kPaddingElements; ++i) {
    many += "<i></i>";
  }
  for (const OperationCase& row : cases) {
    SCOPED_TRACE(row.fault);
    AskOn(row, {});
    SCOPED_TRACE("with 10,000 elements more");
    AskOn(row, many);
  }
}

void WebTest::AskOn(const OperationCase& row, const QByteArray& padding) {
  Show(row.body + padding);
  EXPECT_EQ(Ask(row.call), row.answer);
  if (row.state_script != nullptr) {
    EXPECT_EQ(Read(row.state_script), QString::fromUtf8(row.state));
  }
}

QWebEnginePage* WebTest::EnginePage(PageHost* of) const {
  return qobject_cast<QWebEngineView*>((of == nullptr ? host.get() : of)->Widget())->page();
}

bool WebTest::IsTold(const char* part) {
  return RunUntil([&] { return told.filter(QString::fromUtf8(part)).size() > 0; }, 3s);
}

}  // namespace quayline::testing
