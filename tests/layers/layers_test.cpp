// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Reads the #include lines of src/: each folder may include itself and the layers below it, and no
// files may include each other in a circle.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// The lowest layer first.
const QList<QStringList> kLayers{
    {u"async"_s},
    {u"platform"_s, u"transport"_s, u"i18n"_s},
    {u"core"_s},
    {u"script"_s, u"stub"_s, u"net"_s, u"update"_s},
    {u"ui"_s},
    {u"app"_s, u"cli"_s, u"dbtool"_s, u"reader"_s, u"mapper"_s, u"firewall_helper"_s}};

// Files that may still include each other: the gate and its connections.
const QStringList kKnownCircle{u"script/web/gate_tunnel"_s, u"script/web/router_gate"_s};

qsizetype LayerOf(const QString& folder) {
  const auto layer = std::ranges::find_if(
      kLayers, [&](const QStringList& folders) { return folders.contains(folder); });
  return layer == kLayers.end() ? -1 : layer - kLayers.begin();
}

// Why `file` must not include `included`, or an empty text. Both are paths below src/; `included`
// may also be a system header in angle brackets, or a generated header, which has no folder.
QString WrongInclude(const QString& file, const QString& included) {
  if (included.startsWith(u'<')) {
    static const QRegularExpression browser(u"^<Qt?WebEngine"_s);
    return included.contains(browser) && !file.startsWith(u"script/web/"_s)
               ? u"only script/web uses Qt WebEngine"_s
               : QString();
  }
  const QString from = file.section(u'/', 0, 0);
  const QString to = included.section(u'/', 0, 0);
  if (LayerOf(from) < 0 || (LayerOf(to) < 0 && included.contains(u'/'))) {
    return u"a folder without a layer"_s;
  }
  if (from == u"ui"_s && to == from) {
    const QString inner = included.section(u'/', 1, 1);
    const bool is_allowed = inner == file.section(u'/', 1, 1) || inner == u"toolkit"_s;
    return is_allowed ? QString() : u"a window of another folder"_s;
  }
  return to == from || LayerOf(to) < LayerOf(from) ? QString() : u"not a layer below"_s;
}

// What the #include lines of a source text name: "core/settings.h", "<QObject>".
QStringList Includes(const QString& source) {
  static const QRegularExpression line(u"^\\s*#\\s*include\\s*(?:\"([^\"]+)\"|(<[^>]+>))"_s,
                                       QRegularExpression::MultilineOption);
  QStringList found;
  for (const QRegularExpressionMatch& match : line.globalMatch(source)) {
    found.append(match.captured(1) + match.captured(2));
  }
  return found;
}

using Graph = QMap<QString, QStringList>;

// Adds to `circles` every circle that a walk from the end of `path` meets; `done` has no more.
void FindCircles(const Graph& graph, QStringList& path, QSet<QString>& done, QStringList& circles) {
  const QString last = path.last();
  for (const QString& next : graph.value(last)) {
    if (const qsizetype start = path.indexOf(next); start >= 0) {
      circles.append((path.mid(start) << next).join(u" -> "_s));
    } else if (!done.contains(next)) {
      path.append(next);
      FindCircles(graph, path, done, circles);
      path.removeLast();
    }
  }
  done.insert(last);
}

QStringList Circles(const Graph& graph) {
  QStringList circles;
  QSet<QString> done;
  for (const QString& file : graph.keys()) {
    if (!done.contains(file)) {
      QStringList path{file};
      FindCircles(graph, path, done, circles);
    }
  }
  return circles;
}

// The includes of every file below src/.
Graph ReadSources() {
  const QDir root(QStringLiteral(QUAYLINE_SOURCE_DIR "/src"));
  Graph includes;
  QDirIterator each(root.path(), {u"*.h"_s, u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
  while (each.hasNext()) {
    QFile file(each.next());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    includes[root.relativeFilePath(file.fileName())] = Includes(QString::fromUtf8(file.readAll()));
  }
  EXPECT_FALSE(includes.isEmpty());
  return includes;
}

TEST(Layers, WrongIncludesAndCirclesAreFound) {
  const std::pair<const char*, const char*> cases[] = {
      {"async/flow.h", "platform/desktop.h"},
      {"platform/linux/a.cpp", "transport/http_fetch.h"},
      {"core/settings.h", "script/page_host.h"},
      {"script/runner.h", "<QWebEnginePage>"},
      {"ui/job/a.cpp", "<QtWebEngineWidgets/QWebEngineView>"},
      {"ui/job/a.cpp", "ui/main/main_window.h"},
      {"ui/toolkit/prompts.cpp", "ui/job/job_window.h"},
      {"cli/main.cpp", "app/single_instance.h"},
      {"core/a.cpp", "../ui/main/main_window.h"},
      {"core/a.cpp", "demo/router.h"},
      {"new_folder/a.cpp", "core/a.h"},
  };
  for (const auto& [file, included] : cases) {
    EXPECT_NE(WrongInclude(QLatin1String(file), QLatin1String(included)), QString())
        << file << " includes " << included;
  }
  EXPECT_EQ(Includes(u"#include \"a/b.h\"\n  #  include <QList>\n// #include \"c.h\"\n"_s),
            (QStringList{u"a/b.h"_s, u"<QList>"_s}));
  EXPECT_EQ(Circles({{u"a"_s, {u"b"_s, u"c"_s}}, {u"b"_s, {u"c"_s}}, {u"c"_s, {u"a"_s}}}),
            QStringList(u"a -> b -> c -> a"_s));
  EXPECT_EQ(Circles({{u"a"_s, {u"b"_s, u"c"_s}}, {u"b"_s, {u"c"_s}}}), QStringList());
}

TEST(Layers, EachFolderIncludesItselfAndLowerLayers) {
  for (const auto& [file, includes] : ReadSources().asKeyValueRange()) {
    for (const QString& included : includes) {
      EXPECT_EQ(WrongInclude(file, included), QString())
          << qPrintable(file) << " includes " << qPrintable(included);
    }
  }
}

// A header and its body count as one file.
TEST(Layers, NoFilesIncludeEachOther) {
  static const QRegularExpression suffix(u"\\.(h|cpp)$"_s);
  Graph files;
  for (const auto& [file, includes] : ReadSources().asKeyValueRange()) {
    const QString name = QString(file).remove(suffix);
    for (const QString& included : includes) {
      const QString other = QString(included).remove(suffix);
      const bool is_known = kKnownCircle.contains(name) && kKnownCircle.contains(other);
      if (other != name && !is_known) {
        files[name].append(other);
      }
    }
  }
  EXPECT_EQ(Circles(files), QStringList());
}

}  // namespace
}  // namespace quayline
