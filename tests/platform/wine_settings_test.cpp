// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/wine_settings.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "core/files.h"
#include "platform/linux/wine_registry.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;
using Hive = ForeignSettings::Hive;

constexpr char kHead[] =
    "WINE REGISTRY Version 2\n;; All keys relative to \\\\User\\\\S\n\n#arch=win64\n\n";

TEST(WineRegistry, ReadsEveryFormInWhichAValueIsKept) {
  const struct {
    const char* fault;
    QByteArray lines;  // of the key that is asked for
    const char16_t* value;
  } rows[] = {
      {"a time behind the key, its own lines", "#time=1d9\n#class=\"x\"\n\"Port\"=\"1\"\n", u"1"},
      {"letter case of the name", "\"pORT\"=\"1\"\n", u"1"},
      {"a longer name, a name in a value",
       "\"Port2\"=\"2\"\n\"x\"=\"\\\"Port\\\"=3\"\n\"Port\"=\"1\"\n", u"1"},
      {"the default value is taken for it", "@=\"2\"\n\"Port\"=\"1\"\n", u"1"},
      {"escapes",
       R"("Port"="C:\\a \"b\" \t\x41\xe9\xd83d\xde00\101\e")"
       "\n",
       u"C:\\a \"b\" \tAé😀A\x1b"},
      {"hex digits behind a full unit", "\"Port\"=\"\\x00e9f\"\n", u"éf"},
      {"an escape without digits, one at the end", "\"Port\"=\"\\xg\\8\"\n", u"xg8"},
      {"text with a NUL", "\"Port\"=\"1\\0002\"\n", u"1"},
      {"expandable and listed text", "\"Port\"=str(7):\"one\\0two\\0\"\n", u"one"},
      {"number", "\"Port\"=dword:0000FFff\n", u"65535"},
      {"text as bytes, on many lines",
       "\"Port\"=hex(2):31,00,\\\n  \\\n  32,00,00,00,\\\n  33,00\n\"z\"=\"\"\n", u"12"},
      {"text of an odd number of bytes", "\"Port\"=hex(1):31,00,32\n", u"1"},
      {"long number", "\"Port\"=hex(b):01,02,00,00,00,00,00,00\n", u"513"},
      {"numbers that are too short or too long", "\"Port\"=hex(4):01,02\n", nullptr},
      {"bytes of no known kind", "\"Port\"=hex:31,00\n", nullptr},
      {"bytes that go on behind the file's end", "\"Port\"=hex(1):31,00,\\", u"1"},
      {"a text that is not closed", "\"Port\"=\"1\n\"Port\"=\"2\"\n", nullptr},
      {"a name that is not closed", "\"Port=\"1\n", nullptr},
      {"no value behind the name", "\"Port\"\n\"Port\"=\n", nullptr},
      {"neither text nor number", "\"Port\"=dword:12x\n", nullptr},
      {"the next key's value", "\n[Software\\\\Z]\n\"Port\"=\"1\"\n", nullptr},
      {"a deeper key's value", "\n[Software\\\\A [b]\\\\C]\n\"Port\"=\"1\"\n", nullptr},
  };
  for (const auto& row : rows) {
    const QByteArray hive =
        kHead + QByteArray("[Software]\n\"Port\"=\"9\"\n\n[software\\\\a [b\\]] 170\n") + row.lines;
    const auto value = FindWineValue(hive, u"Software\\A [b]"_s, u"Port"_s);
    EXPECT_EQ(value.has_value(), row.value != nullptr) << row.fault;
    EXPECT_EQ(value.value_or(QString()), QString::fromUtf16(row.value)) << row.fault;
  }
  QByteArray hive = kHead + QByteArray("[K]\n\"x\"=\"2\"\n@=hex(1):31,\\\n  00\n");
  EXPECT_EQ(FindWineValue(hive, u"K"_s, QString()), u"1"_s);
  hive.replace("\n", "\r\n");
  EXPECT_EQ(FindWineValue(hive, u"K"_s, QString()), u"1"_s);
}

TEST(WineRegistry, WhatIsNoHiveHoldsNothing) {
  const QByteArray key = "[K]\n\"x\"=\"1\"\n";
  for (const QByteArray& hive :
       {QByteArray(), QByteArray("WINE REGISTRY Version 2"), QByteArray("REGEDIT4\n") + key, key,
        kHead + QByteArray("[K"), kHead + QByteArray("[K]\n\"x\"=\"\\"),
        kHead + QByteArray(100000, '\0'), kHead + QByteArray("[\\").repeated(100000)}) {
    EXPECT_EQ(FindWineValue(hive, u"K"_s, u"x"_s), std::nullopt) << hive.left(60).toStdString();
  }
}

class WinePrefix : public ::testing::Test {
 protected:
  QString Path(const char* below) const { return folder_.filePath(QString::fromUtf8(below)); }
  void MakeFolder(const char* below) const { QDir().mkpath(Path(below)); }
  void WriteHive(const char* name, const QByteArray& keys) const {
    ASSERT_TRUE(testing::WriteBytes(Path(name), kHead + keys));
  }

  QTemporaryDir folder_;
  WineSettings settings_{folder_.path(), u"/home/anna"_s, {}, {}};
};

TEST_F(WinePrefix, EachHiveHasItsFileAndOldProgramsTheirPartOfIt) {
  WriteHive("user.reg", "[Software\\\\K]\n\"x\"=\"user\"\n");
  WriteHive("system.reg",
            "[Software\\\\K]\n\"x\"=\"machine\"\n\n"
            "[Software\\\\Wow6432Node\\\\K]\n\"x\"=\"2\"\n\"y\"=\"32\"\n");
  const auto value = [this](Hive hive, const QString& name) {
    return settings_.RegistryValue(hive, u"SOFTWARE\\K"_s, name);
  };
  EXPECT_EQ(value(Hive::kCurrentUser, u"x"_s), u"user"_s);
  EXPECT_EQ(value(Hive::kLocalMachine, u"x"_s), u"machine"_s);
  EXPECT_EQ(value(Hive::kLocalMachine, u"y"_s), u"32"_s);
  EXPECT_EQ(value(Hive::kCurrentUser, u"y"_s), std::nullopt);
  QFile::resize(Path("user.reg"), qint64{65} << 20);
  EXPECT_EQ(value(Hive::kCurrentUser, u"x"_s), std::nullopt) << "huge";
}

TEST_F(WinePrefix, TheApplicationDataFoldersAreFoundUnderEveryEditionsNames) {
  qputenv("USER", "anna");
  const auto restore = qScopeGuard([] { qunsetenv("USER"); });
  const auto folders = [this] {
    return settings_.AppDataFolder() + u' ' + settings_.LocalAppDataFolder();
  };
  EXPECT_EQ(folders(), u" "_s) << "no prefix";
  MakeFolder("drive_c/users/Public/AppData/Roaming");
  EXPECT_EQ(folders(), u" "_s) << "the folder of all users belongs to none";
  MakeFolder("drive_c/users/aaron/AppData/Roaming");
  EXPECT_EQ(folders(), u"C:\\users\\aaron\\AppData\\Roaming "_s);
  MakeFolder("drive_c/users/anna/Application Data");
  MakeFolder("drive_c/users/anna/Local Settings/Application Data");
  EXPECT_EQ(folders(),
            u"C:\\users\\anna\\Application Data "
            "C:\\users\\anna\\Local Settings\\Application Data"_s);
  MakeFolder("drive_c/users/anna/appdata/ROAMING");
  MakeFolder("drive_c/users/anna/appdata/local");
  EXPECT_EQ(folders(), u"C:\\users\\anna\\AppData\\Roaming C:\\users\\anna\\AppData\\Local"_s);
  WriteHive("user.reg",
            "[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\Explorer\\\\Shell Folders] 1\n"
            "\"AppData\"=\"C:\\\\users\\\\anna\\\\Application Data\"\n"
            "\"Local AppData\"=\"C:\\\\users\\\\gone\\\\AppData\\\\Local\"\n");
  EXPECT_EQ(folders(), u"C:\\users\\anna\\Application Data C:\\users\\anna\\AppData\\Local"_s);
}

TEST_F(WinePrefix, ForeignPathsAreFoundWhateverTheirLetterCase) {
  MakeFolder("Drive_C/Program Files/ÄRES/conf");
  MakeFolder("Drive_C/twin");
  MakeFolder("Drive_C/Twin");
  MakeFolder("dosdevices");
  MakeFolder("other/data");
  QFile::link(u"../other"_s, Path("dosdevices/d:"));
  QFile::link(u"../missing"_s, Path("dosdevices/e:"));
  const struct {
    const char16_t* foreign;
    const char* host;
  } rows[] = {
      {u"c:\\PROGRAM files\\\\äres\\Conf\\", "Drive_C/Program Files/ÄRES/conf"},
      {u"C:/Program Files/ÄRES", "Drive_C/Program Files/ÄRES"},
      {u"C:\\Twin", "Drive_C/Twin"},
      {u"C:\\twin", "Drive_C/twin"},
      {u"D:\\DATA", "dosdevices/d:/data"},
      {u"C:\\Program Files\\A*", nullptr},
      {u"E:\\data", nullptr},
      {u"X:\\", nullptr},
      {u"\\Program Files", nullptr},
      {u"C", nullptr},
      {u"", nullptr},
  };
  for (const auto& row : rows) {
    const QString foreign = QString::fromUtf16(row.foreign);
    EXPECT_EQ(settings_.HostPath(foreign), row.host == nullptr ? QString() : Path(row.host))
        << foreign.toStdString();
  }
}

TEST_F(WinePrefix, ThePrefixIsTheOneThatWineWouldUse) {
  MakeFolder("dosdevices");
  MakeFolder(".wine/dosdevices");
  QFile::link(u"/"_s, Path("dosdevices/z:"));
  QFile::link(u"/"_s, Path(".wine/dosdevices/h:"));
  const auto restore = qScopeGuard([home = qgetenv("HOME")] {
    qputenv("HOME", home);
    qunsetenv("WINEPREFIX");
  });
  qputenv("HOME", QFile::encodeName(folder_.path()));
  EXPECT_EQ(WineSettings().HostPath(u"H:"_s), Path(".wine/dosdevices/h:"));
  qputenv("WINEPREFIX", QFile::encodeName(folder_.path()));
  EXPECT_EQ(WineSettings().HostPath(u"Z:"_s), Path("dosdevices/z:"));
}

}  // namespace
}  // namespace quayline
