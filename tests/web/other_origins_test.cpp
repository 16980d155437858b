// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QHostInfo>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QUdpSocket>

#include <dlfcn.h>
#include <mutex>
#include <netdb.h>

#include "web/web_fixture.h"

namespace {

std::mutex looked_up_lock;
QByteArrayList looked_up;

}  // namespace

// Stands before the system's own, for every library of the process.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints,
                           addrinfo** found) {
  {
    const std::scoped_lock lock(looked_up_lock);
    looked_up.append(name);
  }
  static const auto system =
      reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return system(name, service, hints, found);
}

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// In all markups "~" stands for the other origin, and what follows it names the way.

// Ways that leave the page where it is; they share one page.
constexpr const char* kResources[] = {
    "<iframe src='~frame'></iframe>",
    "<iframe srcdoc=\"<img src='~srcdoc'>\"></iframe>",
    "<img src='~img'>",
    "<img srcset='~srcset 1x'>",
    "<picture><source srcset='~picture'><img></picture>",
    "<input type=image src='~input'>",
    "<link rel=stylesheet href='~style'>",
    "<style>@import url('~import');</style>",
    "<style>b { background: url('~background') }</style><b>b</b>",
    "<style>@font-face { font-family: f; src: url('~font') } i { font-family: f }</style><i>i</i>",
    "<script src='~script'></script>",
    "<script type=module>import '~module'</script>",
    "<script>import('~dynamic').catch(() => {})</script>",
    "<script>r = new XMLHttpRequest; r.open('GET', '~xhr'); r.send()</script>",
    "<script>r = new XMLHttpRequest; r.open('POST', '~xhrpost'); r.send('secret')</script>",
    "<script>try { r = new XMLHttpRequest; r.open('GET', '~xhrsync', false); r.send() } catch (e) "
    "{}"
    "</script>",
    "<script>fetch('~fetch').catch(() => {})</script>",
    "<script>fetch('~fetchpost', {method: 'POST', mode: 'no-cors', body: 'secret'})"
    ".catch(() => {})</script>",
    "<script>fetch('~keepalive', {method: 'POST', mode: 'no-cors', keepalive: true, body: 's'})"
    ".catch(() => {})</script>",
    "<script>navigator.sendBeacon('~beacon', 'secret')</script>",
    "<iframe name=target></iframe><form id=f method=post target=target action='~formframe'>"
    "<input name=password value=secret></form><script>f.submit()</script>",
    "<link rel=preload as=image href='~preload'>",
    "<link rel=modulepreload href='~modulepreload'>",
    "<script>new EventSource('~eventsource')</script>",
    "<script>new Worker(URL.createObjectURL(new Blob([\"importScripts('~worker')\"])))</script>",
    "<script>new Worker(URL.createObjectURL(new Blob([\"fetch('~workerfetch')\"])))</script>",
    "<script>new SharedWorker(URL.createObjectURL(new Blob([\"fetch('~shared')\"])))</script>",
    "<video src='~video'></video>",
    "<video poster='~poster'></video>",
    "<audio src='~audio' autoplay></audio>",
    "<object data='~object'></object>",
    "<embed src='~embed'>",
    "<svg><image href='~svg' width=9 height=9 /></svg>",
    "<body background='~body'>",
    "<script>for (const status of [301, 302, 303, 307, 308]) {"
    "  r = new XMLHttpRequest; r.open('POST', '/redirect' + status + '?~redirectedxhr');"
    "  r.send('password=secret');"
    "  fetch('/redirect' + status + '?~redirectedfetch', {method: 'POST', body: 'secret'})"
    "      .catch(() => {}) }</script>",
};

// Ways whose request is not one of HTTP, or which the engine or its settings may leave out.
constexpr const char* kUnseen[] = {
    "<link rel=manifest href='~manifest'>",
    "<link rel=icon href='~icon'>",
    "<a id=ping href='#x' ping='~ping'>p</a><script>ping.click()</script>",
    "<link rel=dns-prefetch href='~'>",
    "<link rel=preconnect href='~'>",
    "<link rel=prefetch href='~prefetch'>",
    "<link rel=prerender href='~prerender'>",
    "<script>new WebSocket('~'.replace('http', 'ws'))</script>",
    "<script>try { new WebTransport('~'.replace('http:', 'https:')) } catch (e) {}</script>",
    "<script>navigator.serviceWorker?.register('~sw').catch(() => {})</script>",
    R"(<script>function call(realm) { try {
         const at = '~'.split('/')[2];
         const peer = new realm.RTCPeerConnection({iceServers: [{urls: ['stun:' + at,
             'turn:' + at + '?transport=udp', 'turn:' + at + '?transport=tcp'],
             username: 'secret', credential: 'secret'}]});
         peer.createDataChannel('d');
         peer.createOffer().then((offer) => peer.setLocalDescription(offer));
       } catch (e) {} }
       call(window);
       const inner = document.documentElement.appendChild(document.createElement('iframe'));
       call(inner.contentWindow);</script>)",
};

// Ways that take the top page along; each needs a page of its own.
constexpr const char* kNavigations[] = {
    "<form id=f method=post action='~form'><input name=password value=secret></form>"
    "<script>f.submit()</script>",
    "<form id=f action='~formget'><input name=password value=secret></form>"
    "<script>f.submit()</script>",
    "<a id=a href='~link'>a</a><script>a.click()</script>",
    "<a id=a href='~blank' target=_blank>a</a><script>a.click()</script>",
    "<meta http-equiv=refresh content='0;url=~refresh'>",
    "<script>location = '~location'</script>",
    "<script>window.open('~open')</script>",
    "<base href='~'><script>location = 'base'</script>",
    "<form id=f method=post action='/redirect301?~r301'><input name=password value=secret></form>"
    "<script>f.submit()</script>",
    "<form id=f method=post action='/redirect302?~r302'><input name=password value=secret></form>"
    "<script>f.submit()</script>",
    "<form id=f method=post action='/redirect303?~r303'><input name=password value=secret></form>"
    "<script>f.submit()</script>",
    "<form id=f method=post action='/redirect307?~r307'><input name=password value=secret></form>"
    "<script>f.submit()</script>",
    "<form id=f method=post action='/redirect308?~r308'><input name=password value=secret></form>"
    "<script>f.submit()</script>",
};

// A router whose pages want to go elsewhere, by every way there is.
class OtherOriginsTest : public WebTest {
 protected:
  OtherOriginsTest() {
    GiveLogin(u"admin"_s, u"secret"_s);
    server.special = [](const QByteArray& request) { return Redirect(request); };
    QObject::connect(host.get(), &PageHost::newWindow, host.get(), [this](PageHost* popup) {
      popups.emplace_back(popup)->setParent(host.get());
    });
    for (const QString& host : {u"127.0.0.1"_s, u"127.0.0.2"_s}) {
      auto& listener = listeners.emplace_back(std::make_unique<QTcpServer>());
      auto& datagrams = sockets.emplace_back(std::make_unique<QUdpSocket>());
      EXPECT_TRUE(listener->listen(QHostAddress(host)));
      EXPECT_TRUE(datagrams->bind(QHostAddress(host), listener->serverPort()));
      const auto count = [this] { ++arrivals; };
      QObject::connect(listener.get(), &QTcpServer::newConnection, listener.get(), count);
      QObject::connect(datagrams.get(), &QUdpSocket::readyRead, datagrams.get(), count);
      others.append(u"http://%1:%2/"_s.arg(host).arg(listener->serverPort()).toLatin1());
    }
    others.append("http://elsewhere.invalid/");
  }

  // "/redirect307?ADDRESS" leads to the address.
  static std::optional<Reply> Redirect(const QByteArray& request) {
    const QByteArray target = request.split(' ').value(1);
    constexpr QByteArrayView kPath("/redirect");
    if (!target.startsWith(kPath)) {
      return std::nullopt;
    }
    return Answer(target.mid(kPath.size(), 3) + " Elsewhere", "",
                  "Location: " + target.mid(target.indexOf('?') + 1) + "\r\n");
  }

  template <size_t kCount>
  static QByteArray All(const char* const (&ways)[kCount], const QByteArray& other) {
    return QByteArrayList(std::begin(ways), std::end(ways)).join().replace('~', other);
  }

  void Leave(const QByteArray& markup) {
    popups.clear();
    server.requests.clear();
    server.replies["/page"] = Html("<!DOCTYPE html>" + markup);
    host->Navigate2(server.Address(u"/page"_s).toString(), {});
    EXPECT_TRUE(RunUntil([&] { return !server.requests.isEmpty(); }));
    // A frame that nobody answers is waited for longer than it matters here.
    RunUntil([&] { return !host->Navigation().busy; }, 1s);
    Pause();
  }

  std::vector<std::unique_ptr<PageHost>> popups;
  int arrivals = 0;
  QByteArrayList others;
  std::vector<std::unique_ptr<QTcpServer>> listeners;
  std::vector<std::unique_ptr<QUdpSocket>> sockets;
};

// The names of the ways in `markup` by which nothing was asked below /seen/.
template <size_t kCount>
QByteArrayList Missing(const char* const (&ways)[kCount], const QList<QByteArray>& requests) {
  static const QRegularExpression name(u"~(\\w+)"_s);
  QByteArrayList missing;
  const QString all = QString::fromLatin1(QByteArrayList(std::begin(ways), std::end(ways)).join());
  for (const auto& found : name.globalMatch(all)) {
    const QByteArray path = "/seen/" + found.captured(1).toLatin1();
    if (std::ranges::none_of(requests, [&](const auto& request) {
          const QByteArray target = request.split(' ').value(1);
          return target == path || target.startsWith(path + '?');
        })) {
      missing.append(path + ' ');
    }
  }
  return missing;
}

TEST_F(OtherOriginsTest, EveryWayLeadsToTheRouterItself) {
  const QByteArray seen = server.Address(u"/seen/"_s).toEncoded();
  Leave(All(kResources, seen));
  EXPECT_TRUE(RunUntil([&] { return Missing(kResources, server.requests).isEmpty(); }))
      << Missing(kResources, server.requests).join().toStdString();
  for (const char* way : kNavigations) {
    const char* const one[] = {way};
    Leave(All(one, seen));
    EXPECT_TRUE(RunUntil([&] { return Missing(one, server.requests).isEmpty(); })) << way;
  }
}

TEST_F(OtherOriginsTest, NoWayLeadsToAnotherOrigin) {
  const int runs = std::max(1, qEnvironmentVariableIntValue("QUAYLINE_GATE_RUNS"));
  for (int run = 0; run < runs; ++run) {
    for (const QByteArray& other : others) {
      Leave(All(kResources, other) + All(kUnseen, other));
      EXPECT_EQ(arrivals, 0) << "by one of the resources, run " << run;
      for (const char* way : kNavigations) {
        const char* const one[] = {way};
        Leave(All(one, other));
        EXPECT_EQ(arrivals, 0) << way << ", run " << run;
      }
      ASSERT_EQ(arrivals, 0);
    }
  }
  RunUntil([] { return false; }, 500ms);
  EXPECT_EQ(arrivals, 0);
  QHostInfo::fromName(u"counted.invalid"_s);
  const std::scoped_lock lock(looked_up_lock);
  EXPECT_TRUE(looked_up.contains("counted.invalid"));
  EXPECT_FALSE(looked_up.join(' ').contains("elsewhere")) << looked_up.join(' ').toStdString();
}

TEST_F(OtherOriginsTest, AChannelBesideHttpHasNoName) {
  Leave(
      "<iframe srcdoc=x></iframe><script>onload = () => {"
      "const code = 'postMessage(typeof WebTransport + typeof RTCPeerConnection)';"
      "new Worker(URL.createObjectURL(new Blob([code]))).onmessage = (e) => { told = e.data } };"
      "told = ''</script>");
  const char* const expected = "undefinedundefined";
  EXPECT_EQ(Read("typeof WebTransport + typeof RTCPeerConnection"), QLatin1String(expected));
  EXPECT_EQ(Read("typeof frames[0].WebTransport + typeof frames[0].RTCPeerConnection"),
            QLatin1String(expected));
  EXPECT_TRUE(RunUntil([&] { return Read("told") == QLatin1String(expected); }));
}

}  // namespace
}  // namespace quayline::testing
