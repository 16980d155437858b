// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stress/leaving_site.h"

#include <QCryptographicHash>
#include <QHash>
#include <QUrlQuery>

namespace quayline::stress {

namespace {

// What a web socket's key is completed with.
constexpr char kSocketId[] = "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";

// A form that posts the save, for pages whose button only sets it off.
#define FORM "<form method=post action='@SAVE@'></form>"
#define SUBMIT(answer) \
  "<form method=post action='@SAVE@" answer "'><input type=submit name=go></form>"
#define SCRIPT(code) "<script>var saving=document.forms[0];" code "</script>"
#define GO(code) FORM "<input type=button name=go onclick=\"" code "\">" SCRIPT("")

// Script `number` of a page that works only with all of them. As long as real ones.
QByteArray Part(int number) {
  constexpr int kLength = 3000;
  return "//" + QByteArray(kLength, 'x') + "\nparts.push(" + QByteArray::number(number) + ");";
}

}  // namespace

const std::vector<WayOut>& WaysOut() {
  using enum Leaves;
  static const std::vector<WayOut> ways{
      {"submit button", kForNextPage, SUBMIT("")},
      {"form.submit()", kForNextPage, GO("saving.submit()")},
      {"link", kForNextPage, "<a href='@SAVE@' name=go>go</a>"},
      {"location =", kForNextPage, GO("location='@SAVE@'")},
      {"location.replace", kForNextPage, GO("location.replace('@SAVE@')")},
      {"javascript: link", kForNextPage,
       FORM "<a name=go href='javascript:document.forms[0].submit()'>go</a>"},
      {"confirm, then submit", kForNextPage, GO("if(confirm('Save?'))saving.submit()")},
      {"listener", kForNextPage,
       FORM
       "<input type=button name=go>" SCRIPT("document.getElementsByName('go')[0].addEventListener('"
                                            "click',function(){saving.submit()})")},
      {"timer of 0", kForNextPage, GO("setTimeout(function(){saving.submit()},0)")},
      {"timer with text", kForNextPage, GO("setTimeout('saving.submit()',0)")},
      {"timer in a timer", kForNextPage,
       GO("setTimeout(function(){setTimeout(function(){saving.submit()},0)},0)")},
      {"timer of 10 ms", kForNextPage, GO("setTimeout(function(){saving.submit()},10)")},
      {"timer of 120 ms", kForNextPage, GO("setTimeout(function(){saving.submit()},120)")},
      {"javascript: link, timer", kForNextPage,
       FORM "<a name=go href='javascript:void "
            "setTimeout(function(){document.forms[0].submit()},0)'>go</a>"},
      {"interval", kForNextPage,
       GO("var i=setInterval(function(){clearInterval(i);saving.submit()},15)")},
      {"animation frame", kForNextPage, GO("requestAnimationFrame(function(){saving.submit()})")},
      {"two animation frames", kForNextPage,
       GO("requestAnimationFrame(function(){requestAnimationFrame(function(){saving.submit()})})")},
      {"promise", kForNextPage, GO("Promise.resolve().then(function(){saving.submit()})")},
      {"promise, then timer", kForNextPage,
       GO("Promise.resolve().then(function(){setTimeout(function(){saving.submit()},5)})")},
      {"message to itself", kForNextPage,
       FORM "<input type=button name=go onclick=\"postMessage(1,'*')\">" SCRIPT(
           "onmessage=function(){saving.submit()}")},
      {"message channel", kForNextPage,
       GO("var c=new MessageChannel;c.port1.onmessage=function(){saving.submit()};"
          "c.port2.postMessage(1)")},
      {"messages, then submit", kForNextPage,
       GO("var c=new MessageChannel,left=6;c.port1.onmessage=function(){"
          "--left?c.port2.postMessage(1):saving.submit()};c.port2.postMessage(1)")},
      {"change of #", kForNextPage,
       FORM "<input type=button name=go onclick=\"location.hash='saving'\">" SCRIPT(
           "onhashchange=function(){saving.submit()}")},
      {"request, then submit", kForNextPage,
       GO("var r=new XMLHttpRequest;r.open('GET','/check');r.onload=function(){saving.submit()};"
          "r.send()")},
      {"request, then timer", kForNextPage,
       GO("var r=new XMLHttpRequest;r.open('GET','/check');r.onreadystatechange=function(){"
          "if(r.readyState==4)setTimeout(function(){saving.submit()},10)};r.send()")},
      {"fetch, then submit", kForNextPage,
       GO("fetch('/check').then(function(r){return r.text()}).then(function(){saving.submit()})")},
      {"picture, then submit", kForNextPage,
       GO("var p=new Image;p.onerror=p.onload=function(){saving.submit()};p.src='/check'")},
      {"script, then submit", kForNextPage,
       GO("var s=document.createElement('script');s.onload=function(){saving.submit()};"
          "s.src='/check.js';document.body.appendChild(s)")},
      {"frame, then submit", kForNextPage,
       GO("document.getElementById('f').onload=function(){saving.submit()};"
          "document.getElementById('f').src='/check'") "<iframe id=f></iframe>"},
      {"save into a frame", kInBackground,
       "<form method=post target=f action='@SAVE@&answer=ok'><input type=submit name=go></form>"
       "<iframe name=f></iframe>"},
      {"save by request", kInBackground,
       GO("var r=new XMLHttpRequest;r.open('POST','@SAVE@&answer=ok');r.send('x=1')")},
      {"save by fetch", kInBackground, GO("fetch('@SAVE@&answer=ok',{method:'POST',body:'x'})")},
      {"save by picture", kInBackground, GO("new Image().src='@SAVE@&answer=ok'")},
      {"answer 204", kInBackground, SUBMIT("&answer=204")},
      {"answer is a file", kInBackground, SUBMIT("&answer=file")},
      {"wait page, refresh by markup", kForNextPage, SUBMIT("&answer=meta")},
      {"wait page, refresh by header", kForNextPage, SUBMIT("&answer=header")},
      {"wait page, onload", kForNextPage, SUBMIT("&answer=onload")},
      {"wait page, messages", kForNextPage, SUBMIT("&answer=messages")},
      {"wait page, timer", kForNextPage, SUBMIT("&answer=timer")},
      {"redirect", kForNextPage, SUBMIT("&answer=redirect")},
      {"nothing", kNotAtAll, GO("void 0")},
      {"submit that the page refuses", kNotAtAll,
       "<form method=post action='@SAVE@' onsubmit='return false'><input type=submit "
       "name=go></form>"},
      {"clock that starts", kNotAtAll, GO("setInterval(function(){},3000)")},
  };
  return ways;
}

const std::vector<WayOut>& AllWays() {
  static const std::vector<WayOut> ways = [] {
    std::vector<WayOut> all = WaysOut();
    all.insert(all.end(), HardWays().begin(), HardWays().end());
    return all;
  }();
  return ways;
}

LeavingSite::LeavingSite(AnswerDelay delay)
    : server_([this](const HttpRequest& request) { return Answer(request); }, delay),
      port_(server_.Listen(0).value_or(0)) {}

void LeavingSite::Begin(int way) {
  server_.SetMaxConnections(AllWays()[static_cast<size_t>(way)].connections);
}

QString LeavingSite::PagePath(int way, int number) {
  return QStringLiteral("page?way=%1&number=%2").arg(way).arg(number);
}

QString LeavingSite::TypedText(int number) { return QStringLiteral("typed %1").arg(number); }

HttpResponse LeavingSite::Answer(const HttpRequest& request) {
  const QUrlQuery query(QString::fromUtf8(request.query));
  const int way = query.queryItemValue(QStringLiteral("way")).toInt();
  const int number = query.queryItemValue(QStringLiteral("number")).toInt();
  const std::chrono::milliseconds hold(query.queryItemValue(QStringLiteral("hold")).toInt());
  if (request.path == QLatin1String("/save")) {
    const bool needs_text = query.hasQueryItem(QStringLiteral("needs"));
    const QString text = FormFields(request.body).Value(QStringLiteral("text"));
    if (!needs_text || text == TypedText(number - 1)) {
      saved_.insert({way, number});
    }
    return AnswerToSave(query.queryItemValue(QStringLiteral("answer")), way, number);
  }
  if (request.path == QLatin1String("/page") || request.path == QLatin1String("/popup")) {
    return Page(way, number, request.path == QLatin1String("/popup"));
  }
  if (request.path == QLatin1String("/part")) {
    return {.content_type = "text/javascript", .body = Part(number)};
  }
  if (request.path == QLatin1String("/events")) {
    return {.content_type = "text/event-stream", .body = "retry: 300\ndata: 1\n\n", .hold = hold};
  }
  if (request.path == QLatin1String("/socket")) {
    const QByteArray key = request.Header("sec-websocket-key") + kSocketId;
    return {.status = 101,
            .headers = {{"Upgrade", "websocket"},
                        {"Sec-WebSocket-Accept",
                         QCryptographicHash::hash(key, QCryptographicHash::Sha1).toBase64()}}};
  }
  return {.content_type = "text/javascript", .body = "1", .hold = hold};
}

HttpResponse LeavingSite::AnswerToSave(const QString& answer, int way, int number) const {
  const QByteArray next = "/" + PagePath(way, number).toUtf8();
  if (answer == QLatin1String("204")) {
    return {.status = 204};
  }
  if (answer == QLatin1String("redirect")) {
    return RedirectTo(next);
  }
  if (answer == QLatin1String("file")) {
    return {.content_type = "application/octet-stream",
            .headers = {{"Content-Disposition", "attachment; filename=x.bin"}},
            .body = "x"};
  }
  if (answer == QLatin1String("header")) {
    return {.headers = {{"Refresh", "0;url=" + next}}, .body = "Please wait"};
  }
  const QHash<QString, QByteArray> pages{
      {QStringLiteral("ok"), "<p>saved"},
      {QStringLiteral("meta"), "<meta http-equiv=refresh content='0;url=@NEXT@'>Please wait"},
      {QStringLiteral("onload"), "<body onload=\"location='@NEXT@'\">Please wait"},
      {QStringLiteral("messages"),
       "<script>var left=6;onmessage=function(){--left?postMessage(1,'*'):location='@NEXT@'}"
       "</script><body onload=\"postMessage(1,'*')\">Please wait"},
      {QStringLiteral("timer"),
       "<body onload=\"setTimeout(function(){location='@NEXT@'},20)\">Please wait"},
  };
  return pages.contains(answer)
             ? HttpResponse{.body = QByteArray(pages[answer]).replace("@NEXT@", next)}
             : Page(way, number, false);
}

HttpResponse LeavingSite::Page(int way, int number, bool is_popup) const {
  const WayOut& row = AllWays()[static_cast<size_t>(way)];
  const QByteArray numbers =
      QStringLiteral("?way=%1&number=%2").arg(way).arg(is_popup ? number : number + 1).toUtf8();
  QByteArray markup = is_popup ? row.popup : row.markup;
  markup.replace("@SAVE@", "/save" + numbers).replace("@POPUP@", "/popup" + numbers);
  if (row.scripts > 0) {
    QByteArray parts = "<script>var parts=[]</script>";
    for (int part = 0; part < row.scripts; ++part) {
      parts += "<script src='/part?number=" + QByteArray::number(part) + "'></script>";
    }
    markup = parts + markup;
  }
  return {.body = "<!DOCTYPE html><title>page</title><body><input name=number value=" +
                  QByteArray::number(number) + ">" + markup};
}

}  // namespace quayline::stress
