// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/program_folder.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include "core/files.h"

namespace quayline {
namespace {

using testing::Names;
using testing::ReadBytes;
using testing::WriteBytes;

class ProgramFolder : public ::testing::Test {
 protected:
  ProgramFolder() {
    qputenv("XDG_DATA_HOME", QFile::encodeName(data_));
    QDir().mkpath(bin_);
    QDir().mkpath(seed_);
    WriteBytes(seed_ + QStringLiteral("/routers.mdb"), "seed routers");
    WriteBytes(seed_ + QStringLiteral("/custom.mdb"), "seed custom");
  }
  ~ProgramFolder() override { qunsetenv("XDG_DATA_HOME"); }

  QTemporaryDir folder_;
  QString data_ = folder_.filePath(QStringLiteral("data"));
  QString bin_ = folder_.filePath(QStringLiteral("bin"));
  QString seed_ = folder_.filePath(QStringLiteral("share/quayline"));
  QString home_ = data_ + QStringLiteral("/quayline");
};

TEST_F(ProgramFolder, APortableProgramStaysInItsFolder) {
  WriteBytes(bin_ + QStringLiteral("/routers.mdb"), "own");
  EXPECT_EQ(FindProgramFolder(bin_, seed_), bin_);
  EXPECT_FALSE(QFileInfo::exists(data_));
}

TEST_F(ProgramFolder, TheFirstStartCopiesWhatIsMissingAndReplacesNothing) {
  QDir().mkpath(home_);
  WriteBytes(home_ + QStringLiteral("/custom.mdb"), "mine");
  QFile::setPermissions(seed_ + QStringLiteral("/routers.mdb"), QFile::ReadOwner);
  EXPECT_EQ(SeedFolder(bin_), seed_);
  EXPECT_EQ(FindProgramFolder(bin_, SeedFolder(bin_)), home_);
  EXPECT_EQ(ReadBytes(home_ + QStringLiteral("/custom.mdb")), "mine");
  EXPECT_EQ(ReadBytes(home_ + QStringLiteral("/routers.mdb")), "seed routers");
  EXPECT_EQ(Names(home_).size(), 2) << "a file that the seed lacks, or a temporary one";
  EXPECT_TRUE(QFileInfo(home_ + QStringLiteral("/routers.mdb")).permission(QFile::WriteOwner));
}

TEST_F(ProgramFolder, WithoutASeedTheFolderIsStillMade) {
  EXPECT_EQ(SeedFolder(home_), QString());
  EXPECT_EQ(FindProgramFolder(bin_, QString()), home_);
  EXPECT_EQ(Names(home_), QStringList());
}

TEST_F(ProgramFolder, FailuresNameWhatCouldNotBeDone) {
  WriteBytes(data_, "a file where the folder should be");
  const auto no_folder = FindProgramFolder(bin_, seed_);
  ASSERT_FALSE(no_folder);
  EXPECT_TRUE(no_folder.error().contains(home_));
  QFile::remove(data_);
  QDir().mkpath(home_);
  std::expected<QString, QString> full;
  {
    const testing::FullDisk disk(3);
    full = FindProgramFolder(bin_, seed_);
  }
  ASSERT_FALSE(full);
  EXPECT_TRUE(full.error().contains(QStringLiteral("routers.mdb")));
  EXPECT_EQ(Names(home_), QStringList());
}

}  // namespace
}  // namespace quayline
