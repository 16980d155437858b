// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSslConfiguration>
#include <QStringList>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>

#include "core/trusted_certificates.h"
#include "script/fake_questions.h"
#include "script/page_host.h"
#include "script/page_operations.h"
#include "script/web/web_engine.h"
#include "test_main.h"
#include "transport/scripted_server.h"

class QWebEnginePage;

// How GoogleTest shows an answer.
void PrintTo(const QJsonValue& value, std::ostream* out);

namespace quayline::testing {

// A whole answer that a browser takes for a page; without a type it would have to guess.
Reply Html(const QByteArray& markup);
// A page that asks for a login.
Reply LoginNeeded();

inline const QJsonValue kSuccessful{QLatin1String(page_result::kSuccessful)};
inline const QJsonValue kFailed{QLatin1String(page_result::kFailed)};
inline const QJsonValue kFailedLink{QLatin1String(page_result::kFailedLink)};
inline const QJsonValue kNoAnswer{QLatin1String("[no answer]")};

// What a page is told to do, and what it is afterwards.
struct ActionCase {
  const char* fault;
  const char* body;
  PageCall call;
  const char* state;
  QJsonValue answer = kSuccessful;
};

// What a page is asked.
struct QuestionCase {
  const char* fault;
  const char* body;
  PageCall call;
  QJsonValue answer;
};

// A web server over TLS, and the certificates of a user who trusts it.
struct SecureServer {
  explicit SecureServer(QSsl::SslProtocol version = QSsl::TlsV1_3OrLater);

  QUrl Address(const QString& path) const { return server.Address(path, QStringLiteral("https")); }

  QTemporaryDir folder;
  TrustedCertificates certificates{folder.filePath(QStringLiteral("certificates.ini"))};
  ScriptedServer server;

 private:
  explicit SecureServer(const QSslConfiguration& tls);
};

// A hosted browser in a shown window, and a web server on loopback for it.
class WebTest : public ::testing::Test {
 protected:
  WebTest();
  ~WebTest() override;

  // Another browser, as another job has.
  void NextBrowser(TrustedCertificates* certificates = nullptr);

  // Loads an address and waits for its end, in whatever way it ends.
  void Open(const QUrl& address);
  void Open(const char* path) { Open(server.Address(QString::fromLatin1(path))); }
  // Puts `body` on the server as a page and opens it. The page's scripts have note(text), which
  // collects into `notes`; values(), checks() and names() tell of all its fields.
  void Show(const QByteArray& body, const QByteArray& head = {});
  // Waits until no page is on its way.
  void Settle();
  // Lets time pass for what must not come.
  static void Pause() {
    RunUntil([] { return false; }, std::chrono::milliseconds(50));
  }

  // As a job does for the router's login.
  void GiveLogin(const QString& username, const QString& password);

  // kNoAnswer stands for a page that does not answer.
  QJsonValue Ask(PageCall call, int frame = 0);
  // What an expression comes to in the page's own world.
  QString Read(const char* expression);
  void RunInPage(const char* code);

  // Each case on a page of its own, the first one also with 10,000 elements after it.
  // `state_script` is read in the page's own world.
  void Check(const char* state_script, std::initializer_list<ActionCase> cases);
  void Check(std::initializer_list<QuestionCase> cases);

  QWebEnginePage* EnginePage(PageHost* of = nullptr) const;
  // The name of the status of the first error.
  QString FirstError() const;
  // Waits until one of the status texts holds `part`.
  bool IsTold(const char* part);

  testing::ScriptedServer server;
  JobOptions options;
  WaitLimits limits;  // of the next browser
  const Translator translator{QString()};
  FakeQuestions questions;
  std::unique_ptr<QWidget> window;
  std::unique_ptr<PageHost> host;

  // What the host said since the last Open().
  QStringList errors;  // "status address"
  QStringList told;
  QStringList script_errors;
  QStringList notes;    // for the log
  QStringList missing;  // parts of pages
  int completed = 0;

 private:
  void CheckOnLargePage(const ActionCase& row, const char* state_script);
  void CheckOne(const ActionCase& row, const char* state_script);
};

}  // namespace quayline::testing
