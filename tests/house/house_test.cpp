// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

const QString kRoot = QStringLiteral(QUAYLINE_SOURCE_DIR);

const QHash<QString, int>& Floors() {
  static const QHash<QString, int> floors{
      {u"async"_s, 0}, {u"platform"_s, 1}, {u"transport"_s, 1}, {u"i18n"_s, 1},
      {u"core"_s, 2},  {u"script"_s, 3},   {u"net"_s, 3},       {u"ui"_s, 4},
      {u"app"_s, 5},   {u"cli"_s, 5},      {u"dbtool"_s, 5},    {u"reader"_s, 5},
  };
  return floors;
}

QString Folder(const QString& path) { return path.section(u'/', 0, 0); }

// The folder within a folder, or an empty text for a file that stands in the folder itself.
QString InnerFolder(const QString& path) {
  return path.count(u'/') < 2 ? QString() : path.section(u'/', 1, 1);
}

QString WrongArrowInUi(const QString& from, const QString& to) {
  const bool is_allowed = to == from || to == u"toolkit"_s || from.isEmpty();
  return is_allowed ? QString() : u"ui/%1 stands beside ui/%2"_s.arg(to, from);
}

bool CarriesLicence(const QString& file) {
  static const QRegularExpression kinds(
      u"(\\.(h|cpp|cmake|js|sh|in)|CMakeLists\\.txt|\\.ci/run)$"_s);
  return kinds.match(file).hasMatch();
}

// Why `file` must not include `included`, or an empty text where it may. Both are paths below src/;
// `included` may also be a system header in its angle brackets.
//
// The floors, from the ground up: async; platform, transport, i18n; core; script, net; ui; app,
// cli, dbtool, reader. A file includes its own folder and lower floors, never a neighbour on its
// floor. Inside ui/ the other folders stand on ui/toolkit and know nothing of each other. Qt
// WebEngine is known to script/web alone.
QString WrongArrow(const QString& file, const QString& included) {
  if (included.startsWith(u'<')) {
    const bool is_browser =
        included.startsWith(u"<QWebEngine"_s) || included.startsWith(u"<QtWebEngine"_s);
    return is_browser && !file.startsWith(u"script/web/"_s) ? u"only script/web knows the browser"_s
                                                            : QString();
  }
  const QString from = Folder(file);
  const QString to = Folder(included);
  if (!Floors().contains(from) || !Floors().contains(to)) {
    // Generated headers (ui_*.h, *.moc) stand in no folder.
    return Floors().contains(from) && !included.contains(u'/')
               ? QString()
               : u"a folder without a floor: add it to the list or move the file"_s;
  }
  if (from == to) {
    return from == u"ui"_s ? WrongArrowInUi(InnerFolder(file), InnerFolder(included)) : QString();
  }
  return Floors()[to] < Floors()[from] ? QString() : u"%1 does not stand below %2"_s.arg(to, from);
}

// What the #include lines of a source text name: "core/settings.h", "<QObject>".
QStringList Includes(const QString& source) {
  static const QRegularExpression line(u"^\\s*#\\s*include\\s*(?:\"([^\"]+)\"|(<[^>]+>))"_s,
                                       QRegularExpression::MultilineOption);
  QStringList found;
  for (auto each = line.globalMatch(source); each.hasNext();) {
    const QRegularExpressionMatch match = each.next();
    found.append(match.captured(1) + match.captured(2));
  }
  return found;
}

// Why a file with this text must not be in the repository, or an empty text: it lacks its two
// licence lines at the head (those of kinds that carry them), or refers to papers that are not kept
// here.
QString WrongText(const QString& file, const QString& text) {
  static const QRegularExpression licence(
      QStringLiteral("\\A(#![^\\n]*\\n)?(//|#) SPDX-FileCopyrightText: [^\\n]+\\n"
                     "(//|#) SPDX-License-Identifier: MIT\\n"));
  static const QRegularExpression papers(u"\\bspec\\.md\\b|\\bParts?\\s\\d+\\.\\d+"_s);
  if (CarriesLicence(file) && !licence.match(text).hasMatch()) {
    return u"the two licence lines are not at the head"_s;
  }
  const QRegularExpressionMatch paper = papers.match(text);
  return paper.hasMatch() ? u"refers to "_s + paper.captured() : QString();
}

QStringList FilesUnder(const QString& folder, const QStringList& patterns = {}) {
  QStringList files;
  QDirIterator each(kRoot + folder, patterns, QDir::Files | QDir::Hidden,
                    QDirIterator::Subdirectories);
  while (each.hasNext()) {
    files.append(each.next());
  }
  EXPECT_FALSE(files.isEmpty()) << qPrintable(folder);
  return files;
}

QString Contents(const QString& name) {
  QFile file(name);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
  return QString::fromUtf8(file.readAll());
}

// That right arrows are taken for right is seen where the sources themselves are read below.
TEST(HouseRules, FindWrongArrows) {
  const std::pair<const char*, const char*> cases[] = {
      {"async/flow.h", "platform/desktop.h"},
      {"platform/linux/a.cpp", "transport/http_fetch.h"},
      {"core/settings.h", "script/page_host.h"},
      {"script/runner.h", "net/port_checker.h"},
      {"script/runner.h", "<QWebEnginePage>"},
      {"ui/job/frm.cpp", "<QtWebEngineWidgets/QWebEngineView>"},
      {"ui/job/frm.cpp", "ui/main/main_window.h"},
      {"ui/toolkit/prompts.cpp", "ui/job/frm.h"},
      {"cli/main.cpp", "app/main_window.h"},
      {"core/a.cpp", "../ui/main/main_window.h"},
      {"core/a.cpp", "demo/router.h"},
      {"new_folder/a.cpp", "core/a.h"},
  };
  for (const auto& [file, included] : cases) {
    EXPECT_NE(WrongArrow(QString::fromLatin1(file), QString::fromLatin1(included)), QString())
        << file << " includes " << included;
  }
  EXPECT_EQ(Includes(u"#include \"a/b.h\"\n  #  include <QList>\n// #include \"c.h\"\n"_s),
            (QStringList{u"a/b.h"_s, u"<QList>"_s}));
}

TEST(HouseRules, FindWrongTexts) {
  const QString head = u"# SPDX-FileCopyrightText: 2026 x\n# SPDX-License-Identifier: MIT\n"_s;
  EXPECT_NE(WrongText(u"scripts/a.sh"_s, u"#!/bin/sh\n\n"_s + head), QString());
  EXPECT_NE(WrongText(u"src/a.h"_s, u"#pragma once\n"_s + head), QString());
  EXPECT_NE(WrongText(u"data/a.txt"_s, u"see "_s + u"Part "_s + u"3.1"_s), QString());
  EXPECT_EQ(WrongText(u"data/a.txt"_s, u"Part 3 of 1.5 files"_s), QString());
}

TEST(House, NoIncludePointsUpOrSideways) {
  for (const QString& file : FilesUnder(u"/src"_s, {u"*.h"_s, u"*.cpp"_s})) {
    const QString name = QDir(kRoot + u"/src"_s).relativeFilePath(file);
    for (const QString& included : Includes(Contents(file))) {
      EXPECT_EQ(WrongArrow(name, included), QString())
          << qPrintable(name) << " includes " << qPrintable(included);
    }
  }
}

TEST(House, EveryFileHasItsLicenceLinesAndRefersToNothingOutside) {
  QStringList files{kRoot + u"/CMakeLists.txt"_s, kRoot + u"/README.md"_s};
  for (const QString& folder : {u"/src"_s, u"/tests"_s, u"/demo"_s, u"/data"_s, u"/bench"_s,
                                u"/cmake"_s, u"/scripts"_s, u"/docs"_s, u"/.ci"_s}) {
    files += FilesUnder(folder);
  }
  for (const QString& file : files) {
    // What npm fetches for the benchmarks' peers lies in the tree and is not of it.
    if (!file.contains(u"/node_modules/"_s)) {
      EXPECT_EQ(WrongText(QDir(kRoot).relativeFilePath(file), Contents(file)), QString())
          << qPrintable(file);
    }
  }
}

}  // namespace
}  // namespace quayline
