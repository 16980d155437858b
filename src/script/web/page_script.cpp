// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_script.h"

#include <QJsonDocument>

namespace quayline {

namespace {

constexpr qsizetype kMaxErrorLength = 500;

// The entry is a constant of the script's own block: no other script of the page sees it, and none
// can put something else in its place. A failure is reported to the page as well, as it would be
// without the block.
constexpr char kText[] =
    "{const quayline=%1;Object.freeze(quayline);try{%2\n;''}"
    "catch(error){try{reportError(error)}catch{}try{`${error}`||'?'}catch{'?'}}}";

}  // namespace

QString TextOfPageScript(const PageScript& script) {
  const QString entry =
      QString::fromUtf8(QJsonDocument(script.entry).toJson(QJsonDocument::Compact));
  return QString::fromLatin1(kText).arg(entry, script.code);
}

QString ErrorOfPageScript(const QVariant& result) {
  return result.typeId() == QMetaType::QString
             ? result.toString().simplified().left(kMaxErrorLength)
             : QString();
}

}  // namespace quayline
