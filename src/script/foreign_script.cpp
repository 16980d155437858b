// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/foreign_script.h"

#include <algorithm>

#include "script/command_table.h"
#include "script/script_line.h"

namespace quayline {

namespace {

constexpr Message kIntroduction{
    "The script of the router \"%1\" came from a file. It would work on your router with your "
    "password."};
constexpr Message kAuthorNamed{"Author: %1"};
constexpr Message kAuthorUnknown{"Author: unknown"};
constexpr Message kUnsigned{
    "Signature: none. Anybody can have written or changed it, whatever name it bears."};
constexpr Message kSignedByKnown{
    "Signature: valid, of an author whose script you allowed before "
    "(key %1)"};
constexpr Message kSignedByNew{
    "Signature: valid, of an author whose scripts you have not allowed before (key %1)"};
constexpr Message kPagesOpened{"Pages of your router that it opens:"};
constexpr Message kJavaScriptLines{"Lines that run JavaScript of the author on these pages:"};
constexpr Message kNoOtherHosts{
    "Other addresses: none. They are blocked, and never get your login."};
constexpr Message kAskedOtherHosts{
    "Other addresses: none, unless you allow one when you are asked."};
constexpr Message kNothing{"none"};

constexpr qsizetype kMostShown = 12;
constexpr qsizetype kLongestLine = 90;

// Shown as one line, without what could change how others are read.
QString Plain(QString text) {
  text = text.simplified();
  text.removeIf([](QChar c) { return !c.isPrint(); });
  return text.size() > kLongestLine ? text.left(kLongestLine) + QStringLiteral("...") : text;
}

QString Shown(const QStringList& texts, const Translator& translator) {
  QString list;
  for (qsizetype i = 0; i < texts.size() && i < kMostShown; ++i) {
    list += QStringLiteral("\n    ") + Plain(texts[i]);
  }
  if (texts.size() > kMostShown) {
    list += QStringLiteral("\n    ... (%1)").arg(texts.size());
  }
  return texts.isEmpty() ? u' ' + translator.Text(kNothing) : list;
}

void NotePages(const QString& line, QStringList* pages) {
  const ScriptLine parsed = ParseScriptLine(line);
  const CommandRow* row = FindCommand(parsed.name);
  if (row == nullptr) {
    return;
  }
  const QStringList fields = row->fields.size() > 1
                                 ? parsed.argument.split(QLatin1Char(row->separator))
                                 : QStringList{parsed.argument};
  for (size_t i = 0; i < row->fields.size(); ++i) {
    const QString page = fields.value(static_cast<qsizetype>(i)).trimmed();
    if (row->fields[i].kind == FieldKind::kPath && !pages->contains(page)) {
      pages->append(page);
    }
  }
}

}  // namespace

bool RunsJavaScript(const QString& line) {
  const ScriptLine parsed = ParseScriptLine(line);
  const CommandRow* row = FindCommand(parsed.name);
  return row != nullptr &&
         (parsed.argument.contains(QLatin1String("javascript:"), Qt::CaseInsensitive) ||
          std::ranges::any_of(row->fields, [](const FieldSpec& field) {
            return field.kind == FieldKind::kJavaScript;
          }));
}

ForeignScript DescribeScripts(const RouterRecord& router, const ScriptOrigin& origin) {
  ForeignScript described{.router = router.routername, .origin = origin};
  for (const QString& script :
       {router.routercommands, router.routerportpage, router.routerremove}) {
    int number = 0;
    for (const QString& line : ScriptLines(script)) {
      ++number;
      NotePages(line, &described.pages);
      if (RunsJavaScript(line)) {
        described.code_lines.append(QStringLiteral("%1: %2").arg(number).arg(line));
      }
    }
  }
  return described;
}

QString ForeignScriptText(const ForeignScript& script, const Translator& translator) {
  const ScriptOrigin& origin = script.origin;
  const QString signature =
      !origin.IsSigned() ? translator.Text(kUnsigned)
                         : translator.Text(origin.is_known_author ? kSignedByKnown : kSignedByNew)
                               .arg(KeyFingerprint(origin.author.key));
  const QString author = Plain(origin.author.name);
  const QStringList parts{translator.Text(kIntroduction).arg(Plain(script.router)),
                          (author.isEmpty() ? translator.Text(kAuthorUnknown)
                                            : translator.Text(kAuthorNamed).arg(author)) +
                              u'\n' + signature,
                          translator.Text(kPagesOpened) + Shown(script.pages, translator),
                          translator.Text(kJavaScriptLines) + Shown(script.code_lines, translator),
                          translator.Text(origin.IsSigned() ? kAskedOtherHosts : kNoOtherHosts)};
  return parts.join(QStringLiteral("\n\n"));
}

}  // namespace quayline
