// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <set>

#include "jobs/job_fixture.h"

namespace quayline::testing {
namespace {

class RouterModels : public JobTest {};

struct ModelCase {
  const char* model;
  int entries;  // slow routers get less to do
  // What the status box or the log must hold: without it the page's trait was not met.
  std::vector<const char*> told;
};

const std::vector<ModelCase> kModels{
    {"delayed", 2, {}},
    {"dialog", 4, {}},
    {"formback", 4, {}},
    {"frameset", 4, {}},
    {"hiddenframe", 4, {}},
    {"latefields", 4, {"sv_target Found On Page"}},
    {"nameless", 4, {}},
    {"nocontent", 4, {}},
    {"oldlibrary", 4, {}},
    {"pleasewait", 2, {}},
    {"popup", 4, {"services_computer.html"}},
    {"rowtable", 4, {}},
    {"scriptmenu", 4, {"openMenu(1)"}},
    {"selectlist", 4, {"False"}},
    {"shell", 4, {"rule_form Found On Page"}},
    {"singlepage", 4, {}},
    {"validator",
     4,
     {"Ports below 1024 belong", "Store this rule? (answered: OK)", "The rule is stored."}},
    {"weblogin", 4, {}},
};

TEST_F(RouterModels, EachHoldsTheListOnceBehindAJob) {
  context_.job_options.verify_after_update = true;
  for (const ModelCase& row : kModels) {
    SCOPED_TRACE(row.model);
    ASSERT_NO_FATAL_FAILURE(StartRouter(QLatin1String(row.model)));
    const QList<PortEntry> entries = Entries().first(row.entries);
    const JobOutcome& outcome = Run(entries);
    EXPECT_EQ(outcome.entries, row.entries);
    EXPECT_EQ(outcome.entries_failed, 0);
    EXPECT_FALSE(outcome.stopped);
    EXPECT_EQ(Standing(), Expected(entries));
    EXPECT_FALSE(Log().contains(QStringLiteral("Failed")));
    for (const EntryResult& result : outcome.results) {
      EXPECT_EQ(result.state, EntryState::kOnRouter) << result.entry.app_name.toStdString();
      EXPECT_FALSE(result.existed) << result.seen.toStdString();
    }
    const QString all = told_.join(QLatin1Char('\n')) + Log();
    for (const char* text : row.told) {
      EXPECT_TRUE(all.contains(QLatin1String(text))) << text;
    }
    if (HasFailure()) {
      FAIL() << all.toStdString();
    }
  }
}

TEST_F(RouterModels, EveryRouterOfTheDataIsProven) {
  std::set<QString> proven;
  for (const ModelCase& row : kModels) {
    proven.insert(QLatin1String(row.model));
  }
  for (const auto& [model, name] : RoutersByModel()) {
    EXPECT_TRUE(proven.contains(model)) << name.toStdString() << " has no job in this file";
  }
}

TEST_F(RouterModels, ARuleOfTheSelectListIsChangedAndNotAddedTwice) {
  ASSERT_NO_FATAL_FAILURE(StartRouter(QStringLiteral("selectlist")));
  QList<PortEntry> entries = Entries();
  Run(entries.first(3));
  entries[1].start_port = QStringLiteral("16000");
  entries[2].forwarded_to = QStringLiteral("192.168.1.77(Cellar)");
  const JobOutcome& outcome = Run(entries);
  EXPECT_EQ(outcome.entries_failed, 0);
  EXPECT_EQ(Standing(), Expected(entries));
  EXPECT_EQ(Log().count(QStringLiteral("\r\nTrue")), 3) << Log().toStdString();
}

// The rules of before stay, even one that is an entry of the job.
TEST_F(RouterModels, TakeBackRemovesWhatTheJobAddedAndNothingElse) {
  context_.job_options.verify_after_update = true;
  for (const char* model : {"formback", "validator"}) {
    SCOPED_TRACE(model);
    ASSERT_NO_FATAL_FAILURE(StartRouter(QLatin1String(model)));
    const QList<PortEntry> entries = Entries();
    Run(entries.first(1));
    const QStringList before = Standing();
    Run(entries);
    ASSERT_EQ(runner_->Added().size(), entries.size() - 1) << Log().toStdString();
    ASSERT_TRUE(runner_->HasRemoveScript());
    runner_->Open();
    runner_->TakeBack();
    ASSERT_TRUE(Ends());
    EXPECT_EQ(Standing(), before) << Log().toStdString();
    EXPECT_TRUE(runner_->Added().isEmpty());
    EXPECT_TRUE(runner_->Outcome().ToTryAgain().isEmpty());
    EXPECT_EQ(runner_->Outcome().entries_failed, 0);
    EXPECT_LT(Log().indexOf(QStringLiteral("Removing ") + entries.last().app_name),
              Log().indexOf(QStringLiteral("Removing ") + entries.at(1).app_name));
  }
}

TEST_F(RouterModels, AFullTableEndsTheJobAndLeavesTheRulesThatFit) {
  const struct {
    const char* model;
    const char* logged;
  } rows[] = {{"formback", "(Successful)"},
              {"hiddenframe", "(Successful)"},
              {"popup", "(Successful)"},
              {"rowtable", "(Failed - Object Not Found)"},  // there is no row to write into
              {"shell", "(Successful)"}};
  context_.job_options.verify_after_update = true;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.model);
    ASSERT_NO_FATAL_FAILURE(StartRouter(QLatin1String(row.model), {.entries = 2}));
    const JobOutcome& outcome = Run(Entries());
    EXPECT_EQ(outcome.entries, 4);
    for (qsizetype i = 0; i < outcome.results.size(); ++i) {
      EXPECT_EQ(outcome.results[i].state, i < 2 ? EntryState::kOnRouter : EntryState::kMissing);
    }
    EXPECT_FALSE(outcome.stopped);
    EXPECT_EQ(Standing(), Expected(Entries().first(2)));
    const QString of_third = Log().section(QStringLiteral("3/4"), 1);
    EXPECT_TRUE(of_third.contains(QLatin1String(row.logged))) << Log().toStdString();
  }
}

TEST_F(RouterModels, ACertificateIsAskedAboutOnceAndAnotherOneAgain) {
  demo::DemoOptions options{.https = true};
  ASSERT_NO_FATAL_FAILURE(StartRouter(QStringLiteral("formback"), options));
  const QList<PortEntry> entries = Entries();
  EXPECT_EQ(Run(entries.first(2)).entries_failed, 0) << Log().toStdString();
  EXPECT_EQ(questions_.asked.size(), 1);
  EXPECT_EQ(Run(entries.sliced(2)).entries_failed, 0) << Log().toStdString();
  EXPECT_EQ(questions_.asked.size(), 1) << "the answer was forgotten between two jobs";
  EXPECT_EQ(Standing(), Expected(entries));

  options.port = static_cast<quint16>(context_.session.http_port.toInt());
  ASSERT_NO_FATAL_FAILURE(StartRouter(QStringLiteral("formback"), options));
  EXPECT_EQ(Run(entries).entries_failed, 2) << Log().toStdString();
  EXPECT_TRUE(runner_->Outcome().stopped);
  EXPECT_EQ(questions_.asked.size(), 3) << "a reset router has a new certificate, and no way in";
  EXPECT_TRUE(Log().contains(QStringLiteral("INVALID_CERTIFICATE"))) << Log().toStdString();
  EXPECT_EQ(Standing(), QStringList());
}

}  // namespace
}  // namespace quayline::testing
