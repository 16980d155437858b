// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Runs the scripts of each router file that names its pages ("# pages: NAME", a folder beside this
// file) on those pages, and compares what the stub router has kept then.

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>
#include <map>

#include "core/router_text.h"
#include "script/bare_context.h"
#include "script/fake_questions.h"
#include "script/job_runner.h"
#include "script/script_line.h"
#include "script/script_lint.h"
#include "stub/stub_router.h"
#include "test_main.h"
#include "web/shown_job.h"

extern "C" void QuaylinePrepareTestBinary() { quayline::PrepareWebEngine(); }

namespace quayline::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// A router file and the folder of its pages.
struct Family {
  QString name;  // of the file, as a test's name
  QString file;
  QString pages;
};

void PrintTo(const Family& family, std::ostream* out) { *out << qPrintable(family.file); }

namespace {

const QString kSource = QStringLiteral(QUAYLINE_SOURCE_DIR);

// The families of the shipped routers, and those whose router file is beside the pages.
std::vector<Family> Families() {
  static const QRegularExpression kPages(u"^# pages: (\\S+)$"_s,
                                         QRegularExpression::MultilineOption);
  static const QRegularExpression kNoWord(u"\\W"_s);
  QStringList files;
  const QDir families_folder(kSource + u"/tests/families"_s);
  for (const QString& name : families_folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    files.append(families_folder.filePath(name + u"/router.txt"_s));
  }
  const QDir routers(kSource + u"/data/routers"_s);
  for (const QString& name : routers.entryList({u"*.txt"_s})) {
    files.append(routers.filePath(name));
  }
  std::vector<Family> families;
  for (const QString& name : files) {
    QFile file(name);
    const bool is_open = file.open(QIODevice::ReadOnly);
    const QRegularExpressionMatch pages =
        kPages.match(is_open ? QString::fromUtf8(file.readAll()) : QString());
    if (pages.hasMatch()) {
      families.push_back(
          {.name = QString(pages.captured(1) + u'_' + QFileInfo(name).completeBaseName())
                       .replace(kNoWord, u"_"_s),
           .file = name,
           .pages = kSource + u"/tests/families/"_s + pages.captured(1)});
    }
  }
  return families;
}

PortEntry Entry(const char* name, const char* computer, int first, int last, const char* protocol) {
  return {.app_name = QLatin1String(name),
          .forwarded_to = QLatin1String(computer),
          .start_port = QString::number(first),
          .end_port = QString::number(last),
          .protocol = QLatin1String(protocol),
          .description = {}};
}

class RouterFamilies : public ::testing::TestWithParam<Family> {
 protected:
  RouterFamilies() {
    questions_.trusts = [](const ShownCertificate&) { return false; };
    context_.app.job_options.throttle = false;
    context_.app.job_options.verify_after_update = true;
  }

  void Open() {
    Problems problems;
    const QList<RouterSource> routers =
        ReadRouters(ReadTextFile(GetParam().file, problems), GetParam().file, {}, problems);
    ASSERT_EQ(FormatProblems(problems), QString());
    record_ = routers.first().record;
    auto router = StubRouter::Open(GetParam().pages);
    ASSERT_TRUE(router.has_value()) << qPrintable(router.error());
    router_ = *std::move(router);
    QObject::connect(router_.get(), &StubRouter::exchanged, router_.get(),
                     [this](const StubExchange& exchange) { Note(exchange); });
    const auto port = router_->Start();
    ASSERT_TRUE(port.has_value()) << qPrintable(port.error());
    RouterSession& session = context_.app.session;
    SelectRouter(session, record_);
    session.username = record_.routerusername;
    session.password = record_.routerpassword;
    session.router_ip = u"127.0.0.1"_s;
    session.http_port = QString::number(*port);
  }

  void Note(const StubExchange& exchange) {
    if (!exchange.IsPlain()) {
      exchanges_ += u"\n%1 %2 -> %3 %4; %5"_s.arg(exchange.method, exchange.path, exchange.answer,
                                                  exchange.done.join(u"; "_s),
                                                  exchange.problems.join(u"; "_s));
    }
    problems_ += exchange.problems;
  }

  // Those that each router can take, as far as ranges and both protocols go.
  QList<PortEntry> UsualEntries() const {
    QList<PortEntry> entries{Entry("Web", "192.168.1.110(FrontDesk)", 8080, 8080, "TCP"),
                             Entry("Voice", "192.168.1.123(Attic)", 16384, 16403, "UDP")};
    if (record_.routermaxrange == "0"_L1) {
      entries[1].end_port = entries[1].start_port;
    }
    if (record_.routersupportsboth.compare("no"_L1, Qt::CaseInsensitive) != 0) {
      entries.append(Entry("Game", "192.168.1.110(FrontDesk)", 27015, 27015, "TCP/UDP"));
    }
    return entries;
  }

  // One with the first port or the largest range of ports that the file allows, as far as no rule
  // of the router and none of `others` is in it (some pages refuse that), and one with the last
  // port.
  QList<PortEntry> EntriesAtTheLimits(const QList<PortEntry>& others) const {
    const int last = record_.routermaxport.toInt();
    std::map<int, int> taken{{last, last}};  // the ends of the ranges, by their beginnings
    for (const PortEntry& entry : others) {
      taken[entry.start_port.toInt()] = entry.end_port.toInt();
    }
    for (const StubRule& rule : router_->FirstRules()) {
      int& end = taken[rule.value(u"start"_s).toInt()];
      end = std::max(end, rule.value(u"end"_s).toInt());
    }
    std::pair<int, int> widest{0, -1};
    int first = record_.routerminport.toInt();
    for (const auto& [start, end] : taken) {
      const int free_end = std::min(first + record_.routermaxrange.toInt(), start - 1);
      if (free_end - first > widest.second - widest.first) {
        widest = {first, free_end};
      }
      first = std::max(first, end + 1);
    }
    return {Entry("LongestNam", "192.168.1.110(FrontDesk)", widest.first, widest.second, "TCP"),
            Entry("Last", "192.168.1.123(Attic)", last, last, "UDP")};
  }

  enum class Job { kUpdate, kCheck };

  // Runs a job to its end. What it should leave on the router are the rules of `wanted`.
  void Run(Job job, const QList<PortEntry>& wanted, int failed = 0) {
    exchanges_.clear();
    runner_.reset();
    runner_ = OpenShownJob(context_.app, questions_);
    job == Job::kCheck ? runner_->Check() : runner_->Run();
    const bool ends = RunUntil([this] { return !runner_->IsRunning(); }, 120s);
    const QString log = runner_->Log().Text() + exchanges_;
    ASSERT_TRUE(ends) << qPrintable(log);
    EXPECT_EQ(runner_->Outcome().entries_failed, failed);
    EXPECT_FALSE(runner_->Outcome().stopped);
    EXPECT_EQ(DifferencesFrom(wanted, router_->FirstRules(), router_->KeptRules()), QStringList());
    EXPECT_FALSE(router_->HasPendingChanges());
    EXPECT_EQ(problems_, QStringList());
    ASSERT_FALSE(HasFailure()) << qPrintable(log);
  }

  void ExpectStates(EntryState state, bool existed) {
    for (const EntryResult& result : runner_->Outcome().results) {
      EXPECT_EQ(result.state, state) << qPrintable(result.entry.app_name + u": "_s + result.seen);
      EXPECT_EQ(result.existed, existed) << qPrintable(result.seen);
    }
    ASSERT_FALSE(HasFailure()) << qPrintable(runner_->Log().Text() + exchanges_);
  }

  // The page of the view script shows the rules of `there` and none of `gone`: nor rules that
  // differ from one of them in a port only, or in the computer, where the page shows it.
  void ExpectShown(const QList<PortEntry>& there, const QList<PortEntry>& gone) {
    QList<PortEntry> list = there + gone;
    for (const PortEntry& entry : there) {
      list += {entry, entry};
      PortEntry& moved = list[list.size() - 2];
      moved.start_port = QString::number(entry.start_port.toInt() - 1);
      moved.end_port = QString::number(entry.end_port.toInt() - 1);
      list.last().forwarded_to = u"192.168.1.177(Cellar)"_s;
    }
    context_.app.port_list.SetEntries(list);
    ASSERT_NO_FATAL_FAILURE(Run(Job::kCheck, there));
    const QList<EntryResult>& results = runner_->Outcome().results;
    ASSERT_EQ(results.size(), list.size());
    for (qsizetype i = 0; i < results.size(); ++i) {
      const EntryResult& result = results.at(i);
      const bool is_elsewhere = result.entry.forwarded_to.endsWith(u"(Cellar)"_s);
      if (!is_elsewhere || result.seen.contains(u"FrontDesk"_s) ||
          result.seen.contains(u"Attic"_s) || result.seen.contains(u"110"_s) ||
          result.seen.contains(u"123"_s)) {
        EXPECT_EQ(result.state == EntryState::kOnRouter, i < there.size())
            << qPrintable(result.entry.app_name + u' ' + result.entry.start_port + u' ' +
                          result.entry.forwarded_to + u": "_s + result.seen);
      }
    }
  }

  BareContext context_;
  FakeQuestions questions_;
  RouterRecord record_;
  std::unique_ptr<StubRouter> router_;
  std::unique_ptr<JobRunner> runner_;
  QString exchanges_;
  QStringList problems_;
};

// A job begins with a login and reads the rules, so as few jobs as possible do all of it.
TEST_P(RouterFamilies, TheRulesAreEnteredOnceUpToTheLimitsSeenAndRemoved) {
  ASSERT_NO_FATAL_FAILURE(Open());
  QList<PortEntry> entries = UsualEntries();
  entries += EntriesAtTheLimits(entries);
  context_.app.port_list.SetEntries(entries);
  ASSERT_NO_FATAL_FAILURE(Run(Job::kUpdate, entries));
  ASSERT_NO_FATAL_FAILURE(ExpectStates(EntryState::kOnRouter, false));

  const QList<PortEntry> gone = entries.first(2);
  const QList<PortEntry> left = entries.sliced(2);
  context_.app.port_list.SetEntries(gone);
  ASSERT_NO_FATAL_FAILURE(Run(Job::kUpdate, entries));
  ASSERT_NO_FATAL_FAILURE(ExpectStates(EntryState::kOnRouter, true));

  ASSERT_FALSE(record_.routerremove.isEmpty());
  context_.app.session.update_script = ScriptLines(record_.routerremove);
  context_.app.job_options.verify_after_update = false;
  // For the last one there is no row to remove any more.
  context_.app.port_list.SetEntries(gone + gone.first(1));
  ASSERT_NO_FATAL_FAILURE(Run(Job::kUpdate, left, 1));
  ASSERT_NO_FATAL_FAILURE(ExpectShown(left, gone));
}

// A note about a command whose name says something else is not a fault.
bool IsNote(const LintFinding& finding, const QString& line) {
  const CommandRow* row = FindCommand(ParseScriptLine(line).name);
  return row != nullptr && row->quirk != nullptr && row->quirk->english == finding.text.english;
}

TEST(ShippedScripts, TheLintFindsNothingInThem) {
  const QDir routers(kSource + u"/data/routers"_s);
  const QStringList files = routers.entryList({u"*.txt"_s});
  EXPECT_FALSE(files.isEmpty());
  for (const QString& name : files) {
    Problems problems;
    ReadRouters(
        ReadTextFile(routers.filePath(name), problems), name,
        [&](const SourceScript& script) {
          for (const ScriptFinding& found :
               LintScript(script.lines, ScriptKindOf(script.column), script.update_lines)) {
            const QString& line = script.lines[found.line - 1];
            EXPECT_TRUE(IsNote(found.finding, line))
                << qPrintable(name + u", "_s + script.column + u", "_s + line + u": "_s +
                              LintSentence(found.finding));
          }
          return QList<ScriptRemark>();
        },
        problems);
    EXPECT_EQ(FormatProblems(problems), QString());
  }
}

INSTANTIATE_TEST_SUITE_P(Files, RouterFamilies, ::testing::ValuesIn(Families()),
                         [](const auto& family) { return family.param.name.toStdString(); });

}  // namespace
}  // namespace quayline::testing
