// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QTcpServer>

#include <algorithm>

#include "jobs/job_fixture.h"
#include "transport/scripted_server.h"

namespace quayline::testing {
namespace {

using namespace std::chrono_literals;

class BrokenRouter : public JobTest {
 protected:
  // A router of two pages, as the model "formback" has them, whose saves lead nowhere.
  BrokenRouter() {
    server_.replies["/forwarding.html"] =
        Answer("200 OK", "<a href='/forwarding_add.html'>Add</a>", kHtml);
    server_.replies["/forwarding_add.html"] =
        Answer("200 OK",
               "<form method=post action='/save'><input name=rule_name><input type=submit "
               "name=btn_save></form>",
               kHtml);
    server_.replies["/save"] = RedirectTo("/forwarding.html");
  }

  void ChooseServer() {
    Choose(QStringLiteral("formback"), static_cast<quint16>(server_.Address({}).port()));
  }

  const QByteArray kHtml = "Content-Type: text/html\r\n";
  ScriptedServer server_;
};

const Reply kHalfPage{
    "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 9000\r\n\r\n"
    "<p>half a page"};

TEST_F(BrokenRouter, TheFirstErrorCostsAnEntryAndTheSecondTheJob) {
  const struct {
    const char* fault;
    const char* path;
    Reply reply;
    const char* status;
  } rows[] = {
      {"500", "/forwarding.html", Answer("500 Broken", "broken", kHtml), "(500)"},
      {"500 without a page", "/forwarding.html", Answer("500 Broken", ""), "(500)"},
      {"404", "/forwarding.html", Answer("404 Gone", "gone", kHtml), "(404)"},
      {"no answer", "/forwarding.html", {}, "(-"},
      {"a reset", "/forwarding.html", {"HTTP", Reply::Then::kReset}, "(-"},
      {"half a page", "/forwarding.html", kHalfPage, "(-"},
      {"no answer to a save", "/save", {}, "(-"},
      {"500 to a save", "/save", Answer("500 Broken", "broken", kHtml), "(500)"},
      {"a link into nothing", "/forwarding_add.html", Answer("404 Gone", "gone"), "(404)"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    ASSERT_NO_FATAL_FAILURE(ChooseServer());
    server_.special = [&row](const QByteArray& request) {
      return request.split(' ').value(1) == row.path ? std::optional(row.reply) : std::nullopt;
    };
    const JobOutcome& outcome = Run(Entries());
    EXPECT_EQ(outcome.entries, 2) << Log().toStdString();
    EXPECT_EQ(outcome.entries_failed, 2) << Log().toStdString();
    EXPECT_TRUE(outcome.stopped);
    EXPECT_TRUE(context_.job_flags.last_page_error.contains(QLatin1String(row.status)))
        << context_.job_flags.last_page_error.toStdString();
  }
}

TEST_F(BrokenRouter, OneErrorIsForgiven) {
  ASSERT_NO_FATAL_FAILURE(ChooseServer());
  int opened = 0;
  server_.special = [&opened](const QByteArray& request) {
    const bool is_second = request.startsWith("GET /forwarding_add.html") && ++opened == 2;
    return is_second ? std::optional(Answer("500 Broken", "broken")) : std::nullopt;
  };
  const JobOutcome& outcome = Run(Entries());
  EXPECT_EQ(outcome.entries, 4);
  EXPECT_EQ(outcome.entries_failed, 1);
  EXPECT_FALSE(outcome.stopped);
  EXPECT_EQ(std::ranges::count_if(
                server_.requests,
                [](const QByteArray& request) { return request.startsWith("POST /save"); }),
            3);
}

TEST_F(BrokenRouter, AClosedPortEndsTheJob) {
  quint16 port = 0;
  {
    QTcpServer gone;
    ASSERT_TRUE(gone.listen(QHostAddress::LocalHost));
    port = gone.serverPort();
  }
  ASSERT_NO_FATAL_FAILURE(Choose(QStringLiteral("formback"), port));
  EXPECT_EQ(Run(Entries()).entries_failed, 2);
  EXPECT_TRUE(runner_->Outcome().stopped);
}

TEST_F(BrokenRouter, AWrongPasswordIsTriedTwiceAtMost) {
  for (const char* model : {"formback", "frameset"}) {
    SCOPED_TRACE(model);
    ASSERT_NO_FATAL_FAILURE(
        StartRouter(QLatin1String(model), {.password = QStringLiteral("another")}));
    const JobOutcome& outcome = Run(Entries());
    EXPECT_GT(outcome.entries_failed, 0) << Log().toStdString();
    EXPECT_TRUE(outcome.stopped);
    EXPECT_GE(router_.WrongLogins(), 1);
    EXPECT_LE(router_.WrongLogins(), 2);
    EXPECT_EQ(Standing(), QStringList());
    ASSERT_FALSE(notices_.isEmpty());
    EXPECT_TRUE(notices_.first().contains(QStringLiteral("ACCESS DENIED")));
  }
}

TEST_F(BrokenRouter, AWrongPasswordOnALoginPageIsTypedOnceAndSavesNothing) {
  ASSERT_NO_FATAL_FAILURE(
      StartRouter(QStringLiteral("weblogin"), {.password = QStringLiteral("another")}));
  EXPECT_EQ(Run(Entries()).entries, 4) << Log().toStdString();
  EXPECT_EQ(Log().count(QStringLiteral("(\"login_word,\")\r\n(Successful)")), 1);
  EXPECT_TRUE(Log().contains(QStringLiteral("(Failed - Object Not Found)")));
  EXPECT_FALSE(Log().contains(context_.session.password + QLatin1Char('@')));
  EXPECT_EQ(Standing(), QStringList());
}

TEST_F(BrokenRouter, AJobOnASilentRouterStopsWithinASecond) {
  for (const char* silent : {"/forwarding.html", "/forwarding_add.html", "/save"}) {
    SCOPED_TRACE(silent);
    ASSERT_NO_FATAL_FAILURE(ChooseServer());
    bool is_silent = false;
    server_.special = [&](const QByteArray& request) -> std::optional<Reply> {
      if (request.split(' ').value(1) != silent) {
        return std::nullopt;
      }
      is_silent = true;
      return Reply{"", Reply::Then::kSilence};
    };
    Begin(Entries());
    ASSERT_TRUE(RunUntil([&] { return is_silent; })) << Log().toStdString();
    EXPECT_FALSE(Ends(300ms)) << "a slow router must be waited for";
    runner_->Stop();
    EXPECT_TRUE(Ends(1s)) << Log().toStdString();
    EXPECT_TRUE(runner_->Outcome().stopped);
    EXPECT_EQ(runner_->Outcome().entries, 1);
  }
}

}  // namespace
}  // namespace quayline::testing
