// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

#include "house/house_rules.h"
#include "test_main.h"

namespace quayline {
namespace {

const QString kRoot = QStringLiteral(QUAYLINE_SOURCE_DIR);

QStringList FilesUnder(const QString& folder, const QStringList& patterns) {
  QStringList files;
  QDirIterator each(folder, patterns, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (each.hasNext()) {
    files.append(each.next());
  }
  return files;
}

QString Contents(const QString& name) {
  QFile file(name);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
  return QString::fromUtf8(file.readAll());
}

TEST(HouseRules, TellRightArrowsFromWrongOnes) {
  const struct {
    const char* file;
    const char* included;
    bool is_wrong;
  } cases[] = {
      {"core/settings.cpp", "core/settings.h", false},
      {"core/settings.h", "i18n/message.h", false},
      {"app/main.cpp", "async/task.h", false},
      {"async/flow.h", "platform/desktop.h", true},
      {"platform/linux/a.cpp", "platform/desktop.h", false},
      {"platform/linux/a.cpp", "transport/http_fetch.h", true},
      {"core/settings.h", "script/page_host.h", true},
      {"script/runner.h", "net/port_checker.h", true},
      {"script/web/web_page_host.h", "script/page_host.h", false},
      {"script/web/web_page_host.h", "<QWebEnginePage>", false},
      {"script/runner.h", "<QWebEnginePage>", true},
      {"ui/job/frm.cpp", "<QtWebEngineWidgets/QWebEngineView>", true},
      {"ui/job/frm.cpp", "ui_frm_job_status.h", false},
      {"ui/job/frm.cpp", "frm.moc", false},
      {"ui/job/frm.cpp", "ui/job/frm.h", false},
      {"ui/job/frm.cpp", "ui/toolkit/prompts.h", false},
      {"ui/job/frm.cpp", "ui/main/frm_main.h", true},
      {"ui/toolkit/prompts.cpp", "ui/job/frm.h", true},
      {"cli/main.cpp", "app/main_window.h", true},
      {"core/a.cpp", "../ui/main/frm_main.h", true},
      {"core/a.cpp", "demo/router.h", true},
      {"new_folder/a.cpp", "core/a.h", true},
  };
  for (const auto& c : cases) {
    const QString why =
        testing::WrongArrow(QString::fromLatin1(c.file), QString::fromLatin1(c.included));
    EXPECT_EQ(!why.isEmpty(), c.is_wrong) << c.file << " includes " << c.included;
  }
}

TEST(HouseRules, FindIncludesAndWrongTexts) {
  EXPECT_EQ(
      testing::Includes(QStringLiteral("#include \"a/b.h\"\n  #  include <QList>\n// #include "
                                       "\"c.h\"\n")),
      (QStringList{QStringLiteral("a/b.h"), QStringLiteral("<QList>")}));
  const QString head =
      QStringLiteral("# SPDX-FileCopyrightText: 2026 x\n# SPDX-License-Identifier: MIT\n");
  const struct {
    const char* file;
    QString text;
    bool is_wrong;
  } cases[] = {
      {"scripts/a.sh", QStringLiteral("#!/bin/sh\n") + head, false},
      {"scripts/a.sh", QStringLiteral("#!/bin/sh\n\n") + head, true},
      {"src/CMakeLists.txt", head, false},
      {"src/a.h", QStringLiteral("#pragma once\n") + head, true},
      {"data/a.txt", QStringLiteral("no licence lines here"), false},
      {"data/a.txt", QStringLiteral("see ") + QStringLiteral("Part ") + QStringLiteral("3.1"),
       true},
      {"data/a.txt", QStringLiteral("Part 3 of 1.5 files"), false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(!testing::WrongText(QString::fromLatin1(c.file), c.text).isEmpty(), c.is_wrong)
        << c.file << ": " << c.text.toStdString();
  }
}

TEST(House, NoIncludePointsUpOrSideways) {
  const QString src = kRoot + QStringLiteral("/src");
  const QStringList files = FilesUnder(src, {QStringLiteral("*.h"), QStringLiteral("*.cpp")});
  ASSERT_GT(files.size(), 20) << "the sources were not found";
  for (const QString& file : files) {
    const QString name = QDir(src).relativeFilePath(file);
    for (const QString& included : testing::Includes(Contents(file))) {
      EXPECT_EQ(testing::WrongArrow(name, included), QString())
          << name.toStdString() << " includes " << included.toStdString();
    }
  }
}

TEST(House, EveryFileHasItsLicenceLinesAndRefersToNothingOutside) {
  QStringList files;
  for (const char* folder :
       {"src", "tests", "demo", "data", "bench", "cmake", "scripts", "docs", ".ci"}) {
    files += FilesUnder(kRoot + QLatin1Char('/') + QLatin1String(folder), {});
  }
  files += {kRoot + QStringLiteral("/CMakeLists.txt"), kRoot + QStringLiteral("/README.md")};
  for (const QString& file : files) {
    // What npm fetches for the benchmarks' peers lies in the tree and is not of it.
    if (QFile::exists(file) && !file.contains(QLatin1String("/node_modules/"))) {
      const QString name = QDir(kRoot).relativeFilePath(file);
      EXPECT_EQ(testing::WrongText(name, Contents(file)), QString()) << name.toStdString();
    }
  }
}

}  // namespace
}  // namespace quayline
