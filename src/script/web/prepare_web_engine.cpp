// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QCoreApplication>
#include <QLoggingCategory>

#include <unistd.h>

#include "script/web/router_gate.h"
#include "script/web/web_engine.h"

namespace quayline {

namespace {

// Everything goes through the gate, loopback included, and no name is looked up by the engine. A
// port that could not be reserved is closed: then nothing can be reached.
QByteArray NetworkFlags() {
  constexpr quint16 kClosedPort = 1;
  const quint16 port = RouterGate::Reserve();
  return " --proxy-server=socks5://127.0.0.1:" +
         QByteArray::number(port == 0 ? kClosedPort : port) +
         " --proxy-bypass-list=<-loopback>"
         " --host-resolver-rules=\"MAP * ~NOTFOUND , EXCLUDE 127.0.0.1\""
         // The gate follows HTTP/1 over TCP, one exchange a connection.
         " --disable-http2 --disable-quic"
         // A connection that was opened in advance and then left counts as used before: the engine
         // would repeat a request that was sent on it. So none is kept.
         " --enable-features=NetUnusedIdleSocketTimeout:unused_idle_socket_timeout_seconds/0"
         // No channel besides HTTP: WebRTC may not send datagrams, and what it sends over TCP ends
         // at the gate.
         " --force-webrtc-ip-handling-policy=disable_non_proxied_udp"
         " --disable-blink-features=WebTransport";
}

}  // namespace

void PrepareWebEngine(PagesAre pages) {
  // Root has no use of the sandbox, and the engine refuses to start with it.
  if (geteuid() == 0) {
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
  }
  QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
  // The first keeps the engine from dropping navigations that follow each other fast, the second
  // from slowing a minimised job down, the third from dropping keys that come before a new page is
  // painted.
  flags +=
      " --disable-ipc-flooding-protection --disable-background-timer-throttling"
      " --allow-pre-commit-input --disable-background-networking";
  flags += NetworkFlags();
  // A signal to the whole program (from a terminal, or a tool that limits its time) would end the
  // processes of the pages at once, in the middle of a save. In a session of their own they end
  // with the program.
  constexpr char kSetSid[] = "/usr/bin/setsid";
  if (access(kSetSid, X_OK) == 0) {
    flags += QByteArray(" --zygote-cmd-prefix=") + kSetSid;
  }
  if (pages == PagesAre::kUnseen) {
    // Standard error is the job's own there: the engine's log (of each certificate that is not
    // signed, for one) is switched off. Without a compositor thread nothing is rendered; what waits
    // for an animation frame is given one by the page watch.
    flags += " --disable-logging --log-level=3 --disable-threaded-compositing";
  }
  qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags);
  QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
  // The engine's account of how it paints is for its own developers.
  QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext*=false"));
}

}  // namespace quayline
