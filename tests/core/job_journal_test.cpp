// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/job_journal.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/files.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;
using testing::ReadBytes;
using testing::WriteBytes;

PortEntry Entry(const QString& name) {
  return {.app_name = name,
          .forwarded_to = u"10.0.0.5(Desk)"_s,
          .start_port = u"80"_s,
          .end_port = u"80"_s,
          .protocol = u"TCP"_s,
          .description = {}};
}

class JournalTest : public ::testing::Test {
 protected:
  JobPlan Plan() const {
    return {.router = u"Demo"_s,
            .address = u"10.0.0.1"_s,
            .entries = {Entry(u"A"_s), Entry(u"B"_s), Entry(u"C"_s), Entry(u"D"_s), Entry(u"E"_s)},
            .password = u"s3cret"_s};
  }
  QList<EntryResult> Results(EntryState first) const {
    QList<EntryResult> results;
    for (const PortEntry& entry : Plan().entries) {
      results.append({.entry = entry, .state = EntryState::kMissing, .seen = {}});
    }
    results.first().state = first;
    return results;
  }
  // A is there already, B gets in, C fails, and D is being entered.
  void WriteJob(JobJournal& journal) const {
    PageRows page;
    page.rows.append(PageRow{{{.heading = {}, .text = u"pass s3cret"_s, .checked = {}}}});
    journal.NoteBefore(Results(EntryState::kOnRouter), page);
    const PassEnd ends[] = {PassEnd::kExisted, PassEnd::kDone, PassEnd::kFailed};
    for (int number = 1; number <= 3; ++number) {
      journal.NotePass(number, Plan().entries.at(number - 1).app_name);
      journal.NoteLog(u"\r\nStep 01. nav(\"a\")"_s);
      journal.NotePassEnd(number, ends[number - 1], {u"The page said: s3cret"_s});
    }
    journal.NotePass(4, u"D"_s);
  }
  // What another program leaves that is killed.
  void KillDuringJob() const {
    const pid_t child = fork();
    if (child == 0) {
      const auto journal = journals_.Begin(Plan());
      if (journal) {
        WriteJob(*journal);
      }
      _exit(0);
    }
    waitpid(child, nullptr, 0);
  }
  QStringList Files() const { return QDir(folder_).entryList(QDir::Files, QDir::Name); }

  QTemporaryDir home_;
  QString folder_ = home_.filePath(u"state/jobs"_s);
  JobJournals journals_{folder_};
};

TEST_F(JournalTest, AJobThatWasCutOffIsReportedOnceWithWhatIsCertain) {
  KillDuringJob();
  ASSERT_EQ(Files().size(), 1);
  const QString file = folder_ + u'/' + Files().first();
  EXPECT_EQ(QFileInfo(file).permissions() & ~QFile::Permissions(QFile::ReadUser | QFile::WriteUser),
            QFile::ReadOwner | QFile::WriteOwner);
  EXPECT_FALSE(ReadBytes(file).contains("s3cret"));
  EXPECT_TRUE(ReadBytes(file).contains(R"("pass ****")"));
  EXPECT_TRUE(ReadBytes(file).contains(R"j({"log":"Step 01. nav(\"a\")"})j"));

  const auto running = journals_.Begin(Plan());
  const QList<CutOffJob> jobs = journals_.TakeCutOff();
  ASSERT_EQ(jobs.size(), 1) << "the one that runs is not cut off";
  EXPECT_EQ(CutOffNotice(jobs.first(), u"Look."_s, Translator(QString())).section(u'\n', 1),
            u"On the router: A.\nEntered, but not seen there afterwards: B.\nFailed: C.\n"
            "Not certain: D.\nNot begun: E.\nLook."_s);
  EXPECT_TRUE(journals_.TakeCutOff().isEmpty()) << "once";
}

TEST_F(JournalTest, AJobThatEndedInAnyWayIsNotReported) {
  for (const QString& end : {u"done"_s, u"error"_s, QString()}) {
    const auto journal = journals_.Begin(Plan());
    WriteJob(*journal);
    journal->NoteAfter(Results(EntryState::kOnRouter), {});
    if (!end.isEmpty()) {
      journal->NoteEnd(end);
    }
  }
  EXPECT_EQ(Files().size(), 3);
  EXPECT_TRUE(journals_.TakeCutOff().isEmpty());
}

TEST_F(JournalTest, ALongJobThatEndedIsNotReported) {
  PageRows page;
  for (int row = 0; row < 1000; ++row) {
    page.rows.append(PageRow{{{.heading = {}, .text = QString(12000, u'x'), .checked = {}}}});
  }
  for (const bool is_huge : {false, true}) {
    const auto journal = journals_.Begin(Plan());
    WriteJob(*journal);
    journal->NoteBefore(Results(EntryState::kMissing), page);
    for (int look = 0; look < (is_huge ? 30 : 1); ++look) {
      journal->NoteAfter(Results(EntryState::kOnRouter), page);
    }
    journal->NoteEnd(u"done"_s);
    const QFileInfo file(folder_ + u'/' + Files().last());
    EXPECT_EQ(file.size() > (8 << 20), is_huge) << file.size();
  }
  EXPECT_TRUE(journals_.TakeCutOff().isEmpty());
}

// After a kill at any byte, the file tells what its whole lines say.
TEST_F(JournalTest, CanBeReadUpToAnyByte) {
  KillDuringJob();
  const QByteArray whole = ReadBytes(folder_ + u'/' + Files().first());
  const qsizetype head = whole.indexOf('\n');
  qsizetype least_known = 0;
  for (qsizetype size = 0; size <= whole.size(); ++size) {
    const auto job = ReadCutOffJob(whole.first(size));
    ASSERT_EQ(job.has_value(), size >= head) << size;
    if (job) {
      const qsizetype all = job->on_router.size() + job->entered.size() + job->failed.size() +
                            job->uncertain.size() + job->waiting.size();
      EXPECT_EQ(all, 5);
      EXPECT_GE(5 - job->waiting.size(), least_known);
      least_known = 5 - job->waiting.size();
    }
  }
  EXPECT_EQ(least_known, 4);
  // Whatever else is in the folder.
  for (const char* bytes :
       {"", "\n\n", "{}", "[1]\n{\"journal\": 1}\n{\"pass\": \"x\"}", "\xff\n"}) {
    ReadCutOffJob(bytes);
  }
}

TEST_F(JournalTest, TheLastHundredAreKept) {
  ASSERT_TRUE(QDir().mkpath(folder_));
  for (int i = 0; i < 150; ++i) {
    WriteBytes(folder_ + u"/20200101-%1.jsonl"_s.arg(i, 9, 10, QLatin1Char('0')), "{}\n");
  }
  journals_.Begin(Plan());
  EXPECT_EQ(Files().size(), JobJournals::kMostKept);
  EXPECT_EQ(Files().first(), u"20200101-000000051.jsonl"_s);
}

TEST_F(JournalTest, AFullDiskOrAFolderThatCannotBeMadeCostsTheJournalAlone) {
  EXPECT_EQ(JobJournals().Begin(Plan()), nullptr);
  WriteBytes(home_.filePath(u"state"_s), "a file where the folder should be");
  EXPECT_EQ(journals_.Begin(Plan()), nullptr);
  EXPECT_TRUE(journals_.TakeCutOff().isEmpty());
  QFile::remove(home_.filePath(u"state"_s));
  testing::OnFullDisk(600, [&] {
    if (const auto journal = journals_.Begin(Plan())) {
      WriteJob(*journal);
    }
    return QString();
  });
  ASSERT_EQ(Files().size(), 1);
  const auto job = ReadCutOffJob(ReadBytes(folder_ + u'/' + Files().first()));
  EXPECT_TRUE(!job || job->waiting.size() <= 5);
}

}  // namespace
}  // namespace quayline
