// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QJsonDocument>
#include <QTimer>

#include <algorithm>

#include "script/runner_test.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;

// Jobs on a router that keeps its rules in `rules_`, as rows of "Name | Port | IP | Protocol". The
// entry is "Web", ports 80 to 90, TCP, to 10.0.0.5, and `saved_` is what the router makes of a
// save.
class TakeBackTest : public RunnerTest<JobRunner> {
 protected:
  TakeBackTest() {
    context_.job_options.verify_after_update = true;
    context_.session.chosen_router = u"Harbour 54"_s;
    context_.session.view_script = Lines({"nav(\"rules\")"});
    context_.session.update_script = Lines({"click_button(\"Save\")", "nav(\"saved\")"});
    context_.session.remove_script = Lines({"nav(\"rules\")", "click_in_entry_row(\"button,\")"});
    pages_.On({"ReadRows"}, [this](FakePageHost&) { pages_.Answer("ReadRows", {Rows()}); });
    pages_.On({"ClickButton(Save)"}, [this](FakePageHost&) {
      rules_.append(saved_);
      if (!changed_.isEmpty()) {
        rules_.removeAll(changed_);
      }
      if (after_save_) {
        after_save_();
      }
    });
    pages_.On({"ClickInRow"}, [this](FakePageHost&) {
      const auto clicked = std::ranges::find_if(rules_, [this](const QString& rule) {
        return LastCall().contains(
            QString::fromUtf8(QJsonDocument(Cells(rule)).toJson(QJsonDocument::Compact)));
      });
      ASSERT_NE(clicked, rules_.end());
      rules_.erase(clicked);
    });
    NextRunner();
  }

  static QJsonArray Cells(const QString& rule) {
    const QStringList headings{u"Name"_s, u"Port"_s, u"IP"_s, u"Protocol"_s};
    QJsonArray cells;
    for (const QString& text : rule.split(u" | "_s)) {
      cells.append(QJsonObject{{u"heading"_s, headings.value(cells.size())}, {u"text"_s, text}});
    }
    return cells;
  }
  QJsonValue Rows() const {
    QJsonArray rows;
    for (const QString& rule : rules_) {
      rows.append(QJsonObject{{u"cells"_s, Cells(rule)}});
    }
    QJsonArray headings;
    headings.append(QJsonArray{u"Name"_s, u"Port"_s, u"IP"_s, u"Protocol"_s});
    return QJsonObject{{u"rows"_s, rows}, {u"headings"_s, headings}};
  }
  // Lets the pages with this address fail.
  void Break(const char* page) {
    pages_.On({page}, [](FakePageHost& host) { host.LoadBrokenPage(500); });
  }
  void RunJob() {
    runner_->Open();
    runner_->Run();
    ASSERT_TRUE(Ends());
  }
  void TakeBack() {
    runner_->Open();
    runner_->TakeBack();
    ASSERT_TRUE(Ends());
  }
  static QString Names(const QList<PortEntry>& entries) {
    QStringList names;
    for (const PortEntry& entry : entries) {
      names.append(entry.app_name);
    }
    return names.join(u' ');
  }
  QString AddedNames() const { return Names(runner_->Added()); }
  EntryState StateOfFirst() const { return runner_->Outcome().results.value(0).state; }

  const QString web_ = u"Web | 80-90 | 10.0.0.5 | TCP"_s;
  QStringList rules_{u"Mail | 25 | 10.0.0.5 | TCP"_s};
  QStringList saved_{web_};
  QString changed_;  // a rule that a save replaces
  std::function<void()> after_save_;
};

TEST_F(TakeBackTest, OnlyRulesThatTheJobSurelyAddedAreOffered) {
  const struct {
    const char* fault;
    QStringList before;
    QStringList saved;
    QString changed;
    const char* breaks;
    const char* added;
    const char* maybe_old;
  } cases[] = {
      {"the rule is forgotten", {}, {web_}, {}, nullptr, "Web", ""},
      {"the user's rule is taken for the job's", {web_}, {}, {}, nullptr, "", ""},
      {"a router that takes a rule twice", {web_}, {web_}, {}, nullptr, "", ""},
      {"the rule beside another one of the name is forgotten",
       {u"Web | 8080 | 10.0.0.5 | TCP"_s},
       {web_},
       {},
       nullptr,
       "Web",
       ""},
      {"a rule that the save changed is taken for a new one",
       {u"Web | 8080 | 10.0.0.5 | TCP"_s},
       {web_},
       u"Web | 8080 | 10.0.0.5 | TCP"_s,
       nullptr,
       "",
       "Web"},
      {"a rule that may be there already",
       {u"Web | HTTP | 10.0.0.5 | TCP"_s},
       {web_},
       {},
       nullptr,
       "",
       "Web"},
      {"a pass that failed after its save",
       {},
       {web_},
       {},
       "nav http://192.168.1.1/saved",
       "Web",
       ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    rules_ = c.before;
    saved_ = c.saved;
    changed_ = c.changed;
    if (c.breaks != nullptr) {
      Break(c.breaks);
    }
    NextRunner();
    RunJob();
    EXPECT_EQ(AddedNames(), QLatin1String(c.added)) << rules_.join(u'\n').toStdString();
    EXPECT_EQ(runner_->Outcome().MaybeOld().join(u' '), QLatin1String(c.maybe_old));
  }
}

TEST_F(TakeBackTest, RemovesNoRowButThoseOfTheJob) {
  const QString other = u"Other | 80-90 | 10.0.0.5 | TCP"_s;
  const QString tcp = u"Web | 80-90 | 10.0.0.5 | TCP"_s;
  const QString udp = u"Web | 80-90 | 10.0.0.5 | UDP"_s;
  const QString same_name = u"Web | 8080 | 10.0.0.5 | TCP"_s;
  const struct {
    const char* fault;
    const char* protocol;
    QStringList before;
    QStringList saved;
    QStringList meanwhile;  // the rules at the time of the removal; empty: as they are
    QStringList left;
    EntryState state;
  } cases[] = {
      {"a rule is left", "TCP", {}, {tcp}, {}, {}, EntryState::kMissing},
      {"one row of two is left", "TCP/UDP", {}, {tcp, udp}, {}, {}, EntryState::kMissing},
      {"the user's row of a rule", "TCP/UDP", {tcp}, {udp}, {}, {tcp}, EntryState::kMissing},
      {"a rule of the same name", "TCP", {same_name}, {tcp}, {}, {same_name}, EntryState::kMissing},
      {"a later rule with the same ports",
       "TCP",
       {},
       {tcp},
       {tcp, other},
       {other},
       EntryState::kOnRouter},
      {"a later one above it", "TCP", {}, {tcp}, {other, tcp}, {other}, EntryState::kOnRouter},
      {"two rows, of which one is gone",
       "TCP/UDP",
       {},
       {tcp, udp},
       {udp},
       {udp},
       EntryState::kDifferent},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    PortEntry entry = WebEntry(u"Web"_s);
    entry.protocol = QLatin1String(c.protocol);
    SetRows({entry});
    rules_ = c.before;
    saved_ = c.saved;
    NextRunner();
    RunJob();
    ASSERT_EQ(AddedNames(), u"Web"_s) << rules_.join(u'\n').toStdString();
    rules_ = c.meanwhile.isEmpty() ? rules_ : c.meanwhile;
    TakeBack();
    EXPECT_EQ(rules_, c.left);
    EXPECT_EQ(StateOfFirst(), c.state);
    EXPECT_EQ(runner_->Outcome().results.value(0).own_row.has_value(), !c.before.isEmpty())
        << "the list would say that the user's row is gone, or that the job's one stays";
    EXPECT_EQ(runner_->Added().isEmpty(), c.state == EntryState::kMissing);
  }
}

TEST_F(TakeBackTest, StaysOnTheRouterOfItsJobWhicheverIsChosen) {
  for (const bool is_changed_meanwhile : {false, true}) {
    rules_.clear();
    context_.session.router_ip = u"192.168.1.1"_s;
    NextRunner();
    RunJob();
    ASSERT_TRUE(runner_->IsRouterChosen());
    pages_.calls.clear();
    pages_.logins.clear();
    const auto choose_other = [this] {
      context_.session.router_ip = u"192.168.9.9"_s;
      context_.session.password = u"another"_s;
      context_.session.remove_script = Lines({"click_button(\"Remove all\")"});
    };
    if (is_changed_meanwhile) {
      QObject::connect(runner_.get(), &JobRunner::lookStarted, runner_.get(), choose_other);
    } else {
      choose_other();
    }
    TakeBack();
    EXPECT_FALSE(runner_->IsRouterChosen());
    EXPECT_TRUE(rules_.isEmpty());
    EXPECT_TRUE(pages_.calls.filter(u"192.168.9.9"_s).isEmpty());
    EXPECT_TRUE(pages_.calls.filter(u"Remove all"_s).isEmpty());
    EXPECT_FALSE(pages_.logins.isEmpty());
    for (const PageLogin& login : pages_.logins) {
      EXPECT_EQ(login.host + u' ' + login.password, u"192.168.1.1 se:cret#1"_s);
    }
    context_.session.password = u"se:cret#1"_s;
    context_.session.remove_script = Lines({"nav(\"rules\")", "click_in_entry_row(\"button,\")"});
  }
}

TEST_F(TakeBackTest, SaysNothingOfRulesThatItCouldNotLookUp) {
  RunJob();
  QObject::connect(runner_.get(), &JobRunner::stepStarted, runner_.get(), [this](int step) {
    if (step == 2) {
      Break("nav http://192.168.1.1/rules");
    }
  });
  TakeBack();
  EXPECT_FALSE(runner_->Outcome().has_looked);
  EXPECT_EQ(StateOfFirst(), EntryState::kUnknown);
  EXPECT_EQ(AddedNames(), u"Web"_s);
  runner_->Open();
  runner_->Check();
  ASSERT_TRUE(Ends());
  EXPECT_FALSE(runner_->Outcome().has_looked);
}

TEST_F(TakeBackTest, ReportsAnEntryOnceItIsAboutToBeRemoved) {
  RunJob();
  QStringList reports;
  QObject::connect(runner_.get(), &JobRunner::begun, runner_.get(),
                   [&] { reports.append(u"begun"_s); });
  QObject::connect(runner_.get(), &JobRunner::lookStarted, runner_.get(),
                   [&] { reports.append(u"look"_s); });
  QObject::connect(runner_.get(), &JobRunner::entryStarted, runner_.get(),
                   [&](int row) { reports.append(u"entry %1"_s.arg(row)); });
  TakeBack();
  EXPECT_EQ(reports.join(u", "_s), u"begun, look, entry 1, look"_s);
}

// What is on the router by now, or may be, is not entered once more.
TEST_F(TakeBackTest, TryingAgainEntersOnlyWhatIsMissing) {
  const QString different = u"Web | 81 | 10.0.0.5 | TCP"_s;
  const QString unread = u"Web | HTTP | 10.0.0.5 | TCP"_s;
  const struct {
    const char* fault;
    bool is_first;      // the entry was never begun
    QStringList rules;  // of the router when it is tried again
    bool enters;
    EntryState state;
    bool existed;
  } cases[] = {
      {"a missing rule is not entered", false, {}, true, EntryState::kOnRouter, false},
      {"a rule that came late is entered twice", false, {web_}, false, EntryState::kOnRouter, true},
      {"a rule that came late and changed",
       false,
       {different},
       false,
       EntryState::kDifferent,
       false},
      {"a rule that cannot be read", false, {unread}, false, EntryState::kUnknown, false},
      {"an entry that was never begun", true, {}, true, EntryState::kOnRouter, false},
      {"another rule of the name keeps it out",
       true,
       {different},
       true,
       EntryState::kOnRouter,
       false},
      {"it may be there without our doing", true, {unread}, false, EntryState::kUnknown, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    rules_ = {u"Mail | 25 | 10.0.0.5 | TCP"_s};
    saved_.clear();
    NextRunner();
    runner_->Open();
    if (c.is_first) {
      runner_->Stop();
    }
    runner_->Run();
    ASSERT_TRUE(Ends());
    ASSERT_EQ(runner_->Outcome().ToTryAgain().size(), 1);
    rules_.append(c.rules);
    saved_ = {web_};
    pages_.calls.clear();
    runner_->Open();
    runner_->RunAgain();
    ASSERT_TRUE(Ends());
    EXPECT_EQ(pages_.calls.contains(u"ClickButton(Save)"_s), c.enters);
    EXPECT_EQ(StateOfFirst(), c.state);
    EXPECT_EQ(runner_->Outcome().results.value(0).existed, c.existed);
    EXPECT_EQ(runner_->Outcome().entries, 1);
    EXPECT_TRUE(runner_->Outcome().ToTryAgain().isEmpty());
  }
}

TEST_F(TakeBackTest, TryingAgainKeepsTheNumbersAndKnowsTheFirstAndTheLastToBeEntered) {
  context_.session.update_script =
      Lines({"click_button_first_only(\"Login\")", "set_textbox_number(\"n,\")",
             "click_button(\"Save\")", "click_button_last_only(\"Restart\")", "nav(\"saved\")"});
  QList<PortEntry> entries;
  for (const char* name : {"A", "B", "C", "D"}) {
    entries.append(WebEntry(QLatin1String(name)));
    entries.last().start_port = entries.last().end_port = QString::number(7000 + entries.size());
  }
  SetRows(entries);
  const auto rule = [&entries](qsizetype number) {
    const PortEntry& entry = entries.at(number - 1);
    return entry.app_name + u" | "_s + entry.start_port + u" | 10.0.0.5 | TCP"_s;
  };
  rules_ = {rule(1)};
  saved_.clear();
  RunJob();
  ASSERT_EQ(runner_->Outcome().ToTryAgain().size(), 3);
  rules_ << rule(2) << rule(4);  // they came late
  saved_ = {rule(3)};
  pages_.calls.clear();
  runner_->Open();
  runner_->RunAgain();
  ASSERT_TRUE(Ends());
  pages_.calls.removeIf([](const QString& call) { return !call.contains(u'('); });
  pages_.calls.removeIf([](const QString& call) { return call.startsWith(u"ReadRows"); });
  EXPECT_EQ(pages_.calls, Lines({"ClickButton(Login)", "SetElementValue(n, 3, false)",
                                 "ClickButton(Save)", "ClickButton(Restart)"}));
}

// The user may stop while the router's rules are being read, before the job and after it.
TEST_F(TakeBackTest, AStopDuringALookIsAStopAndForgetsNothing) {
  saved_.clear();
  const auto stop_at_look = [this](int wanted) {
    runner_->Open();
    QObject::connect(runner_.get(), &JobRunner::lookStarted, runner_.get(),
                     [this, wanted, looks = 0]() mutable {
                       if (++looks == wanted) {
                         runner_->Stop();
                       }
                     });
  };
  stop_at_look(2);
  runner_->Run();
  ASSERT_TRUE(Ends());
  EXPECT_EQ(runner_->Outcome().entries, 1);
  EXPECT_TRUE(runner_->Outcome().stopped) << "a stopped job is reported as done";

  NextRunner();
  RunJob();
  stop_at_look(1);
  runner_->RunAgain();
  ASSERT_TRUE(Ends());
  EXPECT_EQ(runner_->Outcome().entries, 0);
  rules_.append(u"Web | 81 | 10.0.0.5 | TCP"_s);  // what the first job sent, and the router made
  pages_.calls.clear();
  runner_->Open();
  runner_->RunAgain();
  ASSERT_TRUE(Ends());
  EXPECT_FALSE(pages_.calls.contains(u"ClickButton(Save)"_s)) << "it is entered twice";
}

TEST_F(TakeBackTest, WhatAJobAddedThatWasCutShortIsTakenBackOnceItIsSeen) {
  const QString ftp = u"Ftp | 21 | 10.0.0.5 | TCP"_s;
  const auto stop = [this] { runner_->Stop(); };
  const auto fail = [this, ftp] {
    Break("nav http://192.168.1.1/saved");
    saved_ = {ftp};
  };
  const struct {
    const char* fault;
    std::function<void()> after_save;
    Texts script;
    QStringList saved;
    bool can_look;
    const char* unseen;
    const char* added;
    const char* unseen_later;
  } cases[] = {
      {"a saved rule is forgotten", stop, {}, {web_}, true, "Web", "Web", ""},
      {"a rule that is not there", stop, {}, {}, true, "Web", "", ""},
      {"a rule that was not seen", stop, {}, {web_}, false, "Web", "", "Web"},
      {"a pass that did nothing",
       {},
       {"timeout(\"0\")", "click_button(\"Save\")"},
       {web_},
       true,
       "",
       "",
       ""},
      {"failed pages", fail, {}, {web_}, true, "Web Ftp", "Web Ftp", ""},
  };
  PortEntry second = WebEntry(u"Ftp"_s);
  second.start_port = second.end_port = u"21"_s;
  SetRows({WebEntry(u"Web"_s), second});
  const QStringList usual = context_.session.update_script;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    rules_ = {u"Mail | 25 | 10.0.0.5 | TCP"_s};
    saved_ = c.saved;
    after_save_ = c.after_save;
    context_.session.update_script = c.script.empty() ? usual : Lines(c.script);
    context_.session.view_script = Lines({"nav(\"rules\")"});
    NextRunner();
    runner_->Open();
    runner_->Run();
    if (!c.after_save) {
      ASSERT_TRUE(RunUntil([this] { return Count("timeout") > 0; }));
      rules_.append(web_);  // by somebody else
      runner_->Stop();
    }
    ASSERT_TRUE(Ends());
    EXPECT_EQ(AddedNames(), QString()) << "nothing was seen";
    EXPECT_EQ(Names(runner_->UnseenRules()), QLatin1String(c.unseen));
    if (!c.can_look) {
      context_.session.view_script = Lines({"nav(\"broken\")"});
      Break("nav http://192.168.1.1/broken");
    }
    runner_->Open();
    runner_->LookForAdded();
    ASSERT_TRUE(Ends());
    EXPECT_EQ(AddedNames(), QLatin1String(c.added));
    EXPECT_EQ(Names(runner_->UnseenRules()), QLatin1String(c.unseen_later));
    if (*c.added != '\0') {
      TakeBack();
      EXPECT_EQ(rules_, QStringList{u"Mail | 25 | 10.0.0.5 | TCP"_s});
    }
  }
}

TEST_F(TakeBackTest, TheNextJobTakesOverWhatTheOneBeforeHadNoTimeToSee) {
  after_save_ = [this] {  // as a window that closes
    QTimer::singleShot(0, runner_.get(), [this] { runner_->Leave(); });
  };
  runner_->Open();
  runner_->Run();
  ASSERT_TRUE(RunUntil([this] { return rules_.contains(web_) && !runner_->IsRunning(); }));
  after_save_ = {};
  saved_.clear();
  const std::unique_ptr<JobRunner> former = std::move(runner_);
  NextRunner();
  runner_->TakeOverRules(*former);
  RunJob();
  EXPECT_EQ(AddedNames(), u"Web"_s) << "it counts as the user's from now on";
}

TEST_F(TakeBackTest, TheNextWindowsJobsTakeBackTheRulesOfTheFormerOnTheSameRouter) {
  RunJob();
  const std::unique_ptr<JobRunner> former = std::move(runner_);
  NextRunner();
  context_.session.router_ip = u"192.168.9.9"_s;
  runner_->TakeOverRules(*former);
  EXPECT_EQ(AddedNames(), QString());
  context_.session.router_ip = u"192.168.1.1"_s;
  runner_->TakeOverRules(*former);
  RunJob();
  EXPECT_EQ(AddedNames(), u"Web"_s) << "the job counts its own rule as the user's";
  rules_ = {web_};
  TakeBack();
  EXPECT_TRUE(rules_.isEmpty());
}

}  // namespace
}  // namespace quayline::testing
