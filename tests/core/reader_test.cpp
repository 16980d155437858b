// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QProcess>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/files.h"
#include "core/reader_process.h"
#include "core/table_stream.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;
using testing::ReadBytes;
using testing::WriteBytes;

QString Fixture() {
  return QStringLiteral(QUAYLINE_SOURCE_DIR "/tests/core/fixtures/jet_routers.mdb");
}

ReaderResult ReadJet(const QString& path, std::chrono::milliseconds time_limit = 60s,
                     qsizetype max_output = 100 << 20) {
  return RunReader({.arguments = {QStringLiteral("jet"), path},
                    .input = {},
                    .time_limit = time_limit,
                    .max_output = max_output});
}

TEST(Reader, EndsAtItsLimitsWithASentence) {
  const QTemporaryDir folder;
  const QString pipe = folder.filePath(QStringLiteral("pipe"));
  ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  EXPECT_TRUE(ReadJet(Fixture()));
  EXPECT_EQ(EnglishOf(ReadJet(pipe, 300ms).error().reason),
            QStringLiteral("It takes too long to read."));
  EXPECT_EQ(EnglishOf(ReadJet(Fixture(), 60s, 1000).error().reason),
            QStringLiteral("It contains too much."));
  EXPECT_EQ(EnglishOf(ReadJet(folder.filePath(QStringLiteral("missing"))).error().reason),
            QStringLiteral("Its content is damaged."));
}

// Each byte of the first pages steers the parser: some of them make it loop or crash.
TEST(Reader, NoByteOfAJetFileDoesMoreThanEndIt) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("mutated"));
  const QByteArray original = ReadBytes(Fixture());
  for (int i = 0; i < 24; ++i) {
    QByteArray mutated = original;
    for (int at = i; at < 12'288; at += 53) {
      mutated[at] = static_cast<char>(i * 37 + at);
    }
    ASSERT_TRUE(WriteBytes(path, mutated.replace(0, 64, original.first(64))));
    const ReaderResult result = ReadJet(path, 20s);
    EXPECT_TRUE(!result || DecodeTables(*result).has_value()) << i;
  }
}

#ifndef QUAYLINE_SANITIZE
TEST(Reader, WorksWithAFilterOfSystemCallsAndWithLittleMemory) {
  QProcess reader;
  reader.start(QCoreApplication::applicationDirPath() + QStringLiteral("/quayline-reader"),
               {QStringLiteral("picture")});
  const auto state = [&reader](const char* file) {
    return ReadBytes(
        QStringLiteral("/proc/%1/%2").arg(reader.processId()).arg(QLatin1String(file)));
  };
  EXPECT_TRUE(testing::RunUntil([&] { return state("status").contains("Seccomp:\t2"); }));
  EXPECT_TRUE(state("status").contains("NoNewPrivs:\t1"));
  const QByteArray limits = state("limits").simplified();
  EXPECT_TRUE(limits.contains("Max address space 1073741824 1073741824"));
  EXPECT_TRUE(limits.contains("Max file size 0 0"));
  EXPECT_TRUE(limits.contains("Max cpu time 5 5"));
  reader.closeWriteChannel();
  EXPECT_TRUE(reader.waitForFinished());
  EXPECT_EQ(reader.exitCode(), 1);
}
#endif

TEST(TableStream, WhatIsCutOrForgedIsNoTable) {
  const QList<TableData> tables = {
      {.name = QStringLiteral("ä"),
       .columns = {QStringLiteral("ID"), QString()},
       .rows = {{QStringLiteral("1"), QStringLiteral("Ж")}, {QString(), QString()}}},
      {.name = QStringLiteral("empty"), .columns = {}, .rows = {}}};
  const QByteArray bytes = EncodeTables(tables);
  const auto decoded = DecodeTables(bytes);
  ASSERT_TRUE(decoded);
  ASSERT_EQ(decoded->size(), 2);
  EXPECT_EQ(decoded->first().name, tables.first().name);
  EXPECT_EQ(decoded->first().rows.value(0), tables.first().rows.first());
  for (qsizetype size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(DecodeTables(bytes.first(size))) << size;
  }
  EXPECT_FALSE(DecodeTables(bytes + '\0'));
  for (qsizetype at = 0; at + 4 <= bytes.size(); ++at) {
    DecodeTables(QByteArray(bytes).replace(at, 4, "\xff\xff\xff\xf0"));  // must come back
  }
}

}  // namespace
}  // namespace quayline
