// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/ini_file.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "core/file_lock.h"
#include "core/files.h"
#include "core/save_file.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;
using testing::ReadBytes;
using testing::WriteBytes;

const QString kMain = u"main"_s;
const QString kRouter = u"router"_s;

QByteArray Utf16(const QString& text, bool is_little_endian) {
  QStringEncoder encode(is_little_endian ? QStringEncoder::Utf16LE : QStringEncoder::Utf16BE,
                        QStringEncoder::Flag::WriteBom);
  return encode(text);
}

class IniFile : public ::testing::Test {
 protected:
  QString Read(const QString& key = kRouter) const { return ReadIniValue(kMain, key, path_); }
  bool Write(const QString& value, const QString& key = kRouter) const {
    return WriteIniValue(kMain, key, value, path_);
  }

  QTemporaryDir folder_;
  QString path_ = folder_.filePath(u"settings.ini"_s);
};

TEST_F(IniFile, FindsTheValueInEveryFormOfFile) {
  const struct {
    const char* fault;
    QByteArray bytes;
    const char* value = "";
  } rows[] = {
      {"case of section and key", "[MAIN]\r\nRouter=A\r\n", "A"},
      {"blanks around key and value", " [ main ] \n\t router \t=  A b \t\n", "A b"},
      {"quotes keep blanks", "[main]\nrouter=\"  A \"\n", "  A "},
      {"single quotes", "[main]\nrouter='A'\n", "A"},
      {"only one pair is taken off", "[main]\nrouter=\"\"A\"\"\n", "\"A\""},
      {"a lone quote stays", "[main]\nrouter=\"\n", "\""},
      {"separators inside the value", "[main]\nrouter=a=b;c#d]\n", "a=b;c#d]"},
      {"no line end at the end", "[main]\nrouter=A", "A"},
      {"lone CR", "[main]\rrouter=A\rx=B\r", "A"},
      {"mark of UTF-8", "\xef\xbb\xbf[main]\nrouter=Caf\xc3\xa9\n", "Café"},
      {"Windows-1252, cut letter of UTF-8 at the end", "[main]\nrouter=Caf\xe9", "Café"},
      {"code page letter", "[main]\nrouter=\x80\n", "€"},
      {"a neighbour in another encoding", "; \xe9\n[main]\nrouter=Caf\xc3\xa9\n", "Café"},
      {"UTF-16", Utf16(u"[main]\r\nrouter=Café\r\n"_s, true), "Café"},
      {"UTF-16 of the other order", Utf16(u"[main]\nrouter=Café"_s, false), "Café"},
      {"UTF-16 cut inside a letter", Utf16(u"[main]\nrouter=A"_s, true) + 'x', "A"},
      {"first of two keys", "[main]\nrouter=A\nrouter=B\n", "A"},
      {"another section", "[other]\nrouter=A\n[main]\n"},
      {"above all sections", "router=A\n[main]\n"},
      {"behind the section", "[main]\n[other]\nrouter=A\n"},
      {"comment", "[main]\n;router=A\n"},
      {"key without a value", "[main]\nrouter\n"},
      {"longer key", "[main]\nrouterip=A\n"},
      {"heading that is not closed", "[main\nrouter=A\n"},
      {"empty file", ""},
      {"mark alone", "\xff\xfe"},
      {"zeros", QByteArray(4096, '\0')},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(WriteBytes(path_, row.bytes));
    EXPECT_EQ(Read(), QString::fromUtf8(row.value)) << row.fault;
  }
}

TEST_F(IniFile, AWriteChangesItsLineAndNoOtherByte) {
  const QByteArray garbage("\x00\xff\xfe[\x9d=\r\r\n\x80", 10);
  const struct {
    const char* fault;
    QByteArray before;
    QByteArray after;
  } rows[] = {
      {"missing file", {}, "[main]\r\nrouter=B\r\n"},
      {"key in place, its line end", "; c\n[Main]\n Router = A\nx=1\n\n[z]\n",
       "; c\n[Main]\nrouter=B\nx=1\n\n[z]\n"},
      {"new key behind the section's text", "[main]\nx=1\n\n[z]\nrouter=C\n",
       "[main]\nx=1\nrouter=B\n\n[z]\nrouter=C\n"},
      {"new key behind an unfinished line", "[main]\r\nx=1", "[main]\r\nx=1\r\nrouter=B\r\n"},
      {"new key in an empty section", "[main]", "[main]\r\nrouter=B\r\n"},
      {"new section", "[z]\r\nx=1", "[z]\r\nx=1\r\n[main]\r\nrouter=B\r\n"},
      {"garbage", garbage, garbage + "\r\n[main]\r\nrouter=B\r\n"},
      {"odd bytes of UTF-16", QByteArray("\xff\xfe\x41", 3),
       QByteArray("\xff\xfe\x41\0", 4) + Utf16(u"\r\n[main]\r\nrouter=B\r\n"_s, true).sliced(2)},
      {"UTF-16", Utf16(u"[main]\nrouter=A\nx=é\n"_s, true),
       Utf16(u"[main]\nrouter=B\nx=é\n"_s, true)},
  };
  for (const auto& row : rows) {
    QFile::remove(path_);
    ASSERT_TRUE(row.before.isNull() || WriteBytes(path_, row.before));
    EXPECT_TRUE(Write(u"B"_s));
    EXPECT_EQ(ReadBytes(path_), row.after) << row.fault;
  }
}

TEST_F(IniFile, EveryValueComesBackFromEveryFile) {
  const QString values[] = {u"a=b;c#d"_s, u" both ends "_s, u"\"quoted\""_s, u"'"_s,  u"\""_s,
                            u"[main]"_s,  u"Ж 家 😀"_s,     u"\u00a0"_s,     u"ÿþ"_s, QString()};
  const QByteArray files[] = {"", "[main]\nrouter=\xe9\n", "\xef\xbb\xbf[main]\r\n",
                              Utf16(u"[main]\r\n"_s, true), Utf16(u"[x]"_s, false)};
  for (const QByteArray& file : files) {
    ASSERT_TRUE(WriteBytes(path_, file));
    for (const QString& value : values) {
      EXPECT_TRUE(Write(value));
      EXPECT_EQ(Read(), value) << qPrintable(value);
    }
  }
  EXPECT_TRUE(Write(u"a\r\nb\n[c]"_s));
  EXPECT_EQ(Read(), u"a b [c]"_s);
  const QString cut_pair = QString(254, QLatin1Char('x')) + u"😀"_s;
  EXPECT_TRUE(Write(cut_pair));
  EXPECT_EQ(Read(), cut_pair.first(254));
}

TEST_F(IniFile, OthersCannotReadThePassword) {
  const auto is_private = [this] {
    return (QFileInfo(path_).permissions() & 0x7777) ==
           (QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
  };
  EXPECT_TRUE(Write(u"A"_s));
  EXPECT_TRUE(is_private());
  QFile::setPermissions(path_, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
  EXPECT_TRUE(Write(u"B"_s));
  EXPECT_TRUE(is_private());
}

TEST_F(IniFile, AFailedWriteIsReportedAndLeavesTheFile) {
  const QByteArray large = QByteArray("[main]\nrouter=A\n") + QByteArray(4 << 20, ' ');
  ASSERT_TRUE(WriteBytes(path_, large));
  EXPECT_EQ(Read(), QString());
  EXPECT_FALSE(Write(u"B"_s));
  EXPECT_EQ(ReadBytes(path_), large);

  // Larger than the lock file, which has to find room first.
  const QByteArray small = "[main]\r\nrouter=A\r\n" + QByteArray("; a remark\r\n").repeated(100);
  ASSERT_TRUE(WriteBytes(path_, small));
  EXPECT_FALSE(testing::OnFullDisk(small.size() - 1, [&] { return Write(u"B"_s); }));
  EXPECT_EQ(ReadBytes(path_), small);
  {
    const testing::ReadOnlyFolder folder(folder_.path());
    EXPECT_FALSE(Write(u"B"_s));
    EXPECT_EQ(Read(), u"A"_s);
  }
  EXPECT_EQ(testing::Names(folder_.path()), QStringList{u"settings.ini"_s});
  EXPECT_FALSE(WriteIniValue(kMain, kRouter, u"B"_s, folder_.path()));
}

TEST_F(IniFile, AnotherCopyThatHangsDoesNotHoldTheWindowForLong) {
  const FileLock lock(folder_.path(), std::chrono::seconds(0));
  ASSERT_TRUE(lock.IsLocked());
  QElapsedTimer timer;
  timer.start();
  EXPECT_FALSE(Write(u"B"_s));
  EXPECT_LT(timer.elapsed(), 20000);
}

TEST_F(IniFile, WhatAKilledWriteLeavesIsRemovedAndNothingOfTheUsers) {
  ASSERT_TRUE(Write(u"A"_s));
  const QByteArray old = ReadBytes(path_);
  const pid_t child = fork();
  if (child == 0) {  // the first byte too many kills it
    const rlimit full = {8, 8};
    setrlimit(RLIMIT_FSIZE, &full);
    std::signal(SIGXFSZ, SIG_DFL);
    Write(u"secret"_s);
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  ASSERT_EQ(testing::Names(folder_.path()).size(), 2);

  const QStringList kept = {u"list.qyl.backup"_s, u"router.jpg.aBcDeF"_s, u"settings.ini"_s,
                            u"settings.ini.old"_s, u"settings.ini.AbCdEfG"_s};
  for (const QString& name : kept) {
    ASSERT_TRUE(name == u"settings.ini"_s || WriteBytes(folder_.filePath(name), "x"));
  }
  for (const char* name : {"settings.ini.aBcDeF", "list.qyl.abcdef.unfinished"}) {
    ASSERT_TRUE(WriteBytes(folder_.filePath(QLatin1String(name)), "secret"));
  }
  ASSERT_TRUE(QFile::link(path_, folder_.filePath(u"list.qyl.QwErTy"_s)));
  {
    const FileLock writing(folder_.path(), std::chrono::seconds(0));
    RemoveUnfinishedWrites(folder_.path());
    EXPECT_EQ(testing::Names(folder_.path()).size(), 9) << "another instance writes now";
  }
  RemoveUnfinishedWrites(folder_.path());
  EXPECT_EQ(ReadBytes(path_), old);
  QStringList names = testing::Names(folder_.path());
  EXPECT_TRUE(names.removeOne(u"list.qyl.QwErTy"_s)) << "a link is nobody's temporary file";
  names.sort();
  QStringList expected = kept;
  expected.sort();
  EXPECT_EQ(names, expected);
}

TEST_F(IniFile, TwoCopiesDoNotLoseEachOthersWrites) {
  QStringList keys[2];
  for (int i = 0; i < 25; ++i) {
    keys[0] += u"child%1"_s.arg(i);
    keys[1] += u"parent%1"_s.arg(i);
  }
  const auto write_all = [this](const QStringList& own_keys) {
    for (const QString& key : own_keys) {
      while (!Write(key, key)) {
      }
    }
  };
  const pid_t child = fork();
  if (child == 0) {
    write_all(keys[0]);
    _exit(0);
  }
  write_all(keys[1]);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  for (const QString& key : keys[0] + keys[1]) {
    EXPECT_EQ(Read(key), key);
  }
}

}  // namespace
}  // namespace quayline
