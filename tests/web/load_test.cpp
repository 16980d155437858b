// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QSslServer>
#include <QWebEnginePage>

#include <algorithm>
#include <csignal>

#include "demo/certificate.h"
#include "script/web/certificate_fault.h"
#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;
using namespace std::chrono_literals;
using Then = Reply::Then;

// For 192.168.1.1; the second one for "*.lan" and "router.home" as well.
constexpr char kExpired[] = R"(-----BEGIN CERTIFICATE-----
MIIBQjCB6aADAgECAgEBMAoGCCqGSM49BAMCMBExDzANBgNVBAMMBnJvdXRlcjAe
Fw0xMDAxMDEwMDAwMDBaFw0xMTAxMDEwMDAwMDBaMBExDzANBgNVBAMMBnJvdXRl
cjBZMBMGByqGSM49AgEGCCqGSM49AwEHA0IABBoC8InUAwgoFZmW4sDpUGVhp4cM
7E3gz4Y8R7NXOkSwX2P+Gc7cCVY+8IbDqRP47tmu1p5+Fk3cVzfhZkyx38ajMjAw
MA8GA1UdEQQIMAaHBMCoAQEwHQYDVR0OBBYEFESyMQ4o9WTCUJODdLkRQngzPT6d
MAoGCCqGSM49BAMCA0gAMEUCIHCs+tRWGr3UsjO1ARAozqpmt/AK8pnoR/ckpAWg
WwEZAiEA48n1WTM6AsJyyNyira2iGQBImQKeIF4hXU2xXMbQh8k=
-----END CERTIFICATE-----)";
constexpr char kValid[] = R"(-----BEGIN CERTIFICATE-----
MIIBVzCB/6ADAgECAgECMAoGCCqGSM49BAMCMBExDzANBgNVBAMMBnJvdXRlcjAg
Fw0yMDAxMDEwMDAwMDBaGA8yMDk5MTIzMTAwMDAwMFowETEPMA0GA1UEAwwGcm91
dGVyMFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAEGgLwidQDCCgVmZbiwOlQZWGn
hwzsTeDPhjxHs1c6RLBfY/4ZztwJVj7whsOpE/ju2a7Wnn4WTdxXN+FmTLHfxqNG
MEQwIwYDVR0RBBwwGocEwKgBAYIFKi5sYW6CC3JvdXRlci5ob21lMB0GA1UdDgQW
BBREsjEOKPVkwlCTg3S5EUJ4Mz0+nTAKBggqhkjOPQQDAgNHADBEAiBNgHZ5x7el
VE58xsm2aq3WDy5j31ph9yxejNhe0NavigIgEnrkvEiZu4L/F1Yj6eVWOTC8IwKC
Y2N4R1sFbXTN/6g=
-----END CERTIFICATE-----)";

Reply LoginPage(const QByteArray& status) {
  return Answer(status, "<form><input name=a><input type=Password></form>",
                "Content-Type: text/html\r\n");
}

TEST_F(WebTest, EveryEndOfALoadIsToldOnce) {
  const QByteArray ok = "HTTP/1.1 200 OK\r\n";
  const struct {
    const char* fault;
    Reply reply;
    const char* status;  // nullptr: the page is complete, without an error
  } cases[] = {
      {"a page", Answer("200 OK", "page"), nullptr},
      {"an empty page", Answer("200 OK", ""), nullptr},
      {"no page at all", {"HTTP/1.1 204 No Content\r\n\r\n"}, nullptr},
      {"a file", Answer("200 OK", "x", "Content-Disposition: attachment\r\n"), nullptr},
      {"a login without a login", Answer("401 Unauthorized", "no"), "DENIED(401)"},
      {"forbidden", Answer("403 Forbidden", "no"), "FORBIDDEN(403)"},
      {"a login page", LoginPage("401 Unauthorized"), nullptr},
      {"a login page of another kind", LoginPage("403 Forbidden"), nullptr},
      {"not found", Answer("404 Not Found", "no"), "NOT_FOUND(404)"},
      {"not found, without a word", Answer("404 Not Found", ""), "NOT_FOUND(404)"},
      {"a router's own failure", Answer("500 Oops", "no"), "SERVER_ERROR(500)"},
      {"a router's own failure, without a word", Answer("503 Oops", ""), "SERVICE_UNAVAIL(503)"},
      {"a reset", {"", Then::kReset}, "CANNOT_CONNECT(-2146697212)"},
      {"a closed door", {""}, "DATA_NOT_AVAILABLE(-2146697209)"},
      {"garbage", {"\x16\x03\x01 what is this\r\n\r\n"}, "DATA_NOT_AVAILABLE(-2146697209)"},
      {"half a page", {ok + "Content-Length: 99\r\n\r\nhalf"}, "DOWNLOAD_FAILURE(-2146697208)"},
      {"a circle", RedirectTo("/page"), "REDIRECTING(-2146697196)"},
  };
  for (const bool silent : {true, false}) {
    options.silent_mode = silent;
    for (const auto& row : cases) {
      SCOPED_TRACE(row.fault);
      server.replies["/page"] = row.reply;
      Open("/page");
      ASSERT_EQ(errors.size(), row.status == nullptr ? 0 : 1) << errors.join(u'\n').toStdString();
      EXPECT_EQ(completed, row.status == nullptr ? 1 : 0);
      const bool is_login_page = QByteArray(row.fault).startsWith("a login page");
      EXPECT_EQ(notes.join(u' ').contains(u"login page"_s), is_login_page);
      if (row.status != nullptr) {
        EXPECT_EQ(FirstError(), QLatin1String(row.status));
        EXPECT_EQ(errors[0].section(u' ', 1), server.Address(u"/page"_s).toString());
      }
    }
  }
}

TEST_F(WebTest, AddressesThatLeadNowhereAreTold) {
  QTcpServer closed;
  ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
  const QString closed_door = u"http://127.0.0.1:%1/"_s.arg(closed.serverPort());
  closed.close();
  std::vector<std::pair<QString, const char*>> cases{
      {closed_door, "CANNOT_CONNECT(-2146697212)"},
      {u"http://router.invalid/"_s, "RESOURCE_NOT_FOUND(-2146697211)"},
      {u"http://127.0.0.1:1/"_s, "SECURITY_PROBLEM(-2146697202)"},
      {u"ftp://127.0.0.1/"_s, "UNKNOWN_PROTOCOL(-2146697203)"},
      {u"mailto:root@router"_s, "UNKNOWN_PROTOCOL(-2146697203)"},
      {u"file:///etc/passwd"_s, "UNKNOWN_PROTOCOL(-2146697203)"},
  };
  for (const char* invalid :
       {"http://", "http://1.2.3.999/", "", "no address", "http://a b/", "http://a%2fb/",
        "http://[::1/", "http://127.0.0.1:99999/", "http://0x1ffffffff/", "http://1.2.3.4.5/",
        "http://admin:p/w@127.0.0.1/", "http://xn--/", "http://a*b/", "http://a..b/",
        "http://[fe80::1%25eth0]/"}) {
    cases.emplace_back(QLatin1String(invalid), "INVALID_URL(-2146697214)");
  }
  for (const auto& [address, error] : cases) {
    SCOPED_TRACE(address.toStdString());
    errors.clear();
    host->Navigate2(address, {});
    EXPECT_TRUE(RunUntil([&] { return !errors.isEmpty(); }));
    Settle();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(FirstError(), QLatin1String(error));
    EXPECT_FALSE(errors[0].contains(u"admin"_s)) << "a login is shown: " << errors[0].toStdString();
  }
}

TEST_F(WebTest, AFailedLoadLeavesThePageInSilentMode) {
  for (const bool silent : {true, false}) {
    options.silent_mode = silent;
    Show("<input name=a value=1>");
    server.replies["/gone"] = {"", Then::kReset};
    Open("/gone");
    EXPECT_EQ(Ask(GetElementValue(u"a"_s)), silent ? u"1"_s : u""_s);
  }
}

TEST_F(WebTest, APageOfAnotherHostFails) {
  GiveLogin({}, {});
  QUrl other = server.Address(u"/other"_s);
  other.setHost(u"localhost"_s);
  server.replies["/program"] = RedirectTo("mailto:root@router");
  Open("/program");
  EXPECT_EQ(FirstError(), u"UNKNOWN_PROTOCOL(-2146697203)"_s);
  server.replies["/page"] = RedirectTo(other.toEncoded());
  for (const bool silent : {true, false}) {
    options.silent_mode = silent;
    for (const QUrl& address : {server.Address(u"/page"_s), other}) {
      Open(address);
      ASSERT_EQ(errors.size(), 1) << address.toString().toStdString();
      EXPECT_EQ(FirstError(), u"SECURITY_PROBLEM(-2146697202)"_s);
    }
  }
}

TEST_F(WebTest, AnAddressThatTheRouterLeadsToIsAskedAboutOnceAndThenOpened) {
  ScriptedServer other;
  QUrl away = other.Address(u"/away"_s);
  away.setHost(u"localhost"_s);
  const QByteArray target = away.toEncoded();
  other.replies["/away"] = Html("<p>away");
  server.replies["/redirect"] = RedirectTo(target);
  server.replies["/post"] = Html(
      "<form method=post action=/keep><input name=a></form>"
      "<script>document.forms[0].submit()</script>");
  server.replies["/keep"] = {"HTTP/1.1 307 Keep\r\nContent-Length: 0\r\nLocation: " + target +
                             "\r\n\r\n"};
  server.replies["/frame"] = Html("<iframe src='" + target + "'></iframe>");
  const struct {
    const char* path;
    bool is_allowed;
    qsizetype failures;
    qsizetype opened;  // by the second time at the latest
  } cases[] = {
      {"/redirect", false, 2, 0}, {"/redirect", true, 0, 2}, {"/frame", false, 0, 0},
      {"/frame", true, 0, 2},     {"/post", false, 2, 0},    {"/post", true, 1, 1},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(std::string(row.path) + (row.is_allowed ? ", allowed" : ", refused"));
    host.reset(WebPageHosts(options, translator)(questions, nullptr));
    int failures = 0;
    QObject::connect(host.get(), &PageHost::navigateError, host.get(), [&] { ++failures; });
    GiveLogin({}, {});
    questions.asked.clear();
    questions.allows_addresses = row.is_allowed;
    other.requests.clear();
    for (int time = 0; time < 2; ++time) {
      Open(row.path);
      Settle();
      Pause();
    }
    EXPECT_EQ(questions.asked, QStringList{u"address http://localhost:%1"_s.arg(away.port())});
    EXPECT_EQ(failures, row.failures);
    EXPECT_EQ(other.requests.join().count(" /away "), row.opened);
  }
}

TEST_F(WebTest, AFrameWhoseAddressIsAllowedLateIsLoadedThen) {
  ScriptedServer other;
  QUrl away = other.Address(u"/away"_s);
  away.setHost(u"localhost"_s);
  other.replies["/away"] = Html("<p>away");
  server.replies["/redirect"] = RedirectTo(away.toEncoded());
  const std::pair<QByteArray, QByteArray> cases[] = {
      {"<iframe src='" + away.toEncoded() + "'></iframe>", ""},
      {"<iframe src=/redirect></iframe>", ""},
      {"<iframe></iframe>", "frames[0].location = '" + away.toEncoded() + "'"},
  };
  for (const auto& [markup, code] : cases) {
    SCOPED_TRACE((markup + code).toStdString());
    host.reset(WebPageHosts(options, translator)(questions, nullptr));
    GiveLogin({}, {});
    questions.asked.clear();
    questions.held_address.emplace();
    other.requests.clear();
    server.replies["/page"] = Html(markup);
    Open("/page");
    RunInPage(code.constData());
    ASSERT_TRUE(RunUntil([&] { return questions.asked.size() == 1; }));
    Settle();
    EXPECT_EQ(other.requests.size(), 0);
    (*questions.held_address)(true);
    EXPECT_TRUE(RunUntil([&] { return other.requests.join().contains(" /away "); }));
    Settle();
    EXPECT_EQ(server.requests.count(server.requests.last()), 1) << "the page is not loaded again";
    server.requests.clear();
  }
}

TEST_F(WebTest, ARefreshEndsAndSendsNoFormAgain) {
  host->Refresh2();
  Settle();
  EXPECT_EQ(errors, QStringList());
  server.replies["/nothing"] = {"HTTP/1.1 204 No Content\r\n\r\n"};
  Open("/nothing");
  host->Refresh2();
  Settle();
  server.replies["/save"] = Html("saved");
  server.replies["/redirect"] = {"HTTP/1.1 303 See Other\r\nLocation: /save\r\n\r\n"};
  for (const char* action : {"/save", "/redirect"}) {
    SCOPED_TRACE(action);
    Show("<form method=post action=" + QByteArray(action) + "><input name=a></form>");
    RunInPage("document.forms[0].submit()");
    ASSERT_TRUE(RunUntil([&] { return EnginePage()->url().path() == u"/save"_s; }));
    Settle();
    server.requests.clear();
    host->Refresh2();
    ASSERT_TRUE(RunUntil([&] { return !server.requests.isEmpty(); }));
    Settle();
    EXPECT_EQ(Read("document.body.innerText"), u"saved"_s);
    EXPECT_TRUE(server.requests.value(0).startsWith("GET /save "));
    EXPECT_TRUE(server.requests.value(0).toLower().contains("no-cache"));
    EXPECT_EQ(server.requests.size(), 1);
  }
}

TEST_F(WebTest, APageWhosePartsAreMissingIsLoadedOnceMore) {
  const Reply whole = Answer("200 OK", "x = 1", "Content-Type: text/javascript\r\n");
  const struct {
    const char* fault;
    const char* path;
    const char* part;
    int failures;  // of the part
    int loads;     // of the page
    int missing;   // that are reported
  } cases[] = {
      {"a script", "/page", "<script src=/part1></script>", 1, 2, 0},
      {"a style sheet", "/page", "<link rel=stylesheet href=/part2>", 1, 2, 0},
      {"a frame", "/page", "<iframe src=/part3></iframe>", 1, 2, 0},
      {"a script that is never there", "/page", "<script src=/part4></script>", 9, 2, 1},
      {"the same again", "/page", "<script src=/part4></script>", 9, 1, 1},
      {"an image", "/page", "<img src=/part5>", 9, 1, 0},
      {"a page with a query", "/page?do=it", "<script src=/part6></script>", 1, 1, 1},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    int failures = row.failures;
    server.special = [&](const QByteArray& request) -> std::optional<Reply> {
      if (!request.startsWith("GET /part")) {
        return std::nullopt;
      }
      return failures-- > 0 ? Reply{"", Then::kReset} : whole;
    };
    server.replies[row.path] = Html(QByteArray(row.part) + "<input name=a value=1>");
    server.requests.clear();
    Open(row.path);
    const auto loads = std::ranges::count_if(
        server.requests, [](const QByteArray& request) { return request.startsWith("GET /page"); });
    EXPECT_EQ(loads, row.loads);
    EXPECT_EQ(completed, 1);
    EXPECT_EQ(errors, QStringList());
    EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"1"_s);
    EXPECT_EQ(missing.size(), row.missing);
  }
}

TEST_F(WebTest, APageBeyondAnyMeasureEndsTheLoad) {
  const QByteArray long_text(65 << 20, 'x');
  server.replies["/long"] = Html(long_text);
  const QByteArray pages[] = {
      "<div hidden>" + QByteArray("<br>").repeated(201000),  // without the time of a layout
      "<!--" + long_text,
      "<script>const ask = new XMLHttpRequest; ask.open('GET', '/long', false); "
      "ask.send()</script>",
      "<script>for (const kept = []; ; ) kept.push(new Uint8Array(1 << 26).fill(1))</script>",
  };
  for (const QByteArray& page : pages) {
    SCOPED_TRACE(page.first(20).toStdString());
    server.replies["/page"] = Html(page);
    Open("/page");
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(FirstError().startsWith(u"PAGE_TOO_LARGE"_s)) << FirstError().toStdString();
    Show("<input name=a value=1>");
    EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"1"_s);
  }
}

TEST_F(WebTest, ALoadIsStopped) {
  server.replies["/slow"] = {"", Then::kSilence};
  host->Navigate2(server.Address(u"/slow"_s).toString(), {});
  ASSERT_TRUE(RunUntil([&] { return server.requests.size() == 1; }));
  EXPECT_TRUE(host->Navigation().busy);
  host->StopNavigation();
  Settle();
  EXPECT_EQ(errors, QStringList());
  Show("<input name=a value=1>");
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"1"_s);
}

TEST(CertificateFault, IsReadFromTheCertificate) {
  const QSslCertificate expired{QByteArray(kExpired)};
  const QSslCertificate valid{QByteArray(kValid)};  // until 2099
  const struct {
    const QSslCertificate& certificate;
    const char* host;
    const char* words;
  } cases[] = {
      {expired, "192.168.1.1", "has expired"},     {valid, "192.168.1.1", "cannot be trusted"},
      {valid, "ROUTER.home", "cannot be trusted"}, {valid, "box.lan", "cannot be trusted"},
      {valid, "192.168.1.2", "another host name"}, {valid, "a.box.lan", "another host name"},
      {valid, "lan", "another host name"},
  };
  for (const auto& row : cases) {
    const Message& fault = CertificateFault(row.certificate, QLatin1String(row.host));
    EXPECT_TRUE(Translator({}).Text(fault).contains(QLatin1String(row.words))) << row.host;
  }
}

TEST_F(WebTest, ACertificateThatNobodyVouchesForIsRefused) {
  const auto tls = demo::ServerCertificate({}, {});
  if (!tls) {
    GTEST_SKIP() << tls.error().toStdString();
  }
  auto listener = std::make_unique<QSslServer>();
  listener->setSslConfiguration(*tls);
  ScriptedServer secure(std::move(listener));
  secure.replies["/"] = Answer("200 OK", "trust me");
  Open(secure.Address(u"/"_s, u"https"_s));
  ASSERT_EQ(errors.size(), 1);
  EXPECT_EQ(FirstError(), u"INVALID_CERTIFICATE(-2146697191)"_s);
  EXPECT_TRUE(secure.requests.isEmpty());
  EXPECT_TRUE(IsTold("certificate"));
}

TEST_F(WebTest, AnAnswerAboutACertificateThatCannotBeStoredIsReportedOnce) {
  SecureServer secure;
  secure.server.replies["/"] = Answer("200 OK", "page");
  const QTemporaryDir folder;
  TrustedCertificates certificates(folder.filePath(u"missing/certificates.ini"_s));
  questions.trusts = [](const ShownCertificate&) { return true; };
  const QUrl router = secure.Address(u"/"_s);
  const auto run_job = [&] {
    NextBrowser(&certificates);
    host->SetLogin({.scheme = router.scheme(), .host = router.host(), .port = router.port()});
    Open(router);
    EXPECT_EQ(errors, QStringList());
  };
  run_job();
  EXPECT_TRUE(IsTold("cannot be stored"));
  ASSERT_TRUE(QDir(folder.path()).mkdir(u"missing"_s));
  run_job();
  EXPECT_EQ(told.filter(u"cannot be stored"_s), QStringList());
  EXPECT_EQ(questions.asked.size(), 1) << questions.asked.join(u' ').toStdString();
  EXPECT_TRUE(QFile::exists(folder.filePath(u"missing/certificates.ini"_s)));
}

TEST_F(WebTest, ADeadPageAnswersItsQuestionsAndTheNextLoadWorks) {
  Show("<input name=a value=1>");
  QStringList order;
  const auto Note = [&order](const char* what) {
    return [&order, what](const PageAnswer& answer) {
      order.append(QString::fromLatin1(what) + (answer.answered ? u" answered"_s : u""_s));
    };
  };
  host->RunInPage({.code = u"for (;;) {}"_s, .entry = {}},
                  [&order](const QString&) { order.append(u"endless"_s); });
  host->Call(GetElementValue(u"a"_s), Note("first"));
  host->Call(GetElementValue(u"a"_s), Note("second"));
  Pause();
  EXPECT_EQ(order, QStringList());
  kill(static_cast<pid_t>(EnginePage()->renderProcessPid()), SIGKILL);
  EXPECT_TRUE(RunUntil([&] { return errors.size() == 1; }));
  host->Call(GetElementValue(u"a"_s), Note("late"));
  EXPECT_TRUE(RunUntil([&] { return order.size() == 4; }));
  EXPECT_EQ(order, (QStringList{u"endless"_s, u"first"_s, u"second"_s, u"late"_s}));
  EXPECT_EQ(FirstError(), u"CANNOT_LOAD_DATA(-2146697201)"_s);
  Show("<input name=a value=2>");
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"2"_s);
  kill(static_cast<pid_t>(EnginePage()->renderProcessPid()), SIGKILL);
  EXPECT_TRUE(RunUntil([&] { return errors.size() == 1; }));
  host->Refresh2();
  Settle();
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), u"2"_s) << "the page is not fetched again";
}

TEST_F(WebTest, AQuestionIsAnsweredThoughThePageMovesToAnotherHost) {
  QUrl other = server.Address(u"/page"_s);
  other.setHost(u"localhost"_s);
  Show("<a href='" + other.toEncoded() + "'>go</a><input name=a value=1>");
  int answers = 0;
  const auto Count = [&answers](const PageAnswer&) { ++answers; };
  host->Call(ClickLinkByHref(u"localhost"_s), Count);
  constexpr int kMore = 200;
  for (int i = 0; i < kMore; ++i) {
    RunUntil([] { return false; }, 1ms);
    host->Call(GetElementValue(u"a"_s), Count);
  }
  EXPECT_TRUE(RunUntil([&] { return answers == kMore + 1; })) << answers;
  EXPECT_EQ(Read("location.hostname"), u"localhost"_s);
}

TEST_F(WebTest, NoAnswerComesBehindTheEndOfTheHost) {
  Show("<input name=a value=1>");
  bool answered = false;
  host->Call(GetElementValue(u"a"_s), [&answered](const PageAnswer&) { answered = true; });
  host.reset();
  Pause();
  EXPECT_FALSE(answered);
}

TEST_F(WebTest, QuestionsAheadOfTheFirstPageAreNoErrorsToShow) {
  EXPECT_EQ(Ask(GetElementValue(u"a"_s)), kNoAnswer);
  bool quiet = false;
  host->ReportIdle(PendingWork::kAny, [&quiet](IdleReport) { quiet = true; });
  RunInPage("1");
  EXPECT_TRUE(RunUntil([&quiet] { return quiet; }));
  EXPECT_EQ(script_errors, QStringList());
}

}  // namespace
}  // namespace quayline::testing
