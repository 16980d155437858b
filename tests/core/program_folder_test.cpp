// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/program_folder.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include "core/files.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;
using testing::Names;
using testing::ReadBytes;
using testing::WriteBytes;

class ProgramFolder : public ::testing::Test {
 protected:
  ProgramFolder() {
    qputenv("XDG_DATA_HOME", QFile::encodeName(data_));
    QDir().mkpath(bin_);
    QDir().mkpath(seed_);
    WriteBytes(seed_ + u"/routers.mdb"_s, "seed routers");
    WriteBytes(seed_ + u"/custom.mdb"_s, "seed custom");
  }
  ~ProgramFolder() override { qunsetenv("XDG_DATA_HOME"); }

  QTemporaryDir folder_;
  QString data_ = folder_.filePath(u"data"_s);
  QString bin_ = folder_.filePath(u"bin"_s);
  QString seed_ = folder_.filePath(u"share/quayline"_s);
  QString home_ = data_ + u"/quayline"_s;
};

TEST_F(ProgramFolder, APortableProgramStaysInItsFolder) {
  WriteBytes(bin_ + u"/routers.mdb"_s, "own");
  EXPECT_EQ(FindProgramFolder(bin_, seed_), bin_);
  EXPECT_FALSE(QFileInfo::exists(data_));
}

TEST_F(ProgramFolder, TheFirstStartCopiesWhatIsMissingAndReplacesNothing) {
  EXPECT_EQ(SeedFolder(home_), QString());
  EXPECT_EQ(FindProgramFolder(bin_, QString()), home_) << "also where there is nothing to copy";
  EXPECT_EQ(Names(home_), QStringList());
  WriteBytes(home_ + u"/custom.mdb"_s, "mine");
  QFile::setPermissions(seed_ + u"/routers.mdb"_s, QFile::ReadOwner);
  EXPECT_EQ(SeedFolder(bin_), seed_);
  EXPECT_EQ(FindProgramFolder(bin_, SeedFolder(bin_)), home_);
  EXPECT_EQ(ReadBytes(home_ + u"/custom.mdb"_s), "mine");
  EXPECT_EQ(ReadBytes(home_ + u"/routers.mdb"_s), "seed routers");
  EXPECT_EQ(Names(home_).size(), 2) << "a file that the seed lacks, or a temporary one";
  EXPECT_TRUE(QFileInfo(home_ + u"/routers.mdb"_s).permission(QFile::WriteOwner));
}

TEST_F(ProgramFolder, FailuresNameWhatCouldNotBeDone) {
  WriteBytes(data_, "a file where the folder should be");
  const auto no_folder = FindProgramFolder(bin_, seed_);
  ASSERT_FALSE(no_folder);
  EXPECT_TRUE(no_folder.error().contains(home_));
  QFile::remove(data_);
  QDir().mkpath(home_);
  const auto full = testing::OnFullDisk(3, [&] { return FindProgramFolder(bin_, seed_); });
  ASSERT_FALSE(full);
  EXPECT_TRUE(full.error().contains(u"routers.mdb"_s));
  EXPECT_EQ(Names(home_), QStringList());
}

}  // namespace
}  // namespace quayline
