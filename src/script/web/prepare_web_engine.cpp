// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QCoreApplication>
#include <QLoggingCategory>

#include <unistd.h>

#include "script/web/web_engine.h"

namespace quayline {

void PrepareWebEngine(PagesAre pages) {
  // Root has no use of the sandbox, and the engine refuses to start with it.
  if (geteuid() == 0) {
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
  }
  // A job's clicks are not a page's mischief: the first keeps the engine from swallowing
  // navigations that come fast, the second from holding a minimised job back, the third from
  // dropping keys that come before a new page is painted. Routers are reached directly. The engine
  // shall be nobody else's customer.
  qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
          qgetenv("QTWEBENGINE_CHROMIUM_FLAGS") +
              " --disable-ipc-flooding-protection --disable-background-timer-throttling"
              " --allow-pre-commit-input"
              " --no-proxy-server --disable-background-networking");
  if (pages == PagesAre::kUnseen) {
    // Without a thread that puts pages together none is painted; what waits for a frame of the
    // painting is given one by the page watch.
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            qgetenv("QTWEBENGINE_CHROMIUM_FLAGS") + " --disable-threaded-compositing");
  }
  QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
  // The engine's account of how it paints is for its own developers.
  QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext*=false"));
}

}  // namespace quayline
