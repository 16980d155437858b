// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QTimer>

#include <algorithm>

#include "web/page_job.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Then = Reply::Then;

#define FORM "<form action=/save><input name=box></form><script>var f=document.forms[0];</script>"
#define GO(code) FORM "<input type=button name=go onclick=\"" code "\">"
#define LATER(code, time) "setTimeout(function(){" code "}," #time ")"
#define SEND "fetch('/save?box='+f.box.value,{method:'POST'})"

// Jobs on pages that put a save off, in ways of their own. The next page is opened at once.
class LateSave : public PageJob {
 protected:
  LateSave() {
    server_.replies["/save?box=Web"] = Html("saved");
    server_.replies["/fine"] = Html("fine");
    server_.replies["/worker.js"] =
        Answer("200 OK", "onmessage=function(){setTimeout(postMessage,300,1)}",
               "Content-Type: text/javascript\r\n");
  }

  qsizetype PositionOf(const QByteArray& line) const {
    const auto found = std::ranges::find_if(
        server_.requests, [&line](const QByteArray& request) { return request.contains(line); });
    return found == server_.requests.end() ? -1 : found - server_.requests.begin();
  }

  void ExpectSavedBeforeTheNextPage(const QStringList& script) {
    server_.requests.clear();
    Start(script + QStringList{u"nav(\"fine\")"_s});
    ASSERT_TRUE(Ends(20s));
    const QString log = runner_->Log().Text();
    const qsizetype saved = PositionOf(" /save?box=Web");
    EXPECT_GE(saved, 0) << log.toStdString();
    EXPECT_GT(PositionOf(" /fine"), saved);
    // A request on a connection that was used before may be sent twice by the engine.
    EXPECT_TRUE(std::ranges::all_of(server_.requests, [](const QByteArray& request) {
      return request.contains("\r\nConnection: close\r\n");
    }));
    EXPECT_EQ(runner_->Outcome().entries_failed, 0) << log.toStdString();
    runner_.reset();
  }
};

TEST_F(LateSave, ArrivesThoughItsClickIsLongOver) {
  const struct {
    const char* fault;
    const char* markup;
  } pages[] = {
      {"a picture fades by a clock",
       GO("var n=30,i=setInterval(function(){if(!--n){clearInterval(i);f.submit()}},13)")},
      {"a picture fades by timers",
       GO("var n=30;(function k(){--n?setTimeout(k,10):f.submit()})()")},
      {"a picture fades by frames",
       GO("var n=15;(function k(){--n?requestAnimationFrame(k):f.submit()})()")},
      {"a clock of the page empties a queue",
       GO("q.push(1)") "<script>var q=[];setInterval(function(){if(q.pop())" SEND
                       "},150)</script>"},
      {"a worker reckons",
       GO("var w=new Worker('/worker.js');w.onmessage=function(){f.submit()};w.postMessage(1)")},
      {"a hash is reckoned",
       GO("crypto.subtle.digest('SHA-512',new Uint8Array(3e7)).then(function(){f.submit()})")},
      {"a frame of another host is in the page",
       "<iframe src='http://192.0.2.1/'></iframe>" GO(LATER(SEND, 150))},
      {"the page has its own built-ins",
       "<script>String=Number=function(){throw 1};RegExp.prototype.exec=null</script>" GO(
           LATER("f.submit()", '100'))},
      {"a page in between waits",
       "<form action=/wait><input name=box><input type=submit name=go></form>"},
      {"a page in between fetches pictures",
       "<form action=/fetch><input name=box><input type=submit name=go></form>"},
      {"a button is enabled late",
       "<form action=/save oninput=\"" LATER("go.disabled=false",
                                             200) "\"><input name=box>"
                                                  "<button id=go disabled></button></form>"},
      {"the form comes late",
       "<body><script>" LATER("document.body.innerHTML='<form action=/save><input name=box>"
                              "<button id=go></button></form>'",
                              200) "</script>"},
  };
  server_.special = [](const QByteArray& request) -> std::optional<Reply> {
    const QByteArray form = "<form action=/save><input type=hidden name=box value=Web></form>wait";
    if (request.startsWith("GET /wait?")) {
      return Html(form +
                  "<script>" LATER(LATER("document.forms[0].submit()", 300), 300) "</script>");
    }
    if (request.startsWith("GET /fetch?")) {
      return Html(form +
                  "<script>onload=function(){var n=20;(function k(){var i=new Image;i.onload="
                  "i.onerror=function(){--n?k():document.forms[0].submit()};i.src='/'+n})()}"
                  "</script>");
    }
    return std::nullopt;
  };
  for (const auto& page : pages) {
    SCOPED_TRACE(page.fault);
    server_.replies["/page"] = Html(page.markup);
    ExpectSavedBeforeTheNextPage(
        {u"nav(\"page\")"_s, u"set_name(\"box,\")"_s, u"click_button(\"go\")"_s});
  }
}

TEST_F(LateSave, ArrivesWhateverSetItGoing) {
  const QString nav = u"nav(\"page\")"_s;
  const QString name = u"set_name(\"box,\")"_s;
  const QString box = u"set_checkbox(\"kind,\")"_s;
  const QString go = u"click_button(\"go\")"_s;
  const char* const form =
      FORM "<input type=button id=go onclick='f.submit()'><input type=checkbox name=kind onclick=";
  const struct {
    const char* fault;
    QByteArray markup;
    QStringList script;
  } cases[] = {
      {"a choice loads another form",
       form + QByteArray("\"location='/other'\">"),
       {nav, box, name, go}},
      {"a choice loads another form in a moment",
       form + QByteArray("\"" LATER("location='/other'", 50) "\">"),
       {nav, box, name, go}},
      {"a box saves by itself", form + QByteArray("\"" LATER(SEND, 100) "\">"), {nav, name, box}},
      {"nobody waits for the click",
       GO(LATER(SEND, 100)),
       {nav, name, u"click_button_ignore_page_loading(\"go,20\")"_s}},
      {"a move within the page",
       "<script>onhashchange=function(){" LATER("document.body.innerHTML=\"<form action=/save>"
                                                "<input name=box><button id=go></button></form>\"",
                                                40) "}</script><p>page",
       {nav, u"nav(\"page#form\")"_s, name, go}},
  };
  server_.replies["/other"] = Html(form + QByteArray("''>"));
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    server_.replies["/page"] = Html(row.markup);
    ExpectSavedBeforeTheNextPage(row.script);
  }
}

TEST_F(LateSave, TheNextPageIsRequestedAgainOnlyWhereThatIsSafe) {
  const Reply busy = Answer("503 Busy", "busy");
  const struct {
    const char* fault;
    const char* path;
    std::optional<Reply> reply;  // nothing: connections are refused
    int failures;
    qsizetype requests;
    bool is_saved;
  } cases[] = {
      {"it says that it is busy", "fine", busy, 2, 3, true},
      {"it is away", "fine", std::nullopt, 1, 1, true},
      {"it is busy with something that may act", "fine?apply=1", busy, 9, 1, false},
      {"it is away for something that may act", "fine?apply=1", std::nullopt, 1, 0, false},
      {"it hangs up", "fine", Reply{.bytes = {}}, 9, 1, false},
      {"it resets the connection", "fine", Reply{.bytes = {}, .then = Then::kReset}, 9, 1, false},
  };
  limits_.load_pauses = {100ms, 200ms, 400ms, 800ms, 1600ms, 3200ms};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.fault);
    int failures = row.failures;
    server_.special = [&](const QByteArray& request) -> std::optional<Reply> {
      if (request.startsWith("GET /save") && !row.reply) {
        QTimer::singleShot(0, &server_, [this] { server_.GoAway(); });
        QTimer::singleShot(500ms, &server_, [this] { server_.ComeBack(); });
      }
      return request.startsWith("GET /fine") && row.reply && failures-- > 0 ? row.reply
                                                                            : std::nullopt;
    };
    server_.replies["/page"] = Html(GO("f.submit()"));
    server_.requests.clear();
    Start({u"nav(\"page\")"_s, u"set_name(\"box,\")"_s, u"click_button(\"go\")"_s,
           u"nav(\"%1\")"_s.arg(QLatin1String(row.path))});
    ASSERT_TRUE(Ends(20s));
    const auto requests = std::ranges::count_if(server_.requests, [](const QByteArray& request) {
      return request.startsWith("GET /fine");
    });
    EXPECT_EQ(requests, row.requests);
    EXPECT_EQ(runner_->Outcome().entries_failed, row.is_saved ? 0 : 1) << Log().toStdString();
    runner_.reset();
    RunUntil([&] { return row.reply || server_.ComeBack(); }, 3s);
  }
}

TEST_F(LateSave, NothingIsRequestedAgainAfterAStop) {
  server_.special = [](const QByteArray& request) {
    return request.startsWith("GET /fine") ? std::optional(Answer("503 Busy", "busy"))
                                           : std::nullopt;
  };
  server_.replies["/page"] = Html(GO("f.submit()"));
  limits_.load_pauses[1] = 500ms;
  Start(
      {u"nav(\"page\")"_s, u"set_name(\"box,\")"_s, u"click_button(\"go\")"_s, u"nav(\"fine\")"_s});
  ASSERT_TRUE(RunUntil([&] { return PositionOf("GET /fine") >= 0; }));
  runner_->Stop();
  EXPECT_TRUE(Ends(10s));
  const qsizetype requests = server_.requests.size();
  RunUntil([] { return false; }, 1200ms);
  EXPECT_EQ(server_.requests.size(), requests);
}

TEST_F(LateSave, APageThatBreaksOffOnceIsFetchedAgain) {
  const QByteArray whole = GO("f.submit()");
  server_.replies["/page"] = Html(whole);
  bool is_first = true;
  server_.special = [&](const QByteArray& request) -> std::optional<Reply> {
    if (!request.startsWith("GET /page") || !std::exchange(is_first, false)) {
      return std::nullopt;
    }
    Reply half = Html(whole);
    half.bytes.chop(whole.size() / 2);
    return half;
  };
  ExpectSavedBeforeTheNextPage(
      {u"nav(\"page\")"_s, u"set_name(\"box,\")"_s, u"click_button(\"go\")"_s});
}

}  // namespace
}  // namespace quayline::testing
