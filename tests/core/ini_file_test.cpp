// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/ini_file.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QLockFile>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "core/files.h"

namespace quayline {
namespace {

using testing::ReadBytes;
using testing::WriteBytes;

const QString kMain = QStringLiteral("main");
const QString kRouter = QStringLiteral("router");

QByteArray Utf16(const QString& text, bool is_little_endian) {
  QStringEncoder encode(is_little_endian ? QStringEncoder::Utf16LE : QStringEncoder::Utf16BE,
                        QStringEncoder::Flag::WriteBom);
  return encode(text);
}

class IniFile : public ::testing::Test {
 protected:
  QTemporaryDir folder_;
  QString path_ = folder_.filePath(QStringLiteral("settings.ini"));
};

TEST_F(IniFile, FindsTheValueInEveryFormOfFile) {
  const QString cafe = QStringLiteral("Café");
  const struct {
    const char* fault;
    QByteArray bytes;
    QString value;
  } rows[] = {
      {"case of section and key", "[MAIN]\r\nRouter=A\r\n", QStringLiteral("A")},
      {"blanks around key and value", " [ main ] \n\t router \t=  A b \t\n", QStringLiteral("A b")},
      {"quotes keep blanks", "[main]\nrouter=\"  A \"\n", QStringLiteral("  A ")},
      {"single quotes", "[main]\nrouter='A'\n", QStringLiteral("A")},
      {"only one pair is taken off", "[main]\nrouter=\"\"A\"\"\n", QStringLiteral("\"A\"")},
      {"a lone quote stays", "[main]\nrouter=\"\n", QStringLiteral("\"")},
      {"separators inside the value", "[main]\nrouter=a=b;c#d]\n", QStringLiteral("a=b;c#d]")},
      {"no line end at the end", "[main]\nrouter=A", QStringLiteral("A")},
      {"lone CR", "[main]\rrouter=A\rx=B\r", QStringLiteral("A")},
      {"mark of UTF-8", "\xef\xbb\xbf[main]\nrouter=Caf\xc3\xa9\n", cafe},
      {"Windows-1252, cut letter of UTF-8 at the end", "[main]\nrouter=Caf\xe9", cafe},
      {"code page letter", "[main]\nrouter=\x80\n", QStringLiteral("€")},
      {"a neighbour in another encoding", "; \xe9\n[main]\nrouter=Caf\xc3\xa9\n", cafe},
      {"UTF-16", Utf16(QStringLiteral("[main]\r\nrouter=Café\r\n"), true), cafe},
      {"UTF-16 of the other order", Utf16(QStringLiteral("[main]\nrouter=Café"), false), cafe},
      {"UTF-16 cut inside a letter", Utf16(QStringLiteral("[main]\nrouter=A"), true) + 'x',
       QStringLiteral("A")},
      {"first of two keys", "[main]\nrouter=A\nrouter=B\n", QStringLiteral("A")},
      {"another section", "[other]\nrouter=A\n[main]\n", {}},
      {"above all sections", "router=A\n[main]\n", {}},
      {"behind the section", "[main]\n[other]\nrouter=A\n", {}},
      {"comment", "[main]\n;router=A\n", {}},
      {"key without a value", "[main]\nrouter\n", {}},
      {"longer key", "[main]\nrouterip=A\n", {}},
      {"heading that is not closed", "[main\nrouter=A\n", {}},
      {"empty file", "", {}},
      {"mark alone", "\xff\xfe", {}},
      {"zeros", QByteArray(4096, '\0'), {}},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(WriteBytes(path_, row.bytes));
    EXPECT_EQ(ReadIniValue(kMain, kRouter, path_), row.value) << row.fault;
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
       QByteArray("\xff\xfe\x41\0", 4) +
           Utf16(QStringLiteral("\r\n[main]\r\nrouter=B\r\n"), true).sliced(2)},
      {"UTF-16", Utf16(QStringLiteral("[main]\nrouter=A\nx=é\n"), true),
       Utf16(QStringLiteral("[main]\nrouter=B\nx=é\n"), true)},
  };
  for (const auto& row : rows) {
    if (row.before.isNull()) {
      QFile::remove(path_);
    } else {
      ASSERT_TRUE(WriteBytes(path_, row.before));
    }
    EXPECT_TRUE(WriteIniValue(kMain, kRouter, QStringLiteral("B"), path_));
    EXPECT_EQ(ReadBytes(path_), row.after) << row.fault;
  }
}

TEST_F(IniFile, EveryValueComesBackFromEveryFile) {
  const QString values[] = {QStringLiteral("a=b;c#d"),    QStringLiteral(" both ends "),
                            QStringLiteral("\"quoted\""), QStringLiteral("'"),
                            QStringLiteral("\""),         QStringLiteral("[main]"),
                            QStringLiteral("Ж 家 😀"),    QStringLiteral("\u00a0"),
                            QStringLiteral("ÿþ"),         QString()};
  const QByteArray files[] = {"", "[main]\nrouter=\xe9\n", "\xef\xbb\xbf[main]\r\n",
                              Utf16(QStringLiteral("[main]\r\n"), true),
                              Utf16(QStringLiteral("[x]"), false)};
  for (const QByteArray& file : files) {
    ASSERT_TRUE(WriteBytes(path_, file));
    for (const QString& value : values) {
      EXPECT_TRUE(WriteIniValue(kMain, kRouter, value, path_));
      EXPECT_EQ(ReadIniValue(kMain, kRouter, path_), value) << qPrintable(value);
    }
  }
  EXPECT_TRUE(WriteIniValue(kMain, kRouter, QStringLiteral("a\r\nb\n[c]"), path_));
  EXPECT_EQ(ReadIniValue(kMain, kRouter, path_), QStringLiteral("a b [c]"));
  const QString cut_pair = QString(254, QLatin1Char('x')) + QStringLiteral("😀");
  EXPECT_TRUE(WriteIniValue(kMain, kRouter, cut_pair, path_));
  EXPECT_EQ(ReadIniValue(kMain, kRouter, path_), cut_pair.first(254));
}

TEST_F(IniFile, OthersCannotReadThePassword) {
  const auto is_private = [this] {
    return (QFileInfo(path_).permissions() & 0x7777) ==
           (QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
  };
  EXPECT_TRUE(WriteIniValue(kMain, kRouter, QStringLiteral("A"), path_));
  EXPECT_TRUE(is_private());
  QFile::setPermissions(path_, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
  EXPECT_TRUE(WriteIniValue(kMain, kRouter, QStringLiteral("B"), path_));
  EXPECT_TRUE(is_private());
}

TEST_F(IniFile, AFailedWriteIsToldAndLeavesTheFile) {
  const QByteArray large = QByteArray("[main]\nrouter=A\n") + QByteArray(4 << 20, ' ');
  ASSERT_TRUE(WriteBytes(path_, large));
  EXPECT_EQ(ReadIniValue(kMain, kRouter, path_), QString());
  EXPECT_FALSE(WriteIniValue(kMain, kRouter, QStringLiteral("B"), path_));
  EXPECT_EQ(ReadBytes(path_), large);

  // Larger than the lock file, which has to find room first.
  const QByteArray small = "[main]\r\nrouter=A\r\n" + QByteArray("; a remark\r\n").repeated(100);
  ASSERT_TRUE(WriteBytes(path_, small));
  {
    const testing::FullDisk disk(small.size() - 1);
    EXPECT_FALSE(WriteIniValue(kMain, kRouter, QStringLiteral("B"), path_));
  }
  EXPECT_EQ(ReadBytes(path_), small);
  {
    const testing::ReadOnlyFolder folder(folder_.path());
    EXPECT_FALSE(WriteIniValue(kMain, kRouter, QStringLiteral("B"), path_));
    EXPECT_EQ(ReadIniValue(kMain, kRouter, path_), QStringLiteral("A"));
  }
  EXPECT_EQ(testing::Names(folder_.path()), QStringList{QStringLiteral("settings.ini")});
  EXPECT_FALSE(WriteIniValue(kMain, kRouter, QStringLiteral("B"), folder_.path()));
}

TEST_F(IniFile, AnotherCopyThatHangsDoesNotHoldTheWindowForLong) {
  QLockFile lock(path_ + QStringLiteral(".lock"));
  ASSERT_TRUE(lock.lock());
  QElapsedTimer timer;
  timer.start();
  EXPECT_FALSE(WriteIniValue(kMain, kRouter, QStringLiteral("B"), path_));
  EXPECT_LT(timer.elapsed(), 2000);
}

TEST_F(IniFile, TwoCopiesDoNotLoseEachOthersWrites) {
  constexpr int kWrites = 25;
  const auto write_all = [this](const char* name) {
    for (int i = 0; i < kWrites; ++i) {
      const QString key = QString::fromLatin1(name) + QString::number(i);
      while (!WriteIniValue(kMain, key, key, path_)) {
      }
    }
  };
  const pid_t child = fork();
  if (child == 0) {
    write_all("child");
    _exit(0);
  }
  write_all("parent");
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  for (const char* name : {"child", "parent"}) {
    for (int i = 0; i < kWrites; ++i) {
      const QString key = QString::fromLatin1(name) + QString::number(i);
      EXPECT_EQ(ReadIniValue(kMain, key, path_), key);
    }
  }
}

}  // namespace
}  // namespace quayline
