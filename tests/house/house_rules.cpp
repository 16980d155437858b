// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "house/house_rules.h"

#include <QHash>
#include <QRegularExpression>

namespace quayline::testing {

namespace {

const QHash<QString, int>& Floors() {
  static const QHash<QString, int> floors{
      {QStringLiteral("async"), 0},     {QStringLiteral("platform"), 1},
      {QStringLiteral("transport"), 1}, {QStringLiteral("i18n"), 1},
      {QStringLiteral("core"), 2},      {QStringLiteral("script"), 3},
      {QStringLiteral("net"), 3},       {QStringLiteral("ui"), 4},
      {QStringLiteral("app"), 5},       {QStringLiteral("cli"), 5},
      {QStringLiteral("dbtool"), 5},
  };
  return floors;
}

QString Folder(const QString& path) { return path.section(QLatin1Char('/'), 0, 0); }

// The folder within a folder, or an empty text for a file that stands in the folder itself.
QString InnerFolder(const QString& path) {
  return path.count(QLatin1Char('/')) < 2 ? QString() : path.section(QLatin1Char('/'), 1, 1);
}

QString WrongArrowInUi(const QString& from, const QString& to) {
  const bool is_allowed = to == from || to == QStringLiteral("toolkit") || from.isEmpty();
  return is_allowed ? QString() : QStringLiteral("ui/%1 stands beside ui/%2").arg(to, from);
}

bool CarriesLicence(const QString& file) {
  static const QRegularExpression kinds(
      QStringLiteral("(\\.(h|cpp|cmake|js|sh|in)|CMakeLists\\.txt|\\.ci/run)$"));
  return kinds.match(file).hasMatch();
}

}  // namespace

QString WrongArrow(const QString& file, const QString& included) {
  if (included.startsWith(QLatin1Char('<'))) {
    const bool is_browser = included.startsWith(QStringLiteral("<QWebEngine")) ||
                            included.startsWith(QStringLiteral("<QtWebEngine"));
    return is_browser && !file.startsWith(QStringLiteral("script/web/"))
               ? QStringLiteral("only script/web knows the browser")
               : QString();
  }
  const QString from = Folder(file);
  const QString to = Folder(included);
  if (!Floors().contains(from) || !Floors().contains(to)) {
    // Generated headers (ui_*.h, *.moc) stand in no folder.
    return Floors().contains(from) && !included.contains(QLatin1Char('/'))
               ? QString()
               : QStringLiteral("a folder without a floor: add it to the list or move the file");
  }
  if (from == to) {
    return from == QStringLiteral("ui") ? WrongArrowInUi(InnerFolder(file), InnerFolder(included))
                                        : QString();
  }
  return Floors()[to] < Floors()[from] ? QString()
                                       : QStringLiteral("%1 does not stand below %2").arg(to, from);
}

QStringList Includes(const QString& source) {
  static const QRegularExpression line(
      QStringLiteral("^\\s*#\\s*include\\s*(?:\"([^\"]+)\"|(<[^>]+>))"),
      QRegularExpression::MultilineOption);
  QStringList found;
  for (auto each = line.globalMatch(source); each.hasNext();) {
    const QRegularExpressionMatch match = each.next();
    found.append(match.captured(1) + match.captured(2));
  }
  return found;
}

QString WrongText(const QString& file, const QString& text) {
  static const QRegularExpression licence(
      QStringLiteral("\\A(#![^\\n]*\\n)?(//|#) SPDX-FileCopyrightText: [^\\n]+\\n"
                     "(//|#) SPDX-License-Identifier: MIT\\n"));
  static const QRegularExpression papers(QStringLiteral("\\bspec\\.md\\b|\\bParts?\\s\\d+\\.\\d+"));
  if (CarriesLicence(file) && !licence.match(text).hasMatch()) {
    return QStringLiteral("the two licence lines are not at the head");
  }
  const QRegularExpressionMatch paper = papers.match(text);
  return paper.hasMatch() ? QStringLiteral("refers to ") + paper.captured() : QString();
}

}  // namespace quayline::testing
