// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "app/one_copy.h"

#include <QDir>
#include <QTemporaryDir>

#include <future>
#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline::testing {
namespace {

class OneCopyTest : public ::testing::Test {
 protected:
  QString Folder(const char* name) {
    QDir(dir_.path()).mkpath(QLatin1String(name));
    return dir_.filePath(QLatin1String(name));
  }

  // The asking side waits for its answer, as a process of its own does.
  static bool Ask(const QString& folder, const QString& file) {
    auto answer = std::async(std::launch::async, [=] { return OneCopy(folder).AskOther(file); });
    EXPECT_TRUE(RunUntil(
        [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return answer.get();
  }

  QTemporaryDir dir_;
};

TEST_F(OneCopyTest, OneFolderHasOneCopyUnderEveryNameOfTheFolder) {
  const QString folder = Folder("one");
  QFile::link(folder, dir_.filePath(QStringLiteral("link")));
  OneCopy first(folder);
  ASSERT_TRUE(first.Claim());
  EXPECT_FALSE(OneCopy(folder).Claim());
  EXPECT_FALSE(OneCopy(dir_.filePath(QStringLiteral("link"))).Claim());
  EXPECT_TRUE(OneCopy(Folder("other")).Claim());
}

TEST_F(OneCopyTest, WhatAnEndedOrAKilledCopyLeavesIsInNobodysWay) {
  const QString folder = Folder("one");
  {
    EXPECT_TRUE(OneCopy(folder).Claim());
  }
  QFile left(folder + QStringLiteral("/quayline.lock"));
  ASSERT_TRUE(left.open(QIODevice::WriteOnly));
  left.write("999999999\nquayline\n" + QSysInfo::machineHostName().toUtf8() + "\n");
  left.close();
  OneCopy first(folder);
  EXPECT_TRUE(first.Claim());
  // The socket of a copy that is gone.
  auto dead = std::make_unique<OneCopy>(folder);
  dead->Listen();
  OneCopy alive(folder);
  alive.Listen();
  EXPECT_TRUE(Ask(folder, QString()));
}

TEST_F(OneCopyTest, AListReachesTheFirstCopyWithEveryLetterOfItsName) {
  const QString folder = Folder("one");
  OneCopy first(folder);
  first.Listen();
  QStringList asked;
  QObject::connect(&first, &OneCopy::asked, &first,
                   [&](const QString& file) { asked.append(file); });
  const QStringList files = {QString(), QStringLiteral("/tmp/a list 100%.qyl"),
                             QString::fromUtf8("/tmp/Häfen\n№ 1.qyl")};
  for (const QString& file : files) {
    EXPECT_TRUE(Ask(folder, file));
  }
  EXPECT_EQ(asked, files);
}

TEST_F(OneCopyTest, AReleasedFolderIsTheNextCopysAtOnce) {
  const QString folder = Folder("one");
  OneCopy first(folder);
  ASSERT_TRUE(first.Claim());
  first.Listen();
  first.Release();
  OneCopy second(folder);
  EXPECT_TRUE(second.Claim());
  second.Listen();
  bool is_asked = false;
  QObject::connect(&second, &OneCopy::asked, &second, [&] { is_asked = true; });
  EXPECT_TRUE(Ask(folder, QString()));
  EXPECT_TRUE(is_asked);
}

TEST_F(OneCopyTest, NobodyAnswers) { EXPECT_FALSE(Ask(Folder("silent"), QString())); }

}  // namespace
}  // namespace quayline::testing
