// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/entry_states.h"

#include <gtest/gtest.h>

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

EntryResult Result(const char* name, EntryState state) {
  return {.entry = {.app_name = QLatin1String(name)}, .state = state, .seen = u"the row"_s};
}

QString States(const EntryStates& model) {
  QStringList states;
  for (int row = 0; row < model.rowCount(); ++row) {
    states.append(model.index(row, EntryStates::kState).data().toString());
  }
  return states.join(u'|');
}

class EntryStatesTest : public ::testing::Test {
 protected:
  EntryStatesTest() : translator_(QString()), model_(translator_) {}

  Translator translator_;
  EntryStates model_;
};

TEST_F(EntryStatesTest, FollowsTheJob) {
  model_.Begin(JobKind::kUpdate,
               {{.app_name = u"Web"_s}, {.app_name = u"Mail"_s}, {.app_name = u"Dns"_s}});
  EXPECT_EQ(States(model_), u"Waiting|Waiting|Waiting"_s);
  model_.SetRunning(1);
  EXPECT_EQ(States(model_), u"Entered, not checked yet|Being entered|Waiting"_s);
  model_.SetResults({Result("Web", EntryState::kUnknown), Result("Mail", EntryState::kUnknown),
                     Result("Dns", EntryState::kUnknown)},
                    2);
  EXPECT_EQ(States(model_), u"Cannot tell|Cannot tell|Skipped"_s) << "stopped in the second one";
}

TEST_F(EntryStatesTest, SaysDoneOnlyOfWhatWasSeen) {
  using enum EntryState;
  const struct {
    QList<EntryResult> results;
    const char* states;
    const char* summary;
  } rows[] = {
      {{Result("Web", kOnRouter), Result("Mail", kOnRouter)},
       "On the router|On the router",
       "Finished: all entries are on your router (2 of 2)."},
      {{Result("Web", kOnRouter)}, "On the router", "Finished: the entry is on your router."},
      {{Result("Web", kOnRouter), Result("Mail", kMissing), Result("Dns", kUnknown)},
       "On the router|Not on the router|Cannot tell",
       "1 of 3 entries are on your router as you want them. Please look at: Mail, Dns."},
      {{Result("Web", kOnRouter), Result("Mail", kToCheck)},
       "On the router|To be checked",
       "Every entry has run, but the router's page does not show whether these are there: Mail. "
       "Please look at the router's page."},
  };
  for (const auto& row : rows) {
    model_.SetResults(row.results, static_cast<int>(row.results.size()));
    EXPECT_EQ(States(model_), QLatin1String(row.states));
    EXPECT_EQ(model_.Summary(), QLatin1String(row.summary));
  }
}

// What a job that checks or removes says is about that, not about entering.
TEST_F(EntryStatesTest, EachKindOfJobHasItsOwnWords) {
  using enum EntryState;
  const struct {
    JobKind kind;
    EntryState state;
    const char* running;
    const char* words;  // the state, and what the router shows
    const char* summary;
    bool is_wanted;
  } rows[] = {
      {JobKind::kUpdate, kMissing, "Being entered",
       "Not on the router: Another rule has these ports: the row", "0 of 2", false},
      {JobKind::kCheck, kUnknown, "Being checked",
       "Cannot tell: Your router's page does not show whether it is there. Please look there.",
       "The router's page does not show whether these are there: Web, Mail.", false},
      {JobKind::kTakeBack, kMissing, "Being removed",
       "Removed: ", "2 of 2 rules were removed from your router.", true},
      {JobKind::kTakeBack, kOnRouter, "Being removed", "Not removed: Still on your router: the row",
       "0 of 2 rules were removed", false},
      {JobKind::kTakeBack, kUnknown, "Being removed",
       "Cannot tell: Cannot tell whether it was removed. Please look at your router's page.",
       "Please look at: Web, Mail.", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.words);
    const QList<EntryResult> results{Result("Web", row.state), Result("Mail", row.state)};
    model_.Begin(row.kind, {results[0].entry, results[1].entry});
    model_.SetRunning(0);
    EXPECT_EQ(model_.index(0, EntryStates::kState).data(), QLatin1String(row.running));
    model_.SetResults(results, 1);
    EXPECT_EQ(model_.index(0, EntryStates::kState).data().toString() + u": "_s +
                  model_.index(0, EntryStates::kReason).data().toString(),
              QLatin1String(row.words));
    EXPECT_TRUE(model_.Summary().contains(QLatin1String(row.summary)))
        << model_.Summary().toStdString();
    EXPECT_EQ(model_.FirstToLookAt().isValid(), !row.is_wanted);
    const QString skipped = model_.index(1, EntryStates::kReason).data().toString();
    EXPECT_EQ(skipped.contains(u"not entered"_s), row.kind == JobKind::kUpdate);
  }
}

TEST_F(EntryStatesTest, ARowIsSpokenWhole) {
  EntryResult result = Result("Web", EntryState::kDifferent);
  result.differs = {RuleField::kPort, RuleField::kDisabled};
  model_.SetResults({result}, 1);
  EXPECT_EQ(model_.index(0, 0).data(Qt::AccessibleTextRole).toString(),
            u"Web: Different: the port, switched off. the row. Please correct this rule on your "
            "router's page, or remove it there and try again."_s);
}

}  // namespace
}  // namespace quayline
