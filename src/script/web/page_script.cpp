// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_script.h"

#include <QJsonDocument>
#include <QPointer>
#include <QVariant>
#include <QWebEngineScript>

#include <algorithm>
#include <utility>

namespace quayline {

namespace {

constexpr qsizetype kMaxErrorLength = 500;

// The entry is a constant of the script's own block: no other script of the page sees it, and none
// can put something else in its place. A failure is reported to the page as well, as it would be
// without the block.
constexpr char kText[] =
    "{const quayline=%1;Object.freeze(quayline);try{%2\n;''}"
    "catch(error){try{reportError(error)}catch{}try{`${error}`||'?'}catch{'?'}}}";

QString TextOfPageScript(const PageScript& script) {
  const QString entry =
      QString::fromUtf8(QJsonDocument(script.entry).toJson(QJsonDocument::Compact));
  return QString::fromLatin1(kText).arg(entry, script.code);
}

// A text that is no JavaScript comes to nothing.
QString ErrorOfPageScript(const QVariant& result) {
  return result.typeId() == QMetaType::QString
             ? result.toString().simplified().left(kMaxErrorLength)
             : QString();
}

}  // namespace

void PageScripts::Run(const PageScript& script, std::function<void(const QString& error)> done) {
  calls_.Run(QStringLiteral("window.quaylineArm?.()"), QWebEngineScript::ApplicationWorld,
             [](const QVariant&) {});
  ++running_;
  calls_.Run(TextOfPageScript(script), QWebEngineScript::MainWorld,
             [this, self = QPointer(this), done = std::move(done)](const QVariant& result) {
               const QString error = ReportErrors(
                   result.isValid() ? std::optional(ErrorOfPageScript(result)) : std::nullopt);
               if (self != nullptr) {
                 done(error);
               }
             });
}

void PageScripts::NoteError(const QString& description, const QString& url, int line) {
  if (running_ > 0) {
    errors_.append({.description = description, .url = url, .line = line});
  } else {
    Q_EMIT failed(description, url, line, false);
  }
}

QString PageScripts::ReportErrors(const std::optional<QString>& error) {
  constexpr QLatin1String kUncaught("Uncaught ");
  const QPointer self(this);
  --running_;
  QString own = error.value_or(QString());
  bool is_found = false;
  for (const Error& each : std::exchange(errors_, {})) {
    const QString text = each.description.mid(kUncaught.size()).simplified();
    const bool is_syntax_error = !error && text.startsWith(QLatin1String("SyntaxError"));
    // One of the two may have been cut.
    const qsizetype length = std::min(text.size(), own.size()) - 1;
    const bool is_same = length > 0 && text.left(length) == own.left(length);
    const bool is_own = !is_found && (is_syntax_error || is_same);
    if (is_own) {
      is_found = true;
      own = is_syntax_error ? text : own;
    }
    Q_EMIT failed(each.description, each.url, each.line, is_own);
    if (self == nullptr) {
      break;
    }
  }
  return own;
}

}  // namespace quayline
