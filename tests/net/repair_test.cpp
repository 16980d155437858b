// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "net/repair_commands.h"
#include "net/repair_run.h"
#include "platform/command_runner.h"
#include "test_main.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(RepairCommands, FoldersTakeThePlaceOfTheMarkerAfterTheFirstQuote) {
  const CommonFolders folders{.of_this_system = u"C:\\Common"_s, .of_32_bits = u"C:\\Common32"_s};
  const std::pair<QString, QString> cases[] = {
      {u"regsvr32 a.dll /s"_s, u"regsvr32 a.dll /s"_s},
      {u"regsvr32 \"%CommonProgramFiles%\\x\\a.dll\" /s"_s,
       u"regsvr32 \"C:\\Common\\x\\a.dll\" /s"_s},
      {u"regsvr32 \"%CommonProgramFiles(x86)%\\a.dll\" /s"_s,
       u"regsvr32 \"C:\\Common32\\a.dll\" /s"_s},
      {u"regsvr32 %CommonProgramFiles% \"a\""_s, u"regsvr32 %CommonProgramFiles% \"a\""_s},
  };
  for (const auto& [line, expected] : cases) {
    EXPECT_EQ(WithCommonFolders(line, folders), expected);
  }
  const QStringList browser = BrowserRepairCommands();
  EXPECT_EQ(browser.first(), u"regsvr32 acelpdec.ax /s"_s);
  EXPECT_TRUE(browser.contains(u"regsvr32 scrrun.dll mstinit.exe /setup /s"_s));
  EXPECT_EQ(browser.indexOf(u"regsvr32 mshtml.dll /s"_s) -
                browser.indexOf(u"regsvr32 mshtml.dll /i /s"_s),
            1);
  const QStringList database = DatabaseRepairCommands();
  EXPECT_EQ(database.value(10),
            u"regsvr32 \"%CommonProgramFiles(x86)%\\Microsoft Shared\\DAO\\DAO350.DLL\" /s"_s);
  EXPECT_EQ(database.last(),
            u"regsvr32 \"%CommonProgramFiles%\\System\\Ole DB\\sqlxmlx.dll\" /s"_s);
}

TEST(RepairRunTest, EveryLineRunsWithoutAShellAndASlowOneIsLeftRunning) {
  const QTemporaryDir folder;
  const QString late = folder.filePath(u"late"_s);
  QList<RepairStep> steps = CommandSteps(
      {u"mkdir \"%1/a  b;c\""_s.arg(folder.path()), u"/nonexistent/regsvr32 a.dll"_s, u"false"_s,
       u"sh -c \"sleep 8; touch %1\""_s.arg(late), u"mkdir %1/end"_s.arg(folder.path())});
  RepairRun run;
  QStringList lines;
  QStringList errors;
  int failed = -1;
  QObject::connect(&run, &RepairRun::stepStarted, &run, [&](int step) {
    lines.append(EnglishOf(steps[step].line).section(u' ', 0, 0));
  });
  QObject::connect(&run, &RepairRun::stepEnded, &run, [&](int, const RepairResult& result) {
    errors.append(EnglishOf(result.words));
  });
  QObject::connect(&run, &RepairRun::ended, &run, [&](int count) { failed = count; });
  QElapsedTimer time;
  time.start();
  run.Start(steps);
  ASSERT_TRUE(RunUntil([&] { return failed >= 0; }));
  EXPECT_GE(time.elapsed(), 2900);
  EXPECT_FALSE(QFile::exists(late)) << "the slow line was waited for until its end";
  EXPECT_EQ(failed, 1);
  EXPECT_EQ(lines,
            QStringList({u"mkdir"_s, u"/nonexistent/regsvr32"_s, u"false"_s, u"sh"_s, u"mkdir"_s}));
  EXPECT_TRUE(errors.value(1).startsWith(u"Error: CreateProcess failed. "_s));
  EXPECT_EQ(errors.count(QString()), 4) << "an exit code is no error";
  EXPECT_TRUE(QFile::exists(folder.filePath(u"a  b;c"_s)));
  EXPECT_TRUE(QFile::exists(folder.filePath(u"end"_s)));
  EXPECT_TRUE(RunUntil([&] { return QFile::exists(late); })) << "it was ended";
}

}  // namespace
}  // namespace quayline::testing
