// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QWebEnginePage>
#include <QWebEngineProfile>

#include "async/wait.h"
#include "script/web/url_cache.h"
#include "script/web/web_engine.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr auto kLoadLimit = 20s;  // the engine's processes start first
constexpr auto kAnswerLimit = 5s;

}  // namespace

bool RemoveBrowserFiles() {
  bool removed = true;
  for (const auto place : {QStandardPaths::AppDataLocation, QStandardPaths::AppLocalDataLocation,
                           QStandardPaths::CacheLocation}) {
    removed = RemoveEngineFolder(place) && removed;
  }
  return removed;
}

Task<bool> TryNewBrowser() {
  QWebEngineProfile profile;
  QWebEnginePage page(&profile);
  OneShot<bool> loaded;
  QObject::connect(&page, &QWebEnginePage::loadFinished, &page, loaded.Callback());
  loaded.GiveUpAfter(kLoadLimit);
  page.setHtml(QStringLiteral("<!doctype html><title>page</title><p id='word'>in order"));
  const std::optional<bool> has_loaded = co_await loaded;
  if (!has_loaded.value_or(false)) {
    co_return false;
  }
  OneShot<QVariant> answer;
  page.runJavaScript(QStringLiteral("document.getElementById('word').textContent"),
                     answer.Callback());
  answer.GiveUpAfter(kAnswerLimit);
  const std::optional<QVariant> text = co_await answer;
  co_return text && text->toString() == QLatin1String("in order");
}

}  // namespace quayline
