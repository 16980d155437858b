// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The programs as processes.

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "core/files.h"
#include "core/test_databases.h"
#include "test_main.h"

namespace quayline::testing {
namespace {

rlimit CoreLimit(const QProcess& process) {
  rlimit limit = {RLIM_INFINITY, RLIM_INFINITY};
  prlimit(static_cast<pid_t>(process.processId()), RLIMIT_CORE, nullptr, &limit);
  return limit;
}

// Each of them waits for something with the password in its memory: one for its user, the other for
// the end of its input.
TEST(Programs, CannotLeaveACoreDump) {
  const QTemporaryDir folder;
  ASSERT_TRUE(MakeTestDatabases(folder.path(), {}));
  ASSERT_TRUE(WriteBytes(folder.filePath(QStringLiteral("list.qyl")), "A|1.1.1.1()|1|1|TCP|\r\n"));
  const QStringList data = {QStringLiteral("--data"), folder.path()};
  const std::pair<QString, QStringList> programs[] = {
      {QStringLiteral(QUAYLINE), data},
      {QStringLiteral(QUAYLINE_CLI), QStringList{QStringLiteral("update"), QStringLiteral("--list"),
                                                 folder.filePath(QStringLiteral("list.qyl")),
                                                 QStringLiteral("--password-stdin")} +
                                         data}};
  for (const auto& [program, arguments] : programs) {
    SCOPED_TRACE(program.toStdString());
    QProcess process;
    process.start(program, arguments);
    ASSERT_TRUE(process.waitForStarted());
    EXPECT_TRUE(RunUntil([&] { return CoreLimit(process).rlim_max <= 1; }));
    EXPECT_EQ(process.state(), QProcess::Running);
    process.kill();
    process.waitForFinished();
  }
}

// The good copies of the databases are made when the window is filled.
TEST(Programs, StartWhateverIsInTheirFolder) {
  const QTemporaryDir folder;
  const auto path = [&folder](const char* name) { return folder.filePath(QLatin1String(name)); };
  ASSERT_TRUE(MakeTestDatabases(folder.path(), {{.id = 1, .routername = QStringLiteral("A")}}));
  const std::pair<const char*, QByteArray> files[] = {
      {"settings.ini", "[main]\r\nrouter=A\r\nrouterpassword=secret\r\n"},
      {"settings.ini.qwerty.unfinished", "[main]\r\nrouterpassword=secret\r\n"},
      {"settings.ini.lock", ""},
      {"ports.mdb", "damaged before the first start"},
      {"quayline.lock", ""}};
  for (const auto& [name, bytes] : files) {
    ASSERT_TRUE(WriteBytes(path(name), bytes));
  }
  for (const char* name : {"router.jpg", "list.qyl"}) {
    ASSERT_EQ(mkfifo(QFile::encodeName(path(name)).constData(), 0600), 0);
  }
  QProcess program;
  program.start(QStringLiteral(QUAYLINE), {QStringLiteral("--data"), folder.path()});
  EXPECT_TRUE(
      RunUntil([&] { return QFile::exists(path("custom.mdb.good")); }, std::chrono::seconds(60)));
  EXPECT_EQ(program.state(), QProcess::Running);
  EXPECT_FALSE(QFile::exists(path("settings.ini.qwerty.unfinished")));
  EXPECT_TRUE(QFile::exists(path("ports.mdb.damaged")));
  program.kill();
  program.waitForFinished();
}

}  // namespace
}  // namespace quayline::testing
