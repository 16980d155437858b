// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "jobs/job_fixture.h"
#include "transport/scripted_server.h"

namespace quayline::testing {
namespace {

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

  const QByteArray kHtml = "Content-Type: text/html\r\n";
  ScriptedServer server_;
};

TEST_F(BrokenRouter, TheFirstErrorCostsAnEntryAndTheSecondTheJob) {
  const struct {
    const char* fault;
    const char* path;
    Reply reply;
    const char* status;
  } rows[] = {
      {"500", "/forwarding.html", Answer("500 Broken", "broken", kHtml), "(500)"},
      {"a link into nothing", "/forwarding_add.html", Answer("404 Gone", "gone"), "(404)"},
      {"no answer to a save", "/save", {}, "(-"},
      {"500 to a save", "/save", Answer("500 Broken", "broken", kHtml), "(500)"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    ASSERT_NO_FATAL_FAILURE(
        Choose(QStringLiteral("formback"), static_cast<quint16>(server_.Address({}).port())));
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

TEST_F(BrokenRouter, AMistypedLoginCostsAQuestionAndNoEntry) {
  ASSERT_NO_FATAL_FAILURE(StartRouter(QStringLiteral("formback")));
  context_.session.username.clear();
  context_.session.password.clear();
  context_.job_options.silent_mode = false;
  questions_.logins = {TypedLogin{QStringLiteral("admin"), QStringLiteral("amdin")},
                       TypedLogin{QStringLiteral("admin"), QStringLiteral("admin")}};
  const QList<PortEntry> entries = Entries().first(2);
  const JobOutcome& outcome = Run(entries);
  EXPECT_EQ(questions_.asked.size(), 2);
  EXPECT_EQ(outcome.entries_failed, 0) << Log().toStdString();
  EXPECT_EQ(Standing(), Expected(entries));
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

}  // namespace
}  // namespace quayline::testing
